// The judging rules of the number-syllable, molar-mass and amount pages,
// one row per case.
#include "pages/NumberAnswer.h"
#include "pages/NumberSyllablePage.h"

#include <QtTest>

class TestNumberAnswers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsBothSidesAlike_data();
    void readsBothSidesAlike();
    void typedNumbersOfPageTwo_data();
    void typedNumbersOfPageTwo();
    void typedSyllables_data();
    void typedSyllables();
    void oddInputIsJudgedNotRefused();
};

void TestNumberAnswers::readsBothSidesAlike_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("right");
    // Molar masses, stored as the program writes a float: " 58.4".
    QTest::newRow("comma") << "58,4"
                           << " 58.4" << true;
    QTest::newRow("point") << "58.4"
                           << " 58.4" << true;
    QTest::newRow("trailing zero") << "58.40"
                                   << " 58.4" << true;
    QTest::newRow("unit after it") << "58,4 g"
                                   << " 58.4" << true;
    QTest::newRow("blanks around") << "   58,4  "
                                   << " 58.4" << true;
    QTest::newRow("rounded down") << "58"
                                  << " 58.4" << false;
    QTest::newRow("too precise") << "58.44"
                                 << " 58.4" << false;
    QTest::newRow("other rounding") << "58.35"
                                    << " 58.4" << false;
    QTest::newRow("beyond float precision") << "58.400001"
                                            << " 58.4" << true;
    QTest::newRow("unit first") << "g 58,4"
                                << " 58.4" << false;
    QTest::newRow("empty") << ""
                           << " 58.4" << false;
    // Amounts of substance, stored as the bank writes them.
    QTest::newRow("0,5") << "0,5"
                         << "0.5" << true;
    QTest::newRow("0.50 in blanks") << "  0.50 "
                                    << "0.5" << true;
    QTest::newRow("exponent") << "5E-1"
                              << "0.5" << true;
    QTest::newRow("small e") << "5e-1"
                             << "0.50" << true;
    QTest::newRow("no leading zero") << ".5"
                                     << "0.50" << true;
    QTest::newRow("fraction") << "1/2"
                              << "0.5" << false;
    QTest::newRow("fraction reads as 1") << "1/2"
                                         << "1.00" << true;
    QTest::newRow("blank in thousands") << "1 000"
                                        << "1000" << true;
    QTest::newRow("wrong amount") << "2"
                                  << "0.25" << false;
    QTest::newRow("sign") << "-0,5"
                          << "0.5" << false;
    QTest::newRow("letters read as 0") << "zwei"
                                       << "0" << true;
    QTest::newRow("exponent without digits") << "2E"
                                             << "2.00" << true;
    QTest::newRow("calculator result") << "0,0999999999999999"
                                       << "0.10" << true;
}

void TestNumberAnswers::readsBothSidesAlike() {
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    QFETCH(bool, right);
    QCOMPARE(NumberAnswer::matches(typed, stored), right);
}

void TestNumberAnswers::typedNumbersOfPageTwo_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("right"); // the number 2
    QTest::newRow("digits") << "2" << true;
    QTest::newRow("blanks around") << " 2 " << true;
    QTest::newRow("leading zero") << "02" << false;
    QTest::newRow("letter after it") << "2x" << false;
    QTest::newRow("as decimal") << "2.0" << false;
    QTest::newRow("as a word") << "zwei" << false;
    QTest::newRow("empty") << "" << false;
}

void TestNumberAnswers::typedNumbersOfPageTwo() {
    QFETCH(QString, typed);
    QFETCH(bool, right);
    QCOMPARE(NumberSyllablePage::numberRight(typed, u"2"), right);
}

void TestNumberAnswers::typedSyllables_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("right");
    QTest::newRow("first form") << "octa"
                                << "octa*okta" << true;
    QTest::newRow("second form") << "okta"
                                 << "octa*okta" << true;
    QTest::newRow("blanks around") << "  okta "
                                   << "octa*okta" << true;
    QTest::newRow("capital letter") << "Okta"
                                    << "octa*okta" << false;
    QTest::newRow("part of one") << "oct"
                                 << "octa*okta" << false;
    QTest::newRow("two halves") << "ta*ok"
                                << "octa*okta" << false;
    QTest::newRow("empty") << ""
                           << "octa*okta" << false;
    QTest::newRow("single form") << "di"
                                 << "di" << true;
    // The key is searched as text, so the whole list typed out is found too.
    QTest::newRow("the whole list") << "octa*okta"
                                    << "octa*okta" << true;
}

void TestNumberAnswers::typedSyllables() {
    QFETCH(QString, typed);
    QFETCH(QString, key);
    QFETCH(bool, right);
    QCOMPARE(NumberSyllablePage::syllableRight(typed, key), right);
}

void TestNumberAnswers::oddInputIsJudgedNotRefused() {
    const QString huge(5000, u'9');
    QVERIFY(!NumberAnswer::matches(huge, u" 58.4"));
    QVERIFY(NumberAnswer::matches(huge, u"0")); // beyond float range reads as 0
    QVERIFY(!NumberAnswer::matches(QStringLiteral(u"\U0001F9EA 58,4"), u" 58.4"));
    QVERIFY(!NumberSyllablePage::syllableRight(QString(5000, u'a'), u"octa*okta"));
    QVERIFY(!NumberSyllablePage::numberRight(QStringLiteral(u"\U0001F600"), u"2"));
}

QTEST_MAIN(TestNumberAnswers)
#include "test_number_answers.moc"
