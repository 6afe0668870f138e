#include "ChoiceBanks.h"
#include "checker/BankChecker.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/PraisePanel.h"
#include "pages/DefinitionPage.h"
#include "pages/IonChargePage.h"
#include "pages/TermPage.h"
#include "session/TestFlow.h"

#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

namespace {

struct Fixture {
    QWidget holder;
    QLabel tasks, correct;
    GradeMark mark;
    TestFlow flow{&holder};
    TaskPage* definitions;
    TaskPage* terms;
    TaskPage* ions;

    explicit Fixture(TaskBank bank = sampleBank()) {
        qApp->setStyleSheet(Look::styleSheet());
        holder.resize(960, 520);
        definitions = new DefinitionPage(flow, &holder);
        terms = new TermPage(flow, &holder);
        ions = new IonChargePage(flow, &holder);
        for (TaskPage* p : {definitions, terms, ions}) {
            p->resize(960, 520);
            flow.addPage(p);
        }
        flow.setPraisePanel(new PraisePanel(&holder));
        flow.setScoreBoard(&tasks, &correct, &mark);
        flow.setBank(std::move(bank), QStringLiteral("labquiz.dat"));
        flow.setSlideStepMs(0);
        holder.show();
    }
    SessionState& state() { return flow.state(); }
    QListWidget* list(const QString& name) { return holder.findChild<QListWidget*>(name); }
    QLabel* label(const QString& name) { return holder.findChild<QLabel*>(name); }
    QRadioButton* choice(int i) {
        return holder.findChild<QRadioButton*>(QStringLiteral("ChooseS5_1(%1)").arg(i));
    }
};

QString selectedText(QListWidget* list) {
    const auto items = list->selectedItems();
    return items.isEmpty() ? QString() : items.first()->text();
}

int rowOf(QListWidget* list, const QString& text) {
    for (int r = 0; r < list->count(); ++r)
        if (list->item(r)->text() == text)
            return r;
    return -1;
}

// The colour a list shows beside the text of an item that is not selected.
QColor shownBackground(QListWidget* list) {
    const QImage shown = list->viewport()->grab().toImage();
    for (int r = 0; r < list->count(); ++r) {
        const QRect rect = list->visualItemRect(list->item(r));
        if (!list->item(r)->isSelected() && list->viewport()->rect().contains(rect))
            return shown.pixelColor(rect.right() - 3, rect.center().y());
    }
    return {};
}

QColor mark(QWidget* w) {
    return w->property("markColour").value<QColor>();
}

} // namespace

class TestChoicePages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void definitionPage();
    void termPage();
    void ionChargePage();
    void ionRowsWalkWithEnter();
    void smallBanksGetTheNotice_data();
    void smallBanksGetTheNotice();
};

