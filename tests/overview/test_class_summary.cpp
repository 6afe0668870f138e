// What the overview makes of a class's results: the selection, each name's
// attempts, each page's share, the grades, and the tasks answered wrong most
// often with their most frequent wrong answers.
#include "overview/ClassSummary.h"
#include "overview/ResultSamples.h"

#include <QtTest>

class TestClassSummary : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void selects_data();
    void selects();
    void groupsAttemptsOfOneName();
    void sharesPerPageInTestOrder();
    void countsGrades();
    void hardestTasksWithTheirWrongAnswers();
    void equalCountsGoByShareThenPage();
    void texts_data();
    void texts();
};

void TestClassSummary::selects_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("tests"); // candidate and day, by finishing time
    const QStringList all{"Anna 20", "Ben 21", "Cem 22", "Anna 24", "anna  25"};
    QTest::newRow("everything") << ""
                                << ""
                                << "" << 0 << all;
    QTest::newRow("part of a name, any case")
        << "ANN"
        << ""
        << "" << 0 << QStringList{"Anna 20", "Anna 24", "anna  25"};
    QTest::newRow("blanks around the name typed") << "  ben "
                                                  << ""
                                                  << "" << 0 << QStringList{"Ben 21"};
    QTest::newRow("from a day on, that day included")
        << ""
        << "2026-11-22"
        << "" << 0 << QStringList{"Cem 22", "Anna 24", "anna  25"};
    QTest::newRow("up to a day, that day included")
        << ""
        << ""
        << "2026-11-21" << 0 << QStringList{"Anna 20", "Ben 21"};
    QTest::newRow("one day") << ""
                             << "2026-11-24"
                             << "2026-11-24" << 0 << QStringList{"Anna 24"};
    QTest::newRow("normal level") << ""
                                  << ""
                                  << "" << 1
                                  << QStringList{"Anna 20", "Ben 21", "Anna 24", "anna  25"};
    QTest::newRow("expert level") << ""
                                  << ""
                                  << "" << 2 << QStringList{"Cem 22"};
    QTest::newRow("nothing matches") << "Zoe"
                                     << ""
                                     << "" << 0 << QStringList{};
}

void TestClassSummary::selects() {
    QFETCH(QString, name);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(int, level);
    QFETCH(QStringList, tests);
    const QList<ResultRecord> records = sampleClass();
    TestFilter filter{name, QDate::fromString(from, Qt::ISODate),
                      QDate::fromString(to, Qt::ISODate), TestFilter::Level(level)};
    const ClassSummary s = ClassSummary::of(records, filter);
    QStringList got;
    for (int i : s.tests)
        got << records[i].candidate + u' ' + QString::number(records[i].finished.date().day());
    QCOMPARE(got, tests);
}

void TestClassSummary::groupsAttemptsOfOneName() {
    const QList<ResultRecord> records = sampleClass();
    const ClassSummary s = ClassSummary::of(records);
    QCOMPARE(s.attempts.size(), 3);
    // "Anna", "Anna" and "anna " are one candidate, named as last spelt.
    QCOMPARE(s.attempts[0].name, QStringLiteral("anna"));
    QCOMPARE(s.attempts[0].tests, (QList<int>{0, 3, 4}));
    QCOMPARE(s.attempts[1].name, QStringLiteral("Ben"));
    QCOMPARE(s.attempts[2].name, QStringLiteral("Cem"));
    QCOMPARE(s.testsByName(), (QList<int>{0, 3, 4, 1, 2}));
    // The trend runs from the oldest attempt (1 of 3) to the newest (1 of 2).
    QCOMPARE(ClassSummary::trendText(records[0], records[4]),
             QStringLiteral("33,3 % → 50,0 % (%1 → %2)").arg(records[0].grade, records[4].grade));
}

void TestClassSummary::sharesPerPageInTestOrder() {
    const ClassSummary s = ClassSummary::of(sampleClass());
    QCOMPARE(s.pages.size(), 10);
    QList<int> order;
    for (const ClassSummary::PageShare& p : s.pages)
        order << p.page;
    QCOMPARE(order, (QList<int>{1, 2, 11, 8, 12, 9, 3, 4, 5, 6}));
    // Page 1: 4 right of 9; page 11: 1 of 4; page 9: one equation, two tasks.
    QCOMPARE(s.pages[0].correct, 4);
    QCOMPARE(s.pages[0].tasks, 9);
    QCOMPARE(s.pages[2].correct, 1);
    QCOMPARE(s.pages[2].tasks, 4);
    QCOMPARE(s.pages[5].tasks, 2);
    QCOMPARE(s.pages[5].share(), 1.0);
    QCOMPARE(s.pages[1].tasks, 0);
    QCOMPARE(s.pages[1].share(), 0.0);
    QCOMPARE(s.tasks, 15);
    QCOMPARE(s.correct, 7);
}

