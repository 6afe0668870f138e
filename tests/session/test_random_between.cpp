#include "session/RandomSource.h"

#include <QtTest>
#include <map>

class TestRandomBetween : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void staysInRangeAndAvoidsExclusions() {
        ClockRandomSource source;
        for (int i = 0; i < 2000; ++i) {
            const int n = RandomBetween(source, 10, 2, 4, 6, 8, 10, 0);
            QVERIFY(n >= 1 && n <= 10);
            QVERIFY(n % 2 == 1);
        }
        for (int i = 0; i < 200; ++i)
            QCOMPARE(RandomBetween(source, 3, 1, 2, 0, 0, 0, 0), 3);
        for (int i = 0; i < 200; ++i)
            QCOMPARE(RandomBetween(source, 1), 1);
        // Every admissible value turns up.
        std::map<int, int> seen;
        for (int i = 0; i < 3000; ++i)
            ++seen[RandomBetween(source, 7, 3)];
        QCOMPARE(int(seen.size()), 6);
        QVERIFY(!seen.count(3));
    }
    void scalesTheDrawToItsRange() {
        // n = whole part of (max + 1) * r, then clamped to 1..max.
        FixedRandomSource source({0.0, 0.19, 0.2, 0.5, 0.999999});
        QCOMPARE(RandomBetween(source, 4), 1); // 0   -> 0 -> 1
        QCOMPARE(RandomBetween(source, 4), 1); // 0.95 -> 0 -> 1
        QCOMPARE(RandomBetween(source, 4), 1); // 1.0 -> 1
        QCOMPARE(RandomBetween(source, 4), 2); // 2.5 -> 2
        QCOMPARE(RandomBetween(source, 4), 4); // 4.99 -> 4
    }
    void oneComesUpTwiceAsOften() {
        ClockRandomSource source;
        std::map<int, int> seen;
        const int draws = 60000;
        for (int i = 0; i < draws; ++i)
            ++seen[RandomBetween(source, 5)];
        // 1 gets 2/6 of the draws, every other value 1/6.
        const double one = seen[1];
        for (int v = 2; v <= 5; ++v) {
            const double ratio = one / seen[v];
            QVERIFY2(ratio > 1.7 && ratio < 2.3, qPrintable(QString::number(ratio)));
        }
    }
    void impossibleDrawsReturnAtOnce() {
        FixedRandomSource source({0.5});
        QCOMPARE(RandomBetween(source, 1, 1), 0);
        QCOMPARE(RandomBetween(source, 0), 0);
        QCOMPARE(RandomBetween(source, 3, 1, 2, 3), 0);
        QCOMPARE(source.draws, 0);
        // Below 1 the clamping yields max itself when that is not excluded.
        QCOMPARE(RandomBetween(source, 0, 1, 2, 3, 4, 5, 6), 0);
        QCOMPARE(RandomBetween(source, -2), -2);
    }
    void reseedsOncePerCall() {
        // A redraw after an exclusion takes the next value without reseeding.
        FixedRandomSource source({0.1, 0.5});
        QCOMPARE(RandomBetween(source, 9, 1), 5);
        QCOMPARE(source.reseeds, 1);
        QCOMPARE(source.draws, 2);
    }
};

QTEST_APPLESS_MAIN(TestRandomBetween)
#include "test_random_between.moc"
