// The pages answered by typing (1, 2, 8, 9, 11 and 12) on one flow: every
// page walked once as rows (draw, keys, marks, corrections, counters, praise),
// then what only one page does; last the judging rules themselves, one row
// per case: numbers read alike on both sides, texts compared exactly or
// against a list of alternatives, coefficients as leading numbers, formulas
// or names against their "|"-separated spellings, and what a screen reader
// says for a task.
#include "PageSupport.h"
#include "TestSupport.h"
#include "controls/FormulaLabel.h"
#include "controls/FormulaTextLabel.h"
#include "controls/Look.h"
#include "controls/TermInput.h"
#include "pages/AmountPage.h"
#include "pages/AnswerRules.h"
#include "pages/ElementPage.h"
#include "pages/EquationPage.h"
#include "pages/MolarMassPage.h"
#include "pages/NumberAnswer.h"
#include "pages/NumberSyllablePage.h"
#include "pages/SubstancePage.h"
#include "pages/TaskNames.h"

#include <set>

namespace {

// Six basic elements (two with two accepted names) and four expert ones;
// syllables, masses (one record broken), amounts; five basic equations (one
// written with blanks) and two expert lines the equation page cannot show
// whole; six basic substances (one with two formulas, two with two spellings
// of the name) and two expert ones, the second of them empty.
TaskBank typedBank() {
    QStringList amounts;
    for (int i = 1; i <= 5; ++i)
        amounts << QStringLiteral("Wie viel mol sind %1 g Wasser (H2O)?").arg(i)
                << QStringLiteral("0.%1").arg(i);
    return bankWith(
        {{TaskBank::ElementNamesSection,
          {"Natrium", "Na", "Iod*Jod", "I", "Calcium*Kalzium", "Ca", "Eisen", "Fe", "Kupfer", "Cu",
           "Chlor", "Cl"},
          {"Gold", "Au", "Silber", "Ag", "Zink", "Zn", "Blei", "Pb"}},
         {TaskBank::NumberSyllablesSection,
          {"1", "mono", "2", "di", "3", "tri", "8", "octa*okta"},
          {"12", "dodeca*dodeka"}},
         {TaskBank::MolarMassSubstancesSection,
          {"Natriumchlorid", "58.4", "NaCl", "Wasser", "18.0", "H2O", "Schwefelsäure", "98.1",
           "H2SO4", "Kupfersulfat", "abc", ""},
          {"Glucose", "180.2", "C6H12O6"}},
         {TaskBank::AmountSubstancesSection, amounts, {"Expertenfrage", "9.99"}},
         {TaskBank::EquationsSection,
          {"@2H2+@1O2=@2H2O", "@1Fe=@1Fe", "@1CH4+@2O2=@1CO2+@2H2O", "@2 Na + @1 Cl2 = @2 NaCl",
           "@1HCl+@1NaOH=@1NaCl+@1H2O"},
          {"@1A=@1B+@1C+@1D", ""}},
         {TaskBank::SubstancesSection,
          {"NaCl", "Na^+*Cl^-", "Natriumchlorid", "CaCl2", "Ca^2+*Cl^-", "Calciumchlorid", "CuSO4",
           "Cu^2+*SO4^2-", "Kupfer(II)-sulfat|Kupfer(II)sulfat", "Ca(OH)2*CaO2H2", "Ca^2+*OH^-",
           "Calciumhydroxid", "Al2O3", "Al^3+*O^2-", "Aluminiumoxid", "FeCl3", "Fe^3+*Cl^-",
           "Eisen(III)-chlorid|Eisen(III)chlorid"},
          {"KI", "K^+*I^-", "Kaliumiodid", "", "", ""}}});
}

struct Fixture : PageFixture<ElementPage> {
    explicit Fixture(TaskBank bank = typedBank()) : PageFixture(std::move(bank)) {
        add<NumberSyllablePage>();
        add<MolarMassPage>();
        add<EquationPage>();
        add<SubstancePage>();
        add<AmountPage>();
    }
    QLineEdit* field(const QString& name) { return holder.findChild<QLineEdit*>(name); }
    QLineEdit* field(const char* name, int i) { return named(QLatin1String(name), i); }
    QLabel* label(const char* name, int i) { return named<QLabel>(QLatin1String(name), i); }
    QString formula(const char* name, int i) {
        return named<QWidget>(QLatin1String(name), i)->property("formula").toString();
    }
    QStringList drawn(int from, int count) {
        return QStringList(state().DrawnAnswers.begin() + from,
                           state().DrawnAnswers.begin() + from + count);
    }
    // Types the answers into the fields of page `number`, checks, and returns
    // how many it counted right.
    int check(int number, const QStringList& fields, const QStringList& answers) {
        const int before = state().CorrectSoFar;
        for (int i = 0; i < answers.size(); ++i)
            field(fields[i])->setText(answers[i]);
        flow.taskPage(number)->okButton()->click();
        return state().CorrectSoFar - before;
    }
};

QStringList fieldsOf(const QString& name, int count) {
    QStringList out;
    for (int i = 0; i < count; ++i)
        out << QStringLiteral("%1(%2)").arg(name).arg(i);
    return out;
}

} // namespace

