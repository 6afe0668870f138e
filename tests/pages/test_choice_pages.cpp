// Pages 3, 4, 5 and 6: the rules for finding, marking and ordering list items,
// the draws of wrong definitions and charge buttons as data rows, then one
// widget test per page and the notice for banks too small for them; page 6
// judged by its yes/no buttons and closing the test.
#include "TestSupport.h"
#include "controls/FormulaTextLabel.h"
#include "controls/Look.h"
#include "pages/ChoiceRules.h"
#include "pages/ComprehensionPage.h"
#include "pages/DefinitionPage.h"
#include "pages/IonChargePage.h"
#include "pages/TermPage.h"
#include "session/CandidateRecords.h"
#include "session/NamesFile.h"

#include <QListWidget>
#include <QRadioButton>
#include <QScrollBar>
#include <QSet>
#include <set>

namespace {

QStringList labelTexts(const QWidget* page) {
    QStringList texts;
    for (const QLabel* l : page->findChildren<QLabel*>())
        texts << l->text();
    return texts;
}

// Term and definition; the first eight are basic entries.
const QStringList kDefinitions{
    "Atom",        "Kleinstes Teilchen eines Elements.",
    "Molekül",     "Teilchen aus mehreren Atomen.",
    "Ion",         "Geladenes Teilchen.",
    "Element",     "Reinstoff aus einer Atomsorte.",
    "Oxidation",   "Abgabe von Elektronen.",
    "Reduktion",   "Aufnahme von Elektronen.",
    "Säure",       "Stoff, dessen Teilchen Protonen (H^+) abgeben können.",
    "Base",        "Stoff, dessen Teilchen Protonen (H^+) aufnehmen können.",
    "Katalysator", "Stoff, der eine Reaktion beschleunigt.",
    "Isotop",      "Atomart mit anderer Neutronenzahl.",
    "Legierung",   "Gemisch von Metallen.",
    "Emulsion",    "Gemisch nicht mischbarer Flüssigkeiten."};

// Ion name and charge line; the first six are basic entries.
const QStringList kIons{"Natrium-Ion", "+1", "Chlorid-Ion",   "-1", "Magnesium-Ion", "+2",
                        "Oxid-Ion",    "-2", "Aluminium-Ion", "+3", "Nitrid-Ion",    "-3",
                        "Sulfat-Ion",  "-2", "Ammonium-Ion",  "+1"};

TaskBank choiceBank(const QStringList& definitions, int basicDefinitions,
                    const QStringList& ions = kIons) {
    return bankWith({{TaskBank::DefinitionsSection, definitions.mid(0, 2 * basicDefinitions),
                      definitions.mid(2 * basicDefinitions)},
                     {TaskBank::IonChargesSection, ions.mid(0, 12), ions.mid(12)}});
}

TaskBank sampleBank() {
    return choiceBank(kDefinitions, 8);
}

// Definitions with generated terms ("Begriff 1", ...), all basic.
TaskBank definitionBank(const QStringList& texts) {
    QStringList lines;
    for (int i = 0; i < texts.size(); ++i)
        lines << QStringLiteral("Begriff %1").arg(i + 1) << texts[i];
    return choiceBank(lines, int(texts.size()));
}

// Ten different definitions, numbered in their text.
QStringList tenTexts() {
    QStringList texts;
    for (int i = 1; i <= 10; ++i)
        texts << QStringLiteral("Erklärung Nummer %1 eines Begriffs.").arg(i);
    return texts;
}

QString padded(const QString& text, int width) {
    return TaskBank::fixedWidth(text, width);
}

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

// Rows of a list shown whole, without scrolling.
int rowsInView(const QListWidget* list) {
    int n = 0;
    for (int r = 0; r < list->count(); ++r)
        n += list->viewport()->rect().contains(list->visualItemRect(list->item(r))) ? 1 : 0;
    return n;
}

// All three choice pages on one flow.
struct Fixture : PageFixture<DefinitionPage> {
    TermPage* terms = add<TermPage>();
    IonChargePage* ions = add<IonChargePage>();
    explicit Fixture(TaskBank bank = sampleBank()) : PageFixture(std::move(bank)) {}
    QListWidget* list(const char* name, int i) {
        return named<QListWidget>(QLatin1String(name), i);
    }
    QLabel* label(const char* name, int i) { return named<QLabel>(QLatin1String(name), i); }
    QRadioButton* choice(int i) { return named<QRadioButton>(QStringLiteral("ChooseS5_1"), i); }
};

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
    ResultPlaces resultPlaces() const override { return {}; }
    QStringList lines;

private:
    NamesFile m_names{QString()};
};

