#include "session/Grades.h"

#include <QtTest>

class TestGrades : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void runningGrade_data();
    void runningGrade();
    void counterText();
};

void TestGrades::runningGrade_data() {
    QTest::addColumn<int>("correct");
    QTest::addColumn<int>("tasks");
    QTest::addColumn<QString>("grade");
    QTest::newRow("none right") << 0 << 6 << "6";
    QTest::newRow("0.1 exactly stays 6") << 1 << 10 << "6";
    QTest::newRow("just over 0.1") << 2 << 19 << "5-";
    QTest::newRow("0.2 exactly") << 1 << 5 << "5-";
    QTest::newRow("0.3 exactly") << 3 << 10 << "5";
    QTest::newRow("0.4 exactly") << 2 << 5 << "5+";
    QTest::newRow("0.45 exactly in single precision") << 9 << 20 << "4-";
    QTest::newRow("0.5 exactly gives 4") << 1 << 2 << "4";
    QTest::newRow("0.55 exactly") << 11 << 20 << "4+";
    QTest::newRow("0.6 exactly") << 3 << 5 << "3-";
    QTest::newRow("two thirds") << 2 << 3 << "3+";
    QTest::newRow("0.7 exactly") << 7 << 10 << "3+";
    QTest::newRow("0.75 exactly") << 3 << 4 << "2-";
    QTest::newRow("0.8 exactly") << 4 << 5 << "2";
    QTest::newRow("0.85 exactly") << 17 << 20 << "2+";
    QTest::newRow("0.9 exactly") << 9 << 10 << "1-";
    QTest::newRow("0.95 exactly gives 1") << 19 << 20 << "1";
    QTest::newRow("just over 0.95") << 39 << 40 << "1+";
    QTest::newRow("all right") << 6 << 6 << "1+";
}

void TestGrades::runningGrade() {
    QFETCH(int, correct);
    QFETCH(int, tasks);
    QFETCH(QString, grade);
    QCOMPARE(Grades::runningGrade(Grades::ratio(correct, tasks)), grade);
}

void TestGrades::counterText() {
    QCOMPARE(Grades::counterText(12), QStringLiteral(" 12"));
    QCOMPARE(Grades::counterText(0), QStringLiteral(" 0"));
    QCOMPARE(Grades::markOfStep(15), QStringLiteral("1+"));
    QCOMPARE(Grades::markOfStep(99), QStringLiteral("6"));
}

QTEST_APPLESS_MAIN(TestGrades)
#include "test_grades.moc"