void TestChoicePages::definitionPage() {
    Fixture f;
    f.flow.ShowPage(3);
    SessionState& s = f.state();
    const QStringList basicTerms{"Atom",      "Molekül",   "Ion",   "Element",
                                 "Oxidation", "Reduktion", "Säure", "Base"};
    QListWidget* lists[3];
    for (int i = 0; i < 3; ++i) {
        lists[i] = f.list(QStringLiteral("Auswahl(%1)").arg(i));
        QVERIFY(lists[i]);
        QVERIFY(basicTerms.contains(f.label(QStringLiteral("AnzS3(%1)").arg(i))->text()));
        QCOMPARE(lists[i]->count(), 7);
        QVERIFY(rowOf(lists[i], s.DrawnAnswers[i]) >= 0);
        QVERIFY(lists[i]->selectedItems().isEmpty());
        QVERIFY(lists[i]->isEnabled());
    }
    // The focus makes an item current, but a current item is no answer.
    QCOMPARE(QApplication::focusWidget(), lists[0]);
    // Enter walks the lists and wraps.
    f.holder.activateWindow();
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(lists[i], Qt::Key_Return);
        QVERIFY(lists[(i + 1) % 3]->hasFocus());
    }
    QVERIFY(lists[0]->selectedItems().isEmpty());

    // Right in list 0 (by a click), wrong in list 1, nothing in list 2.
    const int right0 = rowOf(lists[0], s.DrawnAnswers[0]);
    lists[0]->scrollToItem(lists[0]->item(right0));
    QTest::mouseClick(lists[0]->viewport(), Qt::LeftButton, {},
                      lists[0]->visualItemRect(lists[0]->item(right0)).center());
    QCOMPARE(selectedText(lists[0]), s.DrawnAnswers[0]);
    const int wrongRow = rowOf(lists[1], s.DrawnAnswers[1]) == 0 ? 1 : 0;
    const QString wrongText = lists[1]->item(wrongRow)->text();
    lists[1]->setCurrentRow(wrongRow);
    lists[2]->setCurrentRow(2, QItemSelectionModel::NoUpdate);
    const QStringList before2 = [&] {
        QStringList t;
        for (int r = 0; r < 7; ++r)
            t << lists[2]->item(r)->text();
        return t;
    }();

    f.definitions->okButton()->click();
    QCOMPARE(s.TasksSoFar, 3);
    QCOMPARE(s.CorrectSoFar, 1);
    QCOMPARE(f.tasks.text(), QStringLiteral(" 3"));
    for (QListWidget* l : lists)
        QVERIFY(!l->isEnabled());
    QCOMPARE(mark(lists[0]), Look::right());
    QCOMPARE(mark(lists[1]), Look::wrong());
    QCOMPARE(mark(lists[2]), Look::wrong());
    // The colour fills the list itself, under the program's style sheet.
    for (int i = 0; i < 3; ++i)
        QCOMPARE(shownBackground(lists[i]), i == 0 ? Look::right() : Look::wrong());
    // The wrong choice keeps its place, marked by the arrow; the right one
    // is selected.
    QCOMPARE(lists[1]->item(wrongRow)->text(), QStringLiteral("-> ") + wrongText);
    QCOMPARE(selectedText(lists[1]), s.DrawnAnswers[1]);
    QCOMPARE(lists[1]->count(), 7);
    // Nothing chosen: no arrow anywhere, the right one selected.
    for (int r = 0; r < 7; ++r)
        QCOMPARE(lists[2]->item(r)->text(), before2[r]);
    QCOMPARE(selectedText(lists[2]), s.DrawnAnswers[2]);
    QCOMPARE(f.flow.praiseCalls(), 0);
    QVERIFY(!f.definitions->okButton()->isVisible());
    QCOMPARE(QApplication::focusWidget(), f.definitions->nextButton());

    // Shown again: emptied first, unmarked and enabled. The terms stay
    // basic ones while the wrong definitions come from the whole table.
    const QString katalysator = f.flow.bank().Definitions[9].Definition;
    bool expertDefinitionSeen = false;
    for (int round = 0; round < 15; ++round) {
        f.flow.ShowPage(3);
        for (int i = 0; i < 3; ++i) {
            QListWidget* l = lists[i];
            QVERIFY(basicTerms.contains(f.label(QStringLiteral("AnzS3(%1)").arg(i))->text()));
            QCOMPARE(l->count(), 7);
            QVERIFY(l->isEnabled() && !mark(l).isValid() && l->selectedItems().isEmpty());
            for (int r = 0; r < 7; ++r)
                QVERIFY(!l->item(r)->text().startsWith(QStringLiteral("-> ")));
            expertDefinitionSeen = expertDefinitionSeen || rowOf(l, katalysator) >= 0;
        }
    }
    QVERIFY(expertDefinitionSeen);
    // All right: praised with the page's number.
    for (int i = 0; i < 3; ++i)
        lists[i]->setCurrentRow(rowOf(lists[i], s.DrawnAnswers[i]));
    f.definitions->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 4);
    QCOMPARE(f.flow.lastPraise(), 3);
    QCOMPARE(f.flow.lastJingle(), QStringLiteral("T255 L16 gdgdg"));
}