// Page 6 on eight basic statements (odd ones true) and four expert ones.
struct StatementFixture : PageFixture<ComprehensionPage> {
    LogOnly records;
    StatementFixture() : PageFixture(bankOf(syntheticBank(8, 4))) {
        flow.setRecords(&records);
        state().CandidateName = QStringLiteral("Anna");
        state().TestDate = QStringLiteral("03-24-2003");
        state().StartTime = QStringLiteral("10:15:02");
        flow.ShowPage(6);
    }
    QAbstractButton* choice(int i) { return named<QAbstractButton>(QStringLiteral("JaNein1"), i); }
    QColor word(int i) {
        return named<QLabel>(QStringLiteral("AA"), i)->property("markTextColour").value<QColor>();
    }
    QLabel* statement(int k) { return named<QLabel>(QStringLiteral("AnzS6"), k); }
    int expected(int k) { return ComprehensionPage::expectedButton(state().DrawnAnswers[k]); }
};

} // namespace

class TestChoicePages : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { Look::install(); }
    void findsListItems_data();
    void findsListItems();
    void selectsListItems();
    void marksTheWrongChoice_data();
    void marksTheWrongChoice();
    void showsListsInDictionaryOrder();
    void drawsWrongDefinitions_data();
    void drawsWrongDefinitions();
    void buildsSevenDistinctItemsPerList();
    void placesChargesOnButtons_data();
    void placesChargesOnButtons();
    void definitionPage();
    void termPage();
    void ionChargePage();
    void smallBanksGetTheNotice_data();
    void smallBanksGetTheNotice();
    void pairsOfYesAndNo();
    void drawsSixDistinctStatementsOfTheLevel();
    void readsTheExpectedButton_data();
    void readsTheExpectedButton();
    void judgesByButton_data();
    void judgesByButton();
};

void TestChoicePages::findsListItems_data() {
    // Items are found, and choices judged, by their text without outer
    // blanks and in any case.
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("found");
    const QStringList defs{padded("Teilchen aus Atomen.", 120), padded("Geladenes Teilchen.", 120),
                           padded("Reinstoff.", 120)};
    dataRow("padded item, trimmed text", defs, "Geladenes Teilchen.", 1);
    dataRow("padded text, padded item", defs, defs[2], 2);
    dataRow("case ignored", defs, "REINSTOFF.", 2);
    dataRow("leading blanks ignored", defs, "   Reinstoff.", 2);
    dataRow("part of an item", defs, "Teilchen", -1);
    dataRow("empty text", defs, "", -1);
    dataRow("umlaut in capitals", QStringList{"Base", "Säure"}, "SÄURE", 1);
    dataRow("first of two equal", QStringList{"Atom", "Ion", "ion  "}, "ION", 1);
    dataRow("arrowed item is another text", QStringList{"-> Ion", "Atom"}, "Ion", -1);
}

void TestChoicePages::findsListItems() {
    QFETCH(QStringList, items);
    QFETCH(QString, text);
    QFETCH(int, found);
    QCOMPARE(ChoiceRules::findListItem(items, text), found);
    // A chosen item is judged by the same comparison.
    for (int i = 0; i < (found < 0 ? items.size() : found + 1); ++i)
        QCOMPARE(ChoiceRules::sameChoice(items[i], text), i == found);
}

void TestChoicePages::selectsListItems() {
    QListWidget list;
    list.addItems({"Atom", "Molekül", "Ion"});
    // Found: that row is current and selected.
    QCOMPARE(ChoiceRules::SelectListItem(&list, u" molekül "), 1);
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(selectedText(&list), QStringLiteral("Molekül"));
    // Not found: row 0 is selected and nothing is returned.
    QCOMPARE(ChoiceRules::SelectListItem(&list, u"Salz"), -1);
    QCOMPARE(selectedText(&list), QStringLiteral("Atom"));
    QListWidget empty;
    QCOMPARE(ChoiceRules::SelectListItem(&empty, u"Atom"), -1);
    QCOMPARE(ChoiceRules::SelectListItem(nullptr, u"Atom"), -1);
}

void TestChoicePages::marksTheWrongChoice_data() {
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("row");
    const QStringList seven{"A", "B", "C", "D", "E", "F", "G"};
    dataRow("first row", seven, "A", 0);
    dataRow("last of seven", seven, "G", 6);
    dataRow("eighth row is not searched", seven + QStringList{"H"}, "H", -1);
    dataRow("nothing chosen, no arrow", seven, "", -1);
    // The choice is an item's own text, so it is compared exactly.
    dataRow("other case is another item", seven, "c", -1);
    dataRow("padding counts", QStringList{"Ion   ", "Ion"}, "Ion", 1);
    dataRow("first of two equal", QStringList{"X", "Y", "X"}, "X", 0);
}

