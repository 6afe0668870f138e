#pragma once

#include "overview/ClassSummary.h"

#include <QSize>
#include <QString>
#include <QStringList>

class QPrinter;

// The printed class report: a head with folder and selection, the summary
// table (every test, name by name, with each name's trend), both charts and
// the hardest tasks, flowed onto as few A4 pages as that takes, each page
// numbered "Seite n von m".
class ClassReport final {
public:
    static constexpr int kHardTasksPrinted = 20;

    struct Input {
        QString folder;
        QString selection; // the filter in words, e.g. "alle Tests"
        const QList<ResultRecord>* records = nullptr;
        const ClassSummary* summary = nullptr;
        int skipped = 0; // files that could not be read
    };

    // The report's text as HTML for a page bodyWidth wide (in 96-dpi pixels);
    // the charts are the images "chart:pages" and "chart:grades", side by
    // side, of pagesChartSize() and gradesChartSize().
    static QString html(const Input& input, int bodyWidth);
    // Qt Charts shortens a bar's label to "…" when its row is lower than
    // about twice the text, so the height follows the sixteen grades' rows.
    // The pages' names are the longer labels and take the larger part.
    static QSize pagesChartSize(int bodyWidth) { return {(bodyWidth - kChartGap) * 60 / 100, 430}; }
    static QSize gradesChartSize(int bodyWidth) {
        return {bodyWidth - kChartGap - pagesChartSize(bodyWidth).width(), 430};
    }
    static constexpr int kChartGap = 12;
    // Paints the whole report onto the printer (a PDF when it is set to one);
    // returns the number of pages, 0 when nothing could be painted.
    static int print(const Input& input, QPrinter& printer);
    // The PDF as it would be printed, for a folder of the teacher's choice.
    static QString defaultFileName();
};
