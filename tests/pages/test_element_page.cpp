#include "TestSupport.h"
#include "controls/Look.h"
#include "pages/ElementPage.h"

#include <set>

namespace {

// Six basic elements (two with two accepted names) and four expert ones.
TaskBank elementBank() {
    return bankWith({{TaskBank::ElementNamesSection,
                      {"Natrium", "Na", "Iod*Jod", "I", "Calcium*Kalzium", "Ca", "Eisen", "Fe",
                       "Kupfer", "Cu", "Chlor", "Cl"},
                      {"Gold", "Au", "Silber", "Ag", "Zink", "Zn", "Blei", "Pb"}}});
}

} // namespace

class TestElementPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void drawsSixDistinctElementsOfTheLevel();
    void marksCorrectsAndWalks();
    void praisesOnlyAFaultlessFirstPage();
};

void TestElementPage::drawsSixDistinctElementsOfTheLevel() {
    PageFixture<ElementPage> f(elementBank());
    const QStringList names{"Natrium", "Iod", "Calcium", "Eisen", "Kupfer", "Chlor"};
    const QStringList symbols{"Na", "I", "Ca", "Fe", "Cu", "Cl"};
    const auto prompt = [&](int i) { return f.named<QLabel>(QStringLiteral("AnzS1"), i)->text(); };
    for (int round = 0; round < 20; ++round) {
        f.flow.ShowPage(1);
        std::set<QString> seen;
        for (int i = 0; i < 3; ++i) {
            QVERIFY(names.contains(prompt(i)));
            QCOMPARE(f.state().DrawnAnswers[i], symbols[names.indexOf(prompt(i))]);
            seen.insert(prompt(i));
        }
        for (int i = 3; i < 6; ++i) {
            QVERIFY(symbols.contains(prompt(i)));
            seen.insert(names[symbols.indexOf(prompt(i))]);
        }
        QCOMPARE(int(seen.size()), 6); // all six basic ones, none twice
    }
    // The expert level draws from all ten.
    QVERIFY(f.drawnOver(1, 1, 3, 40).size() > 6);
}

void TestElementPage::marksCorrectsAndWalks() {
    PageFixture<ElementPage> f(elementBank());
    f.flow.ShowPage(1);
    QCOMPARE(QApplication::focusWidget(), f.named(QStringLiteral("EleSym"), 0));
    QVERIFY(f.enterWalk({"EleSym(0)", "EleSym(1)", "EleSym(2)", "Ele(0)", "Ele(1)", "Ele(2)"}));

    SessionState& s = f.state();
    s.DrawnAnswers[0] = QStringLiteral("Na");
    s.DrawnAnswers[1] = QStringLiteral("Fe");
    s.DrawnAnswers[3] = QStringLiteral("*Iod*Jod*");
    s.DrawnAnswers[4] = QStringLiteral("*Calcium*Kalzium*");
    const auto sym = [&](int i) { return f.named(QStringLiteral("EleSym"), i); };
    const auto name = [&](int i) { return f.named(QStringLiteral("Ele"), i); };
    sym(0)->setText(QStringLiteral(" Na "));
    sym(1)->setText(QStringLiteral("fe"));
    name(0)->setText(QStringLiteral("Jod"));
    name(1)->setText(QStringLiteral("Kalk"));
    f.page->okButton()->click();

    QCOMPARE(f.colour(sym(0)), Look::right());
    QCOMPARE(f.colour(sym(1)), Look::wrong());
    QCOMPARE(f.colour(name(0)), Look::right());
    QCOMPARE(f.colour(name(1)), Look::wrong());
    QCOMPARE(sym(0)->text(), QStringLiteral(" Na "));
    QCOMPARE(sym(1)->text(), QStringLiteral("fe - Richtig ist: Fe"));
    QCOMPARE(name(1)->text(), QStringLiteral("Kalk - Richtig ist: Calcium oder Kalzium"));
    QCOMPARE(s.TasksSoFar, 6);
    QCOMPARE(s.CorrectSoFar, 2);
    QCOMPARE(f.tasks.text(), QStringLiteral(" 6"));
    QCOMPARE(f.correct.text(), QStringLiteral(" 2"));
    QVERIFY(!f.page->okButton()->isVisible());
    QCOMPARE(QApplication::focusWidget(), f.page->nextButton());
    // Checked once only.
    f.page->check();
    QCOMPARE(s.TasksSoFar, 6);
}

void TestElementPage::praisesOnlyAFaultlessFirstPage() {
    PageFixture<ElementPage> f(elementBank());
    const SessionState& s = f.state();
    auto answerAll = [&] {
        f.flow.ShowPage(1);
        for (int i = 0; i < 3; ++i) {
            f.named(QStringLiteral("EleSym"), i)->setText(s.DrawnAnswers[i]);
            f.named(QStringLiteral("Ele"), i)->setText(s.DrawnAnswers[3 + i].section(u'*', 1, 1));
        }
        f.page->okButton()->click();
    };
    answerAll();
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
    answerAll();
    QCOMPARE(s.CorrectSoFar, 12);
    QCOMPARE(f.flow.praiseCalls(), 1);
    QVERIFY(!praise->isVisible());
}

QTEST_MAIN(TestElementPage)
#include "test_element_page.moc"