void TestChoicePages::marksTheWrongChoice() {
    QFETCH(QStringList, items);
    QFETCH(QString, chosen);
    QFETCH(int, row);
    QCOMPARE(ChoiceRules::arrowPosition(items, chosen), row);
}

void TestChoicePages::showsListsInDictionaryOrder() {
    const QString long120 = padded("Teilreaktion, bei der ...", 120);
    QCOMPARE(
        ChoiceRules::displayOrder(
            {long120, "Ätzende Lösung.", "base", "Äquivalent.", "Atom", "Öl", "Ober"}),
        (QStringList{"Äquivalent.", "Atom", "Ätzende Lösung.", "base", "Ober", "Öl", long120}));
    QCOMPARE(ChoiceRules::sortKey(u" Straße "), QStringLiteral("strasse"));
}

void TestChoicePages::drawsWrongDefinitions_data() {
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QList<int>>("drawn");
    QTest::addColumn<QList<double>>("values");
    // Entry numbers of the wrong definitions in the order they are taken;
    // empty where only their properties are checked.
    QTest::addColumn<QList<int>>("order");
    QTest::addColumn<int>("count");
    using I = QList<int>;
    using D = QList<double>;
    const QStringList twelve = tenTexts() + QStringList{"Elfte Erklärung.", "Zwölfte Erklärung."};
    // Of 12 entries: 0.4 -> 5, again 5 (taken: drawn anew), 0.5 -> 6, 0.6 -> 7,
    // 0.7 -> 9, 0.8 -> 10, 0.9 -> 11.
    dataRow("in the order drawn, taken ones drawn again", twelve, I{1, 2, 3, 4},
            D{0.4, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}, I{5, 6, 7, 9, 10, 11}, 6);
    // The drawn entries are excluded by number, however the source falls.
    dataRow("drawn entries never offered", twelve, I{5, 6, 7, 8}, D{0.05, 0.45, 0.55, 0.65, 0.75},
            I{}, 6);
    QStringList copyOfFirst = twelve;
    copyOfFirst[8] = copyOfFirst[0]; // entry 9 repeats the first drawn definition
    dataRow("copy of a drawn definition kept out", copyOfFirst, I{1, 2, 3, 4},
            D{0.7, 0.4, 0.5, 0.6, 0.75, 0.8, 0.9, 0.95}, I{5, 6, 7, 10, 11, 12}, 6);
    QStringList twins = twelve;
    twins[5] = twins[4]; // entries 5 and 6 read the same
    dataRow("equal wrong definitions count once", twins, I{1, 2, 3, 4},
            D{0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 0.95}, I{5, 7, 9, 10, 11, 12}, 6);
    dataRow("source stuck on one entry", twelve, I{1, 2, 3, 4}, D{0.5}, I{}, 6);
    // Nine texts leave five beside four drawn ones: the list stays short
    // instead of drawing forever.
    dataRow("too few texts", tenTexts().mid(0, 9), I{1, 2, 3, 4}, D{0.3, 0.6, 0.9}, I{}, 5);
}

void TestChoicePages::drawsWrongDefinitions() {
    QFETCH(QStringList, texts);
    QFETCH(QList<int>, drawn);
    QFETCH(QList<double>, values);
    QFETCH(QList<int>, order);
    QFETCH(int, count);
    const TaskBank bank = definitionBank(texts);
    const BankTable<DefinitionRecord>& table = bank.Definitions;
    QCOMPARE(table.count(), int(texts.size()));
    FixedRandomSource source(values);
    const int n = table.count();
    const QStringList wrong = DefinitionPage::wrongDefinitions(table, drawn, [&] {
        return RandomBetween(source, n, drawn[0], drawn[1], drawn[2], drawn[3]);
    });
    QCOMPARE(int(wrong.size()), count);
    QSet<QString> drawnTexts;
    for (int k : drawn)
        drawnTexts.insert(table[k].Definition);
    QSet<QString> seen;
    for (const QString& w : wrong) {
        QCOMPARE(w.size(), TaskBank::kDefinitionWidth); // as stored, padded
        QVERIFY2(!drawnTexts.contains(w), qPrintable(w));
        QVERIFY2(!seen.contains(w), qPrintable(w));
        seen.insert(w);
    }
    if (!order.isEmpty()) {
        QStringList expected;
        for (int r : order)
            expected << table[r].Definition;
        QCOMPARE(wrong, expected);
    }
}

