#include "TestSupport.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/PraisePanel.h"
#include "pages/ComprehensionPage.h"
#include "session/CandidateRecords.h"
#include "session/NamesFile.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QtTest>
#include <set>

namespace {

// Eight basic statements (odd ones true) and four expert ones.
TaskBank statementBank() {
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(syntheticBank(8, 4))));
}

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
    QStringList lines;

private:
    NamesFile m_names{QString()};
};

struct Fixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    LogOnly records;
    TestFlow flow{&holder};
    ComprehensionPage* page;

    Fixture() {
        holder.resize(960, 520);
        page = new ComprehensionPage(flow, &holder);
        page->resize(960, 520);
        flow.addPage(page);
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setRecords(&records);
        flow.setBank(statementBank(), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        flow.state().CandidateName = QStringLiteral("Anna");
        flow.state().TestDate = QStringLiteral("03-24-2003");
        flow.state().StartTime = QStringLiteral("10:15:02");
        holder.show();
        flow.ShowPage(6);
    }
    QAbstractButton* choice(int i) {
        return page->findChild<QAbstractButton*>(QStringLiteral("JaNein1(%1)").arg(i));
    }
    QLabel* word(int i) { return page->findChild<QLabel*>(QStringLiteral("AA(%1)").arg(i)); }
    QLabel* statement(int k) {
        return page->findChild<QLabel*>(QStringLiteral("AnzS6(%1)").arg(k));
    }
    int expected(int k) { return ComprehensionPage::expectedButton(flow.state().DrawnAnswers[k]); }
};

} // namespace

class TestComprehensionPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void showsPairsOfYesAndNo();
    void drawsSixDistinctStatementsOfTheLevel();
    void readsTheExpectedButton_data();
    void readsTheExpectedButton();
    void chosenWordTurnsBlack();
    void judgesByButton_data();
    void judgesByButton();
    void closesTheTest();
};

void TestComprehensionPage::showsPairsOfYesAndNo() {
    Fixture f;
    QCOMPARE(f.page->objectName(), QStringLiteral("Seite(6)"));
    QVERIFY(f.page->findChild<QPushButton*>(QStringLiteral("OKS6(0)"))->isVisible());
    bool heading = false;
    bool hint = false;
    for (QLabel* l : f.page->findChildren<QLabel*>()) {
        heading = heading || l->text() == QStringLiteral("6 Verständnisfragen");
        hint = hint || l->text() == QStringLiteral("(Antwort anklicken!)");
    }
    QVERIFY(heading && hint);
    for (int i = 0; i < ComprehensionPage::kChoices; ++i) {
        QVERIFY(f.choice(i)->isCheckable());
        QVERIFY(!f.choice(i)->isChecked()); // neither choice of a pair at the start
        QCOMPARE(f.word(i)->text(), i % 2 ? QStringLiteral("Nein") : QStringLiteral("Ja"));
        // Each pair lives in a panel of its own, apart from the other pairs.
        QCOMPARE(f.choice(i)->parentWidget(), f.choice(i ^ 1)->parentWidget());
        if (i >= 2)
            QVERIFY(f.choice(i)->parentWidget() != f.choice(i - 2)->parentWidget());
    }
    // The pairs are exclusive: "Nein" takes the place of "Ja".
    f.choice(0)->click();
    f.choice(1)->click();
    QVERIFY(!f.choice(0)->isChecked() && f.choice(1)->isChecked());
}

void TestComprehensionPage::drawsSixDistinctStatementsOfTheLevel() {
    Fixture f;
    for (int round = 0; round < 15; ++round) {
        f.flow.ShowPage(6);
        std::set<QString> seen;
        for (int k = 0; k < 6; ++k) {
            const QString stored = f.statement(k)->property("statement").toString();
            QCOMPARE(stored.size(), 120); // as stored, blanks and all
            const int n = stored.trimmed().section(u' ', 1).toInt();
            QVERIFY2(n >= 1 && n <= 8, qPrintable(stored));
            QCOMPARE(f.statement(k)->text(), stored.trimmed());
            // "Aussage n" is true for odd n: "Ja" is button 2k, "Nein" 2k + 1.
            QCOMPARE(f.flow.state().DrawnAnswers[k],
                     QStringLiteral(" %1").arg(2 * k + (n % 2 ? 0 : 1)));
            seen.insert(stored);
        }
        QCOMPARE(int(seen.size()), 6);
    }
    f.flow.state().ExpertLevel = 1;
    std::set<QString> expertSeen;
    for (int round = 0; round < 30; ++round) {
        f.flow.ShowPage(6);
        for (int k = 0; k < 6; ++k)
            expertSeen.insert(f.statement(k)->property("statement").toString());
    }
    QVERIFY(expertSeen.size() > 8);
}

void TestComprehensionPage::readsTheExpectedButton_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("button");
    QTest::newRow("with leading blank") << " 3" << 3;
    QTest::newRow("without blank") << "10" << 10;
    QTest::newRow("last button") << " 11" << 11;
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

