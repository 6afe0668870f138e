#include "TestSupport.h"
#include "controls/Look.h"
#include "pages/ComprehensionPage.h"
#include "session/CandidateRecords.h"
#include "session/NamesFile.h"

#include <set>

namespace {

// Keeps what the page hands to the session log.
class LogOnly final : public CandidateRecords {
public:
    NamesFile& names() override { return m_names; }
    bool addName(const QString&) override { return true; }
    bool removeName(const QString&) override { return true; }
    void setDifficulty(int) override {}
    void log(const QString& line) override { lines << line; }
    void logStart(const QString& record, const QString&) override { lines << record; }
    void message(QWidget*, const QString&) const override {}
    ResultPlaces resultPlaces() const override { return {}; }
    QStringList lines;

private:
    NamesFile m_names{QString()};
};

// Page 6 on eight basic statements (odd ones true) and four expert ones.
struct Fixture : PageFixture<ComprehensionPage> {
    LogOnly records;
    Fixture() : PageFixture(bankOf(syntheticBank(8, 4))) {
        flow.setRecords(&records);
        state().CandidateName = QStringLiteral("Anna");
        state().TestDate = QStringLiteral("03-24-2003");
        state().StartTime = QStringLiteral("10:15:02");
        flow.ShowPage(6);
    }
    QAbstractButton* choice(int i) { return named<QAbstractButton>(QStringLiteral("JaNein1"), i); }
    QColor word(int i) {
        return named<QLabel>(QStringLiteral("AA"), i)->property("markTextColour").value<QColor>();
    }
    QLabel* statement(int k) { return named<QLabel>(QStringLiteral("AnzS6"), k); }
    int expected(int k) { return ComprehensionPage::expectedButton(state().DrawnAnswers[k]); }
};

} // namespace

class TestComprehensionPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pairsOfYesAndNo();
    void drawsSixDistinctStatementsOfTheLevel();
    void readsTheExpectedButton_data();
    void readsTheExpectedButton();
    void judgesByButton_data();
    void judgesByButton();
    void closesTheTest();
};

void TestComprehensionPage::pairsOfYesAndNo() {
    Fixture f;
    const QColor black = Look::paletteColour(0);
    const QColor yellow = Look::paletteColour(14);
    for (int i = 0; i < ComprehensionPage::kChoices; ++i) {
        QVERIFY(!f.choice(i)->isChecked()); // neither choice of a pair at the start
        QCOMPARE(f.named<QLabel>(QStringLiteral("AA"), i)->text(),
                 i % 2 ? QStringLiteral("Nein") : QStringLiteral("Ja"));
        QCOMPARE(f.word(i), yellow);
        // Each pair lives in a panel of its own, apart from the other pairs.
        QCOMPARE(f.choice(i)->parentWidget(), f.choice(i ^ 1)->parentWidget());
        if (i >= 2)
            QVERIFY(f.choice(i)->parentWidget() != f.choice(i - 2)->parentWidget());
    }
    // The pairs are exclusive; the chosen word turns black.
    f.choice(0)->click();
    f.choice(1)->click();
    f.choice(8)->click();
    QVERIFY(!f.choice(0)->isChecked() && f.choice(1)->isChecked());
    for (int i = 0; i < 12; ++i)
        QCOMPARE(f.word(i), i == 1 || i == 8 ? black : yellow);
    // A click on the word chooses too.
    QTest::mouseClick(f.named<QLabel>(QStringLiteral("AA"), 0), Qt::LeftButton);
    QVERIFY(f.choice(0)->isChecked() && !f.choice(1)->isChecked());
    QCOMPARE(f.word(0), black);
    QCOMPARE(f.word(1), yellow);
}

void TestComprehensionPage::drawsSixDistinctStatementsOfTheLevel() {
    Fixture f;
    for (int round = 0; round < 15; ++round) {
        f.flow.ShowPage(6);
        std::set<QString> seen;
        for (int k = 0; k < 6; ++k) {
            const QString stored = f.statement(k)->text();
            QCOMPARE(stored.size(), 120); // as stored, blanks and all
            const int n = stored.trimmed().section(u' ', 1).toInt();
            QVERIFY2(n >= 1 && n <= 8, qPrintable(stored));
            // "Aussage n" is true for odd n: "Ja" is button 2k, "Nein" 2k + 1.
            QCOMPARE(f.state().DrawnAnswers[k], QStringLiteral(" %1").arg(2 * k + (n % 2 ? 0 : 1)));
            seen.insert(stored);
        }
        QCOMPARE(int(seen.size()), 6);
    }
    f.state().ExpertLevel = 1;
    std::set<QString> expertSeen;
    for (int round = 0; round < 30; ++round) {
        f.flow.ShowPage(6);
        for (int k = 0; k < 6; ++k)
            expertSeen.insert(f.statement(k)->text());
    }
    QVERIFY(expertSeen.size() > 8);
}

