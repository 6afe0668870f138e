// How the task pages judge typed answers, one row per case: numbers read
// alike on both sides, texts compared exactly or against a list of
// alternatives, coefficients as leading numbers, and formulas or names
// against their "|"-separated spellings; and what a screen reader says for
// a task.
#include "TestSupport.h"
#include "pages/AnswerRules.h"
#include "pages/EquationPage.h"
#include "pages/NumberAnswer.h"
#include "pages/SubstancePage.h"
#include "pages/TaskNames.h"

using Namer = std::function<QString()>;
Q_DECLARE_METATYPE(Namer)

class TestAnswerRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

QTEST_MAIN(TestAnswerRules)
#include "test_answer_rules.moc"
