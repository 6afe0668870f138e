#include "TestSupport.h"
#include "chem/FormulaText.h"

class TestFormulaText : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rendersFormulas_data();
    void rendersFormulas();
    void findsFormulasInSentences_data();
    void findsFormulasInSentences();
    void setsFormulasInPlainText();
};

void TestFormulaText::rendersFormulas_data() {
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

void TestFormulaText::rendersFormulas() {
    QFETCH(QString, formula);
    QFETCH(QString, html);
    QFETCH(QString, plain);
    QCOMPARE(FormulaText::formulaToHtml(formula), html);
    QCOMPARE(FormulaText::formulaToPlain(formula), plain);
}

void TestFormulaText::findsFormulasInSentences_data() {
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

void TestFormulaText::findsFormulasInSentences() {
    QFETCH(QString, text);
    QFETCH(QString, html);
    QCOMPARE(FormulaText::textToHtml(text), html);
}

void TestFormulaText::setsFormulasInPlainText() {
    // For item views, which show no rich text: the same formulas, the same
    // words left alone, nothing escaped.
    QCOMPARE(FormulaText::textToPlain(u"H2 + O2 = H2O"), QStringLiteral("H₂ + O₂ = H₂O"));
    QCOMPARE(FormulaText::textToPlain(u"„SO4^2-“ 3×, Na 2×, a < b"),
             QStringLiteral("„SO₄²⁻“ 3×, Na 2×, a < b"));
}

QTEST_APPLESS_MAIN(TestFormulaText)
#include "test_formula_text.moc"
