#include "TestSupport.h"
#include "chem/MistakeHints.h"

#include <QFile>
#include <QHash>
#include <QtTest>

using Kind = MistakeHints::Kind;
Q_DECLARE_METATYPE(MistakeHints::Kind)

namespace {

const QHash<QString, Kind>& kinds() {
    static const QHash<QString, Kind> map = {{QStringLiteral("symbol"), Kind::ElementSymbol},
                                             {QStringLiteral("name"), Kind::ElementName},
                                             {QStringLiteral("number"), Kind::SyllableNumber},
                                             {QStringLiteral("syllable"), Kind::NumberSyllable},
                                             {QStringLiteral("formula"), Kind::Formula},
                                             {QStringLiteral("substance"), Kind::SubstanceName},
                                             {QStringLiteral("molar"), Kind::MolarMass},
                                             {QStringLiteral("amount"), Kind::Amount},
                                             {QStringLiteral("equation"), Kind::Equation},
                                             {QStringLiteral("ion"), Kind::IonCharge},
                                             {QStringLiteral("choice"), Kind::Choice}};
    return map;
}

const ElementTable& table() {
    return shippedElements();
}

} // namespace

class TestMistakeHints final : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(table().count() > 100); }
    void namesTheCause_data();
    void namesTheCause();
    void sampleGetsNoWrongHint();
};

