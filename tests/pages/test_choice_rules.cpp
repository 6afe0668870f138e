#include "ChoiceBanks.h"
#include "pages/ChoiceRules.h"
#include "pages/DefinitionPage.h"
#include "pages/IonChargePage.h"
#include "pages/TermPage.h"
#include "session/RandomSource.h"

#include <QListWidget>
#include <QSet>
#include <QtTest>

namespace {

QString padded(const QString& text, int width) {
    return TaskBank::fixedWidth(text, width);
}

// Ten different definitions, numbered in their text.
QStringList tenTexts() {
    QStringList texts;
    for (int i = 1; i <= 10; ++i)
        texts << QStringLiteral("Erklärung Nummer %1 eines Begriffs.").arg(i);
    return texts;
}

} // namespace

class TestChoiceRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void judgesChoices_data();
    void judgesChoices();
    void findsListItems_data();
    void findsListItems();
    void selectsListItems();
    void marksTheWrongChoice_data();
    void marksTheWrongChoice();
    void showsListsInDictionaryOrder();
    void drawsWrongDefinitions_data();
    void drawsWrongDefinitions();
    void buildsSevenDistinctItemsPerList();
    void countsDistinctDefinitions();
    void drawsTermTasks();
    void placesChargesOnButtons_data();
    void placesChargesOnButtons();
    void walksIonRowsWithEnter_data();
    void walksIonRowsWithEnter();
    void drawsIonTasks();
};

void TestChoiceRules::judgesChoices_data() {
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("right");
    QTest::newRow("padded term") << padded("Natrium", 20) << "Natrium" << true;
    QTest::newRow("small letters") << padded("Natrium", 20) << "natrium" << true;
    QTest::newRow("umlaut in capitals") << "Säure"
                                        << "SÄURE" << true;
    QTest::newRow("blanks around") << "Base"
                                   << "  Base  " << true;
    QTest::newRow("another term") << "Base"
                                  << "Basen" << false;
    QTest::newRow("nothing chosen") << "Base"
                                    << "" << false;
    QTest::newRow("arrowed choice") << "Base"
                                    << "-> Base" << false;
    QTest::newRow("blank inside") << "Molare Masse"
                                  << "MolareMasse" << false;
}

void TestChoiceRules::judgesChoices() {
    QFETCH(QString, expected);
    QFETCH(QString, chosen);
    QFETCH(bool, right);
    QCOMPARE(ChoiceRules::sameChoice(expected, chosen), right);
}

void TestChoiceRules::findsListItems_data() {
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("found");
    const QStringList defs{padded("Teilchen aus Atomen.", 120), padded("Geladenes Teilchen.", 120),
                           padded("Reinstoff.", 120)};
    QTest::newRow("padded item, trimmed text") << defs << "Geladenes Teilchen." << 1;
    QTest::newRow("padded text, padded item") << defs << defs[2] << 2;
    QTest::newRow("case ignored") << defs << "REINSTOFF." << 2;
    QTest::newRow("leading blanks ignored") << defs << "   Reinstoff." << 2;
    QTest::newRow("part of an item") << defs << "Teilchen" << -1;
    QTest::newRow("empty text") << defs << "" << -1;
    QTest::newRow("first of two equal") << QStringList{"Atom", "Ion", "ion  "} << "ION" << 1;
    QTest::newRow("arrowed item is another text") << QStringList{"-> Ion", "Atom"} << "Ion" << -1;
    QTest::newRow("empty list") << QStringList{} << "Ion" << -1;
}

void TestChoiceRules::findsListItems() {
    QFETCH(QStringList, items);
    QFETCH(QString, text);
    QFETCH(int, found);
    QCOMPARE(ChoiceRules::findListItem(items, text), found);
}

void TestChoiceRules::selectsListItems() {
    QListWidget list;
    list.addItems({"Atom", "Molekül", "Ion"});
    // Found: that row is current and selected.
    QCOMPARE(ChoiceRules::SelectListItem(&list, u" molekül "), 1);
    QCOMPARE(list.currentRow(), 1);
    QCOMPARE(list.selectedItems().size(), 1);
    QCOMPARE(list.selectedItems().first()->text(), QStringLiteral("Molekül"));
    // Not found: row 0 is selected and nothing is returned.
    QCOMPARE(ChoiceRules::SelectListItem(&list, u"Salz"), -1);
    QCOMPARE(list.currentRow(), 0);
    QCOMPARE(list.selectedItems().first()->text(), QStringLiteral("Atom"));
    QListWidget empty;
    QCOMPARE(ChoiceRules::SelectListItem(&empty, u"Atom"), -1);
    QCOMPARE(ChoiceRules::SelectListItem(nullptr, u"Atom"), -1);
}

