#include "overview/ClassCsv.h"

#include <QLocale>

namespace {

// Numbers are the program's own and never negative, so they need neither
// quotes nor the apostrophe.
QString number(int value) {
    return QString::number(value);
}

QString levelText(bool expert) {
    return expert ? QStringLiteral("Strebermodus") : QStringLiteral("normal");
}

} // namespace

QStringList ClassCsv::header() {
    return {QStringLiteral("Name"),
            QStringLiteral("Datum"),
            QStringLiteral("Uhrzeit"),
            QStringLiteral("Stufe"),
            QStringLiteral("Aufgaben"),
            QStringLiteral("Richtig"),
            QStringLiteral("Anteil richtig (%)"),
            QStringLiteral("Note"),
            QStringLiteral("Punkte"),
            QStringLiteral("Rechner"),
            QStringLiteral("Datei")};
}

QString ClassCsv::textCell(const QString& text) {
    QString cell = text;
    static const QString formulaStarts = QStringLiteral("=+-@\t\r");
    if (!cell.isEmpty() && formulaStarts.contains(cell.front()))
        cell.prepend(u'\'');
    const bool quote = cell.contains(u';') || cell.contains(u'"') || cell.contains(u'\n') ||
                       cell.contains(u'\r') || cell.startsWith(u' ') || cell.endsWith(u' ');
    if (!quote)
        return cell;
    cell.replace(u'"', QStringLiteral("\"\""));
    return u'"' + cell + u'"';
}

QStringList ClassCsv::row(const ResultRecord& record, const QString& file) {
    const QLocale german(QLocale::German, QLocale::Germany);
    return {textCell(record.candidate),
            record.finished.toString(QStringLiteral("dd.MM.yyyy")),
            record.finished.toString(QStringLiteral("HH:mm")),
            levelText(record.expert),
            number(record.tasks),
            number(record.correct),
            german.toString(record.share() * 100.0, 'f', 1),
            textCell(record.grade),
            number(record.points),
            textCell(record.machine),
            textCell(file)};
}

QByteArray ClassCsv::table(const QList<ResultRecord>& records, const QStringList& files,
                           const QList<int>& rows) {
    QString text = header().join(u';') + QStringLiteral("\r\n");
    for (int i : rows)
        text += row(records[i], files.value(i)).join(u';') + QStringLiteral("\r\n");
    // The byte-order mark tells the spreadsheet that this is UTF-8.
    return QByteArrayLiteral("\xEF\xBB\xBF") + text.toUtf8();
}
