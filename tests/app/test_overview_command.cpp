// "labquiz --auswertung ORDNER --csv DATEI|-" as a school server's script
// runs it: no display, the CSV written whole, the exit code saying whether
// every file was read.
#include "TestSupport.h"
#include "overview/ResultSamples.h"

#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class TestOverviewCommand : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void exitCodes_data();
    void exitCodes();
    void writesToStandardOutput();
    void readsTheResultsFolderInUse();
    void dropBoxCannotBeListed();
    void helpNamesIt();
};

void TestOverviewCommand::exitCodes_data() {
    QTest::addColumn<QStringList>("args"); // F: the folder, OUT: the CSV file
    QTest::addColumn<bool>("badFile");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("rows"); // lines of the CSV after its header; -1: no file
    QTest::addColumn<QString>("err");
    const QStringList csv{"--auswertung", "F", "--csv", "OUT"};
    dataRow("all read", csv, false, 0, 5, QString("5 Tests in der Tabelle, 5 Dateien gelesen"));
    dataRow("one skipped and named", csv, true, 1, 5,
            QString("übersprungen: 2026-11-26_kaputt.json: kein gültiges JSON"));
    dataRow("dates restrict the rows",
            csv + QStringList{"--von", "2026-11-22", "--bis", "2026-11-24"}, false, 0, 2,
            QString("2 Tests in der Tabelle"));
    dataRow("folder missing", QStringList{"--auswertung", "F/fehlt", "--csv", "OUT"}, false, 2, -1,
            QString("gibt es nicht"));
    dataRow("no such date", csv + QStringList{"--von", "2026-13-01"}, false, 2, -1,
            QString("kein Datum der Form JJJJ-MM-TT"));
    dataRow("German date order", csv + QStringList{"--bis", "24.11.2026"}, false, 2, -1,
            QString("kein Datum"));
    dataRow("from after to", csv + QStringList{"--von", "2026-11-24", "--bis", "2026-11-20"}, false,
            2, -1, QString("--von liegt nach --bis"));
    dataRow("two folders", csv + QStringList{"F"}, false, 2, -1, QString("Nur ein Ordner"));
    dataRow("unknown switch", csv + QStringList{"--format", "xlsx"}, false, 2, -1,
            QString("Unbekannte Angabe \"--format\""));
    dataRow("date switch without its date", csv + QStringList{"--von"}, false, 2, -1,
            QString("Nach --von fehlt die Angabe"));
}

void TestOverviewCommand::exitCodes() {
    QFETCH(QStringList, args);
    QFETCH(bool, badFile);
    QFETCH(int, exitCode);
    QFETCH(int, rows);
    QFETCH(QString, err);
    QTemporaryDir dir;
    const QString folder = dir.filePath("Ergebnisse");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(writeSampleClass(folder));
    if (badFile)
        QVERIFY(writeBytes(folder + "/2026-11-26_kaputt.json", "{\"format\": \"laborix-res"));
    const QString out = dir.filePath("klasse.csv");
    for (QString& a : args) {
        if (a == "OUT")
            a = out;
        else if (a.startsWith("F"))
            a.replace(0, 1, folder);
    }
    const ProgramRun run =
        runProgram(QStringLiteral(LABQUIZ_EXE), args, withoutDisplay(dir.filePath("daten")));
    QVERIFY(run.finished);
    QVERIFY2(run.err.contains(err), qPrintable(run.err));
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(QFileInfo::exists(out), rows >= 0);
    if (rows < 0)
        return;
    QFile file(out);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("\xEF\xBB\xBFName;Datum;Uhrzeit;"));
    QCOMPARE(bytes.count("\r\n"), rows + 1);
}

void TestOverviewCommand::writesToStandardOutput() {
    QTemporaryDir dir;
    QVERIFY(writeSampleClass(dir.path()));
    QProcess p;
    p.setProcessEnvironment(withoutDisplay(dir.filePath("daten")));
    p.start(QStringLiteral(LABQUIZ_EXE), {"--auswertung", dir.path(), "--csv", "-"});
    QVERIFY(p.waitForFinished(60000));
    QCOMPARE(p.exitCode(), 0);
    const QByteArray csv = p.readAllStandardOutput();
    const QList<QByteArray> lines = csv.split('\n');
    QVERIFY(csv.startsWith("\xEF\xBB\xBF"));
    // Name by name, each name's attempts oldest first.
    QVERIFY(lines[1].startsWith("Anna;20.11.2026;10:00;normal;3;1;33,3;"));
    QVERIFY(lines[2].startsWith("Anna;24.11.2026;"));
    QVERIFY(lines[3].startsWith("\"anna \";25.11.2026;"));
    QVERIFY(lines[4].startsWith("Ben;"));
    QVERIFY(lines[5].startsWith("Cem;22.11.2026;11:00;Strebermodus;4;2;50,0;"));
}

void TestOverviewCommand::readsTheResultsFolderInUse() {
    QTemporaryDir dir;
    const QString results = dir.filePath("Abgabe");
    QVERIFY(QDir().mkpath(results));
    QVERIFY(writeSampleClass(results));
    QProcessEnvironment env = withoutDisplay(dir.filePath("daten"));
    env.insert("LABQUIZ_RESULTS", results);
    const ProgramRun run = runProgram(QStringLiteral(LABQUIZ_EXE),
                                      {"--auswertung", "--csv", dir.filePath("k.csv")}, env);
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.err.contains("5 Tests in der Tabelle"), qPrintable(run.err));
}

void TestOverviewCommand::dropBoxCannotBeListed() {
#ifdef Q_OS_LINUX
    // This account may put files into it but neither list nor read it.
    QTemporaryDir dir;
    const QString box = dir.filePath("Abgabe");
    QVERIFY(QDir().mkpath(box));
    QVERIFY(writeSampleClass(box));
    QVERIFY(::chmod(QFile::encodeName(box).constData(), 0333) == 0);
    const ProgramRun run = runProgram(
        QStringLiteral(LABQUIZ_PROBE),
        {"--no-override", "--overview", "--", "--auswertung", box, "--csv", dir.filePath("k.csv")},
        withoutDisplay(dir.filePath("daten")));
    ::chmod(QFile::encodeName(box).constData(), 0755);
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains("lässt sich nicht auflisten"), qPrintable(run.err));
    QVERIFY(run.err.contains("Abgabeordner"));
    QVERIFY(!QFileInfo::exists(dir.filePath("k.csv")));
#else
    QSKIP("file rights as on Linux");
#endif
}

void TestOverviewCommand::helpNamesIt() {
    const ProgramRun run =
        runProgram(QStringLiteral(LABQUIZ_EXE), {"--help"}, withoutDisplay(QString()));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.out.contains("labquiz --auswertung [ORDNER] [--csv DATEI|-]"));
    QVERIFY(run.out.contains("--von JJJJ-MM-TT"));
}

QTEST_GUILESS_MAIN(TestOverviewCommand)
#include "test_overview_command.moc"