void TestComprehensionPage::readsTheExpectedButton_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("button");
    QTest::newRow("with leading blank") << " 3" << 3;
    QTest::newRow("last button, no blank") << "11" << 11;
    QTest::newRow("rounded") << " 4.6" << 5;
    QTest::newRow("comma as point") << " 6,2" << 6;
    QTest::newRow("beyond the page") << " 12" << -1;
    QTest::newRow("negative") << "-1" << -1;
}

void TestComprehensionPage::readsTheExpectedButton() {
    QFETCH(QString, answer);
    QFETCH(int, button);
    QCOMPARE(ComprehensionPage::expectedButton(answer), button);
}

void TestComprehensionPage::judgesByButton_data() {
    // One letter per pair: r = the right button, w = the other one, - = none.
    QTest::addColumn<QString>("answers");
    QTest::addColumn<int>("right");
    QTest::newRow("all right") << "rrrrrr" << 6;
    QTest::newRow("nothing chosen") << "------" << 0;
    QTest::newRow("mixed") << "rw-rw-" << 2;
}

void TestComprehensionPage::judgesByButton() {
    QFETCH(QString, answers);
    QFETCH(int, right);
    Fixture f;
    f.state().TasksSoFar = 54;
    f.state().CorrectSoFar = 40;
    for (int k = 0; k < 6; ++k) {
        const int e = f.expected(k);
        QVERIFY(e == 2 * k || e == 2 * k + 1);
        if (answers[k] != u'-')
            f.choice(answers[k] == u'r' ? e : e ^ 1)->click();
    }
    f.page->okButton()->click();
    QCOMPARE(f.state().TasksSoFar, 60);
    QCOMPARE(f.state().CorrectSoFar, 40 + right);
    for (int k = 0; k < 6; ++k) {
        // Afterwards the right choice of every pair is the chosen one.
        QVERIFY(f.choice(f.expected(k))->isChecked());
        QVERIFY(!f.choice(f.expected(k) ^ 1)->isChecked());
        QVERIFY(!f.choice(2 * k)->isEnabled());
        QCOMPARE(f.word(f.expected(k)), Look::paletteColour(0));
        QCOMPARE(f.colour(f.statement(k)), answers[k] == u'r' ? Look::right() : Look::wrong());
    }
    QCOMPARE(f.flow.praiseCalls(), right == 6 ? 1 : 0);
    QCOMPARE(f.flow.jingleCalls(), right == 6 ? 1 : 0);
    if (right == 6)
        QCOMPARE(f.flow.lastPraise(), 6);
    QVERIFY(f.page->nextButton()->isVisible());
    QCOMPARE(f.mark.text(), f.state().RunningGrade);
}

void TestComprehensionPage::closesTheTest() {
    Fixture f;
    f.state().TasksSoFar = 54;
    f.state().CorrectSoFar = 48;
    for (int k = 0; k < 6; ++k)
        f.choice(f.expected(k))->click();
    bool finished = false;
    QObject::connect(&f.flow, &TestFlow::testFinished, [&] { finished = true; });
    f.page->okButton()->click();
    // The check takes the end time and logs the history line once.
    QVERIFY(QTime::fromString(f.state().EndTime, QStringLiteral("HH:mm:ss")).isValid());
    const FinalResult& r = f.page->finalResult();
    QCOMPARE(r.gradeWord, QStringLiteral("sehr gut minus")); // 54 of 60
    QCOMPARE(f.records.lines, QStringList{r.historyLine});
    QVERIFY(r.historyLine.startsWith(QStringLiteral("<-  Anna  60 Aufgaben, 54 richtig")));
    QVERIFY(!finished);
    f.page->nextButton()->click();
    QVERIFY(finished);
    f.page->finalResult();
    QCOMPARE(f.records.lines.size(), 1);
}

QTEST_MAIN(TestComprehensionPage)
#include "test_comprehension_page.moc"
