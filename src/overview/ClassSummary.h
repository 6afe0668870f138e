#pragma once

#include "result/ResultRecord.h"

#include <QDate>
#include <QList>
#include <QPair>
#include <QString>
#include <array>

// Which tests the teacher looks at: part of a name, a range of days, a level.
struct TestFilter {
    enum class Level { Any, Normal, Expert };

    QString name; // part of the candidate's name, in any case; empty for all
    QDate from;   // first day, invalid for no limit
    QDate to;     // last day, invalid for no limit
    Level level = Level::Any;

    bool accepts(const ResultRecord& record) const;
    bool operator==(const TestFilter&) const = default;
};

// What a class's results say, worked out as plain data for the window, the
// printed report and the command line alike: the tests in the selection,
// the attempts of each name with their trend, each page's share of right
// answers, the spread of grades, and the tasks answered wrong most often.
struct ClassSummary {
    // The ten pages in the order of a test.
    static constexpr std::array<int, 10> kPageOrder = {1, 2, 11, 8, 12, 9, 3, 4, 5, 6};
    static constexpr int kGradeSteps = 16;
    static constexpr int kWrongAnswersShown = 3;

    struct Attempts {
        QString name;     // as the latest attempt spells it
        QList<int> tests; // indices into the records, oldest first
    };
    struct PageShare {
        int page = 0;
        QString title;
        int tasks = 0;
        int correct = 0;
        double share() const { return tasks > 0 ? double(correct) / tasks : 0.0; }
    };
    struct WrongAnswer {
        QString given; // as typed; empty for no answer
        int count = 0;
    };
    struct HardTask {
        int page = 0;
        QString prompt;
        QString expected; // the right answer as most often recorded
        int asked = 0;
        int wrong = 0;
        QList<WrongAnswer> wrongAnswers; // most frequent first, at most kWrongAnswersShown
        double wrongShare() const { return asked > 0 ? double(wrong) / asked : 0.0; }
    };

    QList<int> tests; // the selected records, by finishing time
    QList<Attempts> attempts;
    QList<PageShare> pages;                   // kPageOrder, all ten
    std::array<int, kGradeSteps> grades = {}; // tests per grade step, 0 = "ungenügend"
    int tasks = 0;
    int correct = 0;
    QList<HardTask> hardTasks; // every task answered wrong at least once, hardest first

    double share() const { return tasks > 0 ? double(correct) / tasks : 0.0; }
    // The selected tests name by name, each name's attempts oldest first.
    QList<int> testsByName() const;

    static ClassSummary of(const QList<ResultRecord>& records, const TestFilter& filter = {});

    // Where a page stands in a test (0 … 9); -1 for no page of a test.
    static int pageIndex(int page);
    // The key under which attempts of one candidate meet: the name without
    // outer blanks, inner runs of blanks as one, in lower case.
    static QString nameKey(const QString& name);
    // The grade step of a record: by its grade word, else by its points.
    static int gradeStep(const ResultRecord& record);
    // "52 % → 78 % (ausreichend → gut)" for the oldest and newest attempt.
    static QString trendText(const ResultRecord& first, const ResultRecord& last);
    // "„Co“ 5×, „co“ 2×, keine Antwort 1×"
    static QString wrongAnswersText(const QList<WrongAnswer>& answers);
    // 0.846 → "84,6 %"
    static QString percentText(double share);
};