// One table of cases: each cause with rows that must fire it and at least one
// close answer that must not. "-" is no hint. "text" rows check that the
// sentence names what the student needs.
void TestMistakeHints::namesTheCause_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("cause");
    QTest::addColumn<QString>("mentions");
    auto row = [](const char* kind, const char* prompt, const char* expected, const char* given,
                  const char* cause, const char* mentions = "") {
        QTest::addRow("%s %s→%s", kind, given, cause)
            << QString::fromUtf8(kind) << QString::fromUtf8(prompt) << QString::fromUtf8(expected)
            << QString::fromUtf8(given) << QString::fromUtf8(cause) << QString::fromUtf8(mentions);
    };
    row("symbol", "Natrium", "Na", "na", "sym-case", "Na");
    row("symbol", "Natrium", "Na", "NA", "sym-case");
    row("symbol", "Kalium", "K", "k", "sym-case");
    row("symbol", "Natrium", "Na", "Nt", "-");
    row("symbol", "Cobalt", "Co", "CO", "sym-two", "Kohlenstoffmonooxid");
    row("symbol", "Cobalt", "Co", "co", "sym-case");
    row("symbol", "Kupfer", "Cu", "CU", "sym-case");
    row("symbol", "Calcium", "Ca", "Calcium", "sym-name", "Ca");
    row("symbol", "Calcium", "Ca", "calcium", "sym-name");
    row("symbol", "Calcium", "Ca", "Calzium", "-");
    row("symbol", "Kalium", "K", "Ca", "sym-other", "Calcium");
    row("symbol", "Natrium", "Na", "Ni", "sym-other", "Nickel");
    row("symbol", "Stickstoff", "N", "O", "sym-other", "Sauerstoff");
    row("symbol", "Kalium", "K", "Ka", "-");
    row("name", "Na", "Natrium", "natrium", "name-case");
    row("name", "I", "Iod oder Jod", "JOD", "name-case", "Jod");
    row("name", "Co", "Cobalt oder Kobalt", "cobalt", "name-case");
    row("name", "Na", "Natrium", "Natrum", "-");
    row("name", "Fe", "Eisen", "Fe", "name-symbol", "Eisen");
    row("name", "Fe", "Eisen", "fe", "name-symbol");
    row("name", "Na", "Natrium", "Na", "name-symbol");
    row("name", "Fe", "Eisen", "Fee", "-");
    row("name", "K", "Kalium", "Calcium", "name-other", "Ca");
    row("name", "N", "Stickstoff", "Sauerstoff", "name-other", "O");
    row("name", "Na", "Natrium", "Nickel", "name-other", "Ni");
    row("name", "K", "Kalium", "Kalzium", "-");
    row("number", "penta", "5", "fünf", "num-letters");
    row("number", "tetra", "4", "IV", "num-letters");
    row("number", "di", "2", "zwei", "num-letters");
    row("number", "penta", "5", "6", "-");
    row("syllable", "4", "tetra", "Tetra", "syl-case");
    row("syllable", "8", "octa*okta", "Okta", "syl-case", "octa");
    row("syllable", "1", "mono", "MONO", "syl-case");
    row("syllable", "4", "tetra", "tetr", "-");
    row("syllable", "4", "tetra", "penta", "syl-other", "5");
    row("syllable", "2", "di", "tri", "syl-other", "3");
    row("syllable", "6", "hexa", "hepta", "syl-other", "7");
    row("syllable", "2", "di", "bi", "-");
    row("syllable", "2", "di", "2", "syl-number");
    row("syllable", "5", "penta", "5", "syl-number");
    row("syllable", "3", "tri", "3", "syl-number");
    row("syllable", "3", "tri", "4", "-");
    row("formula", "Lithiumoxid", "Li2O", "LI2O", "f-case", "Li");
    row("formula", "Natriumchlorid", "NaCl", "NACL", "f-case");
    row("formula", "Natriumsulfat", "Na2SO4", "Na2So4", "f-case", "O");
    row("formula", "Natriumchlorid", "NaCl", "Natriumchlorid", "f-name");
    row("formula", "Natriumchlorid", "NaCl", "natriumchlorid", "f-name");
    row("formula", "Natriumchlorid", "NaCl", "NaCI", "-");
    row("formula", "Natriumchlorid", "NaCl", "2NaCl", "f-coef");
    row("formula", "Natriumoxid", "Na2O", "2NaO", "f-coef", "Na");
    row("formula", "Magnesiumchlorid", "MgCl2", "2MgCl", "f-coef", "Cl");
    row("formula", "Magnesiumchlorid", "MgCl2", "2MgCl2", "f-coef");
    row("formula", "Magnesiumchlorid", "MgCl2", "3MgCl", "-");
    row("formula", "Calciumhydroxid", "Ca(OH)2", "CaOH2", "f-paren");
    row("formula", "Aluminiumhydroxid", "Al(OH)3", "AlOH3", "f-paren");
    row("formula", "Ammoniumsulfat", "(NH4)2SO4", "NH42SO4", "f-paren");
    row("formula", "Calciumhydroxid", "Ca(OH)2", "CaOH", "-");
    row("formula", "Natriumoxid", "Na2O", "NaO2", "f-swap");
    row("formula", "Aluminiumoxid", "Al2O3", "Al3O2", "f-swap");
    row("formula", "Magnesiumchlorid", "MgCl2", "Mg2Cl", "f-swap");
    row("formula", "Natriumoxid", "Na2O", "Na2O2", "f-charge");
    row("formula", "Eisen(III)-oxid", "Fe2O3", "FeO", "f-roman", "Fe³⁺");
    row("formula", "Eisen(II)-chlorid", "FeCl2", "FeCl3", "f-roman", "Fe²⁺");
    row("formula", "Kupfer(II)-oxid", "CuO", "Cu2O", "f-roman", "Cu²⁺");
    row("formula", "Eisen(III)-oxid", "Fe2O3", "Fe2O3", "-");
    row("formula", "Lithiumoxid", "Li2O", "LiO", "f-charge", "Es braucht 2 Li⁺ für 1 O²⁻");
    row("formula", "Magnesiumchlorid", "MgCl2", "MgCl", "f-charge", "Mg²⁺");
    row("formula", "Aluminiumoxid", "Al2O3", "AlO", "f-charge", "Al³⁺");
    row("formula", "Natriumsulfat", "Na2SO4", "NaSO4", "-");
    row("formula", "Kohlenstoffdioxid", "CO2", "CO", "-");
    row("substance", "NaCl", "Natriumchlorid", "natriumchlorid", "n-case");
    row("substance", "LiCl", "Lithiumchlorid", "LithiumChlorid", "n-case");
    row("substance", "MgO", "Magnesiumoxid", "MAGNESIUMOXID", "n-case");
    row("substance", "NaCl", "Natriumchlorid", "Natriumclorid", "-");
    row("substance", "MgCl2", "Magnesiumchlorid", "Magnesiumdichlorid", "n-syllable");
    row("substance", "Al2O3", "Aluminiumoxid", "Dialuminiumtrioxid", "n-syllable");
    row("substance", "Na2SO4", "Natriumsulfat", "Dinatriumsulfat", "n-syllable");
    row("substance", "MgCl2", "Magnesiumchlorid", "Magnesiumchlorit", "-");
    row("substance", "NaCl", "Natriumchlorid", "Chlornatrium", "n-metal");
    row("substance", "CaCl2", "Calciumchlorid", "Chloridcalcium", "n-metal");
    row("substance", "MgO", "Magnesiumoxid", "Oxid-Magnesium", "n-metal");
    row("substance", "KCl", "Kaliumchlorid", "Calciumchlorid", "-");
    row("substance", "NaCl", "Natriumchlorid", "Natriumchlor", "n-id");
    row("substance", "KBr", "Kaliumbromid", "Kaliumbrom", "n-id");
    row("substance", "MgO", "Magnesiumoxid", "Magnesiumox", "n-id");
    row("substance", "Na2SO4", "Natriumsulfat", "Natriumsulf", "-");
    row("molar", "Lithiumchlorid (LiCl)", "42.4", "42,39", "decimals", "eine Nachkommastelle");
    row("molar", "Natriumchlorid", "58.4", "58.44", "decimals");
    row("molar", "Magnesiumchlorid (MgCl2)", "95.2", "95.21", "decimals");
    row("molar", "Magnesiumchlorid (MgCl2)", "95.2", "95.26", "-");
    row("molar", "Zinkoxid (ZnO)", "81.4", "81.3", "m-round", "81,38");
    row("molar", "Ethanol (C2H5OH)", "46.1", "46.0", "m-round");
    row("molar", "Schwefelsäure (H2SO4)", "98.1", "98.0", "m-round");
    row("molar", "Magnesiumoxid (MgO)", "40.3", "40.2", "-");
    row("molar", "Magnesiumchlorid (MgCl2)", "95.2", "59.8", "m-index", "2 Cl-Atome");
    row("molar", "Wasser (H2O)", "18.0", "17", "m-index");
    row("molar", "Aluminiumoxid (Al2O3)", "102.0", "70.0", "m-index", "3 O-Atome");
    // The bracket forgotten changes two counts at once: not this rule.
    row("molar", "Calciumhydroxid (Ca(OH)2)", "74.1", "57.1", "-");
    row("molar", "Magnesiumchlorid", "95.2", "59.8", "-");
    row("molar", "Natriumchlorid (NaCl)", "58.4", "28", "m-numbers");
    row("molar", "Wasser (H2O)", "18.0", "10", "m-numbers");
    row("molar", "Schwefelsäure (H2SO4)", "98.1", "50", "m-numbers");
    row("molar", "Natriumchlorid (NaCl)", "58.4", "28.0", "-");
    row("molar", "Wasser (H2O)", "18.0", "ca. 18", "unreadable", "18,0");
    row("molar", "Schwefelsäure (H2SO4)", "98.1", "M = 98,1", "unreadable");
    row("molar", "Wasser (H2O)", "18.0", "g/mol 18,0", "unreadable");
    row("molar", "Wasser (H2O)", "18.0", "ca. 20", "-");
    const char* water =
        "Wie viel mol sind 36,04 g Wasser (H2O)? (auf zwei Nachkommastellen runden)";
    const char* salt =
        "Wie viel mol sind 29,22 g Natriumchlorid (NaCl)? (auf zwei Nachkommastellen runden)";
    const char* oxide =
        "Wie viel mol sind 10 g Magnesiumoxid (MgO)? (auf zwei Nachkommastellen runden)";
    const char* gas = "Wie viel mol sind 11,2 l Sauerstoff im Normzustand (22,4 l/mol)? (auf zwei "
                      "Nachkommastellen runden)";
    row("amount", water, "2.00", "0.5", "a-inverse", "n = m / M");
    row("amount", salt, "0.50", "2", "a-inverse");
    row("amount", gas, "0.50", "2", "a-inverse", "V / Vm");
    row("amount", salt, "0.50", "0.05", "-");
    row("amount", water, "2.00", "1.61", "a-gas", "22,4");
    row("amount", salt, "0.50", "1.30", "a-gas");
    row("amount", oxide, "0.25", "0.45", "a-gas");
    row("amount", gas, "0.50", "1.61", "-");
    row("amount", water, "2.00", "2.12", "a-index", "2 H-Atome");
    row("amount", "Wie viel mol sind 16 g Sauerstoff (O2)? (auf zwei Nachkommastellen runden)",
        "0.50", "1.00", "a-index");
    row("amount",
        "Wie viel mol sind 88,02 g Kohlenstoffdioxid (CO2)? (auf zwei Nachkommastellen runden)",
        "2.00", "3.14", "a-index");
    row("amount", water, "2.00", "2.5", "-");
    row("amount", oxide, "0.25", "0.24", "a-round", "0,2481");
    row("amount", "Wie viel mol sind 6 g Magnesium (Mg)? (auf zwei Nachkommastellen runden)",
        "0.25", "0.24", "a-round");
    row("amount", water, "2.00", "1.99", "-");
    row("amount", oxide, "0.25", "0.248", "decimals", "zwei Nachkommastellen");
    row("amount", water, "2.00", "2.002", "decimals");
    row("amount", water, "2.00", "n = 2", "unreadable");
    row("amount", water, "2.00", "2.01", "-");
    row("amount", gas, "0.50", "250.88", "a-volume");
    row("amount", gas, "0.50", "251", "a-volume");
    row("amount", gas, "0.50", "250,9", "a-volume");
    row("amount", gas, "0.50", "25", "-");
    row("equation", "H2 + O2 = H2O", "2 1 2", "4 2 4", "e-multiple", "durch 2");
    row("equation", "N2 + H2 = NH3", "1 3 2", "2 6 4", "e-multiple");
    row("equation", "Al + O2 = Al2O3", "4 3 2", "12 9 6", "e-multiple", "durch 3");
    row("equation", "H2 + O2 = H2O", "2 1 2", "2 1 2", "-");
    row("equation", "H2 + O2 = H2O", "2 1 2", "1 1 1", "e-unbalanced", "O links 2, rechts 1");
    row("equation", "N2 + H2 = NH3", "1 3 2", "1 3 1", "e-unbalanced", "N links 2, rechts 1");
    row("equation", "CH4 + O2 = CO2 + H2O", "1 2 1 2", "1 1 1 2", "e-unbalanced", "O");
    row("equation", "H2 + O2 = H2O", "2 1 2", "2 0 2", "-");
    row("equation", "H2 + O2 = H2O", "2 1 2", "2 1 2H2O", "e-formula");
    row("equation", "Mg + O2 = MgO", "2 1 2", "2Mg 1 2", "e-formula");
    row("equation", "H2 + O2 = H2O", "2 1 2", "2 1 2 2", "-");
    row("equation", "Na + Cl2 = NaCl", "2 1 2", "1 0,5 1", "e-fraction");
    row("equation", "H2 + O2 = H2O", "2 1 2", "1 1/2 1", "e-fraction");
    row("equation", "H2 + O2 = H2O", "2 1 2", "2 1 2.", "-");
    row("ion", "Natrium-Ion", "+1", "-1", "i-sign", "positiv");
    row("ion", "Chlorid-Ion", "-1", "+1", "i-sign", "negativ");
    row("ion", "Nitrat-Ion", "-1", "+1", "i-sign");
    row("ion", "Natrium-Ion", "+1", "0", "-");
    row("ion", "Magnesium-Ion", "+2", "+3", "i-neighbour", "2. Hauptgruppe");
    row("ion", "Oxid-Ion", "-2", "-1", "i-neighbour", "Sauerstoff");
    row("ion", "Aluminium-Ion", "+3", "+2", "i-neighbour", "3. Hauptgruppe");
    row("ion", "Zink-Ion", "+2", "+1", "-");
    row("ion", "Nitrat-Ion", "-1", "-3", "-");
    row("ion", "Aluminium-Ion", "+3", "-2", "-");
    row("choice", "Katalysator", "Stoff, der eine Reaktion beschleunigt.", "", "c-empty");
    row("choice", "Luft ist ein Gemisch.", "Ja", "  ", "c-empty");
    row("choice", "Wasser ist ein Element.", "Nein", "", "c-empty");
    row("choice", "Luft ist ein Gemisch.", "Ja", "Nein", "-");
}

