#include "TestSupport.h"
#include "app/ConsoleCommands.h"
#include "overview/ResultSamples.h"

#include <sys/stat.h>

namespace {
const QString kDataDir = QStringLiteral(LABQUIZ_SOURCE_DATA_DIR);
}

// The terminal side of the program: --help and --version without any
// display, --check with its exit codes and its choice of element table, and
// "--auswertung ORDNER --csv DATEI|-" as a school server's script runs it (the
// CSV written whole, the exit code saying whether every file was read). Most
// rows run the built program itself, as a teacher would.
class TestConsoleCommands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QFile bank(kDataDir + QStringLiteral("/labquiz.dat"));
        QVERIFY(bank.open(QIODevice::ReadOnly));
        m_shippedBank = bank.readAll();
        QVERIFY(QFileInfo(QStringLiteral(LABQUIZ_EXE)).isExecutable());
        QVERIFY(m_home.isValid());
    }

    void picksTheCommand_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("kind");
        using K = ConsoleCommands::Kind;
        dataRow("nichts", QStringList{}, int(K::Window));
        dataRow("alte Schalter", QStringList{"/NEW", "-DEV"}, int(K::Window));
        dataRow("unbekannt", QStringList{"--hilfe", "-x"}, int(K::Window));
        dataRow("help", QStringList{"--help"}, int(K::Help));
        dataRow("help vor version", QStringList{"--version", "--help"}, int(K::Help));
        dataRow("version", QStringList{"-DEV", "--version"}, int(K::Version));
        dataRow("version vor check", QStringList{"--check", "--version"}, int(K::Version));
        dataRow("check", QStringList{"/NEW", "--check", "x.dat"}, int(K::Check));
        dataRow("Groß geschrieben", QStringList{"--HELP", "--Check"}, int(K::Window));
    }

    void picksTheCommand() {
        QFETCH(QStringList, arguments);
        QFETCH(int, kind);
        QCOMPARE(int(ConsoleCommands::kindOf(arguments)), kind);
    }

    void helpAndVersionNeedNoDisplay_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("expected");
        const QString version = QStringLiteral("Laborix Test 3.0 (28.03.2006)");
        dataRow("version", QStringList{"--version"}, QStringList{version + u'\n'});
        dataRow("help", QStringList{"--help"},
                QStringList{version, "Aufruf: labquiz", "--check [DATEI]", "Rückgabewert", "-DEV",
                            "/NEW", "--version", "labquiz --auswertung [ORDNER] [--csv DATEI|-]",
                            "--von JJJJ-MM-TT"});
        dataRow("help mit anderen Schaltern", QStringList{"-DEV", "/NEW", "--help", "--check"},
                QStringList{"Aufruf: labquiz"});
    }

    void helpAndVersionNeedNoDisplay() {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, expected);
        QTemporaryDir data;
        const ProgramRun r = run(arguments, headless(data.path()));
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.err, QString());
        if (expected.size() == 1 && expected.first().endsWith(u'\n'))
            QCOMPARE(r.out, expected.first());
        for (const QString& piece : expected)
            QVERIFY2(r.out.contains(piece),
                     qPrintable(piece + QStringLiteral(" fehlt in:\n") + r.out));
        // Nothing was set up in the data folder: no window, no seeding.
        QVERIFY(QDir(data.path()).isEmpty());
    }

    void checkExitCodes_data() {
        // A copy of the shipped bank with one change, checked with the shipped
        // element table beside it.
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QStringList>("extraArguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("said");
        dataRow("fehlerfrei", QByteArray(), QByteArray(), QStringList{}, 0,
                QStringLiteral("keine Fehler."));
        dataRow("nur Warnung: doppelter Eintrag", QByteArray("Wasserstoff\r\nH\r\nHelium\r\n"),
                QByteArray("Wasserstoff\r\nH\r\nWasserstoff\r\nH\r\nHelium\r\n"), QStringList{}, 0,
                QStringLiteral("keine Fehler, 1 Warnung."));
        dataRow("Fehler: molare Masse", QByteArray("Wasser\r\n18.0\r\n"),
                QByteArray("Wasser\r\n18.5\r\n"), QStringList{}, 1, QStringLiteral("1 Fehler."));
        dataRow("mit Schaltern davor und dahinter", QByteArray(), QByteArray(),
                QStringList{"-dev", "/NEW"}, 0, QStringLiteral("keine Fehler."));
        dataRow("zwei Dateien", QByteArray(), QByteArray(), QStringList{"zwei.dat"}, 2,
                QStringLiteral("nur eine Datei"));
        dataRow("unbekannte Angabe", QByteArray(), QByteArray(), QStringList{"--ausführlich"}, 2,
                QStringLiteral("unbekannte Angabe \"--ausführlich\""));
    }

    void checkExitCodes() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QStringList, extraArguments);
        QFETCH(int, exitCode);
        QFETCH(QString, said);
        QTemporaryDir dir;
        QByteArray bytes = m_shippedBank;
        if (!from.isEmpty()) {
            QCOMPARE(bytes.count(from), 1);
            bytes.replace(from, to);
        }
        const QString bank = dir.filePath(QStringLiteral("labquiz.dat"));
        QVERIFY(writeFile(bank, bytes));
        QVERIFY(QFile::copy(kDataDir + QStringLiteral("/elements.dat"),
                            dir.filePath(QStringLiteral("elements.dat"))));
        QTemporaryDir data;
        const ProgramRun r = run(QStringList{QStringLiteral("--check"), bank} + extraArguments,
                                 headless(data.path()));
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, exitCode);
        QVERIFY2((r.out + r.err).contains(said), qPrintable(r.out + r.err));
    }

    void checkFindsElementTable() {
        QTemporaryDir dir;
        const QString bank = dir.filePath(QStringLiteral("labquiz.dat"));
        QVERIFY(writeFile(bank, m_shippedBank));
        QTemporaryDir data;

        // Nothing beside the bank, nothing in the data folder: the compiled-in
        // table, and the chemistry is still checked (a wrong mass is found).
        ProgramRun r = run({QStringLiteral("--check"), bank}, headless(data.path()));
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.out.startsWith(QStringLiteral("Elementtabelle: die eingebaute")),
                 qPrintable(r.out));
        QVERIFY(!r.out.contains(QStringLiteral("Warnung")));
        QByteArray wrong = m_shippedBank;
        wrong.replace("Wasser\r\n18.0\r\n", "Wasser\r\n18.5\r\n");
        QVERIFY(writeFile(bank, wrong));
        r = run({QStringLiteral("--check"), bank}, headless(data.path()));
        QCOMPARE(r.exitCode, 1);
        QVERIFY2(r.out.contains(QStringLiteral("Die molare Masse 18.5 passt nicht")),
                 qPrintable(r.out));
        QVERIFY(writeFile(bank, m_shippedBank));

        // The data folder's table comes next.
        const QString inData = QDir(data.path()).filePath(QStringLiteral("elements.dat"));
        QVERIFY(QFile::copy(kDataDir + QStringLiteral("/elements.dat"), inData));
        r = run({QStringLiteral("--check"), bank}, headless(data.path()));
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.out.startsWith(QStringLiteral("Elementtabelle: %1 (aus dem Datenordner")
                                      .arg(QDir::toNativeSeparators(inData))),
                 qPrintable(r.out));

        // One beside the bank wins, even a broken one: the teacher meant it.
        const QString beside = dir.filePath(QStringLiteral("elements.dat"));
        QVERIFY(
            writeFile(beside, cp1252Lines({QStringLiteral("1;H;Wasserstoff;1.01;1;1;Nichtmetall;"
                                                          "2.20")})));
        r = run({QStringLiteral("--check"), bank}, headless(data.path()));
        QCOMPARE(r.exitCode, 1); // every other symbol is unknown now
        QVERIFY(r.out.startsWith(QStringLiteral("Elementtabelle: %1 (neben der Aufgabendatei)")
                                     .arg(QDir::toNativeSeparators(beside))));

        // A bank that is not there cannot be checked at all.
        r = run({QStringLiteral("--check"), dir.filePath(QStringLiteral("fehlt.dat"))},
                headless(data.path()));
        QCOMPARE(r.exitCode, 2);
        QVERIFY(r.out.contains(QStringLiteral("Die Datei gibt es nicht.")));
    }

    void checkWithoutFileSeedsDataFolder() {
        QTemporaryDir parent;
        const QString data = parent.filePath(QStringLiteral("neu/Daten"));
        ProgramRun r = run({QStringLiteral("--check")}, headless(data));
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
        const QString bank = QDir(data).filePath(QStringLiteral("labquiz.dat"));
        QFile seeded(bank);
        QVERIFY(seeded.open(QIODevice::ReadOnly));
        QCOMPARE(seeded.readAll(), m_shippedBank);
        QVERIFY(QFile::exists(QDir(data).filePath(QStringLiteral("elements.dat"))));
        QVERIFY2(r.out.contains(QDir::toNativeSeparators(bank) + QStringLiteral(": 9 Abschnitte")),
                 qPrintable(r.out));
        QVERIFY(r.out.contains(QStringLiteral("(neben der Aufgabendatei)")));

        // The teacher's edited copy is checked, not replaced.
        QVERIFY(writeFile(
            bank, QByteArray(m_shippedBank).replace("Wasser\r\n18.0\r\n", "Wasser\r\n18.5\r\n")));
        r = run({QStringLiteral("--check")}, headless(data));
        QCOMPARE(r.exitCode, 1);

        // Without LABQUIZ_DATA: the per-user folder of the program.
        r = run({QStringLiteral("--check")}, headless(QString()));
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.out.contains(QStringLiteral("/Laborix/LabQuiz/labquiz.dat: 9 Abschnitte")),
                 qPrintable(r.out));
        QVERIFY(
            QFile::exists(m_home.filePath(QStringLiteral("share/Laborix/LabQuiz/labquiz.dat"))));
    }

    void overviewExitCodes_data() {
        QTest::addColumn<QStringList>("args"); // F: the folder, OUT: the CSV file
        QTest::addColumn<bool>("badFile");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<int>("rows"); // lines of the CSV after its header; -1: no file
        QTest::addColumn<QString>("err");
        const QStringList csv{"--auswertung", "F", "--csv", "OUT"};
        dataRow("all read", csv, false, 0, 5, QString("5 Tests in der Tabelle, 5 Dateien gelesen"));
        dataRow("results folder in use", QStringList{"--auswertung", "--csv", "OUT"}, false, 0, 5,
                QString("5 Tests in der Tabelle"));
        dataRow("one skipped and named", csv, true, 1, 5,
                QString("übersprungen: 2026-11-26_kaputt.json: kein gültiges JSON"));
        dataRow("dates restrict the rows",
                csv + QStringList{"--von", "2026-11-22", "--bis", "2026-11-24"}, false, 0, 2,
                QString("2 Tests in der Tabelle"));
        dataRow("folder missing", QStringList{"--auswertung", "F/fehlt", "--csv", "OUT"}, false, 2,
                -1, QString("gibt es nicht"));
        dataRow("no such date", csv + QStringList{"--von", "2026-13-01"}, false, 2, -1,
                QString("kein Datum der Form JJJJ-MM-TT"));
        dataRow("German date order", csv + QStringList{"--bis", "24.11.2026"}, false, 2, -1,
                QString("kein Datum"));
        dataRow("from after to", csv + QStringList{"--von", "2026-11-24", "--bis", "2026-11-20"},
                false, 2, -1, QString("--von liegt nach --bis"));
        dataRow("two folders", csv + QStringList{"F"}, false, 2, -1, QString("Nur ein Ordner"));
        dataRow("unknown switch", csv + QStringList{"--format", "xlsx"}, false, 2, -1,
                QString("Unbekannte Angabe \"--format\""));
        dataRow("date switch without its date", csv + QStringList{"--von"}, false, 2, -1,
                QString("Nach --von fehlt die Angabe"));
    }

    void overviewExitCodes() {
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
        // Without a folder named, the results folder in use is read.
        QProcessEnvironment env = headless(dir.filePath("daten"));
        env.insert("LABQUIZ_RESULTS", folder);
        const ProgramRun r = run(args, env);
        QVERIFY(r.finished);
        QVERIFY2(r.err.contains(err), qPrintable(r.err));
        QCOMPARE(r.exitCode, exitCode);
        QCOMPARE(QFileInfo::exists(out), rows >= 0);
        if (rows < 0)
            return;
        QFile file(out);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("\xEF\xBB\xBFName;Datum;Uhrzeit;"));
        QCOMPARE(bytes.count("\r\n"), rows + 1);
    }

    void overviewWritesToStandardOutput() {
        QTemporaryDir dir;
        QVERIFY(writeSampleClass(dir.path()));
        QProcess p;
        p.setProcessEnvironment(headless(dir.filePath("daten")));
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

    void overviewRefusesADropBox() {
#ifdef Q_OS_LINUX
        // This account may put files into it but neither list nor read it.
        QTemporaryDir dir;
        const QString box = dir.filePath("Abgabe");
        QVERIFY(QDir().mkpath(box));
        QVERIFY(writeSampleClass(box));
        QVERIFY(::chmod(QFile::encodeName(box).constData(), 0333) == 0);
        const ProgramRun r = runProgram(QStringLiteral(LABQUIZ_PROBE),
                                        {"--no-override", "--overview", "--", "--auswertung", box,
                                         "--csv", dir.filePath("k.csv")},
                                        withoutDisplay(dir.filePath("daten")));
        ::chmod(QFile::encodeName(box).constData(), 0755);
        QCOMPARE(r.exitCode, 2);
        QVERIFY2(r.err.contains("lässt sich nicht auflisten"), qPrintable(r.err));
        QVERIFY(r.err.contains("Abgabeordner"));
        QVERIFY(!QFileInfo::exists(dir.filePath("k.csv")));
#else
        QSKIP("file rights as on Linux");
#endif
    }

private:
    static ProgramRun run(const QStringList& arguments, const QProcessEnvironment& environment) {
        return runProgram(QStringLiteral(LABQUIZ_EXE), arguments, environment, {}, 60000);
    }
    // No display of any kind; the data folder is a throwaway one.
    QProcessEnvironment headless(const QString& dataFolder) const {
        QProcessEnvironment env = withoutDisplay(dataFolder);
        // Keeps the per-user data folder of a check without LABQUIZ_DATA away
        // from the real one.
        env.insert(QStringLiteral("HOME"), m_home.path());
        env.insert(QStringLiteral("XDG_DATA_HOME"), m_home.filePath(QStringLiteral("share")));
        return env;
    }

    QByteArray m_shippedBank;
    QTemporaryDir m_home;
};

QTEST_MAIN(TestConsoleCommands)
#include "test_console_commands.moc"