void TestChoicePages::termPage() {
    Fixture f;
    f.flow.ShowPage(4);
    SessionState& s = f.state();
    QListWidget* lists[4];
    for (int k = 0; k < 4; ++k) {
        lists[k] = f.list(QStringLiteral("AuswahlS4(%1)").arg(k));
        QVERIFY(lists[k]);
        // All twelve terms in table order, expert ones included.
        QCOMPARE(lists[k]->count(), 12);
        QCOMPARE(lists[k]->item(0)->text(), TaskBank::fixedWidth(u"Atom", 20));
        QCOMPARE(lists[k]->item(11)->text(), TaskBank::fixedWidth(u"Emulsion", 20));
        QVERIFY(lists[k]->selectedItems().isEmpty());
        QLabel* correction = f.label(QStringLiteral("RichtigVon(%1)").arg(k));
        QVERIFY(!correction->isVisible());
        QCOMPARE(correction->text(),
                 QStringLiteral("Korrekter Begriff ist:  ") + s.DrawnAnswers[k].trimmed());
        QVERIFY(rowOf(lists[k], s.DrawnAnswers[k]) < 8); // a basic term is asked
    }
    // A definition shows as it stands; a formula in it gets its superscript.
    const BankTable<DefinitionRecord>& table = f.flow.bank().Definitions;
    for (int k = 0; k < 4; ++k) {
        int entry = 1;
        while (table[entry].Term != s.DrawnAnswers[k])
            ++entry;
        const QString definition = table[entry].Definition.trimmed();
        const QString shown = f.label(QStringLiteral("AnzS4(%1)").arg(k))->text();
        if (definition.contains(u'^'))
            QVERIFY2(shown.contains(QStringLiteral("H<sup>+</sup>")), qPrintable(shown));
        else
            QCOMPARE(shown, definition);
    }
    QCOMPARE(QApplication::focusWidget(), lists[0]);
    // Typing the first letters picks the term.
    QTest::keyClicks(lists[0], QStringLiteral("Kat"));
    QCOMPARE(selectedText(lists[0]), TaskBank::fixedWidth(u"Katalysator", 20));

    // Right in 0 and 1, wrong in 2, nothing in 3.
    lists[0]->setCurrentRow(rowOf(lists[0], s.DrawnAnswers[0]));
    lists[1]->setCurrentRow(rowOf(lists[1], s.DrawnAnswers[1]));
    lists[2]->setCurrentRow(rowOf(lists[2], s.DrawnAnswers[2]) == 0 ? 1 : 0);
    f.terms->okButton()->click();
    QCOMPARE(s.TasksSoFar, 4);
    QCOMPARE(s.CorrectSoFar, 2);
    const bool right[4] = {true, true, false, false};
    for (int k = 0; k < 4; ++k) {
        QVERIFY(!lists[k]->isEnabled());
        QCOMPARE(mark(lists[k]), right[k] ? Look::right() : Look::wrong());
        QCOMPARE(f.label(QStringLiteral("RichtigVon(%1)").arg(k))->isVisible(), !right[k]);
    }
    QCOMPARE(f.flow.praiseCalls(), 0);

    // Again, all right: praised with 4; the lists are not doubled.
    f.flow.ShowPage(4);
    for (int k = 0; k < 4; ++k) {
        QCOMPARE(lists[k]->count(), 12);
        QVERIFY(!mark(lists[k]).isValid());
        QVERIFY(!f.label(QStringLiteral("RichtigVon(%1)").arg(k))->isVisible());
        lists[k]->setCurrentRow(rowOf(lists[k], s.DrawnAnswers[k]));
    }
    f.terms->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 6);
    QCOMPARE(f.flow.lastPraise(), 4);
}

