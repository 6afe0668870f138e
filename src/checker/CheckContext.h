#pragma once

#include "checker/CheckFinding.h"
#include "session/TaskBank.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>

class ElementTable;

// What every rule of the check works on: the bank as the program reads it,
// its lines by number for quoting, the element table (or none), and the
// notes collected so far.
class CheckContext final {
public:
    CheckContext(QStringView text, const QString& file, const ElementTable* elements);

    void error(int line, const QString& text) { note(line, CheckSeverity::Error, text); }
    void warning(int line, const QString& text) { note(line, CheckSeverity::Warning, text); }

    const QString& file() const { return m_file; }
    const TaskBank& bank() const { return m_bank; }
    const ElementTable* elements() const { return m_elements; }
    int lineCount() const { return static_cast<int>(m_lines.size()); }
    // Line n counted from 1; empty outside the file.
    QStringView at(int n) const {
        return n >= 1 && n <= lineCount() ? m_lines.at(n - 1) : QStringView();
    }

    QList<CheckFinding> findings;
    // Element symbols of section 1 with the line they were first seen on.
    QHash<QString, int> symbolSeen;

    // A line quoted in a note; a damaged file may hold very long lines.
    static QString shown(QStringView text);
    static QString sectionLabel(int section);
    // What line k of a record holds, for notes such as "Das Symbol ist leer".
    static QString fieldName(TaskBank::Section section, int k);
    static QString numberText(double v);

private:
    void note(int line, CheckSeverity severity, const QString& text) {
        findings.append({m_file, line, severity, text});
    }

    QString m_file;
    const ElementTable* m_elements;
    TaskBank m_bank;
    QList<QStringView> m_lines;
};
