#pragma once

#include "app/CommandLine.h"
#include "session/CandidateRecords.h"
#include "session/NamesFile.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <memory>

class QLockFile;
class QWidget;

// The application-information object: who the program is, where its data
// folder lies, the names of earlier candidates and the remembered level, the
// session log, and the program's own notices.
class AppInfo final : public CandidateRecords {
public:
    static constexpr const char* kProductName = "Laborix Test";
    static constexpr const char* kShortName = "LabQuiz";
    static constexpr const char* kVersion = "3.0";
    static constexpr const char* kReleaseDate = "28.03.2006";
    static constexpr const char* kLogName = "laborix.log";

    AppInfo(CommandLine commandLine, QProcessEnvironment environment);
    ~AppInfo() override;

    const CommandLine& commandLine() const { return m_commandLine; }

    // The data folder, ending in a separator: LABQUIZ_DATA, else with -DEV
    // the developer folder (LABQUIZ_DEV_DIR, else the source tree's data/),
    // else the per-user application data folder.
    static QString resolveDataFolder(const CommandLine& commandLine,
                                     const QProcessEnvironment& environment);
    QString dataFolder() const { return m_dataFolder; }
    QString developerFolder() const;
    QString namesPath() const { return m_dataFolder + QStringLiteral("names.ini"); }
    QString taskBankPath() const { return m_dataFolder + QStringLiteral("labquiz.dat"); }
    QString elementsPath() const { return m_dataFolder + QStringLiteral("elements.dat"); }
    QString logPath() const { return m_dataFolder + QLatin1String(kLogName); }

    // Creates the folder and copies the compiled-in data files that are
    // missing there. Returns a German problem text, empty when all is well.
    QString prepareDataFolder();

    // One instance per data folder. False when another one holds the folder.
    // A lock left by a killed program does not count. Where no lock file can
    // be made (a read-only folder, a full disk) nothing can be saved either,
    // so a second program could not spoil anything: this one runs unlocked.
    bool claimInstance();
    bool holdsInstance() const;
    bool runsUnlocked() const { return m_unlocked; }
    // A lock file without a readable owner (its writer was killed before it
    // wrote one) counts as stale once it is this old.
    static constexpr int kOwnerlessLockMs = 3000;

    // The log is cut to its last lines; a larger file is not a log.
    static constexpr qint64 kMaxLogBytes = 8 * 1024 * 1024;

    NamesFile& names() override { return m_names; }
    bool addName(const QString& name) override;
    bool removeName(const QString& name) override;
    int difficulty() const { return m_names.difficulty(); }
    void setDifficulty(int level) override;

    void log(const QString& line) override;
    void logStart(const QString& record, const QString& name) override;
    void endSession();

    void showInfo(QWidget* parent) const;
    void message(QWidget* parent, const QString& text) const override;

    // The one notice of a session that names or results cannot be saved;
    // why is the end of its first sentence. Later failures stay quiet.
    void cannotSave(const QString& why);
    bool toldCannotSave() const { return m_toldCannotSave; }

private:
    bool saveNames();

    CommandLine m_commandLine;
    QProcessEnvironment m_environment;
    QString m_dataFolder;
    NamesFile m_names;
    std::unique_ptr<QLockFile> m_lock;
    bool m_sessionEnded = false;
    bool m_unlocked = false;
    bool m_toldCannotSave = false;
};
