#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/PraisePanel.h"
#include "controls/TermInput.h"
#include "pages/SubstancePage.h"
#include "session/TestFlow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace {

// Six basic substances (one with two formulas, two with two spellings of the
// name) and two expert ones, the second of them empty.
TaskBank substanceBank() {
    QStringList lines;
    for (int s = 0; s < 7; ++s)
        lines << QStringLiteral("x") << QStringLiteral("#") << QStringLiteral("@");
    lines << QStringLiteral("Stoffe") << QStringLiteral("#");
    const char* records[][3] = {{"NaCl", "Na^+*Cl^-", "Natriumchlorid"},
                                {"CaCl2", "Ca^2+*Cl^-", "Calciumchlorid"},
                                {"CuSO4", "Cu^2+*SO4^2-", "Kupfer(II)-sulfat|Kupfer(II)sulfat"},
                                {"Ca(OH)2*CaO2H2", "Ca^2+*OH^-", "Calciumhydroxid"},
                                {"Al2O3", "Al^3+*O^2-", "Aluminiumoxid"},
                                {"FeCl3", "Fe^3+*Cl^-", "Eisen(III)-chlorid|Eisen(III)chlorid"},
                                {"KI", "K^+*I^-", "Kaliumiodid"},
                                {"", "", ""}};
    for (int i = 0; i < 8; ++i) {
        if (i == 6)
            lines << QStringLiteral(u"\u00E6\u00E6");
        for (const char* line : records[i])
            lines << QString::fromUtf8(line);
    }
    lines << QStringLiteral("@") << QStringLiteral("x") << QStringLiteral("#")
          << QStringLiteral("@");
    return TaskBank::fromText(LegacyText::decode(cp1252Lines(lines)));
}

struct Fixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    SubstancePage* page;

    explicit Fixture(TaskBank bank = substanceBank()) {
        holder.resize(960, 520);
        page = new SubstancePage(flow, &holder);
        page->resize(960, 520);
        flow.addPage(page);
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(std::move(bank), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    // Draws the records in this order from a table of max entries.
    void showInOrder(const QList<int>& records, int max = 6) {
        QList<double> values;
        for (int k : records)
            values << (k + 0.5) / (max + 1);
        flow.setRandomSource(std::make_unique<FixedRandomSource>(values));
        flow.ShowPage(11);
    }
    QLineEdit* field(int i) {
        return page->findChild<QLineEdit*>(QStringLiteral("Substein(%1)").arg(i));
    }
    template <class W = QLabel> W* named(const char* name, int i) {
        return page->findChild<W*>(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(i));
    }
};

} // namespace

class TestSubstancePage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void acceptsAnswers_data();
    void acceptsAnswers();
    void pageAsksMarksCorrectsAndLeads();
    void praisesAFaultlessPageAndWalksByEnter();
    void oddRecordsAreShownAsTheyAre();
};

void TestSubstancePage::acceptsAnswers_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("right");
    const QString copper = QStringLiteral("Kupfer(II)-sulfat|Kupfer(II)sulfat");
    QTest::newRow("Blanks außen") << "  NaCl "
                                  << "NaCl" << true;
    QTest::newRow("Kleinschreibung") << "nacl"
                                     << "NaCl" << false;
    QTest::newRow("zweite Formel") << "CaO2H2"
                                   << "Ca(OH)2|CaO2H2" << true;
    QTest::newRow("zweite Schreibweise") << "Kupfer(II)sulfat" << copper << true;
    QTest::newRow("Teil einer Schreibweise") << "Kupfer" << copper << false;
    QTest::newRow("ganzer Schlüssel") << copper << copper << false;
    QTest::newRow("mit Zahlsilbe") << "Calciumdichlorid"
                                   << "Calciumchlorid" << false;
    QTest::newRow("leer") << ""
                          << "NaCl" << false;
    // A record without a formula has an empty key; an empty answer equals it.
    QTest::newRow("leer gegen leeren Schlüssel") << ""
                                                 << "" << true;
    QTest::newRow("Emoji") << "\U0001F9EA"
                           << "NaCl" << false;
    QTest::newRow("5000 Zeichen") << QString(5000, u'N') << "NaCl" << false;
}

void TestSubstancePage::acceptsAnswers() {
    QFETCH(QString, typed);
    QFETCH(QString, key);
    QFETCH(bool, right);
    QCOMPARE(SubstancePage::accepts(typed, key), right);
}

