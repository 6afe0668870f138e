#include "TestSupport.h"
#include "checker/AmountRules.h"
#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "chem/TextLines.h"

namespace {

const QString kDataDir = QStringLiteral(LABQUIZ_SOURCE_DATA_DIR);

// A small bank that is right in every way the checker looks at, with
// just enough entries for every page. Anchor lines used by the rows below
// occur once.
QStringList cleanBank() {
    QStringList out;
    auto section = [&](int n, const QStringList& basic, const QStringList& expert) {
        out << QStringLiteral("Abschnitt %1").arg(n) << QStringLiteral("Kommentar %1").arg(n)
            << QStringLiteral("#") << basic << kLevelMark << expert << QStringLiteral("@");
    };
    section(1,
            {"Wasserstoff", "H", "Helium", "He", "Lithium", "Li", "Kohlenstoff", "C", "Stickstoff",
             "N", "Sauerstoff", "O"},
            {"Natrium", "Na"});
    section(2, {"1", "mono", "2", "di", "3", "tri", "4", "tetra"}, {"5", "penta"});
    section(3,
            {"Wasser", "18.0", "H2O", "Natriumchlorid", "58.4", "NaCl", "Kaliumchlorid", "74.6",
             "KCl", "Calciumhydroxid", "74.1", "Ca(OH)2"},
            {"Kupfer(II)-sulfat-Pentahydrat", "249.7", "CuSO4·5H2O", "Methan", "16.1", "CH4",
             "Magnesiumnitrid", "101.0", "Mg3N2"});
    section(4,
            {"Atom", "Kleinstes Teilchen eines Elements.", "Ion", "Geladenes Teilchen.", "Salz",
             "Verbindung aus Ionen.", "Oxid", "Verbindung mit Sauerstoff."},
            {"Anion", "Negativ geladenes Ion.", "Kation", "Positiv geladenes Ion.", "Molekül",
             "Teilchen aus Atomen.", "Element", "Reinstoff aus einer Atomsorte.", "Gemisch",
             "Stoff aus mehreren Reinstoffen.", "Legierung", "Gemisch von Metallen."});
    section(5, {"Natrium-Ion", "+1", "Chlorid-Ion", "-1", "Oxid-Ion", "-2", "Aluminium-Ion", "+3"},
            {"Nitrid-Ion", "-3"});
    section(6,
            {"Wasser ist eine Verbindung.", "J", "Gold ist ein Nichtmetall.", "N",
             "Luft ist ein Gemisch.", "J", "Helium ist ein Alkalimetall.", "N",
             "Metalle leiten Strom.", "J", "Neutronen sind geladen.", "N"},
            {"Ozon besteht aus drei Atomen.", "J"});
    section(7,
            {"@2H2+@1O2=@2H2O", "@1C+@1O2=@1CO2", "@1CH4+@2O2=@1CO2+@2H2O", "@4Al+@3O2=@2Al2O3",
             "@1N2+@3H2=@2NH3"},
            {"@2KClO3=@2KCl+@3O2"});
    section(8,
            {"LiCl", "Li^+*Cl^-", "Lithiumchlorid", "Ca(OH)2*Ca(HO)2", "Ca^2+*OH^-",
             "Calciumhydroxid", "Al2O3", "Al^3+*O^2-", "Aluminiumoxid", "(NH4)2SO4", "NH4^+*SO4^2-",
             "Ammoniumsulfat", "CuSO4", "Cu^2+*SO4^2-", "Kupfer(II)-sulfat|Kupfer(II)sulfat",
             "CH3COONa*C2H3O2Na", "Na^+*CH3COO^-", "Natriumacetat"},
            {"Ca3(PO4)2", "Ca^2+*PO4^3-", "Calciumphosphat"});
    section(9, {"Frage A", "2.00", "Frage B", "0.50", "Frage C", "0.10"},
            {"Frage D", "1.25", "Frage E", "0.045"});
    return out;
}

BankChecker::Report checkLines(const QStringList& lines, const ElementTable* elements) {
    return BankChecker::check(LegacyText::decode(cp1252Lines(lines)), QStringLiteral("t.dat"),
                              elements);
}

QString describe(const BankChecker::Report& report) {
    return report.lines().join(u'\n');
}

int lineCountOf(QStringView text) {
    TextLines lines(text);
    QStringView line;
    while (lines.next(line)) {
    }
    return lines.lineNumber();
}

} // namespace

