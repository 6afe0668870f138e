#include "TestSupport.h"
#include "chem/FormulaText.h"
#include "chem/IonMakeup.h"

class TestFormulaText : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

QTEST_APPLESS_MAIN(TestFormulaText)
#include "test_formula_text.moc"