void TestChoicePages::buildsSevenDistinctItemsPerList() {
    const TaskBank bank = sampleBank();
    const QList<int> drawn{3, 1, 7, 2};
    // The source offers only entries 5, 9, 10 and 11; the rest of a list
    // comes from the first free entries (4, 6).
    FixedRandomSource source({0.45, 0.75, 0.8, 0.9});
    const DefinitionPage::Draw d = DefinitionPage::drawFor(
        bank, drawn, [&] { return RandomBetween(source, bank.Definitions.count(), 3, 1, 7, 2); });
    const QStringList terms{"Ion", "Atom", "Säure"};
    // Every list starts its used texts afresh, so all three hold the same
    // wrong definitions, only perhaps in another order.
    QSet<QString> wrongSet;
    for (int r : {4, 5, 6, 9, 10, 11})
        wrongSet.insert(bank.Definitions[r].Definition);
    for (int i = 0; i < DefinitionPage::kQuestions; ++i) {
        const DefinitionRecord& r = bank.Definitions[drawn[i]];
        QCOMPARE(d.terms[i], terms[i]);
        QCOMPARE(d.answers[i], r.Definition);
        QCOMPARE(int(d.choices[i].size()), 7);
        QCOMPARE(d.choices[i].first(), r.Definition); // added first
        const QStringList wrong = d.choices[i].mid(1);
        QCOMPARE(QSet<QString>(wrong.begin(), wrong.end()), wrongSet);
    }
    // Texts that read the same once padded count once.
    QCOMPARE(DefinitionPage::distinctDefinitions(bank.Definitions), 12);
    QStringList texts = tenTexts();
    texts[3] = texts[2] + QStringLiteral("   ");
    texts << texts[0];
    QCOMPARE(DefinitionPage::distinctDefinitions(definitionBank(texts).Definitions), 9);
}

void TestChoicePages::placesChargesOnButtons_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("charge");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("fits");
    dataRow("first row, -3", 0, -3, 0, true);
    dataRow("first row, +3", 0, 3, 6, true);
    dataRow("second row, 0", 1, 0, 10, true);
    dataRow("last button", 3, 3, 27, true);
    // Charges beyond the range leave the row: the bank must not hold them.
    dataRow("+4 past the last button", 3, 4, 28, false);
    dataRow("-4 into the row above", 1, -4, 6, false);
}

void TestChoicePages::placesChargesOnButtons() {
    QFETCH(int, row);
    QFETCH(int, charge);
    QFETCH(int, button);
    QFETCH(bool, fits);
    QCOMPARE(IonChargePage::answerButton(row, charge), button);
    QCOMPARE(IonChargePage::chargeFits(charge), fits);
    if (fits)
        QCOMPARE(IonChargePage::caption(button % 7),
                 charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge));
    // The draw stores each row's answer button: +1, -3, +3, -2 in rows 0..3.
    const IonChargePage::Draw d = IonChargePage::drawFor(sampleBank(), {1, 6, 5, 4});
    QCOMPARE(d.names[0], padded("Natrium-Ion", 20)); // shown as stored
    QCOMPARE(QStringList(d.answers.begin(), d.answers.end()), (QStringList{"4", "7", "20", "22"}));
}