void TestClassSummary::countsGrades() {
    const QList<ResultRecord> records = sampleClass();
    const ClassSummary s = ClassSummary::of(records);
    std::array<int, ClassSummary::kGradeSteps> expected = {};
    for (const ResultRecord& r : records)
        ++expected[std::size_t(FinalGrade::stepOf(r.grade))];
    QCOMPARE(s.grades, expected);
    // Anna's second try, 3 of 3, is the one "sehr gut plus".
    QCOMPARE(s.grades[15], 1);
    // A grade word the program does not know counts by its points.
    ResultRecord odd = records[1];
    odd.grade = QStringLiteral("prima");
    odd.points = 11;
    QCOMPARE(ClassSummary::gradeStep(odd), 11);
}

void TestClassSummary::hardestTasksWithTheirWrongAnswers() {
    const ClassSummary s = ClassSummary::of(sampleClass());
    QCOMPARE(s.hardTasks.size(), 3);
    const ClassSummary::HardTask& co = s.hardTasks[0];
    QCOMPARE(co.prompt, QStringLiteral("Kohlenstoffmonoxid"));
    QCOMPARE(co.page, 11);
    QCOMPARE(co.expected, QStringLiteral("CO"));
    QCOMPARE(co.asked, 4);
    QCOMPARE(co.wrong, 3);
    QCOMPARE(ClassSummary::wrongAnswersText(co.wrongAnswers),
             QStringLiteral("„Co“ 2×, keine Antwort 1×"));
    const ClassSummary::HardTask& na = s.hardTasks[1];
    QCOMPARE(na.prompt, QStringLiteral("Natrium"));
    QCOMPARE(na.asked, 5);
    QCOMPARE(na.wrong, 3);
    QCOMPARE(ClassSummary::wrongAnswersText(na.wrongAnswers), QStringLiteral("„na“ 2×, „NA“ 1×"));
    QCOMPARE(s.hardTasks[2].prompt, QStringLiteral("Arsen"));
    QCOMPARE(ClassSummary::wrongAnswersText(s.hardTasks[2].wrongAnswers),
             QStringLiteral("„Ar“ 1×, „as“ 1×"));
    // Only the selection counts: Ben alone got all three wrong once.
    TestFilter ben;
    ben.name = QStringLiteral("Ben");
    const ClassSummary one = ClassSummary::of(sampleClass(), ben);
    QCOMPARE(one.hardTasks.size(), 3);
    for (const ClassSummary::HardTask& t : one.hardTasks)
        QCOMPARE(t.wrong, 1);
}

void TestClassSummary::equalCountsGoByShareThenPage() {
    // Four wrong answers each; the task asked less often is the harder one,
    // and at the same share the earlier page of the test comes first.
    QList<SampleTask> a, b;
    for (int i = 0; i < 4; ++i)
        a << SampleTask{1, "Eisen", "Fe", "Ei"} << SampleTask{5, "Sulfid", "-2", "-1"};
    b << SampleTask{1, "Eisen", "Fe", "Fe"} << SampleTask{2, "3", "tri", "ter"};
    for (int i = 0; i < 3; ++i)
        b << SampleTask{2, "3", "tri", "ter"};
    const QList<ResultRecord> records{sampleTest("A", "2026-11-20T10:00:00", a),
                                      sampleTest("B", "2026-11-21T10:00:00", b)};
    const ClassSummary s = ClassSummary::of(records);
    QStringList order;
    for (const ClassSummary::HardTask& t : s.hardTasks)
        order << t.prompt;
    QCOMPARE(order, (QStringList{"3", "Sulfid", "Eisen"}));
}

void TestClassSummary::texts_data() {
    QTest::addColumn<double>("share");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << "0,0 %";
    QTest::newRow("rounded") << 0.8456 << "84,6 %";
    QTest::newRow("whole") << 1.0 << "100,0 %";
}

void TestClassSummary::texts() {
    QFETCH(double, share);
    QFETCH(QString, text);
    QCOMPARE(ClassSummary::percentText(share), text);
}

QTEST_GUILESS_MAIN(TestClassSummary)
#include "test_class_summary.moc"
