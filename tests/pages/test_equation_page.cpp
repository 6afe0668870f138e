#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/Look.h"
#include "pages/EquationPage.h"

namespace {

// Five basic equations (one written with blanks) and two expert lines the
// page cannot show whole: three species on a side, and an empty line.
TaskBank equationBank() {
    return bankWith({{TaskBank::EquationsSection,
                      {"@2H2+@1O2=@2H2O", "@1Fe=@1Fe", "@1CH4+@2O2=@1CO2+@2H2O",
                       "@2 Na + @1 Cl2 = @2 NaCl", "@1HCl+@1NaOH=@1NaCl+@1H2O"},
                      {"@1A=@1B+@1C+@1D", ""}}});
}

using Fixture = PageFixture<EquationPage>;

QLineEdit* field(Fixture& f, int i) {
    return f.named(QStringLiteral("Einsetz"), i);
}
QLabel* label(Fixture& f, const char* name, int i) {
    return f.named<QLabel>(QLatin1String(name), i);
}
QString formula(Fixture& f, int i) {
    return f.named<FormulaLabel>(QStringLiteral("EText"), i)->formula();
}

} // namespace

class TestEquationPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void drawShowsFiveEquations();
    void judgesEquationsAsPairsOfTasks();
    void praisesFiveRightEquationsAndWalksByKeys();
    void linesThePageCannotShowWhole();
};

void TestEquationPage::drawShowsFiveEquations() {
    Fixture f(equationBank());
    f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
    // @2H2+@1O2=@2H2O: three slots, the second "+" hidden.
    QCOMPARE(formula(f, 2), QStringLiteral("H2O"));
    QVERIFY(label(f, "EText", 2)->text().contains(u"<sub>2</sub>"));
    QVERIFY(label(f, "PlusL", 0)->isVisible());
    QVERIFY(!label(f, "PlusR", 0)->isVisible());
    QVERIFY(!field(f, 3)->isVisible());
    QVERIFY(!label(f, "EText", 3)->isVisible());
    // @1Fe=@1Fe: the right side goes to slot 2; both "+" hidden.
    QVERIFY(!label(f, "PlusL", 1)->isVisible());
    QCOMPARE(formula(f, 6), QStringLiteral("Fe"));
    QVERIFY(!label(f, "PlusR", 1)->isVisible());
    // "@2 Na + @1 Cl2 = @2 NaCl" is read without its blanks.
    QCOMPARE(formula(f, 13), QStringLiteral("Cl2"));

    // The stored answer of field i lies at i + 1.
    const QStringList expected{"2", "1", "2", "",  "1", "", "1", "",  "1", "2",
                               "1", "2", "2", "1", "2", "", "1", "1", "1", "1"};
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(f.state().DrawnAnswers[i + 1], expected[i]);
        QCOMPARE(label(f, "Einsetz2", i)->text(), expected[i]);
        QVERIFY(label(f, "Einsetz2", i)->isHidden());
    }
    QCOMPARE(QApplication::focusWidget(), field(f, 0));
}

void TestEquationPage::judgesEquationsAsPairsOfTasks() {
    Fixture f(equationBank());
    f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
    const QStringList typed{"2",   "",  " 2 ", "",  // empty field 1 means 1: right
                            "1",   "",  "",    "",  // right side filled with 1: right
                            "1",   "2", "1",   "3", // one wrong coefficient
                            "2.0", "1", "02",  "",  // as numbers: right
                            "",    "",  "",    ""}; // all four 1: right
    QCOMPARE(f.check(QStringLiteral("Einsetz"), typed), 8);
    QCOMPARE(f.state().TasksSoFar, 10);
    QCOMPARE(f.flow.praiseCalls(), 0);
    QCOMPARE(field(f, 1)->text(), QStringLiteral("1"));
    QCOMPARE(field(f, 3)->text(), QString()); // hidden: left empty
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(f.colour(field(f, i)), i == 11 ? Look::wrong() : Look::right());
        QCOMPARE(label(f, "Einsetz2", i)->isHidden(), i != 11);
    }
    // Shown again: no mark and no correction is left over.
    f.flow.ShowPage(9);
    for (int i = 0; i < 20; ++i)
        QVERIFY(!f.colour(field(f, i)).isValid() && label(f, "Einsetz2", i)->isHidden());
}

void TestEquationPage::praisesFiveRightEquationsAndWalksByKeys() {
    Fixture f(equationBank());
    f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
    // Hidden here: 3, 5, 7 and 15. Enter skips them and leaves 19 out.
    QStringList walk;
    for (int i : {0, 1, 2, 4, 6, 8, 9, 10, 11, 12, 13, 14, 16, 17, 18})
        walk << QStringLiteral("Einsetz(%1)").arg(i);
    QVERIFY(f.enterWalk(walk));
    // Field 19 is reached with Tab; Enter there goes back to the first.
    field(f, 18)->setFocus();
    QTest::keyClick(field(f, 18), Qt::Key_Tab);
    QVERIFY(field(f, 19)->hasFocus());
    QTest::keyClick(field(f, 19), Qt::Key_Return);
    QVERIFY(field(f, 0)->hasFocus());

    QStringList right;
    for (int i = 0; i < 20; ++i)
        right << f.state().DrawnAnswers[i + 1];
    QCOMPARE(f.check(QStringLiteral("Einsetz"), right), 10);
    QCOMPARE(f.flow.lastPraise(), 8);
}

void TestEquationPage::linesThePageCannotShowWhole() {
    Fixture f(equationBank());
    f.state().ExpertLevel = 1;
    f.showInOrder(9, {6, 7, 1, 2, 3}, 7);
    // @1A=@1B+@1C+@1D: the fourth species finds no slot and is left out.
    QCOMPARE(formula(f, 3), QStringLiteral("C"));
    QVERIFY(!field(f, 1)->isVisible());
    // The empty line: the two slots that are always there, with nothing in them.
    QVERIFY(field(f, 4)->isVisible());
    QCOMPARE(formula(f, 4), QString());
    QStringList stored;
    for (int i = 0; i < 20; ++i)
        stored << f.state().DrawnAnswers[i + 1];
    // Fields 4 and 6 were filled with 1 against an empty coefficient: wrong.
    QCOMPARE(f.check(QStringLiteral("Einsetz"), stored), 8);
    QCOMPARE(f.colour(field(f, 4)), Look::wrong());
}

QTEST_MAIN(TestEquationPage)
#include "test_equation_page.moc"
