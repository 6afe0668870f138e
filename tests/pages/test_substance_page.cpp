#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/Look.h"
#include "controls/TermInput.h"
#include "pages/SubstancePage.h"

namespace {

// Six basic substances (one with two formulas, two with two spellings of the
// name) and two expert ones, the second of them empty.
TaskBank substanceBank() {
    return bankWith(
        {{TaskBank::SubstancesSection,
          {"NaCl", "Na^+*Cl^-", "Natriumchlorid", "CaCl2", "Ca^2+*Cl^-", "Calciumchlorid", "CuSO4",
           "Cu^2+*SO4^2-", "Kupfer(II)-sulfat|Kupfer(II)sulfat", "Ca(OH)2*CaO2H2", "Ca^2+*OH^-",
           "Calciumhydroxid", "Al2O3", "Al^3+*O^2-", "Aluminiumoxid", "FeCl3", "Fe^3+*Cl^-",
           "Eisen(III)-chlorid|Eisen(III)chlorid"},
          {"KI", "K^+*I^-", "Kaliumiodid", "", "", ""}}});
}

} // namespace

class TestSubstancePage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void asksMarksCorrectsAndLeads();
    void praisesAFaultlessPageAndWalksByEnter();
    void oddRecordsAreShownAsTheyAre();
};

void TestSubstancePage::asksMarksCorrectsAndLeads() {
    PageFixture<SubstancePage> f(substanceBank());
    f.showInOrder(11, {1, 2, 3, 4, 5, 6}, 6);
    const SessionState& s = f.state();
    const auto label = [&](const char* name, int i) {
        return f.named<QLabel>(QLatin1String(name), i);
    };
    const auto formula = [&](const char* name, int i) {
        return f.named<FormulaLabel>(QLatin1String(name), i)->formula();
    };
    const auto field = [&](int i) { return f.named(QStringLiteral("Substein"), i); };
    // Names ask for formulas, formulas for names.
    QCOMPARE(label("Substanz", 2)->text(), QStringLiteral("Kupfer(II)-sulfat"));
    QVERIFY(!label("lab_SubsTerm", 2)->isVisible());
    QCOMPARE(formula("lab_SubsTerm", 3), QStringLiteral("Ca(OH)2"));
    QVERIFY(label("lab_SubsTerm", 3)->text().contains(u"<sub>2</sub>"));
    QVERIFY(!label("Substanz", 3)->isVisible());
    QCOMPARE(s.DrawnAnswers[0], QStringLiteral("NaCl"));
    QCOMPARE(s.DrawnAnswers[5], QStringLiteral("Eisen(III)-chlorid|Eisen(III)chlorid"));
    QCOMPARE(QApplication::focusWidget(), field(0));

    // The preview reads the formula; the field keeps what was typed.
    QTest::keyClicks(field(0), QStringLiteral("NaCl2"));
    const auto inputs = f.page->findChildren<TermInput*>();
    QVERIFY(inputs.first()->preview()->text().contains(u"<sub>2</sub>"));
    QCOMPARE(field(0)->text(), QStringLiteral("NaCl2"));
    QVERIFY(!inputs.last()->preview()->isVisible()); // names have none

    const QStringList typed{
        "NaCl", "CaCl", " CuSO4 ", "Calciumhydroxid", "aluminiumoxid", "Eisen(III)chlorid"};
    const QList<bool> right{true, false, true, true, false, true};
    QCOMPARE(f.check(QStringLiteral("Substein"), typed), 4);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(f.colour(field(i)), right[i] ? Look::right() : Look::wrong());
        QCOMPARE(field(i)->text(), typed[i]);
        QCOMPARE(label("lab_SubCorrect", i)->isVisible(), !right[i]);
        QCOMPARE(label("lab_SubsTermTitle", i)->isVisible(), !right[i]);
    }
    QCOMPARE(formula("lab_SubCorrect", 1), QStringLiteral("CaCl2"));
    QCOMPARE(label("lab_SubCorrect", 4)->text(), QStringLiteral("Aluminiumoxid"));
    // The ions show why the formula reads so.
    QCOMPARE(label("lab_SubsTermTitle", 1)->property("formula"), QVariant("CaCl2"));
    QVERIFY(label("lab_SubsTermTitle", 1)->text().contains(QStringLiteral("+ 2 Cl<sup>")));
    QCOMPARE(s.TasksSoFar, 6);
    QCOMPARE(f.flow.praiseCalls(), 0);

    // "Weiter" clears the marks and puts the name tasks' ions away.
    label("lab_SubsTermTitle", 3)->show();
    f.page->nextButton()->click();
    QCOMPARE(f.flow.PreviousPage(), 11);
    for (int i = 0; i < 6; ++i)
        QVERIFY(!field(i)->property("markColour").isValid());
    QVERIFY(!label("lab_SubsTermTitle", 1)->isHidden());
    QVERIFY(label("lab_SubsTermTitle", 3)->isHidden());
    QVERIFY(label("lab_SubsTermTitle", 4)->isHidden());
}

void TestSubstancePage::praisesAFaultlessPageAndWalksByEnter() {
    PageFixture<SubstancePage> f(substanceBank());
    f.state().CorrectSoFar = 20; // earlier pages do not matter here
    f.state().TasksSoFar = 30;
    f.showInOrder(11, {2, 4, 6, 1, 3, 5}, 6);
    QVERIFY(f.enterRing(QStringLiteral("Substein"), 6));
    QStringList answers;
    for (int i = 0; i < 6; ++i)
        answers << SubstancePage::correction(f.state().DrawnAnswers[i]);
    QCOMPARE(f.check(QStringLiteral("Substein"), answers), 6);
    QCOMPARE(f.flow.lastPraise(), 11);
    QVERIFY(f.flow.praisePanel()->isVisible());
}

void TestSubstancePage::oddRecordsAreShownAsTheyAre() {
    // A record without any lists (never passed through the start page) and
    // an empty record: the page shows what there is and judges as usual.
    TaskBank bank = substanceBank();
    bank.Substances[7].Formula.reset();
    bank.Substances[7].SecondTerm.reset();
    PageFixture<SubstancePage> f(std::move(bank));
    f.state().ExpertLevel = 1;
    f.showInOrder(11, {7, 8, 1, 2, 3, 4}, 8);
    QCOMPARE(f.named<QLabel>(QStringLiteral("Substanz"), 0)->text(), QStringLiteral("Kaliumiodid"));
    QCOMPARE(f.state().DrawnAnswers[0], QString());
    QCOMPARE(f.named<QLabel>(QStringLiteral("Substanz"), 1)->text(), QString());
    f.named(QStringLiteral("Substein"), 0)->setText(QStringLiteral("KI"));
    f.page->okButton()->click();
    QCOMPARE(f.colour(f.named(QStringLiteral("Substein"), 0)), Look::wrong());
    QCOMPARE(f.colour(f.named(QStringLiteral("Substein"), 1)), Look::right());
    QCOMPARE(f.named<QLabel>(QStringLiteral("lab_SubsTermTitle"), 0)->text(), QString());
}

QTEST_MAIN(TestSubstancePage)
#include "test_substance_page.moc"
