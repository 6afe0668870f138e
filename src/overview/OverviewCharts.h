#pragma once

#include <QString>

class QChart;
struct ClassSummary;

// The overview's two charts, made alike for the window and the printed
// report: each page's share of right answers, and how many tests earned
// each grade. Each comes with its data as a sentence, for screen readers
// and for anyone who cannot tell the bars apart.
class OverviewCharts final {
public:
    // Horizontal bars, the pages top to bottom in the order of a test,
    // 0 … 100 %, each bar labelled with its share.
    // textPixels: the size of labels and titles.
    static QChart* pageShares(const ClassSummary& summary, int textPixels = 13);
    // Horizontal bars, "sehr gut plus" at the top down to "ungenügend",
    // each labelled with its number of tests.
    static QChart* gradeSpread(const ClassSummary& summary, int textPixels = 13);

    static QString pageSharesText(const ClassSummary& summary);
    static QString gradeSpreadText(const ClassSummary& summary);
};