void TestChoicePages::ionChargePage() {
    Fixture f;
    f.flow.ShowPage(5);
    SessionState& s = f.state();
    const QStringList captions{"-3", "-2", "-1", "0", "+1", "+2", "+3"};
    for (int i = 0; i < 28; ++i) {
        QVERIFY(f.choice(i));
        QCOMPARE(f.choice(i)->text(), captions[i % 7]);
        QCOMPARE(f.choice(i)->isChecked(), i % 7 == 0); // "-3" in every row
    }
    for (int k = 0; k < 4; ++k)
        QCOMPARE(f.label(QStringLiteral("AnzS5(%1)").arg(k))->text().size(), 20);
    // One choice per row: a click in row 1 leaves row 0 alone.
    f.choice(9)->click();
    QVERIFY(f.choice(9)->isChecked() && !f.choice(7)->isChecked() && f.choice(0)->isChecked());

    // Known answers: Natrium +1, Nitrid -3, Aluminium +3, Oxid -2.
    s.DrawnAnswers[0] = "4";
    s.DrawnAnswers[1] = "7";
    s.DrawnAnswers[2] = "20";
    s.DrawnAnswers[3] = "22";
    f.choice(4)->click();  // right
    f.choice(7)->click();  // right: -3, as drawn
    f.choice(16)->click(); // wrong: -1
    // row 3 left at -3: wrong
    f.ions->okButton()->click();
    QCOMPARE(s.TasksSoFar, 4);
    QCOMPARE(s.CorrectSoFar, 2);
    QCOMPARE(mark(f.choice(4)), Look::right());
    QCOMPARE(mark(f.choice(7)), Look::right());
    QVERIFY(!mark(f.label("AnzS5(0)")).isValid());
    // Wrong rows: the choice in red letters, the right charge checked (not
    // green), the ion's name red.
    QCOMPARE(f.choice(16)->property("markTextColour").value<QColor>(), Look::wrong());
    QCOMPARE(f.choice(21)->property("markTextColour").value<QColor>(), Look::wrong());
    QVERIFY(f.choice(20)->isChecked() && !f.choice(16)->isChecked());
    QVERIFY(f.choice(22)->isChecked() && !f.choice(21)->isChecked());
    QVERIFY(!mark(f.choice(20)).isValid());
    QCOMPARE(mark(f.label("AnzS5(2)")), Look::wrong());
    QCOMPARE(mark(f.label("AnzS5(3)")), Look::wrong());
    for (int i = 0; i < 28; ++i)
        QVERIFY(f.choice(i)->isEnabled());
    QCOMPARE(f.flow.praiseCalls(), 0);

    // Shown again: marks gone, every row back at "-3"; all right praises.
    f.flow.ShowPage(5);
    for (int i = 0; i < 28; ++i) {
        QVERIFY(!mark(f.choice(i)).isValid());
        QVERIFY(!f.choice(i)->property("markTextColour").value<QColor>().isValid());
        QCOMPARE(f.choice(i)->isChecked(), i % 7 == 0);
    }
    for (int k = 0; k < 4; ++k)
        f.choice(s.DrawnAnswers[k].toInt())->click();
    f.ions->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 6);
    QCOMPARE(f.flow.lastPraise(), 5);
}

void TestChoicePages::ionRowsWalkWithEnter() {
    Fixture f;
    f.flow.ShowPage(5);
    f.holder.activateWindow();
    QCOMPARE(QApplication::focusWidget(), f.choice(0));
    for (int i = 0; i < 28; ++i) {
        f.choice(i)->setFocus();
        QVERIFY(f.choice(i)->hasFocus());
        QTest::keyClick(f.choice(i), Qt::Key_Return);
        const int row = i / 7;
        const int expected = i == 15 ? 15 : 7 * ((row + 1) % 4);
        QVERIFY2(f.choice(expected)->hasFocus(), qPrintable(QString::number(i)));
    }
    // Other keys are the buttons' own: Space checks the focused one.
    f.choice(10)->setFocus();
    QTest::keyClick(f.choice(10), Qt::Key_Space);
    QVERIFY(f.choice(10)->isChecked());
}

