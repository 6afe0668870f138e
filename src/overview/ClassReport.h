#pragma once

#include "overview/ClassSummary.h"

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

    // The report's text as HTML; the charts are the images "chart:pages" and
    // "chart:grades", one below the other, chartWidth wide and as high as
    // pagesHeight() and gradesHeight() say (in 96-dpi pixels).
    static QString html(const Input& input, int chartWidth);
    // Qt Charts shortens a bar's label to "…" when its row is lower than
    // about twice the text, so the sixteen grades need the taller chart.
    static int pagesHeight(int chartWidth) { return chartWidth * 48 / 100; }
    static int gradesHeight(int chartWidth) { return chartWidth * 64 / 100; }
    // Paints the whole report onto the printer (a PDF when it is set to one);
    // returns the number of pages, 0 when nothing could be painted.
    static int print(const Input& input, QPrinter& printer);
    // The PDF as it would be printed, for a folder of the teacher's choice.
    static QString defaultFileName();
};