void TestComprehensionPage::chosenWordTurnsBlack() {
    Fixture f;
    const QColor black = Look::paletteColour(0);
    const QColor yellow = Look::paletteColour(14);
    for (int i = 0; i < 12; ++i)
        QCOMPARE(f.word(i)->property("markTextColour").value<QColor>(), yellow);
    f.choice(3)->click();
    f.choice(8)->click();
    for (int i = 0; i < 12; ++i)
        QCOMPARE(f.word(i)->property("markTextColour").value<QColor>(),
                 i == 3 || i == 8 ? black : yellow);
    // A click on the word chooses too.
    QTest::mouseClick(f.word(2), Qt::LeftButton);
    QVERIFY(f.choice(2)->isChecked() && !f.choice(3)->isChecked());
    QCOMPARE(f.word(2)->property("markTextColour").value<QColor>(), black);
    QCOMPARE(f.word(3)->property("markTextColour").value<QColor>(), yellow);
}

void TestComprehensionPage::judgesByButton_data() {
    // One letter per pair: r = the right button, w = the other one, - = none.
    QTest::addColumn<QString>("answers");
    QTest::addColumn<int>("right");
    QTest::newRow("all right") << "rrrrrr" << 6;
    QTest::newRow("all wrong") << "wwwwww" << 0;
    QTest::newRow("nothing chosen") << "------" << 0;
    QTest::newRow("one left open") << "rrrrr-" << 5;
    QTest::newRow("mixed") << "rw-rw-" << 2;
}

void TestComprehensionPage::judgesByButton() {
    QFETCH(QString, answers);
    QFETCH(int, right);
    Fixture f;
    f.flow.state().TasksSoFar = 54;
    f.flow.state().CorrectSoFar = 40;
    for (int k = 0; k < 6; ++k) {
        const int e = f.expected(k);
        QVERIFY(e == 2 * k || e == 2 * k + 1);
        if (answers[k] != u'-')
            f.choice(answers[k] == u'r' ? e : e ^ 1)->click();
    }
    f.page->findChild<QPushButton*>(QStringLiteral("OKS6(0)"))->click();
    QCOMPARE(f.flow.state().TasksSoFar, 60);
    QCOMPARE(f.flow.state().CorrectSoFar, 40 + right);
    for (int k = 0; k < 6; ++k) {
        // Afterwards the right choice of every pair is the chosen one.
        QVERIFY(f.choice(f.expected(k))->isChecked());
        QVERIFY(!f.choice(f.expected(k) ^ 1)->isChecked());
        QVERIFY(!f.choice(2 * k)->isEnabled());
        QCOMPARE(f.word(f.expected(k))->property("markTextColour").value<QColor>(),
                 Look::paletteColour(0));
        QCOMPARE(f.statement(k)->property("markColour").value<QColor>(),
                 answers[k] == u'r' ? Look::right() : Look::wrong());
    }
    QCOMPARE(f.flow.praiseCalls(), right == 6 ? 1 : 0);
    QCOMPARE(f.flow.jingleCalls(), right == 6 ? 1 : 0);
    if (right == 6) {
        QCOMPARE(f.flow.lastPraise(), 6);
        QCOMPARE(f.flow.lastJingle(), QStringLiteral("T255 L16 gdgdg"));
    }
    QVERIFY(f.page->findChild<QPushButton*>(QStringLiteral("OKS6(1)"))->isVisible());
    QCOMPARE(f.mark.text(), f.flow.state().RunningGrade);
}

void TestComprehensionPage::closesTheTest() {
    Fixture f;
    f.flow.state().TasksSoFar = 54;
    f.flow.state().CorrectSoFar = 48;
    for (int k = 0; k < 6; ++k)
        f.choice(f.expected(k))->click();
    bool finished = false;
    QObject::connect(&f.flow, &TestFlow::testFinished, [&] { finished = true; });
    f.page->findChild<QPushButton*>(QStringLiteral("OKS6(0)"))->click();
    // 54 of 60 = 0.9: the running mark "1-", the grade word "sehr gut minus".
    QVERIFY(QTime::fromString(f.flow.state().EndTime, QStringLiteral("HH:mm:ss")).isValid());
    const FinalResult& r = f.page->finalResult();
    QCOMPARE(r.gradeWord, QStringLiteral("sehr gut minus"));
    QCOMPARE(r.gradeNumber, 13);
    QCOMPARE(r.tasks, 60);
    QCOMPARE(r.correct, 54);
    QCOMPARE(r.wrong, 6);
    QCOMPARE(f.records.lines.size(), 1);
    QCOMPARE(f.records.lines.first(), r.historyLine);
    QVERIFY(r.historyLine.startsWith(QStringLiteral("<-  Anna  60 Aufgaben, 54 richtig")));
    QVERIFY(r.historyLine.endsWith(QStringLiteral(" - Note: sehr gut minus")));
    QVERIFY(!finished);
    f.page->findChild<QPushButton*>(QStringLiteral("OKS6(1)"))->click();
    QVERIFY(finished);
    // Asking again does not log again.
    f.page->finalResult();
    QCOMPARE(f.records.lines.size(), 1);
}

QTEST_MAIN(TestComprehensionPage)
#include "test_comprehension_page.moc"
