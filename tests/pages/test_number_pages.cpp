// The widgets of pages 2, 8 and 12 and their calculator buttons, one test
// per page; the judging rules themselves are in test_answer_rules.
#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/FormulaTextLabel.h"
#include "pages/AmountPage.h"
#include "pages/MolarMassPage.h"
#include "pages/NumberSyllablePage.h"

#include <QLocale>

namespace {
const QColor kRight(0, 255, 0), kWrong(255, 0, 0);
}

class TestNumberPages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void numberSyllablePage();
    void molarMassPage();
    void amountPage();
    void calculatorButtons();
};

void TestNumberPages::numberSyllablePage() {
    PageFixture<NumberSyllablePage> f(
        bankWith({{TaskBank::NumberSyllablesSection,
                   {"1", "mono", "2", "di", "3", "tri", "8", "octa*okta"},
                   {"12", "dodeca*dodeka"}}}));
    // The numbers asked for.
    QVERIFY(f.drawnOver(2, 1, 2).contains(QStringLiteral("12")));
    QCOMPARE(f.drawnOver(2, 0, 2), QSet<QString>({"1", "2", "3", "8"}));
    QSet<QString> rows;
    for (int i = 0; i < 4; ++i)
        rows << f.named<QLabel>(QStringLiteral("AnzS2"), i)->text();
    QCOMPARE(rows.size(), 4); // four different rows
    QCOMPARE(QApplication::focusWidget(), f.named(QStringLiteral("Zahl"), 0));
    QVERIFY(f.enterRing(QStringLiteral("Zahl"), 4));

    SessionState& s = f.state();
    s.TasksSoFar = s.CorrectSoFar = 0;
    s.DrawnAnswers[0] = QStringLiteral("2");
    s.DrawnAnswers[1] = QStringLiteral("10");
    s.DrawnAnswers[2] = QStringLiteral("octa*okta");
    s.DrawnAnswers[3] = QStringLiteral("tri");
    QCOMPARE(f.check(QStringLiteral("Zahl"), {" 2 ", "010", "okta", "Tri"}), 2);
    const auto field = [&](int i) { return f.named(QStringLiteral("Zahl"), i); };
    QCOMPARE(f.colour(field(0)), kRight);
    QCOMPARE(f.colour(field(1)), kWrong);
    QCOMPARE(f.colour(field(2)), kRight);
    QCOMPARE(field(1)->text(), QStringLiteral("010 - richtig ist: 10"));
    QCOMPARE(field(3)->text(), QStringLiteral("Tri - richtig ist: tri"));
    QVERIFY(field(3)->isReadOnly());
    QCOMPARE(s.TasksSoFar, 4);

    // A wrong syllable shows the stored list; four right earn the praise
    // even after mistakes on earlier pages.
    f.flow.ShowPage(2);
    QVERIFY(!field(1)->isReadOnly() && field(1)->text().isEmpty());
    s.DrawnAnswers[2] = QStringLiteral("*octa*okta*");
    f.check(QStringLiteral("Zahl"), {"", "", "acht"});
    QCOMPARE(field(2)->text(), QStringLiteral("acht - richtig ist: *octa*okta*"));
    f.flow.ShowPage(2);
    QStringList answers;
    for (int i = 0; i < 4; ++i)
        answers << s.DrawnAnswers[i].split(u'*', Qt::SkipEmptyParts).last();
    QCOMPARE(f.check(QStringLiteral("Zahl"), answers), 4);
    QCOMPARE(f.flow.praiseCalls(), 1);
    QCOMPARE(f.flow.lastPraise(), 2);
}

void TestNumberPages::molarMassPage() {
    PageFixture<MolarMassPage> f(
        bankWith({{TaskBank::MolarMassSubstancesSection,
                   {"Natriumchlorid", "58.4", "NaCl", "Wasser", "18.0", "H2O", "Schwefelsäure",
                    "98.1", "H2SO4", "Kupfersulfat", "abc", ""},
                   {"Glucose", "180.2", "C6H12O6"}}}));
    const QMap<QString, QString> massOf{
        {"NaCl", " 58.4"}, {"H2O", " 18"}, {"H2SO4", " 98.1"}, {"", " 0"}};
    f.flow.ShowPage(8);
    for (int k = 0; k < 4; ++k) {
        auto* formula = f.named<FormulaLabel>(QStringLiteral("lab_MolTerm"), k);
        QVERIFY(formula->isVisible());
        QCOMPARE(f.state().DrawnAnswers[k], massOf.value(formula->formula(), QStringLiteral("?")));
        // The name as stored, padded to its width of 40.
        QCOMPARE(f.named<QLabel>(QStringLiteral("AnzS7"), k)->text().size(), 40);
    }
    QCOMPARE(QApplication::focusWidget(), f.named(QStringLiteral("Mol"), 0));
    QVERIFY(f.enterRing(QStringLiteral("Mol"), 4));

    for (int k = 0; k < 4; ++k)
        f.state().DrawnAnswers[k] = QStringLiteral(" 58.4");
    QCOMPARE(f.check(QStringLiteral("Mol"), {"58,4 g", "58.40", "58", "58.44"}), 2);
    const auto field = [&](int k) { return f.named(QStringLiteral("Mol"), k); };
    QCOMPARE(f.colour(field(0)), kRight);
    QCOMPARE(f.colour(field(3)), kWrong);
    QCOMPARE(field(2)->text(), QStringLiteral("58 - richtig ist:  58.4"));
    QCOMPARE(f.flow.praiseCalls(), 0);

    // The expert sees names only and draws from all records.
    QVERIFY(f.drawnOver(8, 1, 4).contains(QStringLiteral(" 180.2")));
    for (int k = 0; k < 4; ++k)
        QVERIFY(!f.named<QWidget>(QStringLiteral("lab_MolTerm"), k)->isVisible());
    QStringList right;
    for (int k = 0; k < 4; ++k)
        right << f.state().DrawnAnswers[k];
    QCOMPARE(f.check(QStringLiteral("Mol"), right), 4);
    QCOMPARE(f.flow.lastPraise(), 7);
}

