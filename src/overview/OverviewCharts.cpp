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

QChart* barChart(const QString& title, const QStringList& categories, const QList<qreal>& values,
                 const QColor& colour, qreal maximum, const QString& labelFormat,
                 const QString& axisFormat, int ticks) {
    auto* chart = new QChart;
    chart->setTitle(title);
    QFont titleFont = chart->titleFont();
    titleFont.setPixelSize(15);
    titleFont.setBold(true);
    chart->setTitleFont(titleFont);
    chart->setTitleBrush(Look::ink());
    chart->legend()->hide();
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundRoundness(0);
    // "71,3 %", not "71.3 %".
    chart->setLocalizeNumbers(true);
    chart->setLocale(QLocale(QLocale::German, QLocale::Germany));
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

    auto* categoryAxis = new QBarCategoryAxis;
    categoryAxis->append(categories);
    categoryAxis->setGridLineVisible(false);
    categoryAxis->setLabelsBrush(Look::ink());
    chart->addAxis(categoryAxis, Qt::AlignLeft);
    series->attachAxis(categoryAxis);

    auto* valueAxis = new QValueAxis;
    // Room to the right for the label of the longest bar.
    valueAxis->setRange(0, maximum);
    valueAxis->setTickCount(ticks);
    valueAxis->setLabelFormat(axisFormat);
    valueAxis->setLabelsBrush(Look::softInk());
    valueAxis->setGridLineColor(Look::line());
    chart->addAxis(valueAxis, Qt::AlignBottom);
    series->attachAxis(valueAxis);
    return chart;
}

} // namespace

QChart* OverviewCharts::pageShares(const ClassSummary& summary) {
    // A horizontal bar chart draws its first category at the bottom, so the
    // pages go in back to front to read from the top.
    QStringList titles;
    QList<qreal> shares;
    for (auto it = summary.pages.crbegin(); it != summary.pages.crend(); ++it) {
        titles << it->title;
        shares << qRound(it->share() * 1000.0) / 10.0;
    }
    return barChart(QStringLiteral("Anteil richtiger Antworten je Seite"), titles, shares,
                    Look::accent(), 110, QStringLiteral("@value %"), QStringLiteral("%d %"), 12);
}

QChart* OverviewCharts::gradeSpread(const ClassSummary& summary) {
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
    const int top = (most / step + 1) * step;
    return barChart(QStringLiteral("Notenverteilung (Anzahl der Tests)"), words, counts,
                    Look::amber(), top, QStringLiteral("@value"), QStringLiteral("%d"),
                    top / step + 1);
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
