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

// The application-information object: who the program is, where its three
// folders lie, the names of earlier candidates and the remembered level, the
// session log, and the program's own notices.
//
// On one machine a single data folder holds everything. In a computer room
// the task bank lies in a task folder on the school server (often read-only
// for students), names, level, log and lock stay in each account's personal
// folder, and every finished test is handed in as a file of its own in a
// results folder the teacher collects.
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

    // The three places, each ending in a separator.
    struct Folders {
        QString tasks;    // labquiz.dat and elements.dat, read only
        QString personal; // names.ini, laborix.log, the instance lock, the outbox
        QString results;  // one file per finished test
        bool separateTasks() const { return tasks != personal; }
    };
    // What an administrator set for all users of the machine
    // (/etc/xdg/Laborix/LabQuiz.conf on Linux: TaskFolder, ResultsFolder).
    struct SystemConfig {
        QString taskFolder;
        QString resultsFolder;
    };
    static SystemConfig readSystemConfig();
    // The personal folder is LABQUIZ_DATA, else with -DEV the developer
    // folder (LABQUIZ_DEV_DIR, else the source tree's data/), else the
    // per-user application data folder. LABQUIZ_TASKS and LABQUIZ_RESULTS
    // name the task and results folders; without them LABQUIZ_DATA and -DEV
    // keep everything in their one folder, and otherwise the system
    // configuration may name them. Results default to Ergebnisse/ in the
    // personal folder.
    static Folders resolveFolders(const CommandLine& commandLine,
                                  const QProcessEnvironment& environment,
                                  const SystemConfig& config);
    static QString resolveDataFolder(const CommandLine& commandLine,
                                     const QProcessEnvironment& environment) {
        return resolveFolders(commandLine, environment, {}).personal;
    }
    const Folders& folders() const { return m_folders; }
    // The personal folder.
    QString dataFolder() const { return m_folders.personal; }
    QString taskFolder() const { return m_folders.tasks; }
    QString resultsFolder() const { return m_folders.results; }
    QString outboxFolder() const { return m_folders.personal + QStringLiteral("Ausgang/"); }
    QString developerFolder() const;
    QString namesPath() const { return m_folders.personal + QStringLiteral("names.ini"); }
    QString taskBankPath() const { return m_folders.tasks + QStringLiteral("labquiz.dat"); }
    QString elementsPath() const { return m_folders.tasks + QStringLiteral("elements.dat"); }
    QString logPath() const { return m_folders.personal + QLatin1String(kLogName); }
    // "laborix-anna@pc07.lock": one instance per account and machine, so
    // that neither a home used on two machines nor a folder shared by
    // several accounts locks out another student.
    QString lockPath() const;
    static QString accountName(const QProcessEnvironment& environment);
    static QString machineName();

    // Creates the personal folder and, where the task folder is the same
    // folder, copies the compiled-in data files that are missing there.
    // Returns a German problem text, empty when all is well.
    QString prepareDataFolder();
    // The task file to read: the one in the task folder, or, where a
    // separate task folder lacks it or cannot give it, the compiled-in copy
    // (*notice then says so).
    QString taskFileOrBuiltIn(const QString& fileName, QString* notice) const;

    // Hands in what waits in the outbox; quiet, whatever happens.
    void deliverOutbox() const;

    // One instance per account and machine. False when another one runs.
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
    // The three folders, one per line with its German name.
    static QString foldersText(const Folders& folders);
    ResultPlaces resultPlaces() const override;
    void message(QWidget* parent, const QString& text) const override;

    // The one notice of a session that names or results cannot be saved;
    // why is the end of its first sentence. Later failures stay quiet.
    void cannotSave(const QString& why);
    bool toldCannotSave() const { return m_toldCannotSave; }

private:
    bool saveNames();

    CommandLine m_commandLine;
    QProcessEnvironment m_environment;
    Folders m_folders;
    NamesFile m_names;
    std::unique_ptr<QLockFile> m_lock;
    bool m_sessionEnded = false;
    bool m_unlocked = false;
    bool m_toldCannotSave = false;
};
