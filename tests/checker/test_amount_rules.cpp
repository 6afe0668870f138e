#include "TestSupport.h"
#include "checker/AmountRules.h"
#include "checker/CheckContext.h"

// The amount questions' rule of the bank check: reading the question,
// the three ways of taking atomic masses, exact rounding, and the notes.

using Decimal = AmountRules::Decimal;
using Kind = AmountRules::Kind;
using Masses = AmountRules::Masses;
Q_DECLARE_METATYPE(AmountRules::Decimal)
Q_DECLARE_METATYPE(AmountRules::Kind)
Q_DECLARE_METATYPE(AmountRules::Masses)

class TestAmountRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        m_elements = ElementTable::load(QStringLiteral(LABQUIZ_SOURCE_DATA_DIR "/elements.dat"));
        QVERIFY(m_elements.count() > 100);
    }
    void readsQuestions_data() {
        // Masses with the formula to work out; stated molar masses, volumes and
        // particles are read in the rows of judgesAnswers, whose notes quote them.
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("portion");
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("decimals");
        const QString two = QStringLiteral("? (auf zwei Nachkommastellen runden)");
        dataRow("Masse mit Formel", "Wie viel mol sind 36,04 g Wasser (H2O)" + two, "36.04", "H2O",
                2);
        dataRow("Name mit Klammern", "Wie viel mol sind 75 g Eisen(III)-oxid (Fe2O3)" + two, "75",
                "Fe2O3", 2);
        dataRow(
            "Formel mit Klammern",
            "Wie viel mol sind 7,41 g Calciumhydroxid (Ca(OH)2)? (auf eine Nachkommastelle runden)",
            "7.41", "Ca(OH)2", 1);
        dataRow("Hydrat ohne Klammern", "Wie viel mol sind 250 g CuSO4·5H2O" + two, "250",
                "CuSO4·5H2O", 2);
        dataRow("ohne Formel", "Wie viel mol sind 10 g Gold" + two, "10", "Gold", 2);
        dataRow("Stellen als Ziffer",
                "Wie viel mol sind 10 g Gold? (auf 3 Nachkommastellen runden)", "10", "Gold", 3);
    }
    void readsQuestions() {
        QFETCH(QString, question);
        QFETCH(QString, portion);
        QFETCH(QString, formula);
        QFETCH(int, decimals);
        const std::optional<AmountRules::Question> q = AmountRules::readQuestion(question);
        QVERIFY(q && q->kind == Kind::Mass && !q->perMole);
        QCOMPARE(q->portion.text(), portion);
        QCOMPARE(q->formula, formula);
        QCOMPARE(q->decimals.value_or(-1), decimals);
        QVERIFY(!AmountRules::readQuestion(u"Wie viele Atome hat ein Wassermolekül?"));
    }
    void takesMassesAsStudentsDo_data() {
        QTest::addColumn<int>("table");
        QTest::addColumn<Masses>("masses");
        QTest::addColumn<int>("taken");
        dataRow("H eine Stelle", 101, Masses::OneDecimal, 100);
        dataRow("Fe eine Stelle", 5585, Masses::OneDecimal, 5590);
        dataRow("Cl eine Stelle", 3545, Masses::OneDecimal, 3550);
        dataRow("H Schule", 101, Masses::School, 100);
        dataRow("Mg Schule", 2431, Masses::School, 2400);
        dataRow("Fe Schule", 5585, Masses::School, 5600);
        dataRow("Cl Schule 35,5", 3545, Masses::School, 3550);
        dataRow("Cu Schule 63,5", 6355, Masses::School, 6350);
        dataRow("Zn Schule 65", 6538, Masses::School, 6500);
        dataRow("Ni Schule 59", 5869, Masses::School, 5900);
        dataRow("Hg Schule 200,5", 20059, Masses::School, 20050);
        dataRow("Schule ab ,40 auf ,5", 2440, Masses::School, 2450);
        dataRow("Schule bis ,60 auf ,5", 2460, Masses::School, 2450);
        dataRow("Tabelle unverändert", 2431, Masses::Table, 2431);
    }
    void takesMassesAsStudentsDo() {
        QFETCH(int, table);
        QFETCH(Masses, masses);
        QFETCH(int, taken);
        QCOMPARE(AmountRules::elementMass(table, masses), taken);
    }
    void roundsHalfUpExactly_data() {
        QTest::addColumn<Decimal>("portion");
        QTest::addColumn<Decimal>("perMole");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<qint64>("rounded"); // -1: out of range
        dataRow("36,04 g Wasser", Decimal{3604, -2}, Decimal{1802, -2}, 2, qint64(200));
        dataRow("genau auf der Hälfte", Decimal{1, 0}, Decimal{8, 0}, 2, qint64(13));
        dataRow("0,555 ist 0,5550006", Decimal{100, 0}, Decimal{18018, -2}, 2, qint64(56));
        dataRow("Gold", Decimal{10, 0}, Decimal{19697, -2}, 3, qint64(51));
        dataRow("Volumen", Decimal{2, 0}, Decimal{224, -1}, 3, qint64(89));
        dataRow("Teilchen", Decimal{9033, 19}, Decimal{6022, 20}, 2, qint64(15));
        dataRow("zu groß", Decimal{1, 30}, Decimal{1, 0}, 2, qint64(-1));
        dataRow("durch null", Decimal{1, 0}, Decimal{0, 0}, 2, qint64(-1));
    }
    void roundsHalfUpExactly() {
        QFETCH(Decimal, portion);
        QFETCH(Decimal, perMole);
        QFETCH(int, decimals);
        QFETCH(qint64, rounded);
        QCOMPARE(AmountRules::roundedQuotient(portion, perMole, decimals).value_or(-1), rounded);
    }
    void judgesAnswers_data() {
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("note"); // "" none, else "E:" or "W:" and a piece of it
        const QString two = QStringLiteral("? (auf zwei Nachkommastellen runden)");
        const QString one = QStringLiteral("? (auf eine Nachkommastelle runden)");
        const QString three = QStringLiteral("? (auf drei Nachkommastellen runden)");
        // Right whichever masses the student uses.
        dataRow("28 g Eisen", "Wie viel mol sind 28 g Eisen (Fe)" + two, "0.50", "");
        dataRow("4 g Wasserstoff", "Wie viel mol sind 4 g Wasserstoff (H2)" + one, "2.0", "");
        dataRow("Antwort ohne Nullen", "Wie viel mol sind 4 g Wasserstoff (H2)" + one, "2", "");
        dataRow(
            "Hydrat",
            QStringLiteral("Wie viel mol sind 250 g Kupfer(II)-sulfat-Pentahydrat (CuSO4·5H2O)") +
                two,
            "1.00", "");
        dataRow("ohne Formel nicht geprüft", "Wie viel mol sind 10 g Gold" + two, "0.07", "");
        dataRow("genannte molare Masse",
                "Wie viel mol sind 50 g Natriumchlorid (M = 58,44 g/mol)" + two, "0.86", "");
        dataRow("Volumen", "Wie viel mol sind 2 l CO2 im Normzustand (22,4 l/mol)" + three, "0.089",
                "");
        dataRow("Teilchen",
                QStringLiteral("Wie viel mol sind 6,022 · 10²² Natrium-Atome (6,022 · 10²³/mol)") +
                    two,
                "0.10", "");
        // Right only with some masses.
        dataRow("4,04 g Wasserstoff", "Wie viel mol sind 4,04 g Wasserstoff (H2)" + two, "2.00",
                "W:auf eine Nachkommastelle 2.02 mol (M(H2) = 2 g/mol)");
        dataRow("111,7 g Eisen", "Wie viel mol sind 111,7 g Eisen (Fe)" + two, "2.00",
                "W:Schulwerten 1.99 mol (M(Fe) = 56 g/mol)");
        dataRow("50 g Kochsalz", "Wie viel mol sind 50 g Natriumchlorid (NaCl)" + two, "0.86",
                "W:elements.dat 0.86 mol (M(NaCl) = 58.44 g/mol)");
        dataRow("100 g Glucose", "Wie viel mol sind 100 g Glucose (C6H12O6)" + three, "0.555",
                "W:Schulwerten 0.556 mol");
        // Wrong.
        dataRow("falsche Masse-Antwort", "Wie viel mol sind 28 g Eisen (Fe)" + two, "0.55",
                "E:ergibt auf 2 Nachkommastellen gerundet 0.50.");
        dataRow("falsch bei genannter Masse",
                "Wie viel mol sind 50 g Natriumchlorid (M = 58,5 g/mol)" + two, "0.86",
                "E:50 g / 58.5 g/mol ergibt auf 2 Nachkommastellen gerundet 0.85.");
        dataRow("falsches Volumen", "Wie viel mol sind 2 l CO2 im Normzustand (22,4 l/mol)" + three,
                "0.09", "E:2 l / 22.4 l/mol ergibt auf 3 Nachkommastellen gerundet 0.089.");
        dataRow("falsche Teilchen",
                QStringLiteral("Wie viel mol sind 9,033 · 10²² Kupfer-Atome (6,022 · 10²³/mol)") +
                    two,
                "0.16",
                "E:9.033e22 Teilchen / 6.022e23/mol ergibt auf 2 Nachkommastellen gerundet 0.15.");
        dataRow("Antwort über 10^18 Einheiten", "Wie viel mol sind 0,1 g Eisen (Fe)" + two,
                QStringLiteral("0 · 10¹⁷"), "E:gerundet 0.00.");
        dataRow("Rundung aus der Antwort", "Wie viel mol sind 9 g Wasser (H2O)?", "0.4",
                "E:auf eine Nachkommastelle gerundet 0.5.");
    }
    void judgesAnswers() {
        QFETCH(QString, question);
        QFETCH(QString, answer);
        QFETCH(QString, note);
        CheckContext ctx(u"", QStringLiteral("t.dat"), &m_elements);
        AmountRules::checkAmount(ctx, 7, question, answer);
        if (note.isEmpty()) {
            QVERIFY2(ctx.findings.isEmpty(), qPrintable(ctx.findings.value(0).text));
            return;
        }
        QCOMPARE(ctx.findings.size(), 1);
        const CheckFinding& f = ctx.findings.first();
        const bool warning = note.startsWith(QLatin1String("W:"));
        QCOMPARE(f.severity, warning ? CheckSeverity::Warning : CheckSeverity::Error);
        QCOMPARE(f.line, warning ? 7 : 8); // warnings on the question, errors on the answer
        QVERIFY2(f.text.contains(note.mid(2)), qPrintable(f.text));
    }

private:
    ElementTable m_elements;
};

QTEST_MAIN(TestAmountRules)
#include "test_amount_rules.moc"
