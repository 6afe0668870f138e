#include "overview/ClassReport.h"

#include "chem/FormulaText.h"
#include "overview/OverviewCharts.h"

#include <QAbstractTextDocumentLayout>
#include <QChart>
#include <QDate>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <QTextDocument>
#include <QUrl>

namespace {

// Text sizes in points: small enough that a class of thirty fits on a page
// or two, large enough to read on paper.
constexpr int kBodyPoints = 8;
constexpr qreal kFooterMm = 9.0;
constexpr qreal kMarginMm = 14.0;
// Side by side, a chart gives its labels at most about two fifths of its
// width; at this size "Formeln und Namen von Stoffen" and "befriedigend
// minus" still fit whole.
constexpr int kChartTextPixels = 9;

QString esc(const QString& text) {
    return text.toHtmlEscaped();
}

QString cell(const QString& text, const char* align = "left") {
    return QStringLiteral("<td align=\"%1\">%2</td>").arg(QLatin1String(align), esc(text));
}

// A text from a task: its formulas set with subscripts.
QString taskCell(const QString& text) {
    return QStringLiteral("<td>%1</td>").arg(FormulaText::textToHtml(text));
}

QString headRow(const QStringList& captions, const QList<int>& percents = {}) {
    QString row = QStringLiteral("<thead><tr>");
    for (qsizetype i = 0; i < captions.size(); ++i) {
        const QString width =
            i < percents.size() ? QStringLiteral(" width=\"%1%\"").arg(percents[i]) : QString();
        row += QStringLiteral("<th bgcolor=\"#eceff1\" align=\"left\"%1>%2</th>")
                   .arg(width, esc(captions[i]));
    }
    return row + QStringLiteral("</tr></thead>");
}

// A chart drawn into an image at twice its size, so that it stays sharp on
// paper.
QImage chartImage(QChart* chart, const QSize& size) {
    QGraphicsScene scene;
    scene.addItem(chart); // the scene deletes it
    chart->resize(size);
    QImage image(size * 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    scene.render(&painter, QRectF(QPointF(0, 0), QSizeF(image.size())),
                 QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

QString levelText(bool expert) {
    return expert ? QStringLiteral("Strebermodus") : QStringLiteral("normal");
}

} // namespace

QString ClassReport::defaultFileName() {
    return QStringLiteral("Laborix-Klassenbericht %1.pdf")
        .arg(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy")));
}

QString ClassReport::html(const Input& input, int bodyWidth) {
    const QList<ResultRecord>& records = *input.records;
    const ClassSummary& s = *input.summary;
    QString h;
    h += QStringLiteral("<h2>Klassenbericht: Laborix Test</h2>");
    h += QStringLiteral("<p>Ergebnisordner: %1<br>Auswahl: %2<br>%3 Tests von %4 Namen; "
                        "zusammen %5 von %6 Aufgaben richtig (%7).")
             .arg(esc(input.folder), esc(input.selection))
             .arg(s.tests.size())
             .arg(s.attempts.size())
             .arg(s.correct)
             .arg(s.tasks)
             .arg(ClassSummary::percentText(s.share()));
    if (input.skipped > 0)
        h += QStringLiteral(" %1 Dateien ließen sich nicht lesen und fehlen hier.")
                 .arg(input.skipped);
    h += QStringLiteral("</p>");

    h += QStringLiteral("<h3>Übersicht</h3>");
    h += QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\" border=\"0.5\" "
                        "style=\"border-color:#b0bec5; border-collapse:collapse\">");
    h += headRow({QStringLiteral("Name"), QStringLiteral("Datum"), QStringLiteral("Uhrzeit"),
                  QStringLiteral("Stufe"), QStringLiteral("Aufgaben"), QStringLiteral("Richtig"),
                  QStringLiteral("Anteil"), QStringLiteral("Note"), QStringLiteral("Punkte")});
    for (const ClassSummary::Attempts& a : s.attempts) {
        for (int i : a.tests) {
            const ResultRecord& r = records[i];
            h += QStringLiteral("<tr>") + cell(r.candidate) +
                 cell(r.finished.toString(QStringLiteral("dd.MM.yyyy"))) +
                 cell(r.finished.toString(QStringLiteral("HH:mm"))) + cell(levelText(r.expert)) +
                 cell(QString::number(r.tasks), "right") +
                 cell(QString::number(r.correct), "right") +
                 cell(ClassSummary::percentText(r.share()), "right") + cell(r.grade) +
                 cell(QString::number(r.points), "right") + QStringLiteral("</tr>");
        }
        if (a.tests.size() > 1)
            h +=
                QStringLiteral("<tr><td colspan=\"9\"><i>%1: %2 Versuche, Verlauf %3</i></td></tr>")
                    .arg(esc(a.name))
                    .arg(a.tests.size())
                    .arg(esc(ClassSummary::trendText(records[a.tests.first()],
                                                     records[a.tests.last()])));
    }
    h += QStringLiteral("</table>");

    h += QStringLiteral("<h3>Stärken und Schwächen</h3>");
    const QSize pages = pagesChartSize(bodyWidth), grades = gradesChartSize(bodyWidth);
    h += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"0\"><tr>"
                        "<td><img src=\"chart:pages\" width=\"%1\" height=\"%2\"></td>"
                        "<td width=\"%3\"></td>"
                        "<td><img src=\"chart:grades\" width=\"%4\" height=\"%5\"></td>"
                        "</tr></table>")
             .arg(pages.width())
             .arg(pages.height())
             .arg(kChartGap)
             .arg(grades.width())
             .arg(grades.height());

    h += QStringLiteral("<h3>Schwierigste Aufgaben</h3>");
    if (s.hardTasks.isEmpty()) {
        h += QStringLiteral("<p>Keine Aufgabe wurde falsch beantwortet.</p>");
    } else {
        h += QStringLiteral("<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\" "
                            "border=\"0.5\" style=\"border-color:#b0bec5; "
                            "border-collapse:collapse\">");
        // Shares of the width that keep a formula or a name like
        // "Natriumchlorid" whole and the counts' captions on one line.
        h += headRow({QStringLiteral("Seite"), QStringLiteral("Aufgabe"),
                      QStringLiteral("Richtig wäre"), QStringLiteral("gestellt"),
                      QStringLiteral("falsch"), QStringLiteral("häufigste falsche Antworten")},
                     {17, 27, 13, 8, 7, 28});
        for (const ClassSummary::HardTask& t : s.hardTasks.mid(0, kHardTasksPrinted))
            h += QStringLiteral("<tr>") + cell(pageTitle(t.page)) + taskCell(t.prompt) +
                 taskCell(t.expected) + cell(QString::number(t.asked), "right") +
                 cell(QString::number(t.wrong), "right") +
                 taskCell(ClassSummary::wrongAnswersText(t.wrongAnswers)) + QStringLiteral("</tr>");
        h += QStringLiteral("</table>");
        if (s.hardTasks.size() > kHardTasksPrinted)
            h += QStringLiteral("<p>Die %1 am häufigsten falsch beantworteten von %2 Aufgaben mit "
                                "Fehlern.</p>")
                     .arg(kHardTasksPrinted)
                     .arg(s.hardTasks.size());
    }
    return h;
}

int ClassReport::print(const Input& input, QPrinter& printer) {
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    printer.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
                           QPageLayout::Millimeter);
    printer.setDocName(QStringLiteral("Laborix-Klassenbericht"));

    const QRectF page = printer.pageRect(QPrinter::DevicePixel);
    const qreal dpi = printer.logicalDpiY();
    const QSizeF body(page.width(), page.height() - kFooterMm / 25.4 * dpi);
    // Images in a document are sized in pixels of 96 dpi and scaled to the
    // device; the charts take the page's width.
    const int bodyWidth = int(body.width() * 96.0 / printer.logicalDpiX());
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&printer);
    QFont font = document.defaultFont();
    font.setPointSize(kBodyPoints);
    document.setDefaultFont(font);
    document.setDocumentMargin(0);
    document.setPageSize(body);
    document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("chart:pages")),
                         chartImage(OverviewCharts::pageShares(*input.summary, kChartTextPixels),
                                    pagesChartSize(bodyWidth)));
    document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("chart:grades")),
                         chartImage(OverviewCharts::gradeSpread(*input.summary, kChartTextPixels),
                                    gradesChartSize(bodyWidth)));
    document.setHtml(html(input, bodyWidth));

    const int pages = document.pageCount();
    QPainter painter;
    if (pages <= 0 || !painter.begin(&printer))
        return 0;
    QFont footerFont = font;
    footerFont.setPointSize(kBodyPoints - 1);
    const QString made = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
    for (int i = 0; i < pages; ++i) {
        if (i > 0)
            printer.newPage();
        painter.save();
        painter.translate(0, -i * body.height());
        document.drawContents(&painter, QRectF(QPointF(0, i * body.height()), body));
        painter.restore();
        painter.setFont(footerFont);
        painter.setPen(QColor(0x60, 0x7d, 0x8b));
        const QRectF footer(0, body.height(), body.width(), page.height() - body.height());
        painter.drawText(footer, Qt::AlignLeft | Qt::AlignBottom,
                         QStringLiteral("Laborix Test – Klassenbericht vom %1").arg(made));
        painter.drawText(footer, Qt::AlignRight | Qt::AlignBottom,
                         QStringLiteral("Seite %1 von %2").arg(i + 1).arg(pages));
    }
    painter.end();
    return pages;
}
