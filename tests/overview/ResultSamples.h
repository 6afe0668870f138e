#pragma once

// Crafted result records and folders for the overview's tests: a small class
// whose shares, attempts and wrong answers are easy to count by hand.

#include "result/FinalGrade.h"
#include "result/ResultRecord.h"
#include "session/TestRecord.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QList>
#include <QString>

// One task as the student met it; right when the answer is the expected one.
struct SampleTask {
    int page;
    QString prompt, expected, given;
};

// A test of the given tasks, finished at `when` ("2026-11-20T10:00"). Page 9
// counts two tasks per equation, as the equation page does.
inline ResultRecord sampleTest(const QString& name, const QString& when,
                               const QList<SampleTask>& tasks, bool expert = false) {
    ResultRecord r;
    r.program = QStringLiteral("Laborix Test 3.0");
    r.machine = QStringLiteral("pc-07");
    r.candidate = name;
    r.expert = expert;
    r.finished = QDateTime::fromString(when, Qt::ISODate);
    r.started = r.finished.addSecs(-25 * 60);
    r.bankFile = QStringLiteral("labquiz.dat");
    for (const SampleTask& t : tasks) {
        auto page = std::find_if(r.pages.begin(), r.pages.end(),
                                 [&t](const PageRecord& p) { return p.page == t.page; });
        if (page == r.pages.end()) {
            r.pages.append({t.page, pageTitle(t.page), 0, 0, {}, {}});
            page = r.pages.end() - 1;
        }
        const bool right = t.given == t.expected;
        const int worth = t.page == 9 ? 2 : 1;
        page->items.append({t.prompt, t.expected, t.given, right});
        page->tasks += worth;
        page->correct += right ? worth : 0;
        r.tasks += worth;
        r.correct += right ? worth : 0;
    }
    r.grade = FinalGrade::gradeWord(r.correct, r.tasks);
    r.points = FinalGrade::stepOf(r.grade);
    return r;
}

// The class: Anna three times (spelt "Anna", "Anna", "anna "), Ben once,
// Cem once at the expert level.
//   Natrium (page 1):            asked 5, wrong 3: "na" twice, "NA" once
//   Kohlenstoffmonoxid (page 11): asked 4, wrong 3: "Co" twice, no answer once
//   Arsen (page 1):              asked 4, wrong 2: "Ar", "as"
inline QList<ResultRecord> sampleClass() {
    const SampleTask naWrong{1, "Natrium", "Na", "na"}, naRight{1, "Natrium", "Na", "Na"};
    const SampleTask asRight{1, "Arsen", "As", "As"};
    const SampleTask coWrong{11, "Kohlenstoffmonoxid", "CO", "Co"},
        coRight{11, "Kohlenstoffmonoxid", "CO", "CO"};
    return {sampleTest("Anna", "2026-11-20T10:00:00", {naWrong, asRight, coWrong}),
            sampleTest("Ben", "2026-11-21T10:05:00", {naWrong, {1, "Arsen", "As", "Ar"}, coWrong}),
            sampleTest("Cem", "2026-11-22T11:00:00",
                       {{1, "Natrium", "Na", "NA"},
                        {11, "Kohlenstoffmonoxid", "CO", ""},
                        {9, "H2 + O2 = H2O", "2 1 2", "2 1 2"}},
                       true),
            sampleTest("Anna", "2026-11-24T10:00:00", {naRight, asRight, coRight}),
            sampleTest("anna ", "2026-11-25T09:30:00", {naRight, {1, "Arsen", "As", "as"}})};
}

inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// The class as result files in a folder, named as the program names them.
inline bool writeSampleClass(const QString& folder) {
    int n = 0;
    for (const ResultRecord& r : sampleClass()) {
        const QString name = r.finished.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss_")) +
                             QString::number(++n) + QStringLiteral(".json");
        if (!writeBytes(QDir(folder).filePath(name), r.toJson()))
            return false;
    }
    return true;
}
