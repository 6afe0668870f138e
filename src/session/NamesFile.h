#pragma once

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
//   [Namen]
//   Name=Anna Müller
//
// A name is stored exactly as typed, blanks included; backslash, CR, LF and
// other control characters are written as \\, \r, \n and \xHH.
class NamesFile final {
public:
    NamesFile() = default;
    explicit NamesFile(QString path) : m_path(std::move(path)) {}

    // Reads the file; a missing or unreadable file gives an empty list.
    bool load();
    // Writes the file atomically; false (and the old file kept) on failure.
    bool save() const;

    const QStringList& names() const { return m_names; }
    // No duplicates: an existing name (exact compare) is not added again.
    bool addName(const QString& name);
    bool removeName(const QString& name);

    // The remembered level; -1 when none was stored.
    int difficulty() const { return m_difficulty; }
    void setDifficulty(int level) { m_difficulty = level; }

    QString path() const { return m_path; }

    static QString parse(const QString& text, QStringList* names, int* difficulty);
    QString serialise() const;
    static QString escape(const QString& name);
    static QString unescape(QStringView text);

private:
    QString m_path;
    QStringList m_names;
    int m_difficulty = -1;
};
