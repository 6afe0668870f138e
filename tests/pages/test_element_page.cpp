#include "TestSupport.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/PraisePanel.h"
#include "pages/AnswerRules.h"
#include "pages/ElementPage.h"
#include "session/TestFlow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>
#include <set>

namespace {

const QString kMark = QStringLiteral(u"\u00E6\u00E6");

// Six basic elements (one with two accepted names) and four expert ones.
TaskBank elementBank() {
    QStringList lines{QStringLiteral("Elemente"), QStringLiteral("#")};
    const char* records[][2] = {{"Natrium", "Na"}, {"Iod*Jod", "I"}, {"Calcium*Kalzium", "Ca"},
                                {"Eisen", "Fe"},   {"Kupfer", "Cu"}, {"Chlor", "Cl"},
                                {"Gold", "Au"},    {"Silber", "Ag"}, {"Zink", "Zn"},
                                {"Blei", "Pb"}};
    for (int i = 0; i < 10; ++i) {
        if (i == 6)
            lines << kMark;
        lines << QString::fromUtf8(records[i][0]) << QString::fromUtf8(records[i][1]);
    }
    lines << QStringLiteral("@");
    for (int s = 1; s < 9; ++s)
        lines << QStringLiteral("x") << QStringLiteral("#") << QStringLiteral("@");
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

struct Fixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    ElementPage* page;

    Fixture() {
        holder.resize(960, 520);
        page = new ElementPage(flow, &holder);
        page->resize(960, 520);
        flow.addPage(page);
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(elementBank(), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    QLineEdit* field(const QString& name) { return page->findChild<QLineEdit*>(name); }
    QString prompt(int i) {
        return page->findChild<QLabel*>(QStringLiteral("AnzS1(%1)").arg(i))->text();
    }
};

} // namespace

class TestElementPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void drawsSixDistinctElementsOfTheLevel();
    void judgesAnswers_data();
    void judgesAnswers();
    void praisesOnlyAFaultlessFirstPage();
    void enterWalksTheFields();
    void answerRules();
};

void TestElementPage::drawsSixDistinctElementsOfTheLevel() {
    Fixture f;
    const QStringList basic{QStringLiteral("Natrium"), QStringLiteral("Iod"),
                            QStringLiteral("Calcium"), QStringLiteral("Eisen"),
                            QStringLiteral("Kupfer"),  QStringLiteral("Chlor")};
    const QStringList basicSymbols{QStringLiteral("Na"), QStringLiteral("I"),
                                   QStringLiteral("Ca"), QStringLiteral("Fe"),
                                   QStringLiteral("Cu"), QStringLiteral("Cl")};
    for (int round = 0; round < 20; ++round) {
        f.flow.ShowPage(1);
        std::set<QString> seen;
        for (int i = 0; i < 3; ++i) {
            QVERIFY(basic.contains(f.prompt(i)));
            QCOMPARE(f.flow.state().DrawnAnswers[i], basicSymbols[basic.indexOf(f.prompt(i))]);
            seen.insert(f.prompt(i));
        }
        for (int i = 3; i < 6; ++i) {
            QVERIFY(basicSymbols.contains(f.prompt(i)));
            seen.insert(basic[basicSymbols.indexOf(f.prompt(i))]);
        }
        QCOMPARE(int(seen.size()), 6); // all six basic ones, none twice
        QCOMPARE(QApplication::focusWidget(), f.field(QStringLiteral("EleSym(0)")));
    }
    // The expert level draws from all ten.
    f.flow.state().ExpertLevel = 1;
    std::set<QString> expertSeen;
    for (int round = 0; round < 40; ++round) {
        f.flow.ShowPage(1);
        for (int i = 0; i < 3; ++i)
            expertSeen.insert(f.prompt(i));
    }
    QVERIFY(expertSeen.size() > 6);
}

void TestElementPage::judgesAnswers_data() {
    QTest::addColumn<QString>("symbolAnswer"); // for the element "Natrium"
    QTest::addColumn<bool>("symbolRight");
    QTest::addColumn<QString>("nameAnswer"); // for the symbol "I"
    QTest::addColumn<bool>("nameRight");
    QTest::newRow("exact") << "Na" << true << "Iod" << true;
    QTest::newRow("blanks around") << "  Na " << true << " Jod  " << true;
    QTest::newRow("small letters") << "na" << false << "iod" << false;
    QTest::newRow("part of a name") << "N" << false << "Io" << false;
    QTest::newRow("empty") << "" << false << "" << false;
    QTest::newRow("blank inside") << "N a" << false << "I od" << false;
    // The key is searched as text: a run of whole alternatives is found too.
    QTest::newRow("both names joined") << "Na*" << false << "Iod*Jod" << true;
}

void TestElementPage::judgesAnswers() {
    QFETCH(QString, symbolAnswer);
    QFETCH(bool, symbolRight);
    QFETCH(QString, nameAnswer);
    QFETCH(bool, nameRight);
    Fixture f;
    f.flow.ShowPage(1);
    SessionState& s = f.flow.state();
    // Put "Natrium" as first symbol question and "I" as first name question.
    s.DrawnAnswers[0] = QStringLiteral("Na");
    s.DrawnAnswers[3] = QStringLiteral("*Iod*Jod*");
    f.field(QStringLiteral("EleSym(0)"))->setText(symbolAnswer);
    f.field(QStringLiteral("Ele(0)"))->setText(nameAnswer);
    f.page->okButton()->click();

    QLineEdit* sym = f.field(QStringLiteral("EleSym(0)"));
    QLineEdit* name = f.field(QStringLiteral("Ele(0)"));
    QCOMPARE(sym->property("markColour").value<QColor>(),
             symbolRight ? Look::right() : Look::wrong());
    QCOMPARE(name->property("markColour").value<QColor>(),
             nameRight ? Look::right() : Look::wrong());
    QCOMPARE(sym->text(),
             symbolRight ? symbolAnswer : symbolAnswer + QStringLiteral(" - Richtig ist: Na"));
    QCOMPARE(name->text(),
             nameRight ? nameAnswer : nameAnswer + QStringLiteral(" - Richtig ist: Iod oder Jod"));
    QCOMPARE(Look::right(), QColor(0, 255, 0));
    QCOMPARE(Look::wrong(), QColor(255, 0, 0));
    QCOMPARE(s.TasksSoFar, 6);
    QCOMPARE(s.CorrectSoFar, int(symbolRight) + int(nameRight));
    QCOMPARE(f.tasks.text(), QStringLiteral(" 6"));
    QVERIFY(!f.page->okButton()->isVisible());
    QVERIFY(f.page->nextButton()->isVisible());
    QCOMPARE(QApplication::focusWidget(), f.page->nextButton());
    // Checked once only.
    f.page->check();
    QCOMPARE(s.TasksSoFar, 6);
}

void TestElementPage::praisesOnlyAFaultlessFirstPage() {
    Fixture f;
    f.flow.ShowPage(1);
    const SessionState& s = f.flow.state();
    auto answerAll = [&] {
        for (int i = 0; i < 3; ++i) {
            f.field(QStringLiteral("EleSym(%1)").arg(i))->setText(s.DrawnAnswers[i]);
            f.field(QStringLiteral("Ele(%1)").arg(i))
                ->setText(s.DrawnAnswers[3 + i].section(u'*', 1, 1));
        }
    };
    answerAll();
    f.page->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 6);
    QCOMPARE(f.flow.jingleCalls(), 1);
    QCOMPARE(f.flow.lastJingle(), QStringLiteral("T255 L16 gdgdg"));
    QCOMPARE(f.flow.lastPraise(), 1);
    auto* praise = f.flow.praisePanel();
    QVERIFY(praise->isVisible());
    QCOMPARE(praise->text(), QStringLiteral("Wow!"));
    QTest::mouseClick(praise, Qt::LeftButton);
    QVERIFY(!praise->isVisible());
    QCOMPARE(f.mark.text(), QStringLiteral("1+"));

