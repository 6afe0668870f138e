// The class table as CSV bytes that a German spreadsheet opens by a double
// click, with text cells that can never turn into formulas.
#include "overview/ClassCsv.h"
#include "overview/ResultSamples.h"

#include <QtTest>

class TestClassCsv : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textCells_data();
    void textCells();
    void wholeTable();
    void nameThatLooksLikeAFormula();
};

void TestClassCsv::textCells_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");
    QTest::newRow("plain") << "Anna"
                           << "Anna";
    QTest::newRow("umlauts stay") << "Jörg Müßig"
                                  << "Jörg Müßig";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("formula") << "=1+1"
                             << "'=1+1";
    QTest::newRow("hyperlink formula, with quotes") << "=HYPERLINK(\"http://x\")"
                                                    << "\"'=HYPERLINK(\"\"http://x\"\")\"";
    QTest::newRow("plus") << "+49 30 1234"
                          << "'+49 30 1234";
    QTest::newRow("minus") << "-2+3"
                           << "'-2+3";
    QTest::newRow("at") << "@SUMME(A1)"
                        << "'@SUMME(A1)";
    QTest::newRow("tab in front") << "\t=1"
                                  << "'\t=1";
    QTest::newRow("sign inside is harmless") << "Anna-Lena"
                                             << "Anna-Lena";
    QTest::newRow("semicolon") << "Müller; Anna"
                               << "\"Müller; Anna\"";
    QTest::newRow("quote") << "Anna \"Ani\" B"
                           << "\"Anna \"\"Ani\"\" B\"";
    QTest::newRow("line break") << "Zeile\nzwei"
                                << "\"Zeile\nzwei\"";
    QTest::newRow("formula and semicolon") << "=A1;B1"
                                           << "\"'=A1;B1\"";
    QTest::newRow("blank at the end") << "Anna "
                                      << "\"Anna \"";
}

void TestClassCsv::textCells() {
    QFETCH(QString, text);
    QFETCH(QString, cell);
    QCOMPARE(ClassCsv::textCell(text), cell);
}

void TestClassCsv::wholeTable() {
    ResultRecord r = sampleTest("Lena Köhler", "2026-11-24T10:41:37",
                                {{1, "Natrium", "Na", "Na"},
                                 {1, "Arsen", "As", "As"},
                                 {1, "Eisen", "Fe", "Fe"},
                                 {1, "Kupfer", "Cu", "Ku"},
                                 {9, "H2 + O2 = H2O", "2 1 2", "2 1 2"}});
    r.machine = QStringLiteral("pc-07");
    // 5 of 6 right: 83,3 % with a decimal comma.
    const QByteArray bytes = ClassCsv::table({r}, {QStringLiteral("lena.json")}, {0});
    const QByteArray expected =
        "\xEF\xBB\xBF"
        "Name;Datum;Uhrzeit;Stufe;Aufgaben;Richtig;Anteil richtig "
        "(%);Note;Punkte;Rechner;Datei\r\n" +
        QStringLiteral("Lena Köhler;24.11.2026;10:41;normal;6;5;83,3;%1;%2;pc-07;lena.json\r\n")
            .arg(r.grade)
            .arg(r.points)
            .toUtf8();
    QCOMPARE(bytes, expected);
}

void TestClassCsv::nameThatLooksLikeAFormula() {
    const QList<ResultRecord> records{
        sampleTest("=cmd|' /C calc'!A0", "2026-11-24T10:00:00", {{1, "Natrium", "Na", "Na"}}, true),
        sampleTest("@Ben", "2026-11-25T08:00:00", {{1, "Natrium", "Na", "na"}})};
    const QByteArray bytes = ClassCsv::table(records, {"a.json", "-b.json"}, {1, 0});
    const QList<QByteArray> lines = bytes.split('\n');
    QCOMPARE(lines.size(), 4); // header, two rows, nothing after the last CR LF
    QVERIFY(lines[1].startsWith("'@Ben;25.11.2026;08:00;normal;1;0;0,0;"));
    QVERIFY(lines[1].endsWith(";pc-07;'-b.json\r"));
    QVERIFY(lines[2].startsWith("'=cmd|' /C calc'!A0;24.11.2026;10:00;Strebermodus;1;1;100,0;"));
    QCOMPARE(lines[3], QByteArray());
}

QTEST_GUILESS_MAIN(TestClassCsv)
#include "test_class_csv.moc"