void TestChoicePages::definitionPage() {
    Fixture f;
    f.flow.ShowPage(3);
    SessionState& s = f.state();
    const QStringList basicTerms{"Atom",      "Molekül",   "Ion",   "Element",
                                 "Oxidation", "Reduktion", "Säure", "Base"};
    QListWidget* lists[3];
    for (int i = 0; i < 3; ++i) {
        lists[i] = f.list("Auswahl", i);
        QVERIFY(basicTerms.contains(f.label("AnzS3", i)->text()));
        QCOMPARE(lists[i]->count(), 7);
        QVERIFY(rowOf(lists[i], s.DrawnAnswers[i]) >= 0);
        QVERIFY(lists[i]->selectedItems().isEmpty());
    }
    // All seven definitions of every list show at once, on the card's size.
    for (QListWidget* l : lists)
        QTRY_COMPARE(rowsInView(l), 7);
    // The focus makes an item current, but a current item is no answer.
    QCOMPARE(QApplication::focusWidget(), lists[0]);
    QVERIFY(f.enterWalk({"Auswahl(0)", "Auswahl(1)", "Auswahl(2)"}));
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

    f.page->okButton()->click();
    QCOMPARE(s.TasksSoFar, 3);
    QCOMPARE(s.CorrectSoFar, 1);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!lists[i]->isEnabled());
        QCOMPARE(f.colour(lists[i]), i == 0 ? Look::right() : Look::wrong());
        // The colour fills the list itself, under the program's own style.
        QCOMPARE(shownBackground(lists[i]), i == 0 ? Look::right() : Look::wrong());
    }
    // The wrong choice keeps its place, marked by the arrow; the right one
    // is selected.
    QCOMPARE(lists[1]->item(wrongRow)->text(), QStringLiteral("-> ") + wrongText);
    QCOMPARE(selectedText(lists[1]), s.DrawnAnswers[1]);
    // Nothing chosen (a current item is no choice): the right one selected.
    QCOMPARE(selectedText(lists[2]), s.DrawnAnswers[2]);
    // The badge and the arrow take room, yet nothing needs scrolling.
    for (QListWidget* l : lists)
        QTRY_COMPARE(rowsInView(l), 7);
    QCOMPARE(f.flow.praiseCalls(), 0);

    // Shown again: emptied first, unmarked and enabled.
    f.flow.ShowPage(3);
    for (QListWidget* l : lists) {
        QCOMPARE(l->count(), 7);
        QVERIFY(l->isEnabled() && !f.colour(l).isValid() && l->selectedItems().isEmpty());
        for (int r = 0; r < 7; ++r)
            QVERIFY(!l->item(r)->text().startsWith(QStringLiteral("-> ")));
    }
    // All right: praised with the page's number.
    for (int i = 0; i < 3; ++i)
        lists[i]->setCurrentRow(rowOf(lists[i], s.DrawnAnswers[i]));
    f.page->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 4);
    QCOMPARE(f.flow.lastPraise(), 3);

    // Definitions all as long as the bank allows: the text gets smaller, and
    // what still does not fit scrolls above the buttons instead of being cut.
    QStringList longTexts = tenTexts();
    for (QString& t : longTexts)
        t = t.leftJustified(119, u'x') + u'.';
    Fixture tall(definitionBank(longTexts));
    tall.flow.ShowPage(3);
    const int okTop = tall.page->okButton()->mapTo(tall.page, QPoint()).y();
    for (int i = 0; i < 3; ++i) {
        QListWidget* l = tall.list("Auswahl", i);
        QTRY_COMPARE(l->font().pixelSize(), DefinitionPage::kTextSizes.back());
        QVERIFY(l->mapTo(tall.page, QPoint(0, l->height())).y() < okTop);
        // Most of the list still shows; the rest is a short scroll away.
        QVERIFY(rowsInView(l) >= 5);
        QVERIFY(rowsInView(l) == 7 || l->verticalScrollBar()->maximum() > 0);
    }
}

