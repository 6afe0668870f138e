#include "TestSupport.h"
#include "chem/ChemicalFormula.h"
#include "chem/Equation.h"
#include "chem/FormulaText.h"
#include "chem/IonMakeup.h"

namespace {

// "Ca:1 H:2 O:2" from the counts, in the map's (alphabetical) order.
QString atomsText(const ChemicalFormula& f) {
    QStringList out;
    for (auto it = f.counts().cbegin(); it != f.counts().cend(); ++it)
        out << QStringLiteral("%1:%2").arg(it.key()).arg(it.value());
    return out.join(u' ');
}

} // namespace

class TestChemicalFormula : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void countsAtoms_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("atoms");
        QTest::addColumn<int>("charge");
        QTest::addColumn<bool>("charged");
        dataRow("water", "H2O", "H:2 O:1", 0, false);
        dataRow("same element twice", "CH3COOH", "C:2 H:4 O:2", 0, false);
        dataRow("group", "Ca(OH)2", "Ca:1 H:2 O:2", 0, false);
        dataRow("group and counts", "Ca3(PO4)2", "Ca:3 O:8 P:2", 0, false);
        dataRow("group first", "(NH4)2SO4", "H:8 N:2 O:4 S:1", 0, false);
        dataRow("nested", "((CH3)3C)2O", "C:8 H:18 O:1", 0, false);
        dataRow("hydrate", "CuSO4·5H2O", "Cu:1 H:10 O:9 S:1", 0, false);
        dataRow("hydrate without multiplier", "CaSO4·H2O", "Ca:1 H:2 O:5 S:1", 0, false);
        dataRow("anion", "SO4^2-", "O:4 S:1", -2, true);
        dataRow("single charge", "Na^+", "Na:1", 1, true);
        dataRow("single negative", "OH^-", "H:1 O:1", -1, true);
        dataRow("written 1", "Cl^1-", "Cl:1", -1, true);
        dataRow("ion with group", "Cu(NH3)4^2+", "Cu:1 H:12 N:4", 2, true);
        dataRow("three letters", "Uue", "Uue:1", 0, false);
        dataRow("big count", "C60", "C:60", 0, false);
    }
    void countsAtoms() {
        QFETCH(QString, formula);
        QFETCH(QString, atoms);
        QFETCH(int, charge);
        QFETCH(bool, charged);
        const ChemicalFormula f = ChemicalFormula::parse(formula);
        QVERIFY2(f.isValid(), qPrintable(f.error()));
        QVERIFY(f.error().isEmpty());
        QCOMPARE(atomsText(f), atoms);
        QCOMPARE(f.charge(), charge);
        QCOMPARE(f.hasCharge(), charged);
        QCOMPARE(f.text(), formula);
        // The pieces, which the hints walk, spell the formula (a charge without its "^").
        QString pieces;
        for (const ChemicalFormula::Piece& p : f.pieces())
            pieces += p.text;
        QCOMPARE(pieces, QString(formula).remove(u'^'));
    }
    void refusesBrokenFormulas_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("position");
        dataRow("empty", "", 0);
        dataRow("lower case start", "h2o", 0);
        dataRow("leading coefficient", "2H2O", 0);
        dataRow("count zero", "H0", 1);
        dataRow("leading zero", "H02", 1);
        dataRow("unclosed", "Ca(OH2", 2);
        dataRow("stray close", "CaOH)2", 4);
        dataRow("empty group", "Ca()2", 3);
        dataRow("blank", "H2 O", 2);
        dataRow("charge without sign", "SO4^2", 5);
        dataRow("zero charge", "Na^0+", 3);
        dataRow("text after charge", "Fe^3+Cl", 5);
        dataRow("charge inside group", "Ca(OH^-)2", 2);
        dataRow("dot at the end", "CuSO4·", 6);
        dataRow("dot zero", "CuSO4·0H2O", 6);
        dataRow("dot in group", "Ca(OH·H2O)", 2);
        dataRow("long symbol", "Abcd", 0);
        dataRow("huge count", "H99999999999999999999", 1);
        dataRow("counts multiply past the limit", "((H1000)1000)", 7);
        dataRow("plus inside", "H2+O2", 2);
    }
    void refusesBrokenFormulas() {
        QFETCH(QString, formula);
        QFETCH(int, position);
        const ChemicalFormula f = ChemicalFormula::parse(formula);
        QVERIFY(!f.isValid());
        QVERIFY(!f.error().isEmpty());
        QCOMPARE(f.errorPosition(), qsizetype(position));
        // A refused formula must not leave half a result behind.
        QVERIFY(f.counts().isEmpty());
        QCOMPARE(f.charge(), 0);
    }
    void survivesHostileInput() {
        // Deep nesting must be refused, not recursed into; long lines must stay fast.
        const QString deep = QString(100000, u'(') + QStringLiteral("H") + QString(100000, u')');
        const ChemicalFormula d = ChemicalFormula::parse(deep);
        QVERIFY(!d.isValid());
        QCOMPARE(d.errorPosition(), qsizetype(ChemicalFormula::kMaxDepth));

        QString allowed;
        for (int i = 0; i < ChemicalFormula::kMaxDepth; ++i)
            allowed += u'(';
        allowed += QStringLiteral("H2");
        for (int i = 0; i < ChemicalFormula::kMaxDepth; ++i)
            allowed += QStringLiteral(")2");
        // 2^17 atoms exceed the limit, 2^16 would not.
        QVERIFY(!ChemicalFormula::parse(allowed).isValid());
        allowed.chop(1);
        const ChemicalFormula ok = ChemicalFormula::parse(allowed);
        QVERIFY2(ok.isValid(), qPrintable(ok.error()));
        QCOMPARE(ok.count(QStringLiteral("H")), 1 << 16);

        QString longChain;
        for (int i = 0; i < 20000; ++i)
            longChain += QStringLiteral("CH2");
        const ChemicalFormula chain = ChemicalFormula::parse(longChain);
        QVERIFY(chain.isValid());
        QCOMPARE(chain.count(QStringLiteral("C")), 20000);
        QCOMPARE(chain.symbols().size(), 2);
    }

    // The balancing page's walk over an equation line; the strict reading and
    // the balance are tested through the bank check's rows.
    void pageWalkFillsSlots_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("coefficients");
        QTest::addColumn<QStringList>("formulas");
        dataRow("two left, one right", "@2H2+@1O2=@2H2O", QStringList{"2", "1", "2", ""},
                QStringList{"H2", "O2", "H2O", ""});
        dataRow("one species a side goes to slot 2", "@1Fe=@1Fe", QStringList{"1", "", "1", ""},
                QStringList{"Fe", "", "Fe", ""});
        dataRow("digits after the formula start are counts", "@1CH4+@2O2=@1CO2+@2H2O",
                QStringList{"1", "2", "1", "2"}, QStringList{"CH4", "O2", "CO2", "H2O"});
        dataRow("points belong to the coefficient", "@1.5O2=@1O3", QStringList{"1.5", "", "1", ""},
                QStringList{"O2", "", "O3", ""});
        dataRow("no leading @ puts text in slot 0", "H2=@1H2", QStringList{"", "", "1", ""},
                QStringList{"H2", "", "H2", ""});
        // A third species on a side would run past the four slots; it is dropped.
        dataRow("three on the right", "@1A=@1B+@1C+@1D", QStringList{"1", "", "1", "1"},
                QStringList{"A", "", "B", "C"});
    }
    void pageWalkFillsSlots() {
        QFETCH(QString, line);
        QFETCH(QStringList, coefficients);
        QFETCH(QStringList, formulas);
        const Equation::Slots s = Equation::pageSlots(line);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(s.coefficient[i], coefficients[i]);
            QCOMPARE(s.formula[i], formulas[i]);
        }
    }
    void rendersFormulas_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("plain");
        dataRow("water", "H2O", "H<sub>2</sub>O", QStringLiteral("H₂O"));
        dataRow("group", "Ca(OH)2", "Ca(OH)<sub>2</sub>", QStringLiteral("Ca(OH)₂"));
        dataRow("two digits", "C12H22O11", "C<sub>12</sub>H<sub>22</sub>O<sub>11</sub>",
                QStringLiteral("C₁₂H₂₂O₁₁"));
        dataRow("anion", "SO4^2-", QStringLiteral("SO<sub>4</sub><sup>2−</sup>"),
                QStringLiteral("SO₄²⁻"));
        dataRow("cation", "Na^+", "Na<sup>+</sup>", QStringLiteral("Na⁺"));
        dataRow("hydrate", QStringLiteral("CuSO4·5H2O"),
                QStringLiteral("CuSO<sub>4</sub>·5H<sub>2</sub>O"), QStringLiteral("CuSO₄·5H₂O"));
        dataRow("markup is escaped", "A<b>", "A&lt;b&gt;", "A<b>");
    }
    void rendersFormulas() {
        QFETCH(QString, formula);
        QFETCH(QString, html);
        QFETCH(QString, plain);
        QCOMPARE(FormulaText::formulaToHtml(formula), html);
        QCOMPARE(FormulaText::formulaToPlain(formula), plain);
    }
    void findsFormulasInSentences_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("html");
        dataRow("in a sentence", "Kalkwasser wird durch CO2 trüb.",
                "Kalkwasser wird durch CO<sub>2</sub> trüb.");
        dataRow("charge", "Ein Chlorid-Ion (Cl^-) hat ...",
                QStringLiteral("Ein Chlorid-Ion (Cl<sup>−</sup>) hat ..."));
        dataRow("before a hyphen", "1,5 O2-Moleküle", "1,5 O<sub>2</sub>-Moleküle");
        dataRow("words stay", "Ein Mol Na ist pH-Wert 7", "Ein Mol Na ist pH-Wert 7");
        dataRow("numbers stay", QStringLiteral("6,022 · 10²³ Teilchen"),
                QStringLiteral("6,022 · 10²³ Teilchen"));
        dataRow("escaped", "a < b & H2O", "a &lt; b &amp; H<sub>2</sub>O");
    }
    void findsFormulasInSentences() {
        QFETCH(QString, text);
        QFETCH(QString, html);
        QCOMPARE(FormulaText::textToHtml(text), html);
    }
    void setsFormulasInPlainText() {
        // For item views, which show no rich text: the same formulas, the same
        // words left alone, nothing escaped.
        QCOMPARE(FormulaText::textToPlain(u"H2 + O2 = H2O"), QStringLiteral("H₂ + O₂ = H₂O"));
        QCOMPARE(FormulaText::textToPlain(u"„SO4^2-“ 3×, Na 2×, a < b"),
                 QStringLiteral("„SO₄²⁻“ 3×, Na 2×, a < b"));
    }

    // Which ions, how many of each, make up a salt; and the line the formulas
    // page shows for it.
    void findsTheCounts_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QStringList>("ions");
        QTest::addColumn<QList<int>>("counts"); // empty: no way found
        dataRow("Calciumchlorid", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, QList<int>{1, 2});
        dataRow("Aluminiumsulfat", "Al2(SO4)3", QStringList{"Al^3+", "SO4^2-"}, QList<int>{2, 3});
        dataRow("Ammoniumsulfat", "(NH4)2SO4", QStringList{"NH4^+", "SO4^2-"}, QList<int>{2, 1});
        dataRow("drei Ionensorten", "Fe3O4", QStringList{"Fe^2+", "Fe^3+", "O^2-"},
                QList<int>{1, 2, 4});
        dataRow("Blanks, leeres Stück", " CaCl2 ", QStringList{"", " Ca^2+", "Cl^-"},
                QList<int>{1, 2});
        dataRow("falsches Ion", "NaCl", QStringList{"K^+", "Cl^-"}, QList<int>{});
        dataRow("Ladung bleibt", "CaCl", QStringList{"Ca^2+", "Cl^-"}, QList<int>{});
        dataRow("keine Ionen", "H2O", QStringList{}, QList<int>{});
        dataRow("mehr als neun", "Na10Cl10", QStringList{"Na^+", "Cl^-"}, QList<int>{});
        dataRow("Unsinn", QString(5000, u'x'), QStringList{"\U0001F600"}, QList<int>{});
    }
    void findsTheCounts() {
        QFETCH(QString, formula);
        QFETCH(QStringList, ions);
        QFETCH(QList<int>, counts);
        QList<int> found;
        QStringList foundIons;
        for (const IonMakeup::Share& s : IonMakeup::of(formula, ions)) {
            found << s.count;
            foundIons << s.ion;
        }
        QCOMPARE(found, counts);
        // The ions come back trimmed, in their order, without empty pieces.
        if (!found.isEmpty())
            QCOMPARE(foundIons.join(u' '), ions.join(u' ').simplified());
    }

    void showsWhatThereIs_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QStringList>("ions");
        QTest::addColumn<bool>("twoLines");
        QTest::addColumn<QString>("html");
        const QString minus = QStringLiteral("\u2212");
        const QString calcium = "Ca<sup>2+</sup> + 2 Cl<sup>" + minus + "</sup>";
        dataRow("Ionen mit Anzahl", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, false,
                calcium + " \u2192 CaCl<sub>2</sub>");
        dataRow("zwei Zeilen", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, true,
                calcium + "<br>\u2192 CaCl<sub>2</sub>");
        dataRow("passt nicht", "NaCl", QStringList{"K^+", "Cl^-"}, false,
                "NaCl (Ionen: K<sup>+</sup>, Cl<sup>" + minus + "</sup>)");
        dataRow("nur Formel", "H2O", QStringList{}, true, "H<sub>2</sub>O");
        dataRow("nur Ionen", "", QStringList{"Na^+"}, false, "Na<sup>+</sup>");
        dataRow("Auszeichnung", "<b>", QStringList{""}, false, "&lt;b&gt;");
    }
    void showsWhatThereIs() {
        QFETCH(QString, formula);
        QFETCH(QStringList, ions);
        QFETCH(bool, twoLines);
        QFETCH(QString, html);
        QCOMPARE(IonMakeup::toHtml(formula, ions, twoLines), html);
    }

    void plainTextForMeasuring() {
        QCOMPARE(IonMakeup::toPlain(u"CaCl2", {QStringLiteral("Ca^2+"), QStringLiteral("Cl^-")}),
                 QStringLiteral("Ca\u00B2\u207A + 2 Cl\u207B \u2192 CaCl\u2082"));
    }
};

QTEST_APPLESS_MAIN(TestChemicalFormula)
#include "test_chemical_formula.moc"