    // The rule looks at the test-wide count: a second faultless pass with
    // twelve right answers in all earns nothing.
    f.flow.ShowPage(1);
    answerAll();
    f.page->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 12);
    QCOMPARE(f.flow.praiseCalls(), 1);
    QVERIFY(!praise->isVisible());
}

void TestElementPage::enterWalksTheFields() {
    Fixture f;
    f.flow.ShowPage(1);
    const QStringList ring{QStringLiteral("EleSym(0)"), QStringLiteral("EleSym(1)"),
                           QStringLiteral("EleSym(2)"), QStringLiteral("Ele(0)"),
                           QStringLiteral("Ele(1)"),    QStringLiteral("Ele(2)"),
                           QStringLiteral("EleSym(0)")};
    f.holder.activateWindow();
    f.field(ring[0])->setFocus();
    for (int i = 0; i + 1 < ring.size(); ++i) {
        QLineEdit* from = f.field(ring[i]);
        QVERIFY(from->hasFocus());
        QTest::keyClick(from, Qt::Key_Return);
        QVERIFY2(f.field(ring[i + 1])->hasFocus(), qPrintable(ring[i + 1]));
    }
}

void TestElementPage::answerRules() {
    QVERIFY(AnswerRules::matchesListItem(u" Jod ", u"*Iod*Jod*"));
    QVERIFY(!AnswerRules::matchesListItem(u"", u"*Iod*Jod*"));
    QVERIFY(!AnswerRules::matchesListItem(u"od", u"*Iod*Jod*"));
    QVERIFY(AnswerRules::matchesListItem(u"Iod", u"Iod"));
    QVERIFY(AnswerRules::matchesExactly(u" Na ", u"Na"));
    QVERIFY(!AnswerRules::matchesExactly(u"NA", u"Na"));
    QCOMPARE(AnswerRules::readableAlternatives(u"*Calcium*Kalzium*"),
             QStringLiteral("Calcium oder Kalzium"));
}

QTEST_MAIN(TestElementPage)
#include "test_element_page.moc"