void TestChoicePages::termPage() {
    Fixture f;
    f.flow.ShowPage(4);
    SessionState& s = f.state();
    QListWidget* lists[4];
    const BankTable<DefinitionRecord>& table = f.flow.bank().Definitions;
    for (int k = 0; k < 4; ++k) {
        lists[k] = f.list("AuswahlS4", k);
        // All twelve terms in table order, expert ones included.
        QCOMPARE(lists[k]->count(), 12);
        QCOMPARE(lists[k]->item(0)->text(), padded("Atom", 20));
        QCOMPARE(lists[k]->item(11)->text(), padded("Emulsion", 20));
        QVERIFY(lists[k]->selectedItems().isEmpty());
        QVERIFY(!f.label("RichtigVon", k)->isVisible());
        QCOMPARE(f.label("RichtigVon", k)->text(),
                 QStringLiteral("Korrekter Begriff ist:  ") + s.DrawnAnswers[k].trimmed());
        const int entry = rowOf(lists[k], s.DrawnAnswers[k]) + 1;
        QVERIFY(entry <= 8); // a basic term is asked
        // A definition's text is the definition as it stands; a formula in
        // it is drawn with its superscript.
        const QString definition = table[entry].Definition.trimmed();
        auto* shown = qobject_cast<FormulaTextLabel*>(f.label("AnzS4", k));
        QVERIFY(shown);
        QCOMPARE(shown->text(), definition);
        QCOMPARE(shown->drawnHtml().contains(QStringLiteral("H<sup>+</sup>")),
                 definition.contains(u'^'));
    }
    QCOMPARE(QApplication::focusWidget(), lists[0]);
    // Eight terms at least in view in every list, beside its definition.
    for (int k = 0; k < 4; ++k) {
        QVERIFY(rowsInView(lists[k]) >= 8);
        const QPoint term = f.label("AnzS4", k)->mapTo(f.terms, QPoint());
        const QPoint list = lists[k]->mapTo(f.terms, QPoint());
        QVERIFY(qAbs(term.y() - list.y()) < 20 && list.x() > term.x());
    }
    // Typing the first letters picks the term.
    QTest::keyClicks(lists[0], QStringLiteral("Kat"));
    QCOMPARE(selectedText(lists[0]), padded("Katalysator", 20));

    // Right in 0 and 1, wrong in 2, nothing in 3.
    lists[0]->setCurrentRow(rowOf(lists[0], s.DrawnAnswers[0]));
    lists[1]->setCurrentRow(rowOf(lists[1], s.DrawnAnswers[1]));
    lists[2]->setCurrentRow(rowOf(lists[2], s.DrawnAnswers[2]) == 0 ? 1 : 0);
    f.terms->okButton()->click();
    QCOMPARE(s.TasksSoFar, 4);
    QCOMPARE(s.CorrectSoFar, 2);
    for (int k = 0; k < 4; ++k) {
        QVERIFY(!lists[k]->isEnabled());
        QCOMPARE(f.colour(lists[k]), k < 2 ? Look::right() : Look::wrong());
        QCOMPARE(f.label("RichtigVon", k)->isVisible(), k >= 2);
    }

    // Again, all right: praised with 4; the lists are not doubled.
    f.flow.ShowPage(4);
    for (int k = 0; k < 4; ++k) {
        QCOMPARE(lists[k]->count(), 12);
        QVERIFY(!f.colour(lists[k]).isValid());
        QVERIFY(!f.label("RichtigVon", k)->isVisible());
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
        QCOMPARE(f.choice(i)->text(), captions[i % 7]);
        QCOMPARE(f.choice(i)->isChecked(), i % 7 == 0); // "-3" in every row
    }
    QCOMPARE(f.label("AnzS5", 0)->text().size(), 20);
    // Enter goes from any button of a row to the first of the next, and from
    // the last row back to the first; button 15 keeps it.
    f.holder.activateWindow();
    QCOMPARE(QApplication::focusWidget(), f.choice(0));
    for (int i = 0; i < 28; ++i) {
        f.choice(i)->setFocus();
        QTest::keyClick(f.choice(i), Qt::Key_Return);
        const int expected = i == 15 ? 15 : 7 * ((i / 7 + 1) % 4);
        QVERIFY2(f.choice(expected)->hasFocus(), qPrintable(QString::number(i)));
    }
    // Other keys are the buttons' own: Space checks the focused one, and a
    // choice in row 1 leaves row 0 alone.
    f.choice(9)->setFocus();
    QTest::keyClick(f.choice(9), Qt::Key_Space);
    QVERIFY(f.choice(9)->isChecked() && !f.choice(7)->isChecked() && f.choice(0)->isChecked());

    // Known answers: Natrium +1, Nitrid -3, Aluminium +3, Oxid -2.
    const QStringList answers{"4", "7", "20", "22"};
    for (int k = 0; k < 4; ++k)
        s.DrawnAnswers[k] = answers[k];
    f.choice(4)->click();  // right
    f.choice(7)->click();  // right: -3, as drawn
    f.choice(16)->click(); // wrong: -1
    // row 3 left at -3: wrong
    f.ions->okButton()->click();
    QCOMPARE(s.TasksSoFar, 4);
    QCOMPARE(s.CorrectSoFar, 2);
    QCOMPARE(f.colour(f.choice(4)), Look::right());
    QCOMPARE(f.colour(f.choice(7)), Look::right());
    QVERIFY(!f.colour(f.label("AnzS5", 0)).isValid());
    // Wrong rows: the choice in red letters, the right charge checked (not
    // green), the ion's name red.
    const auto letters = [&](int i) {
        return f.choice(i)->property("markTextColour").value<QColor>();
    };
    QCOMPARE(letters(16), Look::wrong());
    QCOMPARE(letters(21), Look::wrong());
    QVERIFY(f.choice(20)->isChecked() && !f.choice(16)->isChecked());
    QVERIFY(f.choice(22)->isChecked() && !f.choice(21)->isChecked());
    QVERIFY(!f.colour(f.choice(20)).isValid());
    QCOMPARE(f.colour(f.label("AnzS5", 2)), Look::wrong());
    QCOMPARE(f.colour(f.label("AnzS5", 3)), Look::wrong());
    QCOMPARE(f.flow.praiseCalls(), 0);

    // Shown again: marks gone, every row back at "-3"; all right praises.
    f.flow.ShowPage(5);
    for (int i = 0; i < 28; ++i) {
        QVERIFY(!f.colour(f.choice(i)).isValid() && !letters(i).isValid());
        QCOMPARE(f.choice(i)->isChecked(), i % 7 == 0);
    }
    for (int k = 0; k < 4; ++k)
        f.choice(s.DrawnAnswers[k].toInt())->click();
    f.ions->okButton()->click();
    QCOMPARE(s.CorrectSoFar, 6);
    QCOMPARE(f.flow.lastPraise(), 5);
}

