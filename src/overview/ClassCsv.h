#pragma once

#include "result/ResultRecord.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// The class table as a CSV file that a German spreadsheet opens by a double
// click: UTF-8 with a byte-order mark (else umlauts break), semicolons
// between cells (the comma is the decimal sign), decimal commas, CR LF, and
// quotes only where a cell needs them. A text cell that a spreadsheet would
// take for a formula (one beginning with "=", "+", "-", "@", a tab or a
// carriage return) gets a leading apostrophe, so a name typed as
// "=HYPERLINK(…)" stays a name.
class ClassCsv final {
public:
    static QStringList header();
    // One test: name, date, time, level, tasks, right, share right in
    // percent, grade word, points, machine, file.
    static QStringList row(const ResultRecord& record, const QString& file);
    // A text cell, neutralised and quoted as needed.
    static QString textCell(const QString& text);
    // The rows of the given records (indices into records and files), in
    // that order, with the header first.
    static QByteArray table(const QList<ResultRecord>& records, const QStringList& files,
                            const QList<int>& rows);
};