void TestNumberPages::amountPage() {
    QStringList basic;
    for (int i = 1; i <= 5; ++i)
        basic << QStringLiteral("Wie viel mol sind %1 g Wasser (H2O)?").arg(i)
              << QStringLiteral("0.%1").arg(i);
    PageFixture<AmountPage> f(
        bankWith({{TaskBank::AmountSubstancesSection, basic, {"Expertenfrage", "9.99"}}}));
    QVERIFY(f.drawnOver(12, 1, 5).contains(QStringLiteral("9.99")));
    QCOMPARE(f.drawnOver(12, 0, 5), QSet<QString>({"0.1", "0.2", "0.3", "0.4", "0.5"}));
    auto* question = qobject_cast<FormulaTextLabel*>(f.named<QLabel>(QStringLiteral("AnzS12"), 0));
    QVERIFY(question);
    // The question as stored; drawn with the formula set.
    QVERIFY(basic.contains(question->text()));
    QVERIFY(question->drawnHtml().contains(QStringLiteral("H<sub>2</sub>O")));
    QVERIFY(f.enterRing(QStringLiteral("Stoffm"), 5));
    const char* stored[] = {"0.5", "0.5", "0.5", "0.25", "0.5"};
    for (int i = 0; i < 5; ++i)
        f.state().DrawnAnswers[i] = QString::fromLatin1(stored[i]);
    QCOMPARE(f.check(QStringLiteral("Stoffm"), {" 0,50 ", "5E-1", ".5", "2", "1/2"}), 3);
    QCOMPARE(f.colour(f.named(QStringLiteral("Stoffm"), 2)), kRight);
    QCOMPARE(f.colour(f.named(QStringLiteral("Stoffm"), 4)), kWrong);
    QCOMPARE(f.named(QStringLiteral("Stoffm"), 3)->text(), QStringLiteral("2 - richtig ist: 0.25"));
    QCOMPARE(f.state().TasksSoFar, 5);
}

void TestNumberPages::calculatorButtons() {
    PageFixture<MolarMassPage> mass(bankWith(
        {{TaskBank::MolarMassSubstancesSection,
          {"A", "58.4", "NaCl", "B", "18.0", "H2O", "C", "98.1", "H2SO4", "D", "44.0", "CO2"},
          {}}}));
    mass.flow.ShowPage(8);
    const auto mol = [&](int k) { return mass.named(QStringLiteral("Mol"), k); };
    const auto press = [](QWidget* page, int i, const QString& expression, bool takeOver = true) {
        ModalAnswer answer(QStringLiteral("OK"), expression, takeOver);
        page->findChild<QPushButton*>(QStringLiteral("but_Calc(%1)").arg(i))->click();
        return answer.sawCalculator() ? QString() : answer.text();
    };
    for (int k = 0; k < 4; ++k)
        mol(k)->setText(QStringLiteral("alt"));
    QCOMPARE(press(mass.page, 1, QStringLiteral("22,99+35,45")), QString());
    // German settings: a comma, no leading blank; only its own field changes.
    QCOMPARE(mol(1)->text(), QStringLiteral("58,44"));
    QCOMPARE(mol(0)->text(), QStringLiteral("alt"));
    QCOMPARE(mol(2)->text(), QStringLiteral("alt"));
    // A result of 0, a cancelled calculator and a broken expression write nothing.
    press(mass.page, 0, QStringLiteral("3-3"));
    press(mass.page, 0, QStringLiteral("5"), false);
    press(mass.page, 0, QStringLiteral("2**"));
    QCOMPARE(mol(0)->text(), QStringLiteral("alt"));
    // The page reads the written text back as the value it shows.
    mass.state().DrawnAnswers[1] = QStringLiteral(" 58.44");
    mass.page->okButton()->click();
    QCOMPARE(mass.colour(mol(1)), kRight);

    PageFixture<AmountPage> amount(
        bankWith({{TaskBank::AmountSubstancesSection,
                   {"F1", "1", "F2", "2", "F3", "3", "F4", "4", "F5", "5"},
                   {}}}));
    amount.flow.ShowPage(12);
    for (int i = 4; i <= 8; ++i)
        press(amount.page, i, QStringLiteral("%1/4").arg(i));
    QCOMPARE(amount.named(QStringLiteral("Stoffm"), 0)->text(), QStringLiteral("1"));
    QCOMPARE(amount.named(QStringLiteral("Stoffm"), 1)->text(), QStringLiteral("1,25"));
    QCOMPARE(amount.named(QStringLiteral("Stoffm"), 4)->text(), QStringLiteral("2"));

    // The expert is teased, with an empty title, and the field stays.
    amount.state().ExpertLevel = 1;
    QCOMPARE(press(amount.page, 6, QStringLiteral("1")),
             QStringLiteral("Tut mir leid! Streber müssen im Kopf rechnen!"));
    QCOMPARE(amount.named(QStringLiteral("Stoffm"), 2)->text(), QStringLiteral("1,5"));
}

QTEST_MAIN(TestNumberPages)
#include "test_number_pages.moc"