void TestChoiceRules::marksTheWrongChoice_data() {
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("row");
    const QStringList seven{"A", "B", "C", "D", "E", "F", "G"};
    QTest::newRow("first row") << seven << "A" << 0;
    QTest::newRow("last of seven") << seven << "G" << 6;
    QTest::newRow("eighth row is not searched") << seven + QStringList{"H"} << "H" << -1;
    QTest::newRow("nothing chosen, no arrow") << seven << "" << -1;
    // The choice is an item's own text, so it is compared exactly.
    QTest::newRow("other case is another item") << seven << "c" << -1;
    QTest::newRow("padding counts") << QStringList{"Ion   ", "Ion"} << "Ion" << 1;
    QTest::newRow("first of two equal") << QStringList{"X", "Y", "X"} << "X" << 0;
}

void TestChoiceRules::marksTheWrongChoice() {
    QFETCH(QStringList, items);
    QFETCH(QString, chosen);
    QFETCH(int, row);
    QCOMPARE(ChoiceRules::arrowPosition(items, chosen), row);
    QStringList expected = items;
    if (row >= 0)
        expected[row] = QStringLiteral("-> ") + chosen;
    QCOMPARE(ChoiceRules::markWrongChoice(items, chosen), expected);
}

void TestChoiceRules::showsListsInDictionaryOrder() {
    const QStringList added{padded("Teilreaktion, bei der ...", 120),
                            "Ätzende Lösung.",
                            "base",
                            "Äquivalent.",
                            "Atom",
                            "Öl",
                            "Ober"};
    const QStringList shown{"Äquivalent.",
                            "Atom",
                            "Ätzende Lösung.",
                            "base",
                            "Ober",
                            "Öl",
                            padded("Teilreaktion, bei der ...", 120)};
    QCOMPARE(ChoiceRules::displayOrder(added), shown);
    QCOMPARE(ChoiceRules::sortKey(u" Straße "), QStringLiteral("strasse"));
}

void TestChoiceRules::drawsWrongDefinitions_data() {
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QList<int>>("drawn");
    QTest::addColumn<QList<double>>("values");
    // Entry numbers of the wrong definitions in the order they are taken;
    // empty where only their properties are checked.
    QTest::addColumn<QList<int>>("order");
    QTest::addColumn<int>("count");

    const QStringList twelve = tenTexts() + QStringList{"Elfte Erklärung.", "Zwölfte Erklärung."};
    // Of 12 entries: 0.4 -> 5, again 5 (taken: drawn anew), 0.5 -> 6, 0.6 -> 7,
    // 0.7 -> 9, 0.8 -> 10, 0.9 -> 11.
    QTest::newRow("in the order drawn, taken ones drawn again")
        << twelve << QList<int>{1, 2, 3, 4} << QList<double>{0.4, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9}
        << QList<int>{5, 6, 7, 9, 10, 11} << 6;
    // The drawn entries are excluded by number, however the source falls.
    QTest::newRow("drawn entries never offered")
        << twelve << QList<int>{5, 6, 7, 8} << QList<double>{0.05, 0.45, 0.55, 0.65, 0.75}
        << QList<int>{} << 6;
    QStringList copyOfFirst = twelve;
    copyOfFirst[8] = copyOfFirst[0]; // entry 9 repeats the first drawn definition
    QTest::newRow("copy of a drawn definition kept out")
        << copyOfFirst << QList<int>{1, 2, 3, 4}
        << QList<double>{0.7, 0.4, 0.5, 0.6, 0.75, 0.8, 0.9, 0.95}
        << QList<int>{5, 6, 7, 10, 11, 12} << 6;
    QStringList twins = twelve;
    twins[5] = twins[4]; // entries 5 and 6 read the same
    QTest::newRow("equal wrong definitions count once")
        << twins << QList<int>{1, 2, 3, 4} << QList<double>{0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 0.95}
        << QList<int>{5, 7, 9, 10, 11, 12} << 6;
    QTest::newRow("source stuck on one entry")
        << twelve << QList<int>{1, 2, 3, 4} << QList<double>{0.5} << QList<int>{} << 6;
    // Nine texts leave five beside four drawn ones: the list stays short
    // instead of drawing forever.
    QTest::newRow("too few texts") << tenTexts().mid(0, 9) << QList<int>{1, 2, 3, 4}
                                   << QList<double>{0.3, 0.6, 0.9} << QList<int>{} << 5;
}