void TestChoicePages::smallBanksGetTheNotice_data() {
    QTest::addColumn<QList<TextPair>>("definitions");
    QTest::addColumn<int>("definitionBasic");
    QTest::addColumn<QList<TextPair>>("ions");
    QTest::addColumn<bool>("expert");
    QTest::addColumn<QList<int>>("refused"); // pages that show the notice
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("checkerNote");

    const QList<TextPair> defs = sampleDefinitions();
    QTest::newRow("sample bank") << defs << 8 << sampleIons() << false << QList<int>{} << ""
                                 << "";
    QTest::newRow("three basic definitions")
        << defs << 3 << sampleIons() << false << QList<int>{3, 4} << "nur 3 Einträge"
        << "Vor dem \"ææ\" stehen nur 3 verschiedene Einträge";
    QTest::newRow("nine different definitions") << defs.mid(0, 9) << 8 << sampleIons() << false
                                                << QList<int>{3} << "nur 9 verschiedene Erklärungen"
                                                << "nur 9 verschiedene Erklärungen";
    QList<TextPair> badIons = sampleIons();
    badIons[2].second = "+4";
    QTest::newRow("charge +4 in the basic part")
        << defs << 8 << badIons << false << QList<int>{5} << "„Magnesium-Ion“ (4)"
        << "Die Ladung 4 liegt nicht zwischen -3 und +3.";
    badIons = sampleIons();
    badIons[7].second = "-5";
    QTest::newRow("charge -5 among the expert ions, normal level")
        << defs << 8 << badIons << false << QList<int>{} << ""
        << "Die Ladung -5 liegt nicht zwischen -3 und +3.";
    QTest::newRow("charge -5 among the expert ions, expert level")
        << defs << 8 << badIons << true << QList<int>{5} << "„Ammonium-Ion“ (-5)"
        << "Die Ladung -5 liegt nicht zwischen -3 und +3.";
}

void TestChoicePages::smallBanksGetTheNotice() {
    QFETCH(QList<TextPair>, definitions);
    QFETCH(int, definitionBasic);
    QFETCH(QList<TextPair>, ions);
    QFETCH(bool, expert);
    QFETCH(QList<int>, refused);
    QFETCH(QString, reason);
    QFETCH(QString, checkerNote);
    Fixture f(choiceBank(definitions, definitionBasic, ions, 6));
    f.state().ExpertLevel = expert ? 1 : 0;
    for (int page : {3, 4, 5}) {
        TaskPage* p = f.flow.taskPage(page);
        f.flow.ShowPage(page);
        const QString notice = p->bankNotice();
        QCOMPARE(!notice.isEmpty(), refused.contains(page));
        if (notice.isEmpty()) {
            QVERIFY(p->okButton()->isVisible());
            continue;
        }
        QVERIFY2(notice.contains(reason), qPrintable(notice));
        QVERIFY(notice.startsWith(QStringLiteral("Diese Seite kann nicht gestellt werden.")));
        QVERIFY(!p->okButton()->isVisible());
        QVERIFY(p->nextButton()->isVisible());
    }
    // The teacher's check reports the same bank.
    QStringList lines = syntheticBank(6, 2);
    replaceSection(lines, QStringLiteral("Definitionen"), definitions, definitionBasic);
    replaceSection(lines, QStringLiteral("Ionen"), ions, 6);
    const BankChecker::Report report =
        BankChecker::check(lines.join(u'\n'), QStringLiteral("labquiz.dat"), nullptr);
    const QString all = report.lines().join(u'\n');
    if (checkerNote.isEmpty())
        QVERIFY2(!all.contains(QStringLiteral("Definitionen")) && !all.contains("Ladung"),
                 qPrintable(all));
    else
        QVERIFY2(all.contains(checkerNote), qPrintable(all));
}

QTEST_MAIN(TestChoicePages)
#include "test_choice_pages.moc"