void TestSubstancePage::pageAsksMarksCorrectsAndLeads() {
    Fixture f;
    f.showInOrder({1, 2, 3, 4, 5, 6});
    const SessionState& s = f.flow.state();
    // Names ask for formulas, formulas for names.
    QCOMPARE(f.named("Substanz", 2)->text(), QStringLiteral("Kupfer(II)-sulfat"));
    QVERIFY(!f.named("lab_SubsTerm", 2)->isVisible());
    QCOMPARE(f.named<FormulaLabel>("lab_SubsTerm", 3)->formula(), QStringLiteral("Ca(OH)2"));
    QVERIFY(f.named("lab_SubsTerm", 3)->text().contains(u"<sub>2</sub>"));
    QVERIFY(!f.named("Substanz", 3)->isVisible());
    QCOMPARE(s.DrawnAnswers[0], QStringLiteral("NaCl"));
    QCOMPARE(s.DrawnAnswers[5], QStringLiteral("Eisen(III)-chlorid|Eisen(III)chlorid"));
    QCOMPARE(QApplication::focusWidget(), f.field(0));

    // The preview reads the formula; the field keeps what was typed.
    QTest::keyClicks(f.field(0), QStringLiteral("NaCl2"));
    const auto inputs = f.page->findChildren<TermInput*>();
    QVERIFY(inputs.first()->preview()->text().contains(u"<sub>2</sub>"));
    QCOMPARE(f.field(0)->text(), QStringLiteral("NaCl2"));
    QVERIFY(!inputs.last()->preview()->isVisible()); // names have none

    const QStringList typed{
        "NaCl", "CaCl", " CuSO4 ", "Calciumhydroxid", "aluminiumoxid", "Eisen(III)chlorid"};
    const QList<bool> right{true, false, true, true, false, true};
    for (int i = 0; i < 6; ++i)
        f.field(i)->setText(typed[i]);
    f.page->okButton()->click();
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(f.field(i)->property("markColour").value<QColor>(),
                 right[i] ? Look::right() : Look::wrong());
        QCOMPARE(f.field(i)->text(), typed[i]);
        QCOMPARE(f.named("lab_SubCorrect", i)->isVisible(), !right[i]);
        QCOMPARE(f.named("lab_SubsTermTitle", i)->isVisible(), !right[i]);
    }
    QCOMPARE(f.named<FormulaLabel>("lab_SubCorrect", 1)->formula(), QStringLiteral("CaCl2"));
    QCOMPARE(f.named("lab_SubCorrect", 4)->text(), QStringLiteral("Aluminiumoxid"));
    // The ions show why the formula reads so.
    QCOMPARE(f.named("lab_SubsTermTitle", 1)->property("formula"), QVariant("CaCl2"));
    QVERIFY(f.named("lab_SubsTermTitle", 1)->text().contains(QStringLiteral("+ 2 Cl<sup>")));
    QCOMPARE(Look::wrong(), QColor(255, 0, 0));
    QCOMPARE(s.TasksSoFar, 6);
    QCOMPARE(s.CorrectSoFar, 4);
    QCOMPARE(f.tasks.text(), QStringLiteral(" 6"));
    QCOMPARE(f.flow.praiseCalls(), 0);
    QCOMPARE(QApplication::focusWidget(), f.page->nextButton());

    // "Weiter" clears the marks and puts the name tasks' ions away.
    f.named("lab_SubsTermTitle", 3)->show();
    f.page->nextButton()->click();
    QCOMPARE(f.flow.PreviousPage(), 11);
    for (int i = 0; i < 6; ++i)
        QVERIFY(!f.field(i)->property("markColour").isValid());
    QVERIFY(!f.named("lab_SubsTermTitle", 1)->isHidden());
    QVERIFY(f.named("lab_SubsTermTitle", 3)->isHidden());
    QVERIFY(f.named("lab_SubsTermTitle", 4)->isHidden());
}

void TestSubstancePage::praisesAFaultlessPageAndWalksByEnter() {
    Fixture f;
    f.flow.state().CorrectSoFar = 20; // earlier pages do not matter here
    f.flow.state().TasksSoFar = 30;
    f.showInOrder({2, 4, 6, 1, 3, 5});
    f.holder.activateWindow();
    const SessionState& s = f.flow.state();
    for (int i = 0; i < 6; ++i) {
        QVERIFY(f.field(i)->hasFocus());
        f.field(i)->setText(SubstancePage::correction(s.DrawnAnswers[i]));
        QTest::keyClick(f.field(i), Qt::Key_Return);
    }
    QVERIFY(f.field(0)->hasFocus());
    f.page->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 26);
    QCOMPARE(f.flow.lastJingle(), QStringLiteral("T255 L16 gdgdg"));
    QCOMPARE(f.flow.lastPraise(), 11);
    QVERIFY(f.flow.praisePanel()->isVisible());
}

void TestSubstancePage::oddRecordsAreShownAsTheyAre() {
    // A record without any lists (never passed through the start page) and
    // an empty record: the page shows what there is and judges as usual.
    TaskBank bank = substanceBank();
    bank.Substances[7].Formula.reset();
    bank.Substances[7].SecondTerm.reset();
    Fixture f(std::move(bank));
    f.flow.state().ExpertLevel = 1;
    f.showInOrder({7, 8, 1, 2, 3, 4}, 8);
    QCOMPARE(f.named("Substanz", 0)->text(), QStringLiteral("Kaliumiodid"));
    QCOMPARE(f.flow.state().DrawnAnswers[0], QString());
    QCOMPARE(f.named("Substanz", 1)->text(), QString());
    f.field(0)->setText(QStringLiteral("KI"));
    f.page->okButton()->click();
    QCOMPARE(f.field(0)->property("markColour").value<QColor>(), Look::wrong());
    QCOMPARE(f.field(1)->property("markColour").value<QColor>(), Look::right());
    QCOMPARE(f.named("lab_SubsTermTitle", 0)->text(), QString());
}

QTEST_MAIN(TestSubstancePage)
#include "test_substance_page.moc"