void TestChoicePages::smallBanksGetTheNotice_data() {
    QTest::addColumn<QStringList>("definitions");
    QTest::addColumn<int>("basicDefinitions");
    QTest::addColumn<QStringList>("ions");
    QTest::addColumn<bool>("expert");
    QTest::addColumn<QList<int>>("refused"); // pages that show the notice
    QTest::addColumn<QString>("reason");
    using P = QList<int>;
    dataRow("three basic definitions", kDefinitions, 3, kIons, false, P{3, 4},
            "für die normale Stufe nur 3 Einträge");
    dataRow("three definitions in all, expert level", kDefinitions.mid(0, 6), 3, kIons, true,
            P{3, 4}, "insgesamt nur 3 Einträge");
    dataRow("nine different definitions", kDefinitions.mid(0, 18), 8, kIons, false, P{3},
            "nur 9 verschiedene Erklärungen");
    QStringList badIons = kIons;
    badIons[5] = "+4";
    dataRow("charge +4 in the basic part", kDefinitions, 8, badIons, false, P{5},
            "„Magnesium-Ion“ (4)");
    badIons = kIons;
    badIons[15] = "-5";
    dataRow("charge -5 among the expert ions, normal level", kDefinitions, 8, badIons, false, P{},
            "");
    dataRow("charge -5 among the expert ions, expert level", kDefinitions, 8, badIons, true, P{5},
            "„Ammonium-Ion“ (-5)");
}

void TestChoicePages::smallBanksGetTheNotice() {
    QFETCH(QStringList, definitions);
    QFETCH(int, basicDefinitions);
    QFETCH(QStringList, ions);
    QFETCH(bool, expert);
    QFETCH(QList<int>, refused);
    QFETCH(QString, reason);
    Fixture f(choiceBank(definitions, basicDefinitions, ions));
    f.state().ExpertLevel = expert ? 1 : 0;
    const QStringList headings{" 3 Definitionen (Was ist ...?)", " 4 Chemische Begriffe suchen",
                               " 4 Bevorzugte Ladungszahl der Ionen"};
    for (int page : {3, 4, 5}) {
        TaskPage* p = f.flow.taskPage(page);
        f.flow.ShowPage(page);
        QVERIFY(labelTexts(p).contains(headings[page - 3]));
        const QString notice = p->bankNotice();
        QCOMPARE(!notice.isEmpty(), refused.contains(page));
        QCOMPARE(p->okButton()->isVisible(), notice.isEmpty());
        if (notice.isEmpty())
            continue;
        QVERIFY2(notice.contains(reason), qPrintable(notice));
        QVERIFY(notice.startsWith(QStringLiteral("Diese Seite kann nicht gestellt werden.")));
        QVERIFY(p->nextButton()->isVisible());
    }
}

void TestChoicePages::pairsOfYesAndNo() {
    StatementFixture f;
    const QStringList labels = labelTexts(f.page);
    QVERIFY(labels.contains("6 Verständnisfragen") && labels.contains("(Antwort anklicken!)"));
    const QColor black = Look::paletteColour(0);
    const QColor yellow = Look::paletteColour(14);
    for (int i = 0; i < ComprehensionPage::kChoices; ++i) {
        QVERIFY(!f.choice(i)->isChecked()); // neither choice of a pair at the start
        QCOMPARE(f.named<QLabel>(QStringLiteral("AA"), i)->text(),
                 i % 2 ? QStringLiteral("Nein") : QStringLiteral("Ja"));
        QCOMPARE(f.word(i), yellow);
        // Each pair lives in a panel of its own, apart from the other pairs.
        QCOMPARE(f.choice(i)->parentWidget(), f.choice(i ^ 1)->parentWidget());
        if (i >= 2)
            QVERIFY(f.choice(i)->parentWidget() != f.choice(i - 2)->parentWidget());
    }
    // The pairs are exclusive; the chosen word turns black.
    f.choice(0)->click();
    f.choice(1)->click();
    f.choice(8)->click();
    QVERIFY(!f.choice(0)->isChecked() && f.choice(1)->isChecked());
    for (int i = 0; i < 12; ++i)
        QCOMPARE(f.word(i), i == 1 || i == 8 ? black : yellow);
    // A click on the word chooses too.
    QTest::mouseClick(f.named<QLabel>(QStringLiteral("AA"), 0), Qt::LeftButton);
    QVERIFY(f.choice(0)->isChecked() && !f.choice(1)->isChecked());
    QCOMPARE(f.word(0), black);
    QCOMPARE(f.word(1), yellow);
}

