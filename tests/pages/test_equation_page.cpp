#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/PraisePanel.h"
#include "pages/EquationPage.h"
#include "session/TestFlow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace {

// Five basic equations (one written with blanks) and two expert lines the
// page cannot show whole: three species on a side, and an empty line.
TaskBank equationBank() {
    QStringList lines;
    for (int s = 0; s < 6; ++s)
        lines << QStringLiteral("x") << QStringLiteral("#") << QStringLiteral("@");
    lines << QStringLiteral("Gleichungen") << QStringLiteral("#")
          << QStringLiteral("@2H2+@1O2=@2H2O") << QStringLiteral("@1Fe=@1Fe")
          << QStringLiteral("@1CH4+@2O2=@1CO2+@2H2O") << QStringLiteral("@2 Na + @1 Cl2 = @2 NaCl")
          << QStringLiteral("@1HCl+@1NaOH=@1NaCl+@1H2O") << QStringLiteral(u"\u00E6\u00E6")
          << QStringLiteral("@1A=@1B+@1C+@1D") << QString() << QStringLiteral("@");
    for (int s = 0; s < 2; ++s)
        lines << QStringLiteral("x") << QStringLiteral("#") << QStringLiteral("@");
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

struct Fixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    EquationPage* page;

    Fixture() {
        holder.resize(960, 520);
        page = new EquationPage(flow, &holder);
        page->resize(960, 520);
        flow.addPage(page);
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(equationBank(), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    // Draws the records in the given order from a table of max entries.
    void showInOrder(const QList<int>& records, int max = 5) {
        QList<double> values;
        for (int k : records)
            values << (k + 0.5) / (max + 1);
        flow.setRandomSource(std::make_unique<FixedRandomSource>(values));
        flow.ShowPage(9);
    }
    QLineEdit* field(int i) {
        return page->findChild<QLineEdit*>(QStringLiteral("Einsetz(%1)").arg(i));
    }
    template <class W = QLabel> W* named(const char* name, int i) {
        return page->findChild<W*>(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(i));
    }
    QColor colour(int i) { return field(i)->property("markColour").value<QColor>(); }
};

// "h" marks a hidden field, anything else a visible one.
std::array<bool, EquationPage::kFields> hiddenFrom(const QString& pattern) {
    std::array<bool, EquationPage::kFields> hidden{};
    for (int i = 0; i < EquationPage::kFields && i < pattern.size(); ++i)
        hidden[i] = pattern.at(i) == u'h';
    return hidden;
}

} // namespace

class TestEquationPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void comparesCoefficientsAsNumbers_data();
    void comparesCoefficientsAsNumbers();
    void enterGoesToTheNextVisibleField_data();
    void enterGoesToTheNextVisibleField();
    void drawShowsFiveEquations();
    void judgesEquationsAsPairsOfTasks();
    void praisesFiveRightEquationsAndWalksByKeys();
    void linesThePageCannotShowWhole();
};

void TestEquationPage::comparesCoefficientsAsNumbers_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("right");
    QTest::newRow("Blanks außen") << " 2 "
                                  << "2" << true;
    QTest::newRow("führende Null") << "02"
                                   << "2" << true;
    QTest::newRow("Nachkommastelle") << "2.0"
                                     << "2" << true;
    QTest::newRow("Buchstabe danach") << "2x"
                                      << "2" << true;
    QTest::newRow("Bruch bis zum Strich") << "1/2"
                                          << "1" << true;
    QTest::newRow("Blank in der Zahl") << "1 000"
                                       << "1000" << true;
    QTest::newRow("falsche Zahl") << "3"
                                  << "2" << false;
    QTest::newRow("Buchstabe davor") << "x2"
                                     << "2" << false;
    QTest::newRow("Exponent") << "5E-1"
                              << "1" << false;
    QTest::newRow("leer") << ""
                          << "2" << false;
    QTest::newRow("Emoji") << "\U0001F600"
                           << "1" << false;
    QTest::newRow("5000 Ziffern") << QString(5000, u'2') << "2" << false;
    // A hidden slot: nothing stored, nothing typed, both are 0.
    QTest::newRow("leere Stelle") << ""
                                  << "" << true;
}

void TestEquationPage::comparesCoefficientsAsNumbers() {
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    QFETCH(bool, right);
    QCOMPARE(EquationPage::coefficientRight(typed, expected), right);
}

void TestEquationPage::enterGoesToTheNextVisibleField_data() {
    QTest::addColumn<QString>("hidden");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    const QString all(20, u'.');
    QTest::newRow("18 springt auf 0") << all << 18 << 0;
    QTest::newRow("von 19 auf 0") << all << 19 << 0;
    QTest::newRow("versteckte 1") << ".h.h................" << 0 << 2;
    QTest::newRow("eine Art je Seite") << ".....h.h............" << 4 << 6;
    QTest::newRow("über 17 hinweg") << ".................h.." << 16 << 18;
}

void TestEquationPage::enterGoesToTheNextVisibleField() {
    QFETCH(QString, hidden);
    QFETCH(int, from);
    QFETCH(int, to);
    QCOMPARE(EquationPage::nextField(from, hiddenFrom(hidden)), to);
}