using Namer = std::function<QString()>;
Q_DECLARE_METATYPE(Namer)

class TestTypedPages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void walksThePage_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QStringList>("fields"); // in the order Enter walks them
        QTest::addColumn<QList<int>>("order");   // records drawn, when it matters
        QTest::addColumn<QStringList>("drawn");  // answer keys set by hand, if any
        QTest::addColumn<QStringList>("typed");
        QTest::addColumn<QStringList>("shown"); // field texts after checking; none: as typed
        QTest::addColumn<QString>("marks");     // + right, - wrong
        QTest::addColumn<int>("praise");        // praised with, all right the second time
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QStringList>("tabs"); // where Tab goes from the first field
        QTest::addColumn<QStringList>(
            "names"); // how a screen reader names each field, up to its task
        using L = QStringList;
        using I = QList<int>;
        // Page 1 judges its praise by the whole test's count, so a second,
        // faultless pass earns nothing.
        dataRow("elements", 1, fieldsOf("EleSym", 3) + fieldsOf("Ele", 3), I{},
                L{"Na", "Fe", "Cl", "*Iod*Jod*", "*Calcium*Kalzium*", "Kupfer"},
                L{" Na ", "fe", "Cl", "Jod", "Kalk", "Kupfer"},
                L{" Na ", "fe - Richtig ist: Fe", "Cl", "Jod",
                  "Kalk - Richtig ist: Calcium oder Kalzium", "Kupfer"},
                QString("+-++-+"), 0, L{" 3 Elementsymbole", " 3 Namen der Elemente"}, L{}, L{});
        // Numbers are compared exactly; four right earn the praise even after
        // mistakes on earlier pages.
        dataRow("number syllables", 2, fieldsOf("Zahl", 4), I{}, L{"2", "10", "octa*okta", "tri"},
                L{" 2 ", "010", "okta", "Tri"},
                L{" 2 ", "010 - richtig ist: 10", "okta", "Tri - richtig ist: tri"},
                QString("+-+-"), 2, L{" 2 Zahlen", " 2 Zahlsilben"}, L{},
                L{"Zahl zur Zahlsilbe ", "Zahl zur Zahlsilbe ", "Zahlsilbe zur Zahl ",
                  "Zahlsilbe zur Zahl "});
        dataRow("a wrong syllable shows the stored list", 2, fieldsOf("Zahl", 4), I{},
                L{"1", "2", "*octa*okta*", "tri"}, L{"1", "2", "acht", "tri"},
                L{"1", "2", "acht - richtig ist: *octa*okta*", "tri"}, QString("++-+"), 2, L{}, L{},
                L{});
        dataRow("molar masses", 8, fieldsOf("Mol", 4), I{}, L{" 58.4", " 58.4", " 58.4", " 58.4"},
                L{"58,4 g", "58.40", "58", "58.44"},
                L{"58,4 g", "58.40", "58 - richtig ist:  58.4", "58.44 - richtig ist:  58.4"},
                QString("++--"), 7, L{"Stoff", "Formel", "Molare Masse in g/mol"},
                L{"Mol(0)", "but_Calc(0)", "Mol(1)", "but_Calc(1)", "Mol(2)", "but_Calc(2)",
                  "Mol(3)", "but_Calc(3)"},
                L{});
        dataRow(
            "substances", 11, fieldsOf("Substein", 6), I{1, 2, 3, 4, 5, 6}, L{},
            L{"NaCl", "CaCl", " CuSO4 ", "Calciumhydroxid", "aluminiumoxid", "Eisen(III)chlorid"},
            L{}, QString("+-++-+"), 11, L{" 3 Formeln der Stoffe", " 3 Namen der Stoffe"}, L{},
            L{});
        dataRow("amounts", 12, fieldsOf("Stoffm", 5), I{}, L{"0.5", "0.5", "0.5", "0.25", "0.5"},
                L{" 0,50 ", "5E-1", ".5", "2", "1/2"},
                L{" 0,50 ", "5E-1", ".5", "2 - richtig ist: 0.25", "1/2 - richtig ist: 0.5"},
                QString("+++--"), 12, L{}, L{}, L{});
    }

    void walksThePage() {
        QFETCH(int, number);
        QFETCH(QStringList, fields);
        QFETCH(QList<int>, order);
        QFETCH(QStringList, drawn);
        QFETCH(QStringList, typed);
        QFETCH(QStringList, shown);
        QFETCH(QString, marks);
        QFETCH(int, praise);
        QFETCH(QStringList, headings);
        QFETCH(QStringList, tabs);
        QFETCH(QStringList, names);
        Fixture f;
        TaskPage* page = f.flow.taskPage(number);
        SessionState& s = f.state();
        const auto show = [&] {
            if (order.isEmpty())
                f.flow.ShowPage(number);
            else
                f.showInOrder(number, order, int(order.size()));
        };
        show();
        const auto visibleLabels = [page] {
            QList<const QLabel*> out;
            for (const QLabel* l : page->findChildren<QLabel*>())
                if (l->isVisible())
                    out << l;
            return out;
        };
        const QList<const QLabel*> shownFirst = visibleLabels();
        QStringList labels;
        for (const QLabel* l : shownFirst)
            labels << l->text();
        for (const QString& heading : headings)
            QVERIFY2(labels.contains(heading), qPrintable(heading));
        for (int i = 0; i < names.size(); ++i)
            QVERIFY2(f.field(fields[i])->accessibleName().startsWith(names[i]),
                     qPrintable(fields[i]));
        // No text lies under a field, where it could not be read.
        for (const QString& name : fields) {
            const QLineEdit* w = f.field(name);
            const QRect box(w->mapTo(page, QPoint()), w->size());
            for (const QLabel* l : shownFirst)
                QVERIFY2(l->text().trimmed().isEmpty() ||
                             !box.intersects(QRect(l->mapTo(page, QPoint()), l->size())),
                         qPrintable(name + u' ' + l->text()));
        }
        QCOMPARE(focusName(), fields.first());
        QVERIFY(f.enterWalk(fields));
        if (!tabs.isEmpty()) {
            f.field(tabs.first())->setFocus();
            for (const QString& name : tabs) {
                QCOMPARE(focusName(), name);
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            }
            QCOMPARE(QApplication::focusWidget(), page->okButton());
        }

        for (int i = 0; i < drawn.size(); ++i)
            s.DrawnAnswers[i] = drawn[i];
        const int n = int(fields.size());
        QCOMPARE(f.check(number, fields, typed), int(marks.count(u'+')));
        QCOMPARE(s.TasksSoFar, n);
        QCOMPARE(f.tasks.text(), QStringLiteral(" %1").arg(n));
        QCOMPARE(f.correct.text(), QStringLiteral(" %1").arg(marks.count(u'+')));
        for (int i = 0; i < n; ++i) {
            QLineEdit* w = f.field(fields[i]);
            QCOMPARE(f.colour(w), marks[i] == u'+' ? Look::right() : Look::wrong());
            QCOMPARE(w->text(), shown.isEmpty() ? typed[i] : shown[i]);
            // The pages after the first lock what they checked.
            if (number != 1)
                QVERIFY(w->isReadOnly());
        }
        QCOMPARE(f.flow.praiseCalls(), 0);
        QVERIFY(!page->okButton()->isVisible());
        QCOMPARE(QApplication::focusWidget(), page->nextButton());
        // Checked once only.
        page->check();
        QCOMPARE(s.TasksSoFar, n);

        // Shown again: unmarked and empty, no correction left over; all right
        // praises by the page's own count.
        show();
        QCOMPARE(visibleLabels(), shownFirst);
        QStringList right;
        for (int i = 0; i < n; ++i) {
            QLineEdit* w = f.field(fields[i]);
            QVERIFY(!f.colour(w).isValid() && w->text().isEmpty() && !w->isReadOnly());
            right << firstAccepted(s.DrawnAnswers[i]);
        }
        QCOMPARE(f.check(number, fields, right), n);
        QCOMPARE(f.flow.praiseCalls(), praise ? 1 : 0);
        if (praise)
            QCOMPARE(f.flow.lastPraise(), praise);
    }

    void drawsFromTheLevel_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("answers"); // the first answers that are compared
        QTest::addColumn<QStringList>("basic");
        dataRow("element symbols", 1, 3, QStringList{"Na", "I", "Ca", "Fe", "Cu", "Cl"});
        dataRow("numbers", 2, 2, QStringList{"1", "2", "3", "8"});
        dataRow("molar masses", 8, 4, QStringList{" 58.4", " 18", " 98.1", " 0"});
        dataRow("amounts", 12, 5, QStringList{"0.1", "0.2", "0.3", "0.4", "0.5"});
    }

    // The normal level draws every basic record and nothing else; the expert
    // level draws from the others too.
    void drawsFromTheLevel() {
        QFETCH(int, number);
        QFETCH(int, answers);
        QFETCH(QStringList, basic);
        Fixture f;
        const QSet<QString> basicSet(basic.begin(), basic.end());
        QCOMPARE(f.drawnOver(number, 0, answers, 20), basicSet);
        // No record twice on one page.
        const QStringList last = f.drawn(0, answers);
        QCOMPARE(int(QSet<QString>(last.begin(), last.end()).size()), answers);
        QVERIFY(!basicSet.contains(f.drawnOver(number, 1, answers, 20)));
    }

    void elementsPairNamesAndSymbols() {
        Fixture f;
        const QStringList names{"Natrium", "Iod", "Calcium", "Eisen", "Kupfer", "Chlor"};
        const QStringList symbols{"Na", "I", "Ca", "Fe", "Cu", "Cl"};
        for (int round = 0; round < 20; ++round) {
            f.flow.ShowPage(1);
            std::set<QString> seen;
            for (int i = 0; i < 6; ++i) {
                const QString prompt = f.label("AnzS1", i)->text();
                QVERIFY((i < 3 ? names : symbols).contains(prompt));
                if (i < 3)
                    QCOMPARE(f.state().DrawnAnswers[i], symbols[names.indexOf(prompt)]);
                seen.insert(i < 3 ? prompt : names[symbols.indexOf(prompt)]);
            }
            QCOMPARE(int(seen.size()), 6); // all six basic ones, none twice
        }
    }

    void praisesOnlyAFaultlessFirstPage() {
        Fixture f;
        const SessionState& s = f.state();
        const QStringList fields = fieldsOf("EleSym", 3) + fieldsOf("Ele", 3);
        auto answerAll = [&] {
            f.flow.ShowPage(1);
            QStringList right;
            for (int i = 0; i < 6; ++i)
                right << firstAccepted(s.DrawnAnswers[i]);
            f.check(1, fields, right);
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
    }

    void massesShowFormulasAtTheNormalLevelOnly() {
        Fixture f;
        const QMap<QString, QString> massOf{
            {"NaCl", " 58.4"}, {"H2O", " 18"}, {"H2SO4", " 98.1"}, {"", " 0"}};
        f.flow.ShowPage(8);
        for (int k = 0; k < 4; ++k) {
            QVERIFY(f.named<QWidget>(QStringLiteral("lab_MolTerm"), k)->isVisible());
            QCOMPARE(f.state().DrawnAnswers[k], massOf.value(f.formula("lab_MolTerm", k), "?"));
            // The name as stored, padded to its width of 40.
            QCOMPARE(f.label("AnzS7", k)->text().size(), 40);
        }
        f.state().ExpertLevel = 1;
        f.flow.ShowPage(8);
        for (int k = 0; k < 4; ++k)
            QVERIFY(!f.named<QWidget>(QStringLiteral("lab_MolTerm"), k)->isVisible());
        // The amount page's question as stored, drawn with the formula set
        // (the normal level: the expert's one question has no formula).
        f.state().ExpertLevel = 0;
        f.flow.ShowPage(12);
        auto* question = qobject_cast<FormulaTextLabel*>(f.label("AnzS12", 0));
        QVERIFY(question && question->text().startsWith(QStringLiteral("Wie viel mol sind")));
        QVERIFY(question->drawnHtml().contains(QStringLiteral("H<sub>2</sub>O")));
    }

    void calculatorButtons() {
        Fixture f;
        f.flow.ShowPage(8);
        const auto press = [](QWidget* page, int i, const QString& expression,
                              bool takeOver = true) {
            ModalAnswer answer(QStringLiteral("OK"), expression, takeOver);
            page->findChild<QPushButton*>(QStringLiteral("but_Calc(%1)").arg(i))->click();
            return answer.sawCalculator() ? QString() : answer.text();
        };
        QWidget* mass = f.flow.taskPage(8);
        for (int k = 0; k < 4; ++k)
            f.field("Mol", k)->setText(QStringLiteral("alt"));
        QCOMPARE(press(mass, 1, QStringLiteral("22,99+35,45")), QString());
        // German settings: a comma, no leading blank; only its own field changes.
        QCOMPARE(f.field("Mol", 1)->text(), QStringLiteral("58,44"));
        QCOMPARE(f.field("Mol", 0)->text(), QStringLiteral("alt"));
        QCOMPARE(f.field("Mol", 2)->text(), QStringLiteral("alt"));
        // A result of 0, a cancelled calculator and a broken expression write nothing.
        press(mass, 0, QStringLiteral("3-3"));
        press(mass, 0, QStringLiteral("5"), false);
        press(mass, 0, QStringLiteral("2**"));
        QCOMPARE(f.field("Mol", 0)->text(), QStringLiteral("alt"));
        // The page reads the written text back as the value it shows.
        f.state().DrawnAnswers[1] = QStringLiteral(" 58.44");
        f.flow.taskPage(8)->okButton()->click();
        QCOMPARE(f.colour(f.field("Mol", 1)), Look::right());

        f.flow.ShowPage(12);
        QWidget* amount = f.flow.taskPage(12);
        for (int i = 4; i <= 8; ++i)
            press(amount, i, QStringLiteral("%1/4").arg(i));
        QCOMPARE(f.field("Stoffm", 0)->text(), QStringLiteral("1"));
        QCOMPARE(f.field("Stoffm", 1)->text(), QStringLiteral("1,25"));
        QCOMPARE(f.field("Stoffm", 4)->text(), QStringLiteral("2"));
        // The expert is teased, with an empty title, and the field stays.
        f.state().ExpertLevel = 1;
        QCOMPARE(press(amount, 6, QStringLiteral("1")),
                 QStringLiteral("Tut mir leid! Streber müssen im Kopf rechnen!"));
        QCOMPARE(f.field("Stoffm", 2)->text(), QStringLiteral("1,5"));
    }

    void equationsShowFiveLines() {
        Fixture f;
        f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
        // @2H2+@1O2=@2H2O: three slots, the second "+" hidden.
        QCOMPARE(f.formula("EText", 2), QStringLiteral("H2O"));
        QVERIFY(f.label("EText", 2)->text().contains(u"<sub>2</sub>"));
        QVERIFY(f.label("PlusL", 0)->isVisible());
        QVERIFY(!f.label("PlusR", 0)->isVisible());
        QVERIFY(!f.field("Einsetz", 3)->isVisible());
        QVERIFY(!f.label("EText", 3)->isVisible());
        // @1Fe=@1Fe: the right side goes to slot 2; both "+" hidden.
        QVERIFY(!f.label("PlusL", 1)->isVisible());
        QCOMPARE(f.formula("EText", 6), QStringLiteral("Fe"));
        QVERIFY(!f.label("PlusR", 1)->isVisible());
        // "@2 Na + @1 Cl2 = @2 NaCl" is read without its blanks.
        QCOMPARE(f.formula("EText", 13), QStringLiteral("Cl2"));

        // The stored answer of field i lies at i + 1.
        const QStringList expected{"2", "1", "2", "",  "1", "", "1", "",  "1", "2",
                                   "1", "2", "2", "1", "2", "", "1", "1", "1", "1"};
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(f.state().DrawnAnswers[i + 1], expected[i]);
            QCOMPARE(f.label("Einsetz2", i)->text(), expected[i]);
            QVERIFY(f.label("Einsetz2", i)->isHidden());
        }
        QCOMPARE(QApplication::focusWidget(), f.field("Einsetz", 0));
    }

    void equationsJudgedAsPairsOfTasks() {
        Fixture f;
        f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
        const QStringList typed{"2",   "",  " 2 ", "",  // empty field 1 means 1: right
                                "1",   "",  "",    "",  // right side filled with 1: right
                                "1",   "2", "1",   "3", // one wrong coefficient
                                "2.0", "1", "02",  "",  // as numbers: right
                                "",    "",  "",    ""}; // all four 1: right
        QCOMPARE(f.check(9, fieldsOf("Einsetz", 20), typed), 8);
        QCOMPARE(f.state().TasksSoFar, 10);
        QCOMPARE(f.flow.praiseCalls(), 0);
        QCOMPARE(f.field("Einsetz", 1)->text(), QStringLiteral("1"));
        QCOMPARE(f.field("Einsetz", 3)->text(), QString()); // hidden: left empty
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(f.colour(f.field("Einsetz", i)), i == 11 ? Look::wrong() : Look::right());
            QCOMPARE(f.label("Einsetz2", i)->isHidden(), i != 11);
        }
        // Shown again: no mark and no correction is left over.
        f.flow.ShowPage(9);
        for (int i = 0; i < 20; ++i)
            QVERIFY(!f.colour(f.field("Einsetz", i)).isValid() &&
                    f.label("Einsetz2", i)->isHidden());
    }

    void equationsPraisedAndWalkedByKeys() {
        Fixture f;
        f.showInOrder(9, {1, 2, 3, 4, 5}, 5);
        // Hidden here: 3, 5, 7 and 15. Enter skips them and leaves 19 out.
        QStringList walk;
        for (int i : {0, 1, 2, 4, 6, 8, 9, 10, 11, 12, 13, 14, 16, 17, 18})
            walk << QStringLiteral("Einsetz(%1)").arg(i);
        QVERIFY(f.enterWalk(walk));
        // Field 19 is reached with Tab; Enter there goes back to the first.
        f.field("Einsetz", 18)->setFocus();
        QTest::keyClick(f.field("Einsetz", 18), Qt::Key_Tab);
        QVERIFY(f.field("Einsetz", 19)->hasFocus());
        QTest::keyClick(f.field("Einsetz", 19), Qt::Key_Return);
        QVERIFY(f.field("Einsetz", 0)->hasFocus());
        const QStringList right = f.drawn(1, 20);
        QCOMPARE(f.check(9, fieldsOf("Einsetz", 20), right), 10);
        QCOMPARE(f.flow.lastPraise(), 8);
    }

    void equationLinesThePageCannotShowWhole() {
        Fixture f;
        f.state().ExpertLevel = 1;
        f.showInOrder(9, {6, 7, 1, 2, 3}, 7);
        // @1A=@1B+@1C+@1D: the fourth species finds no slot and is left out.
        QCOMPARE(f.formula("EText", 3), QStringLiteral("C"));
        QVERIFY(!f.field("Einsetz", 1)->isVisible());
        // The empty line: the two slots that are always there, with nothing in them.
        QVERIFY(f.field("Einsetz", 4)->isVisible());
        QCOMPARE(f.formula("EText", 4), QString());
        // Fields 4 and 6 were filled with 1 against an empty coefficient: wrong.
        QCOMPARE(f.check(9, fieldsOf("Einsetz", 20), f.drawn(1, 20)), 8);
        QCOMPARE(f.colour(f.field("Einsetz", 4)), Look::wrong());
    }

    void substancesAskMarkAndExplain() {
        Fixture f;
        f.showInOrder(11, {1, 2, 3, 4, 5, 6}, 6);
        const SessionState& s = f.state();
        // Names ask for formulas, formulas for names.
        QCOMPARE(f.label("Substanz", 2)->text(), QStringLiteral("Kupfer(II)-sulfat"));
        QVERIFY(!f.label("lab_SubsTerm", 2)->isVisible());
        QCOMPARE(f.formula("lab_SubsTerm", 3), QStringLiteral("Ca(OH)2"));
        QVERIFY(f.label("lab_SubsTerm", 3)->text().contains(u"<sub>2</sub>"));
        QVERIFY(!f.label("Substanz", 3)->isVisible());
        QCOMPARE(s.DrawnAnswers[0], QStringLiteral("NaCl"));
        QCOMPARE(s.DrawnAnswers[5], QStringLiteral("Eisen(III)-chlorid|Eisen(III)chlorid"));

        // The preview reads the formula; the field keeps what was typed.
        QTest::keyClicks(f.field("Substein", 0), QStringLiteral("NaCl2"));
        const auto inputs = f.flow.taskPage(11)->findChildren<TermInput*>();
        QVERIFY(inputs.first()->preview()->text().contains(u"<sub>2</sub>"));
        QCOMPARE(f.field("Substein", 0)->text(), QStringLiteral("NaCl2"));
        QVERIFY(!inputs.last()->preview()->isVisible()); // names have none

        QCOMPARE(f.check(11, fieldsOf("Substein", 6),
                         {"NaCl", "CaCl", "CuSO4", "Calciumhydroxid", "aluminiumoxid",
                          "Eisen(III)chlorid"}),
                 4);
        for (int i = 0; i < 6; ++i) {
            const bool right = i != 1 && i != 4;
            QCOMPARE(f.label("lab_SubCorrect", i)->isVisible(), !right);
            QCOMPARE(f.label("lab_SubsTermTitle", i)->isVisible(), !right);
        }
        QCOMPARE(f.formula("lab_SubCorrect", 1), QStringLiteral("CaCl2"));
        QCOMPARE(f.label("lab_SubCorrect", 4)->text(), QStringLiteral("Aluminiumoxid"));
        // The ions show why the formula reads so.
        QCOMPARE(f.formula("lab_SubsTermTitle", 1), QStringLiteral("CaCl2"));
        QVERIFY(f.label("lab_SubsTermTitle", 1)->text().contains(QStringLiteral("+ 2 Cl<sup>")));

        // "Weiter" clears the marks and puts the name tasks' ions away.
        f.label("lab_SubsTermTitle", 3)->show();
        f.flow.taskPage(11)->nextButton()->click();
        QCOMPARE(f.flow.PreviousPage(), 11);
        for (int i = 0; i < 6; ++i)
            QVERIFY(!f.colour(f.field("Substein", i)).isValid());
        QVERIFY(!f.label("lab_SubsTermTitle", 1)->isHidden());
        QVERIFY(f.label("lab_SubsTermTitle", 3)->isHidden());
        QVERIFY(f.label("lab_SubsTermTitle", 4)->isHidden());
    }

    void oddSubstanceRecordsAreShownAsTheyAre() {
        // A record without any lists (never passed through the start page) and
        // an empty record: the page shows what there is and judges as usual.
        TaskBank bank = typedBank();
        bank.Substances[7].Formula.reset();
        bank.Substances[7].SecondTerm.reset();
        Fixture f(std::move(bank));
        f.state().ExpertLevel = 1;
        f.showInOrder(11, {7, 8, 1, 2, 3, 4}, 8);
        QCOMPARE(f.label("Substanz", 0)->text(), QStringLiteral("Kaliumiodid"));
        QCOMPARE(f.state().DrawnAnswers[0], QString());
        QCOMPARE(f.label("Substanz", 1)->text(), QString());
        f.check(11, {"Substein(0)"}, {"KI"});
        QCOMPARE(f.colour(f.field("Substein", 0)), Look::wrong());
        QCOMPARE(f.colour(f.field("Substein", 1)), Look::right());
        QCOMPARE(f.label("lab_SubsTermTitle", 0)->text(), QString());
    }
    void numbers_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("right");
        // Molar masses are stored as the program writes a float (" 58.4"),
        // amounts as the bank writes them ("0.5").
        dataRow("comma", "58,4", " 58.4", true);
        dataRow("trailing zero", "58.40", " 58.4", true);
        dataRow("blanks and unit", "   58,4 g ", " 58.4", true);
        dataRow("rounded down", "58", " 58.4", false);
        dataRow("too precise", "58.44", " 58.4", false);
        dataRow("beyond float precision", "58.400001", " 58.4", true);
        dataRow("unit first", "g 58,4", " 58.4", false);
        dataRow("empty", "", " 58.4", false);
        dataRow("exponent", "5E-1", "0.5", true);
        dataRow("no leading zero", ".5", "0.50", true);
        dataRow("fraction", "1/2", "0.5", false);
        dataRow("blank in thousands", "1 000", "1000", true);
        dataRow("sign", "-0,5", "0.5", false);
        dataRow("letters read as 0", "zwei", "0", true);
        dataRow("calculator result", "0,0999999999999999", "0.10", true);
        dataRow("beyond float range reads as 0", QString(5000, u'9'), "0", true);
        dataRow("emoji first", QStringLiteral(u"\U0001F9EA 58,4"), " 58.4", false);
    }

    void numbers() {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(bool, right);
        QCOMPARE(NumberAnswer::matches(typed, stored), right);
    }

    void texts_data() {
        // Element symbols and page 2's numbers are compared exactly; element
        // names and number syllables are one of the key's "*" alternatives.
        QTest::addColumn<bool>("list");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("right");
        dataRow("exact, blanks around", false, "  Na ", "Na", true);
        dataRow("exact, case counts", false, "na", "Na", false);
        dataRow("exact, blank inside", false, "N a", "Na", false);
        dataRow("exact, leading zero", false, "02", "2", false);
        dataRow("exact, as decimal", false, "2.0", "2", false);
        dataRow("exact, empty", false, "", "2", false);
        dataRow("list, first form", true, "octa", "octa*okta", true);
        dataRow("list, second form, blanks", true, " Jod  ", "*Iod*Jod*", true);
        dataRow("list, single form", true, "Iod", "Iod", true);
        dataRow("list, case counts", true, "Okta", "octa*okta", false);
        dataRow("list, part of a form", true, "oct", "octa*okta", false);
        dataRow("list, two halves", true, "ta*ok", "octa*okta", false);
        dataRow("list, empty", true, "", "*Iod*Jod*", false);
        // The key is searched as text, so the whole list typed out is found too.
        dataRow("list, the whole list", true, "Iod*Jod", "*Iod*Jod*", true);
        dataRow("list, 5000 letters", true, QString(5000, u'a'), "octa*okta", false);
    }

    void texts() {
        QFETCH(bool, list);
        QFETCH(QString, typed);
        QFETCH(QString, key);
        QFETCH(bool, right);
        QCOMPARE(list ? AnswerRules::matchesListItem(typed, key)
                      : AnswerRules::matchesExactly(typed, key),
                 right);
    }

    void coefficients_data() {
        // Coefficients are read as leading numbers (see test_session); these
        // rows are the page's own: outer blanks, and slots left empty.
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("right");
        dataRow("blanks around", " 2 ", "2", true);
        dataRow("letter after", "2x", "2", true);
        dataRow("letter before", "x2", "2", false);
        dataRow("exponent", "5E-1", "1", false);
        dataRow("empty", "", "2", false);
        dataRow("5000 digits", QString(5000, u'2'), "2", false);
        // A hidden slot: nothing stored, nothing typed, both are 0.
        dataRow("empty slot", "", "", true);
    }

    void coefficients() {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        QFETCH(bool, right);
        QCOMPARE(EquationPage::coefficientRight(typed, expected), right);
    }

    void substances_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("right");
        const QString copper = QStringLiteral("Kupfer(II)-sulfat|Kupfer(II)sulfat");
        dataRow("blanks around", "  NaCl ", "NaCl", true);
        dataRow("case counts", "nacl", "NaCl", false);
        dataRow("second formula", "CaO2H2", "Ca(OH)2|CaO2H2", true);
        dataRow("second spelling", "Kupfer(II)sulfat", copper, true);
        dataRow("part of a spelling", "Kupfer", copper, false);
        dataRow("the whole key", copper, copper, false);
        dataRow("empty", "", "NaCl", false);
        // A record without a formula has an empty key; an empty answer equals it.
        dataRow("empty against empty key", "", "", true);
    }

    void substances() {
        QFETCH(QString, typed);
        QFETCH(QString, key);
        QFETCH(bool, right);
        QCOMPARE(SubstancePage::accepts(typed, key), right);
    }

    void namesCarryTheTask_data() {
        // The words of the task with the bank's padding gone, and after checking
        // the verdict with the right answer.
        QTest::addColumn<Namer>("namer");
        QTest::addColumn<QString>("expected");
        dataRow("Symbol", Namer([] { return TaskNames::symbolFor(u"Arsen   "); }),
                QStringLiteral("Symbol für Arsen"));
        dataRow("Name", Namer([] { return TaskNames::nameForSymbol(u" N "); }),
                QStringLiteral("Name zum Symbol N"));
        dataRow("Ion", Namer([] { return TaskNames::chargeOf(u"Oxid-Ion            "); }),
                QStringLiteral("Ladung des Oxid-Ions"));
        dataRow("kein -Ion", Namer([] { return TaskNames::chargeOf(u"Ammonium"); }),
                QStringLiteral("Ladung: Ammonium"));
        dataRow("Koeffizient", Namer([] { return TaskNames::coefficient(1, 2); }),
                QStringLiteral("Koeffizient 1 in Gleichung 2"));
        dataRow("Formel mit Tiefstellung",
                Namer([] { return TaskNames::nameForFormula(u"H2SO4"); }),
                QStringLiteral("Name zur Formel H\u2082SO\u2084"));
        dataRow("Ja zu Frage", Namer([] { return TaskNames::choiceFor(u"Ja", 3); }),
                QStringLiteral("Ja zu Frage 3"));
        dataRow("richtig", Namer([] { return TaskNames::verdict(true, u"Na"); }),
                QStringLiteral("richtig"));
        dataRow("falsch mit Lösung", Namer([] { return TaskNames::verdict(false, u"Natrium   "); }),
                QStringLiteral("falsch, richtig ist: Natrium"));
        dataRow("falsch mit Alternativen",
                Namer([] { return TaskNames::verdict(false, u"*tetra*tetr*"); }),
                QStringLiteral("falsch, richtig ist: tetra oder tetr"));
        dataRow("falsch ohne Lösung", Namer([] { return TaskNames::verdict(false, u"  "); }),
                QStringLiteral("falsch"));
    }

    void namesCarryTheTask() {
        QFETCH(Namer, namer);
        QFETCH(QString, expected);
        QCOMPARE(namer(), expected);
    }
};

QTEST_MAIN(TestTypedPages)
#include "test_typed_pages.moc"
