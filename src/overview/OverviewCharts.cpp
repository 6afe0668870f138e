#include "overview/OverviewCharts.h"

#include "controls/Look.h"
#include "overview/ClassSummary.h"
#include "result/FinalGrade.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QHorizontalBarSeries>
#include <QValueAxis>

namespace {

// Horizontal bars from 0 with ticks every `step`; the axis runs a little
// past `top` so that the label of the longest bar has room.
QChart* barChart(const QString& title, const QString& axisTitle, const QStringList& categories,
                 const QList<qreal>& values, const QColor& colour, qreal top, qreal step,
                 const QString& labelFormat, int textPixels) {
    auto* chart = new QChart;
    chart->setTitle(title);
    QFont titleFont = chart->titleFont();
    titleFont.setPixelSize(textPixels + 2);
    titleFont.setBold(true);
    chart->setTitleFont(titleFont);
    chart->setTitleBrush(Look::ink());
    chart->legend()->hide();
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundRoundness(0);
    chart->setMargins(QMargins(4, 4, 12, 4));

    auto* set = new QBarSet(title);
    set->append(values);
    set->setColor(colour);
    set->setBorderColor(colour.darker(130));
    set->setLabelColor(Look::ink());
    auto* series = new QHorizontalBarSeries;
    series->append(set);
    series->setBarWidth(0.7);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    series->setLabelsFormat(labelFormat);
    chart->addSeries(series);

    QFont labelFont = chart->font();
    labelFont.setPixelSize(textPixels);
    set->setLabelFont(labelFont);
    auto* categoryAxis = new QBarCategoryAxis;
    categoryAxis->append(categories);
    categoryAxis->setGridLineVisible(false);
    categoryAxis->setLabelsBrush(Look::ink());
    categoryAxis->setLabelsFont(labelFont);
    // A page or grade cut to "Formeln und Name…" is no use to a teacher; the
    // bars give way to the whole names instead.
    categoryAxis->setTruncateLabels(false);
    chart->addAxis(categoryAxis, Qt::AlignLeft);
    series->attachAxis(categoryAxis);

    auto* valueAxis = new QValueAxis;
    valueAxis->setRange(0, top + step * 0.6);
    valueAxis->setTickType(QValueAxis::TicksDynamic);
    valueAxis->setTickAnchor(0);
    valueAxis->setTickInterval(step);
    valueAxis->setLabelFormat(QStringLiteral("%d"));
    valueAxis->setLabelsFont(labelFont);
    valueAxis->setLabelsBrush(Look::softInk());
    valueAxis->setGridLineColor(Look::line());
    QFont axisTitleFont = labelFont;
    axisTitleFont.setPixelSize(textPixels - 1);
    valueAxis->setTitleFont(axisTitleFont);
    valueAxis->setTitleBrush(Look::softInk());
    valueAxis->setTitleText(axisTitle);
    chart->addAxis(valueAxis, Qt::AlignBottom);
    series->attachAxis(valueAxis);
    return chart;
}

} // namespace

QChart* OverviewCharts::pageShares(const ClassSummary& summary, int textPixels) {
    // A horizontal bar chart draws its first category at the bottom, so the
    // pages go in back to front to read from the top.
    QStringList titles;
    QList<qreal> shares;
    for (auto it = summary.pages.crbegin(); it != summary.pages.crend(); ++it) {
        titles << it->title;
        // Whole percents: the bars need no decimals, and without them no
        // decimal point can show up where a German reader expects a comma
        // (Qt Charts' own localisation drops the axis labels).
        shares << qRound(it->share() * 100.0);
    }
    return barChart(QStringLiteral("Anteil richtiger Antworten je Seite"),
                    QStringLiteral("Anteil richtig in %"), titles, shares, Look::accent(), 100, 20,
                    QStringLiteral("@value %"), textPixels);
}

QChart* OverviewCharts::gradeSpread(const ClassSummary& summary, int textPixels) {
    const QStringList words = FinalGrade::gradeWords(); // "ungenügend" first: the bottom bar
    QList<qreal> counts;
    int most = 0;
    for (int n : summary.grades) {
        counts << n;
        most = qMax(most, n);
    }
    // Whole numbers on the axis, with a step that keeps it readable.
    int step = 1;
    while (most / step > 8)
        step = step == 1 ? 2 : step == 2 ? 5 : step * 2;
    return barChart(QStringLiteral("Notenverteilung"), QStringLiteral("Anzahl der Tests"), words,
                    counts, Look::amber(), qMax(most, 1), step, QStringLiteral("@value"),
                    textPixels);
}

QString OverviewCharts::pageSharesText(const ClassSummary& summary) {
    QStringList parts;
    for (const ClassSummary::PageShare& p : summary.pages)
        parts << (p.tasks > 0
                      ? QStringLiteral("%1: %2").arg(p.title, ClassSummary::percentText(p.share()))
                      : QStringLiteral("%1: keine Aufgaben").arg(p.title));
    return QStringLiteral("Anteil richtiger Antworten je Seite. ") +
           parts.join(QStringLiteral("; ")) + u'.';
}

QString OverviewCharts::gradeSpreadText(const ClassSummary& summary) {
    const QStringList words = FinalGrade::gradeWords();
    QStringList parts;
    for (int step = ClassSummary::kGradeSteps - 1; step >= 0; --step)
        parts << QStringLiteral("%1: %2").arg(words[step]).arg(summary.grades[std::size_t(step)]);
    return QStringLiteral("Notenverteilung, Anzahl der Tests. ") +
           parts.join(QStringLiteral("; ")) + u'.';
}