void TestEquationPage::drawShowsFiveEquations() {
    Fixture f;
    f.showInOrder({1, 2, 3, 4, 5});
    // @2H2+@1O2=@2H2O: three slots, the second "+" hidden.
    QCOMPARE(f.named<FormulaLabel>("EText", 2)->formula(), QStringLiteral("H2O"));
    QVERIFY(f.named("EText", 2)->text().contains(u"<sub>2</sub>"));
    QVERIFY(f.named("PlusL", 0)->isVisible());
    QVERIFY(!f.named("PlusR", 0)->isVisible());
    QVERIFY(!f.field(3)->isVisible());
    QVERIFY(!f.named("EText", 3)->isVisible());
    // @1Fe=@1Fe: the right side goes to slot 2; both "+" hidden.
    QVERIFY(!f.named("PlusL", 1)->isVisible());
    QCOMPARE(f.named<FormulaLabel>("EText", 6)->formula(), QStringLiteral("Fe"));
    QVERIFY(!f.named("PlusR", 1)->isVisible());
    // "@2 Na + @1 Cl2 = @2 NaCl" is read without its blanks.
    QCOMPARE(f.named<FormulaLabel>("EText", 13)->formula(), QStringLiteral("Cl2"));

    // The stored answer of field i lies at i + 1.
    const QStringList expected{"2", "1", "2", "",  "1", "", "1", "",  "1", "2",
                               "1", "2", "2", "1", "2", "", "1", "1", "1", "1"};
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(f.flow.state().DrawnAnswers[i + 1], expected[i]);
        QCOMPARE(f.named("Einsetz2", i)->text(), expected[i]);
        QVERIFY(f.named("Einsetz2", i)->isHidden());
    }
    QCOMPARE(QApplication::focusWidget(), f.field(0));
    QCOMPARE(f.page->okButton()->objectName(), QStringLiteral("OKS8(0)"));
}

void TestEquationPage::judgesEquationsAsPairsOfTasks() {
    Fixture f;
    f.showInOrder({1, 2, 3, 4, 5});
    const SessionState& s = f.flow.state();
    const QStringList typed{"2",   "",  " 2 ", "",  // empty field 1 means 1: right
                            "1",   "",  "",    "",  // right side filled with 1: right
                            "1",   "2", "1",   "3", // one wrong coefficient
                            "2.0", "1", "02",  "",  // as numbers: right
                            "",    "",  "",    ""}; // all four 1: right
    for (int i = 0; i < 20; ++i)
        f.field(i)->setText(typed[i]);
    f.page->okButton()->click();

    QCOMPARE(s.TasksSoFar, 10);
    QCOMPARE(s.CorrectSoFar, 8);
    QCOMPARE(f.correct.text(), QStringLiteral(" 8"));
    QCOMPARE(f.flow.praiseCalls(), 0);
    QCOMPARE(f.field(1)->text(), QStringLiteral("1"));
    QCOMPARE(f.field(3)->text(), QString()); // hidden: left empty
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(f.colour(i), i == 11 ? Look::wrong() : Look::right());
        QCOMPARE(f.named("Einsetz2", i)->isHidden(), i != 11);
    }
    QCOMPARE(Look::right(), QColor(0, 255, 0));
    QCOMPARE(QApplication::focusWidget(), f.page->nextButton());
}

void TestEquationPage::praisesFiveRightEquationsAndWalksByKeys() {
    Fixture f;
    f.showInOrder({1, 2, 3, 4, 5});
    f.holder.activateWindow();
    // Hidden here: 3, 5, 7 and 15. Enter skips them and leaves 19 out.
    const QList<int> walk{0, 1, 2, 4, 6, 8, 9, 10, 11, 12, 13, 14, 16, 17, 18, 0};
    for (int k = 0; k + 1 < walk.size(); ++k) {
        QVERIFY2(f.field(walk[k])->hasFocus(), qPrintable(QString::number(walk[k])));
        f.field(walk[k])->setText(f.flow.state().DrawnAnswers[walk[k] + 1]);
        QTest::keyClick(f.field(walk[k]), Qt::Key_Return);
    }
    QVERIFY(f.field(0)->hasFocus());
    // Field 19 is reached with Tab.
    f.field(18)->setFocus();
    QTest::keyClick(f.field(18), Qt::Key_Tab);
    QVERIFY(f.field(19)->hasFocus());
    QTest::keyClicks(f.field(19), QStringLiteral("1"));
    f.page->okButton()->click();
    QCOMPARE(f.flow.state().CorrectSoFar, 10);
    QCOMPARE(f.flow.lastPraise(), 8);
    QCOMPARE(f.flow.lastJingle(), QStringLiteral("T255 L16 gdgdg"));
}

void TestEquationPage::linesThePageCannotShowWhole() {
    Fixture f;
    f.flow.state().ExpertLevel = 1;
    f.showInOrder({6, 7, 1, 2, 3}, 7);
    // @1A=@1B+@1C+@1D: the fourth species finds no slot and is left out.
    QCOMPARE(f.named<FormulaLabel>("EText", 3)->formula(), QStringLiteral("C"));
    QVERIFY(!f.field(1)->isVisible());
    // The empty line: the two slots that are always there, with nothing in them.
    QVERIFY(f.field(4)->isVisible());
    QCOMPARE(f.named<FormulaLabel>("EText", 4)->formula(), QString());
    for (int i = 0; i < 20; ++i)
        f.field(i)->setText(f.flow.state().DrawnAnswers[i + 1]);
    f.page->okButton()->click();
    // Fields 4 and 6 were filled with 1 against an empty coefficient: wrong.
    QCOMPARE(f.colour(4), Look::wrong());
    QCOMPARE(f.flow.state().CorrectSoFar, 8);
}

QTEST_MAIN(TestEquationPage)
#include "test_equation_page.moc"
