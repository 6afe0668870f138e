#pragma once

#include "chem/LegacyText.h"

#include <QString>
#include <QStringList>

// names.ini: the names of earlier candidates and the remembered level. The
// file is the program's only configuration; it is read leniently (junk lines
// are skipped, any of the usual encodings is understood) and written whole
// and atomically, in UTF-8.
//
//   ; comment
//   [Einstellungen]
//   DIFFICULTY=1
//   AUSWERTUNG=/srv/schule/ergebnisse/8b
//   [Namen]
//   Name=Anna Müller
//
// A name is stored exactly as typed, blanks included; backslash, CR, LF and
// other control characters are written as \\, \r, \n and \xHH.
class NamesFile final {
public:
    NamesFile() = default;
    explicit NamesFile(QString path) : m_path(std::move(path)) {}

    // A list of thousands of names stays far below this; anything larger is
    // not a names list.
    static constexpr qint64 kMaxFileBytes = 4 * 1024 * 1024;

    // Reads the file; a missing or unreadable file gives an empty list.
    bool load();
    // Writes the file atomically; false (and the old file kept) on failure,
    // and also when the last load() found a file it would not read, since
    // writing would throw away what that file holds.
    bool save();

    // What the last load() found; readProblem().refused() when the file is
    // there but was not read.
    const LegacyText::ReadProblem& readProblem() const { return m_readProblem; }
    // Why the last save() failed (German, the end of a sentence).
    QString saveProblem() const { return m_saveProblem; }

    const QStringList& names() const { return m_names; }
    // No duplicates: an existing name (exact compare) is not added again.
    bool addName(const QString& name);
    bool removeName(const QString& name);

    // The remembered level; -1 when none was stored.
    int difficulty() const { return m_difficulty; }
    void setDifficulty(int level) { m_difficulty = level; }

    // The folder the teacher's overview last read, when one other than the
    // results folder in use was chosen; empty for none.
    QString overviewFolder() const { return m_overviewFolder; }
    void setOverviewFolder(const QString& folder) { m_overviewFolder = folder; }

    QString path() const { return m_path; }

    static QString parse(const QString& text, QStringList* names, int* difficulty,
                         QString* overviewFolder = nullptr);
    QString serialise() const;
    static QString escape(const QString& name);
    static QString unescape(QStringView text);

private:
    QString m_path;
    QStringList m_names;
    int m_difficulty = -1;
    QString m_overviewFolder;
    LegacyText::ReadProblem m_readProblem;
    QString m_saveProblem;
};