using Decimal = AmountRules::Decimal;
using Kind = AmountRules::Kind;
using Masses = AmountRules::Masses;
Q_DECLARE_METATYPE(AmountRules::Decimal)
Q_DECLARE_METATYPE(AmountRules::Kind)
Q_DECLARE_METATYPE(AmountRules::Masses)

// The bank check: each problem a teacher's edit can cause, the element
// table, damaged banks, and the amount questions' own rule (reading the
// question, the three ways of taking atomic masses, exact rounding, notes).
class TestBankChecker : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        m_elements = ElementTable::load(kDataDir + QStringLiteral("/elements.dat"));
        QVERIFY(m_elements.fileRead());
    }
    void passesShippedBank() {
        const QString path = kDataDir + QStringLiteral("/labquiz.dat");
        const BankChecker::Report report =
            BankChecker::checkFiles(path, kDataDir + QStringLiteral("/elements.dat"));
        QVERIFY2(report.findings.isEmpty(), qPrintable(describe(report)));
        QCOMPARE(report.exitCode(), 0);
        QVERIFY(report.summary.startsWith(path + QStringLiteral(": 9 Abschnitte, ")));
        QVERIFY(report.summary.endsWith(QStringLiteral(", keine Fehler.")));
        // The summary's numbers are the reader's.
        const TaskBank bank = TaskBank::LoadTaskBank(path);
        int entries = 0;
        for (int s = 0; s < TaskBank::SectionCount; ++s) {
            const auto section = TaskBank::Section(s);
            entries += bank.count(section);
            QVERIFY(report.summary.contains(
                QStringLiteral("%1/%2").arg(bank.basicCount(section)).arg(bank.count(section))));
        }
        QVERIFY(report.summary.contains(QStringLiteral(" %1 Einträge ").arg(entries)));
    }
    void findsProblem_data() {
        // Each row changes `span` lines of the clean bank, starting at the one
        // line reading `anchor`, into `replacement`; a span of -1 changes one
        // line and cuts the file after it. The note is expected at `where`:
        // "+n"/"-n" counts from the anchor, "last" is the last line, "@k" the
        // k-th "@"; with no note expected, the bank must pass without any.
        // E and W: this error or warning and no other finding; Emore and
        // Wmore: among others that the change brings along.
        QTest::addColumn<QString>("anchor");
        QTest::addColumn<int>("span");
        QTest::addColumn<QStringList>("replacement");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<int>("kind");
        using L = QStringList;
        const int E = 2, W = 3, Emore = 0, Wmore = 1;
        const QString kMark = kLevelMark;
        // What the reader takes as meant must not be reported.
        dataRow("clean bank", "H", 1, L{"H"}, "", "", E);
        dataRow("flag in any case with blanks", "Ozon besteht aus drei Atomen.", 2,
                L{"Ozon besteht aus drei Atomen.", " j "}, "", "", E);
        dataRow("number with blanks around", "58.4", 1, L{" 58.4 "}, "", "", E);
        dataRow("charge without sign", "+3", 1, L{"3"}, "", "", E);
        dataRow("name at the limit, blanks after", "Wasser", 1, L{QString(40, u'W') + "   "}, "",
                "", E);
        dataRow("answer with exponent", "1.25", 1, L{"1.25E0"}, "", "", E);
        dataRow("largest single number", "0.10", 1, L{"3.4E38"}, "", "", E);
        // Layout.
        dataRow("file ends before a section", "Abschnitt 5", -1, L{"Abschnitt 5"}, "last",
                "Abschnitt 5 (IonCharges) mit einer Zeile \"#\" beginnt; sie hat nur 4 von 9", E);
        dataRow("section without @", "0.045", 2, L{"0.045"}, "last",
                "Abschnitt 9 (AmountSubstances) hat keine Zeile \"@\"", E);
        dataRow("record cut off", "Frage E", -1, L{"Frage E"}, "+0",
                "unvollständig: die Datei endet nach 1 seiner 2 Zeilen", Emore);
        dataRow("no level mark", "tetra", 2, L{"tetra"}, "-8",
                "Abschnitt 2 (NumberSyllables) hat keine Zeile \"ææ\"; die normale Stufe hat dann "
                "nichts zum Ziehen.",
                E);
        dataRow("no level mark where all are used", "0.10", 2, L{"0.10"}, "+5",
                "keine Zeile \"ææ\"", W);
        dataRow("two level marks", "di", 1, L{"di", kMark}, "+6", "mehr als eine Zeile \"ææ\"", W);
        dataRow("text after the ninth @", "0.045", 2, L{"0.045", "@", "", "Nachtrag"}, "+3",
                "Nach dem neunten", W);
        dataRow("@ read as a symbol", "Natrium", 2, L{"Natrium"}, "+1",
                "vermutlich fehlt davor eine Zeile", Emore);
        dataRow("ææ read as a symbol", "Li", 1, L{}, "+6", "Die Zeile \"ææ\" wird als Zeile 2",
                Emore);
        dataRow("# starts a record", "Na", 2, L{"Na"}, "+3",
                "vermutlich fehlt davor die Zeile \"@\"", Emore);
        dataRow("@ with a blank", "Na", 2, L{"Na", "@ "}, "+1",
                "enthält Leerzeichen und zählt deshalb als Daten", Emore);
        dataRow("ææ with a blank", "Na", 2, L{"Na", kMark + " "}, "+1",
                "enthält Leerzeichen und zählt deshalb als Daten", Emore);
        dataRow("# with a blank", "Kommentar 3", 2, L{"Kommentar 3", "# "}, "+1",
                "beendet deshalb den Kopf von Abschnitt 3", Wmore);
        dataRow("empty symbol", "He", 1, L{""}, "+0", "Das Symbol ist leer.", E);
        // Widths.
        dataRow("name too long", "Wasser", 1, L{QString(41, u'x')}, "+0",
                "Der Name ist 41 Zeichen lang", E);
        dataRow("term too long", "Atom", 1, L{QString(21, u't')}, "+0",
                "Der Fachbegriff ist 21 Zeichen lang", E);
        dataRow("definition too long", "Geladenes Teilchen.", 1, L{QString(121, u'd')}, "+0",
                "Die Erklärung ist 121 Zeichen lang; das Programm nimmt nur die ersten 120", E);
        dataRow("ion name too long", "Oxid-Ion", 1, L{QString(21, u'i')}, "+0",
                "Der Name des Ions ist 21 Zeichen", E);
        dataRow("statement too long", "Luft ist ein Gemisch.", 1, L{QString(121, u's')}, "+0",
                "Die Aussage ist 121 Zeichen", E);
        // Numbers and flags.
        dataRow("decimal comma", "58.4", 1, L{"58,4"}, "+0", "liest nur \"58\", also 58", E);
        dataRow("note keeps seven digits", "58.4", 1, L{"58.123456,7"}, "+0",
                "liest nur \"58.123456\", also 58.12346 (", E);
        dataRow("not a number", "3", 1, L{"drei"}, "+0", "\"drei\" ist keine Zahl", E);
        dataRow("16-bit overflow", "4", 1, L{"40000"}, "+0", "außerhalb von -32768 bis 32767", E);
        dataRow("not whole", "2", 1, L{"2.5"}, "+0", "keine ganze Zahl; das Programm liest 2", E);
        dataRow("answer with comma", "0.50", 1, L{"0,50"}, "+0",
                "Die Antwort \"0,50\" liest sich nicht ganz", E);
        dataRow("flag Ja", "Luft ist ein Gemisch.", 2, L{"Luft ist ein Gemisch.", "Ja"}, "+1",
                "\"Ja\" ist weder J noch N; das Programm liest sie als N", E);
        dataRow("charge out of range", "+3", 1, L{"+4"}, "+0",
                "Die Ladung 4 liegt nicht zwischen -3 und +3.", E);
        dataRow("charge zero", "-3", 1, L{"0"}, "+0", "Die Ladung ist 0", W);
        // Repeats and draws.
        dataRow("repeated record", "Natrium", 2, L{"Natrium", "Na", "Helium", "He"}, "+2",
                "wiederholt den Eintrag ab Zeile", W);
        dataRow("repeated symbol", "Natrium", 2, L{"Natrium", "Na", "Deuterium", "H"}, "+3",
                "Das Symbol H steht schon in Zeile", Wmore);
        dataRow("empty alternative", "Wasserstoff", 1, L{"Wasserstoff*"}, "+0",
                "leere Schreibweise", W);
        dataRow("empty alternative, empty symbol", "Wasserstoff", 2, L{"Wasserstoff*", ""}, "+0",
                "leere Schreibweise", Wmore);
        dataRow(
            "normal level too small", "tri", 4, L{"tri", kMark, "4", "tetra"}, "+1",
            "Vor dem \"ææ\" stehen nur 3 verschiedene Einträge; die Seite \"Zahlsilben\" braucht",
            E);
        dataRow("repeats do not count as entries", "Lithium", 2, L{"Helium", "He"}, "+8",
                "Vor dem \"ææ\" stehen nur 5", Emore);
        dataRow("section too small", "Oxid-Ion", 4, L{}, "+3", "hat nur 3 verschiedene Einträge",
                E);
        dataRow("too few definitions", "Gemisch von Metallen.", 1, L{"Geladenes Teilchen."}, "@4",
                "nur 9 verschiedene Erklärungen", E);
        // Chemistry against elements.dat.
        dataRow(
            "molar mass rounds half up", "74.6", 1, L{"74.5"}, "+0",
            "Die molare Masse 74.5 passt nicht zur Formel KCl (berechnet: 74.55 g/mol, gerundet "
            "74.6).",
            E);
        // 16.05 rounds up although 0 is even; 100.95 is 100.9499... in binary.
        dataRow("half up, not half to even", "16.1", 1, L{"16.0"}, "+0",
                "passt nicht zur Formel CH4 (berechnet: 16.05 g/mol, gerundet 16.1)", E);
        dataRow("exact hundredths", "101.0", 1, L{"100.9"}, "+0",
                "(berechnet: 100.95 g/mol, gerundet 101.0)", E);
        dataRow("molar mass of hydrate", "249.7", 1, L{"249.6"}, "+0", "berechnet: 249.71 g/mol",
                E);
        dataRow("mass number only", "H2O", 1, L{"TcO2"}, "+0", "nur die Massenzahl [98]", E);
        dataRow("unknown element", "H2O", 1, L{"H2Xy"}, "+0",
                "\"Xy\" in \"H2Xy\" steht nicht in elements.dat", E);
        dataRow("unreadable formula", "H2O", 1, L{"H2O)"}, "+0",
                "Die Formel \"H2O)\" lässt sich nicht lesen", E);
        dataRow("unknown symbol", "He", 1, L{"Hx"}, "+0",
                "Das Symbol \"Hx\" steht nicht in elements.dat", E);
        dataRow("name unlike elements.dat", "Lithium", 1, L{"Litium"}, "+0",
                "Keiner der Namen \"Litium\"", W);
        dataRow("unbalanced", "@2H2+@1O2=@2H2O", 1, L{"@2H2+@2O2=@2H2O"}, "+0",
                "nicht ausgeglichen: O links 4, rechts 2.", E);
        dataRow("not smallest", "@2H2+@1O2=@2H2O", 1, L{"@4H2+@2O2=@4H2O"}, "+0", "durch 2 teilen",
                E);
        dataRow("charged substance in an equation", "@1C+@1O2=@1CO2", 1, L{"@1Na^++@1Cl^-=@1NaCl"},
                "+0", "\"Na^+\" trägt eine Ladung", Emore);
        dataRow("three substances a side", "@1C+@1O2=@1CO2", 1, L{"@1C+@1O2+@1N2=@1CO2+@1N2"}, "+0",
                "Die linke Seite hat 3 Stoffe", E);
        dataRow("missing coefficient", "@1C+@1O2=@1CO2", 1, L{"@1C+@O2=@1CO2"}, "+0",
                "Vor der Formel \"O2\" fehlt der Koeffizient", E);
        dataRow("zero coefficient", "@1C+@1O2=@1CO2", 1, L{"@0C+@1O2=@1CO2"}, "+0",
                "keine positive ganze Zahl", E);
        dataRow("no =", "@1C+@1O2=@1CO2", 1, L{"@1C+@1O2+@1CO2"}, "+0", "genau ein \"=\"", E);
        dataRow("no @", "@1C+@1O2=@1CO2", 1, L{"@1C+@1O2=1CO2"}, "+0",
                "Die rechte Seite \"1CO2\" beginnt nicht mit \"@\"", E);
        dataRow("charges do not cancel", "Ca^2+*OH^-", 1, L{"Ca^+*OH^-"}, "+0",
                "1 × Ca^+ + 2 × OH^- ergibt die Formel Ca(OH)2 mit der Ladung -1", E);
        dataRow("ions of other elements", "Li^+*Cl^-", 1, L{"Li^+*Br^-"}, "+0",
                "Br kommt in der Formel nicht vor; Cl fehlt in den Ionen", E);
        dataRow("ions cannot build formula", "(NH4)2SO4", 1, L{"(NH4)2SO3"}, "+1",
                "nicht zusammensetzen", E);
        dataRow("ion without charge", "Al^3+*O^2-", 1, L{"Al^3+*O"}, "+0", "\"O\" hat keine Ladung",
                E);
        dataRow("ion listed twice", "Li^+*Cl^-", 1, L{"Li^+*Cl^-*Cl^-"}, "+0",
                "nicht zusammensetzen", E);
        dataRow("ambiguous ions", "Al^3+*O^2-", 1, L{"Al^3+*O^2-*O^2-"}, "+0", "auf mehrere Arten",
                W);
        dataRow("alternatives differ", "CH3COONa*C2H3O2Na", 1, L{"CH3COONa*C2H3O2K"}, "+0",
                "nicht dieselbe Zusammensetzung", E);
        dataRow("charged substance", "LiCl", 1, L{"LiCl^+"}, "+0", "\"LiCl^+\" trägt eine Ladung",
                E);
        dataRow("unreadable substance formula", "LiCl", 1, L{"LiCl)"}, "+0",
                "Die Formel \"LiCl)\" lässt sich nicht lesen", E);
        // The amount rule has its own rows; here only that its notes reach the report.
        dataRow("amount answer wrong", "Frage A", 2,
                L{"Wie viel mol sind 28 g Eisen (Fe)? (auf zwei Nachkommastellen runden)", "2.00"},
                "+1", "Die Antwort 2.00 passt nicht zur Frage", E);
    }
    void findsProblem() {
        QFETCH(QString, anchor);
        QFETCH(int, span);
        QFETCH(QStringList, replacement);
        QFETCH(QString, where);
        QFETCH(QString, expected);
        QFETCH(int, kind);
        const bool isWarning = kind & 1;

        QStringList lines = cleanBank();
        QCOMPARE(lines.count(anchor), 1);
        const int at = static_cast<int>(lines.indexOf(anchor));
        lines.remove(at, qAbs(span));
        for (qsizetype k = 0; k < replacement.size(); ++k)
            lines.insert(at + k, replacement.at(k));
        if (span < 0)
            lines = lines.mid(0, at + replacement.size());

        int line = at + 1 + where.toInt();
        if (where == u"last") {
            line = static_cast<int>(lines.size());
        } else if (where.startsWith(u'@')) {
            for (int i = 0, wanted = where.mid(1).toInt(); i < lines.size() && wanted > 0; ++i)
                if (lines.at(i) == u"@" && --wanted == 0)
                    line = i + 1;
        }

        const BankChecker::Report report = checkLines(lines, &m_elements);
        if (expected.isEmpty()) {
            QVERIFY2(report.findings.isEmpty(), qPrintable(describe(report)));
            return;
        }
        const auto severity =
            isWarning ? BankChecker::Severity::Warning : BankChecker::Severity::Error;
        const bool found =
            std::any_of(report.findings.cbegin(), report.findings.cend(), [&](const auto& f) {
                return f.line == line && f.severity == severity && f.text.contains(expected);
            });
        QVERIFY2(found, qPrintable(QStringLiteral("expected at line %1: %2\n%3")
                                       .arg(line)
                                       .arg(expected, describe(report))));
        if (kind >= 2)
            QVERIFY2(report.findings.size() == 1, qPrintable(describe(report)));
        // Warnings are advice: only errors fail the check.
        QCOMPARE(report.exitCode(), report.errorCount() > 0 ? 1 : 0);
        if (!isWarning)
            QCOMPARE(report.exitCode(), 1);
        const QString printed = QStringLiteral("t.dat:%1: %2")
                                    .arg(line)
                                    .arg(isWarning ? QStringLiteral("Warnung: ") : QString());
        QVERIFY(!report.lines().filter(printed).isEmpty());
    }
    void worksWithoutElementTable() {
        QTemporaryDir dir;
        QStringList lines = cleanBank();
        lines[lines.indexOf(QStringLiteral("He"))] = QStringLiteral("Hx");
        lines[lines.indexOf(QStringLiteral("74.6"))] = QStringLiteral("74.5");
        const QString bank = dir.filePath(QStringLiteral("labquiz.dat"));
        QVERIFY(writeFile(bank, cp1252Lines(lines)));
        const QString missing = dir.filePath(QStringLiteral("elements.dat"));
        BankChecker::Report report = BankChecker::checkFiles(bank, missing);
        // Only the missing table is reported: symbol and mass checks are skipped.
        QCOMPARE(report.findings.size(), 1);
        QCOMPARE(report.findings[0].severity, BankChecker::Severity::Warning);
        QCOMPARE(report.findings[0].toString().left(missing.size() + 11),
                 missing + QStringLiteral(": Warnung: "));
        QCOMPARE(report.exitCode(), 0);
        QVERIFY(report.summary.endsWith(QStringLiteral("keine Fehler, 1 Warnung.")));

        // A bank that cannot be read is an error on its own.
        report = BankChecker::checkFiles(dir.filePath(QStringLiteral("fehlt.dat")), missing);
        QCOMPARE(report.errorCount(), 1);
        QCOMPARE(report.exitCode(), 2);
        QCOMPARE(report.findings[0].line, 0);
        QVERIFY(report.summary.contains(QStringLiteral("nicht geprüft")));
    }
    void readsElementTable() {
        QCOMPARE(m_elements.count(), 118);
        QVERIFY2(m_elements.problems().isEmpty(), qPrintable(m_elements.problems().value(0).text));
        const ElementTable::Element* fe = m_elements.find(u"Fe");
        QVERIFY(fe && fe->number == 26 && fe->name == QStringLiteral("Eisen"));
        QVERIFY(fe->massHundredths == 5585 && fe->group == 8 && fe->period == 4);
        QCOMPARE(fe->category, QStringLiteral("Übergangsmetall"));
        QCOMPARE(*fe->electronegativity, 1.83);
        const ElementTable::Element* tc = m_elements.byNumber(43);
        QVERIFY(tc && tc->massNumberOnly && !tc->hasMass() && tc->massHundredths == 9800);
        QVERIFY(!m_elements.find(u"He")->electronegativity.has_value());
        QVERIFY(!m_elements.find(u"CO"));

        // A hand-edited table: each broken line is noted with its number.
        const QStringList lines{
            "# Kommentar",                                   // 1
            "1;H;Wasserstoff;1.01;1;1;Nichtmetall;2.20",     // 2
            "",                                              // 3
            "2;He;Helium;4.00;18;1;Edelgas",                 // 4: electronegativity left out
            "3;Li;Lithium;6,94;1;2;Alkalimetall;0.98",       // 5: comma
            "4;Be;Beryllium;9.012;2;2;Erdalkalimetall;1.57", // 6: three decimals
            "5;B;Bor;10.81;19;2;Halbmetall;2.04",            // 7: group
            "6;C;Kohlenstoff;12.01;14;2",                    // 8: fields missing
            "7;h;Stickstoff;14.01;15;2;Nichtmetall;3.04",    // 9: symbol
            "1;N;Stickstoff;14.01;15;2;Nichtmetall;3.04",    // 10: number twice
            "8;H;Sauerstoff;16.00;16;2;Nichtmetall;3.44",    // 11: symbol twice
            "9;F;Fluor;[x];17;2;Halogen;3.98",               // 12: mass number
            "10;Ne;Neon;20.18;18;2;Edelgas;viel",            // 13: electronegativity
        };
        const ElementTable t = ElementTable::fromText(LegacyText::decode(cp1252Lines(lines)));
        QList<int> problemLines;
        for (const auto& p : t.problems())
            problemLines << p.line;
        QCOMPARE(problemLines, (QList<int>{5, 6, 7, 8, 9, 10, 11, 12, 13}));
        // Lines with a wrong value keep their element; unusable ones are left out.
        QCOMPARE(t.count(), 7);
        QVERIFY(t.find(u"Li") && !t.find(u"Li")->hasMass());
        QCOMPARE(t.find(u"B")->group, 0);
        QCOMPARE(t.find(u"He")->massHundredths, 400);
        QCOMPARE(t.find(u"H")->name, QStringLiteral("Wasserstoff"));
        QVERIFY(!t.find(u"C"));

        // Through the checker, the table's problems carry its file name.
        QTemporaryDir dir;
        const QString elements = dir.filePath(QStringLiteral("elements.dat"));
        QVERIFY(writeFile(elements, cp1252Lines(lines)));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("labquiz.dat")), cp1252Lines(cleanBank())));
        const BankChecker::Report report =
            BankChecker::checkFiles(dir.filePath(QStringLiteral("labquiz.dat")), elements);
        QVERIFY(report.lines().contains(elements + QStringLiteral(":5: ") + t.problems()[0].text));
    }
    void survivesDamagedBanks() {
        // Random damage to the shipped bank: lost, doubled and swapped lines,
        // stray markers, junk, cut files, flipped bytes. Every input must be
        // read and checked quickly, with notes inside the file. A longer run:
        // LABQUIZ_FUZZ_COUNT=200000.
        QFile file(kDataDir + QStringLiteral("/labquiz.dat"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray shipped = file.readAll();
        const QList<QByteArray> shippedLines = shipped.split('\n');
        const int runs = qEnvironmentVariableIsSet("LABQUIZ_FUZZ_COUNT")
                             ? qEnvironmentVariableIntValue("LABQUIZ_FUZZ_COUNT")
                             : 3000;
        QRandomGenerator rng(20060328);
        const QByteArray junkChars = LegacyText::encodeWindows1252(
            QStringLiteral("()^+-·*@=#|.,; 0123456789HOCNSPKaClgeæJ\r\n\t"));
        auto junk = [&](int maxLength) {
            QByteArray out;
            const int n = rng.bounded(maxLength + 1);
            for (int i = 0; i < n; ++i)
                out += junkChars.at(rng.bounded(junkChars.size()));
            return out;
        };
        const QList<QByteArray> markers{"@\r", "#\r", "\xE6\xE6\r", "\r", " @\r", "\xE6\xE6"};
        using Lines = QList<QByteArray>;
        auto any = [&](const auto& list) { return int(rng.bounded(int(list.size()))); };
        const std::function<void(Lines&, int)> damage[] = {
            [](Lines& l, int i) { l.removeAt(i); },
            [&](Lines& l, int i) { l.insert(i, QByteArray(l.at(any(l)))); },
            [&](Lines& l, int i) { l.swapItemsAt(i, any(l)); },
            [&](Lines& l, int i) { l.insert(i, markers.at(any(markers))); },
            [&](Lines& l, int i) { l[i] = junk(40) + '\r'; },
            [&](Lines& l, int i) { l[i].insert(rng.bounded(int(l[i].size()) + 1), junk(4)); },
            [](Lines& l, int i) { l = l.mid(0, i); }};

        QElapsedTimer slowest;
        qint64 worst = 0;
        int withNotes = 0;
        for (int run = 0; run < runs; ++run) {
            Lines lines = shippedLines;
            const int edits = 1 + rng.bounded(run % 5 == 0 ? 12 : 3);
            for (int e = 0; e < edits && !lines.isEmpty(); ++e)
                damage[rng.bounded(7)](lines, any(lines));
            QByteArray input = lines.join('\n');
            if (run % 7 == 3) // raw byte damage, which may also upset the decoding
                for (int k = rng.bounded(1, 20); k > 0 && !input.isEmpty(); --k)
                    input[rng.bounded(static_cast<int>(input.size()))] = char(rng.bounded(256));
            if (run % 11 == 5)
                input.truncate(rng.bounded(static_cast<int>(input.size()) + 1));
            if (run % 97 == 0)
                input = junk(3000);

            const QString text = LegacyText::decode(input);
            slowest.start();
            const BankChecker::Report report =
                BankChecker::check(text, QStringLiteral("f"), &m_elements);
            worst = qMax(worst, slowest.elapsed());

            const int lineCount = lineCountOf(text);
            for (const auto& f : report.findings) {
                QVERIFY2(f.line >= 0 && f.line <= lineCount, qPrintable(f.toString()));
                QVERIFY(!f.text.isEmpty());
                QCOMPARE(f.file, QStringLiteral("f"));
            }
            QCOMPARE(report.exitCode(), report.errorCount() > 0 ? 1 : 0);
            QCOMPARE(report.errorCount() + report.warningCount(), int(report.findings.size()));
            QVERIFY(report.summary.startsWith(QStringLiteral("f: ")));
            if (!report.findings.isEmpty())
                ++withNotes;
        }
        QVERIFY2(worst < 2000, qPrintable(QStringLiteral("slowest check took %1 ms").arg(worst)));
        // Nearly every damage is noticed; a swap of two equal lines is not.
        QVERIFY(withNotes > runs * 8 / 10);
        qInfo("%d damaged banks checked, %d with notes, slowest %lld ms", runs, withNotes, worst);
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

QTEST_GUILESS_MAIN(TestBankChecker)
#include "test_bank_checker.moc"