void TestChoiceRules::drawsWrongDefinitions() {
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

void TestChoiceRules::buildsSevenDistinctItemsPerList() {
    const TaskBank bank = sampleBank();
    const QList<int> drawn{3, 1, 7, 2};
    // The source offers only entries 5, 9, 10 and 11; the rest of a list
    // comes from the first free entries (4, 6).
    FixedRandomSource source({0.45, 0.75, 0.8, 0.9});
    const DefinitionPage::Draw d = DefinitionPage::drawFor(
        bank, drawn, [&] { return RandomBetween(source, bank.Definitions.count(), 3, 1, 7, 2); });
    const QStringList terms{"Ion", "Atom", "Säure"};
    for (int i = 0; i < DefinitionPage::kQuestions; ++i) {
        const DefinitionRecord& r = bank.Definitions[drawn[i]];
        QCOMPARE(d.terms[i], terms[i]);
        QCOMPARE(d.answers[i], r.Definition);
        QCOMPARE(int(d.choices[i].size()), 7);
        QCOMPARE(d.choices[i].first(), r.Definition); // added first
        QCOMPARE(int(QSet<QString>(d.choices[i].begin(), d.choices[i].end()).size()), 7);
        // Not one of the other drawn entries, not even the fourth one.
        for (int k : drawn)
            if (k != drawn[i])
                QVERIFY(!d.choices[i].contains(bank.Definitions[k].Definition));
    }
    // Every list starts its used texts afresh, so all three hold the same
    // wrong definitions, only perhaps in another order.
    QSet<QString> wrongSet;
    for (int r : {4, 5, 6, 9, 10, 11})
        wrongSet.insert(bank.Definitions[r].Definition);
    for (int i = 0; i < DefinitionPage::kQuestions; ++i) {
        const QStringList wrong = d.choices[i].mid(1);
        QCOMPARE(QSet<QString>(wrong.begin(), wrong.end()), wrongSet);
    }
}

void TestChoiceRules::countsDistinctDefinitions() {
    QCOMPARE(DefinitionPage::distinctDefinitions(sampleBank().Definitions), 12);
    QStringList texts = tenTexts();
    texts[3] = texts[2] + QStringLiteral("   "); // the same once padded
    texts << texts[0];
    QCOMPARE(DefinitionPage::distinctDefinitions(definitionBank(texts).Definitions), 9);
}

void TestChoiceRules::drawsTermTasks() {
    const TaskBank bank = sampleBank();
    const TermPage::Draw d = TermPage::drawFor(bank, {2, 12, 7, 1});
    QCOMPARE(d.definitions[1], QStringLiteral("Gemisch aus zwei nicht mischbaren Flüssigkeiten."));
    QCOMPARE(d.answers[0], padded("Molekül", 20));
    QCOMPARE(d.answers[2], padded("Säure", 20));
    QCOMPARE(d.corrections[1], QStringLiteral("Korrekter Begriff ist:  Emulsion"));
    QCOMPARE(d.corrections[3], QStringLiteral("Korrekter Begriff ist:  Atom"));
    // Every term, the expert ones too, in table order and padded as stored.
    const QStringList terms = TermPage::allTerms(bank);
    QCOMPARE(int(terms.size()), 12);
    QCOMPARE(terms.first(), padded("Atom", 20));
    QCOMPARE(terms[8], padded("Katalysator", 20));
    QCOMPARE(terms.last(), padded("Emulsion", 20));
}

void TestChoiceRules::placesChargesOnButtons_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("charge");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("fits");
    QTest::newRow("first row, -3") << 0 << -3 << 0 << true;
    QTest::newRow("first row, +3") << 0 << 3 << 6 << true;
    QTest::newRow("second row, 0") << 1 << 0 << 10 << true;
    QTest::newRow("third row, -2") << 2 << -2 << 15 << true;
    QTest::newRow("last row, +1") << 3 << 1 << 25 << true;
    QTest::newRow("last button") << 3 << 3 << 27 << true;
    // Charges beyond the range leave the row: the bank must not hold them.
    QTest::newRow("+4 past the last button") << 3 << 4 << 28 << false;
    QTest::newRow("-4 into the row above") << 1 << -4 << 6 << false;
}

void TestChoiceRules::placesChargesOnButtons() {
    QFETCH(int, row);
    QFETCH(int, charge);
    QFETCH(int, button);
    QFETCH(bool, fits);
    QCOMPARE(IonChargePage::answerButton(row, charge), button);
    QCOMPARE(IonChargePage::chargeFits(charge), fits);
    if (fits)
        QCOMPARE(IonChargePage::caption(button % 7),
                 charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge));
}

void TestChoiceRules::walksIonRowsWithEnter_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("target");
    for (int i = 0; i <= 6; ++i)
        QTest::addRow("row 1, button %d", i) << i << 7;
    for (int i = 7; i <= 13; ++i)
        QTest::addRow("row 2, button %d", i) << i << 14;
    QTest::newRow("row 3, button 14") << 14 << 21;
    QTest::newRow("row 3, button 15 stays") << 15 << -1;
    for (int i = 16; i <= 20; ++i)
        QTest::addRow("row 3, button %d", i) << i << 21;
    for (int i = 21; i <= 27; ++i)
        QTest::addRow("row 4, button %d", i) << i << 0;
    QTest::newRow("no button 28") << 28 << -1;
}

void TestChoiceRules::walksIonRowsWithEnter() {
    QFETCH(int, button);
    QFETCH(int, target);
    QCOMPARE(IonChargePage::enterTarget(button), target);
}

void TestChoiceRules::drawsIonTasks() {
    const TaskBank bank = sampleBank();
    const IonChargePage::Draw d = IonChargePage::drawFor(bank, {1, 6, 5, 4});
    QCOMPARE(d.names[0], padded("Natrium-Ion", 20)); // shown as stored
    const QStringList buttons{"4", "7", "20", "22"}; // +1, -3, +3, -2 in rows 0..3
    for (int k = 0; k < IonChargePage::kIons; ++k)
        QCOMPARE(d.answers[k], buttons[k]);
}

QTEST_MAIN(TestChoiceRules)
#include "test_choice_rules.moc"