void TestMistakeHints::namesTheCause() {
    QFETCH(QString, kind);
    QFETCH(QString, prompt);
    QFETCH(QString, expected);
    QFETCH(QString, given);
    QFETCH(QString, cause);
    QFETCH(QString, mentions);
    const MistakeHints::Hint h =
        MistakeHints::diagnose(kinds().value(kind), prompt, expected, given, table());
    QCOMPARE(h.isEmpty() ? QStringLiteral("-") : h.cause, cause);
    if (!mentions.isEmpty())
        QVERIFY2(h.text.contains(mentions), qPrintable(h.text));
    if (!h.isEmpty()) {
        // One short sentence or two, ending as a sentence does.
        QVERIFY2(h.text.size() < 180, qPrintable(h.text));
        QVERIFY2(h.text.endsWith(u'.'), qPrintable(h.text));
    }
}

// The sample of wrong answers was written down before the rules: each row
// names the cause a chemist would see, or "-". A hint naming another cause
// is a wrong hint; the figures are printed for the notes.
void TestMistakeHints::sampleGetsNoWrongHint() {
    QFile file(QStringLiteral(LABQUIZ_SOURCE_DIR "/tests/chem/mistake_sample.tsv"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    int answers = 0, hinted = 0, unexpected = 0;
    QStringList wrong;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).chopped(1);
        if (line.startsWith(u'#') || line.isEmpty())
            continue;
        const QStringList f = line.split(u'\t');
        QCOMPARE(f.size(), 5);
        QVERIFY2(kinds().contains(f[0]), qPrintable(line));
        ++answers;
        const MistakeHints::Hint h =
            MistakeHints::diagnose(kinds().value(f[0]), f[1], f[2], f[3], table());
        if (h.isEmpty())
            continue;
        ++hinted;
        // The annotation names causes per task kind ("m-decimals"), the
        // rules share some ("decimals").
        const QString cause = f[4];
        if (cause == QStringLiteral("-")) {
            ++unexpected;
            qInfo("hint where the sample expected none: %s → %s", qPrintable(f[3]),
                  qPrintable(h.text));
        } else if (!cause.endsWith(h.cause)) {
            wrong << f[3] + QStringLiteral(": ") + h.cause + QStringLiteral(" (") + cause + u')';
        }
    }
    qInfo("%d wrong answers, %d with a hint (%.0f %%), %d of them where none was expected, %d "
          "naming another cause",
          answers, hinted, 100.0 * hinted / answers, unexpected, int(wrong.size()));
    QVERIFY2(answers >= 200, "the sample holds at least 200 answers");
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("; "))));
}

QTEST_GUILESS_MAIN(TestMistakeHints)
#include "test_mistake_hints.moc"