void TestChoicePages::drawsSixDistinctStatementsOfTheLevel() {
    StatementFixture f;
    for (int round = 0; round < 15; ++round) {
        f.flow.ShowPage(6);
        std::set<QString> seen;
        for (int k = 0; k < 6; ++k) {
            const QString stored = f.statement(k)->text();
            QCOMPARE(stored.size(), 120); // as stored, blanks and all
            const int n = stored.trimmed().section(u' ', 1).toInt();
            QVERIFY2(n >= 1 && n <= 8, qPrintable(stored));
            // "Aussage n" is true for odd n: "Ja" is button 2k, "Nein" 2k + 1.
            QCOMPARE(f.state().DrawnAnswers[k], QStringLiteral(" %1").arg(2 * k + (n % 2 ? 0 : 1)));
            seen.insert(stored);
        }
        QCOMPARE(int(seen.size()), 6);
    }
    f.state().ExpertLevel = 1;
    std::set<QString> expertSeen;
    for (int round = 0; round < 30; ++round) {
        f.flow.ShowPage(6);
        for (int k = 0; k < 6; ++k)
            expertSeen.insert(f.statement(k)->text());
    }
    QVERIFY(expertSeen.size() > 8);
}

void TestChoicePages::readsTheExpectedButton_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("button");
    QTest::newRow("with leading blank") << " 3" << 3;
    QTest::newRow("last button, no blank") << "11" << 11;
    QTest::newRow("rounded") << " 4.6" << 5;
    QTest::newRow("comma as point") << " 6,2" << 6;
    QTest::newRow("beyond the page") << " 12" << -1;
    QTest::newRow("negative") << "-1" << -1;
}

void TestChoicePages::readsTheExpectedButton() {
    QFETCH(QString, answer);
    QFETCH(int, button);
    QCOMPARE(ComprehensionPage::expectedButton(answer), button);
}

void TestChoicePages::judgesByButton_data() {
    // One letter per pair: r = the right button, w = the other one, - = none.
    // Before the page, 40 of 54 tasks were right.
    QTest::addColumn<QString>("answers");
    QTest::addColumn<int>("right");
    QTest::addColumn<QString>("grade");
    dataRow("all right", QString("rrrrrr"), 6, QString("gut"));
    dataRow("nothing chosen", QString("------"), 0, QString("befriedigend plus"));
    dataRow("mixed", QString("rw-rw-"), 2, QString("befriedigend plus"));
}

// The last page's check judges, takes the end time and logs the history
// line once; "Weiter" ends the test.
void TestChoicePages::judgesByButton() {
    QFETCH(QString, answers);
    QFETCH(int, right);
    QFETCH(QString, grade);
    StatementFixture f;
    f.state().TasksSoFar = 54;
    f.state().CorrectSoFar = 40;
    for (int k = 0; k < 6; ++k) {
        const int e = f.expected(k);
        QVERIFY(e == 2 * k || e == 2 * k + 1);
        if (answers[k] != u'-')
            f.choice(answers[k] == u'r' ? e : e ^ 1)->click();
    }
    bool finished = false;
    QObject::connect(&f.flow, &TestFlow::testFinished, [&] { finished = true; });
    f.page->okButton()->click();
    QCOMPARE(f.state().TasksSoFar, 60);
    QCOMPARE(f.state().CorrectSoFar, 40 + right);
    for (int k = 0; k < 6; ++k) {
        // Afterwards the right choice of every pair is the chosen one.
        QVERIFY(f.choice(f.expected(k))->isChecked());
        QVERIFY(!f.choice(f.expected(k) ^ 1)->isChecked());
        QVERIFY(!f.choice(2 * k)->isEnabled());
        QCOMPARE(f.word(f.expected(k)), Look::paletteColour(0));
        QCOMPARE(f.colour(f.statement(k)), answers[k] == u'r' ? Look::right() : Look::wrong());
    }
    QCOMPARE(f.flow.praiseCalls(), right == 6 ? 1 : 0);
    QCOMPARE(f.flow.jingleCalls(), right == 6 ? 1 : 0);
    if (right == 6)
        QCOMPARE(f.flow.lastPraise(), 6);
    QCOMPARE(f.mark.text(), f.state().RunningGrade);
    QVERIFY(QTime::fromString(f.state().EndTime, QStringLiteral("HH:mm:ss")).isValid());
    const FinalResult& r = f.page->finalResult();
    QCOMPARE(r.gradeWord, grade);
    QCOMPARE(f.records.lines, QStringList{r.historyLine});
    QVERIFY(r.historyLine.startsWith(
        QStringLiteral("<-  Anna  60 Aufgaben, %1 richtig").arg(40 + right)));
    QVERIFY(!finished && f.page->nextButton()->isVisible());
    f.page->nextButton()->click();
    QVERIFY(finished);
    f.page->finalResult();
    QCOMPARE(f.records.lines.size(), 1);
}

QTEST_MAIN(TestChoicePages)
#include "test_choice_pages.moc"
