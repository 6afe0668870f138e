#include "TestSupport.h"
#include "app/ConsoleCommands.h"

#include <QTemporaryDir>

// The terminal side of the program: --help and --version without any
// display, and --check with its exit codes and its choice of element table.
// Most rows run the built program itself, as a teacher would.
class TestConsoleCommands : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void picksTheCommand_data();
    void picksTheCommand();
    void helpAndVersionNeedNoDisplay_data();
    void helpAndVersionNeedNoDisplay();
    void checkExitCodes_data();
    void checkExitCodes();
    void checkFindsElementTable();
    void checkWithoutFileSeedsDataFolder();

private:
    static ProgramRun run(const QStringList& arguments, const QProcessEnvironment& environment) {
        return runProgram(QStringLiteral(LABQUIZ_EXECUTABLE), arguments, environment, {}, 60000);
    }
    // No display of any kind; the data folder is a throwaway one.
    QProcessEnvironment headless(const QString& dataFolder) const;

    QByteArray m_shippedBank;
    QTemporaryDir m_home;
};

namespace {
const QString kDataDir = QStringLiteral(LABQUIZ_SOURCE_DATA_DIR);
}

void TestConsoleCommands::initTestCase() {
    QFile bank(kDataDir + QStringLiteral("/labquiz.dat"));
    QVERIFY(bank.open(QIODevice::ReadOnly));
    m_shippedBank = bank.readAll();
    QVERIFY(QFileInfo(QStringLiteral(LABQUIZ_EXECUTABLE)).isExecutable());
    QVERIFY(m_home.isValid());
}

QProcessEnvironment TestConsoleCommands::headless(const QString& dataFolder) const {
    QProcessEnvironment env = withoutDisplay(dataFolder);
    // Keeps the per-user data folder of a check without LABQUIZ_DATA away
    // from the real one.
    env.insert(QStringLiteral("HOME"), m_home.path());
    env.insert(QStringLiteral("XDG_DATA_HOME"), m_home.filePath(QStringLiteral("share")));
    return env;
}

void TestConsoleCommands::picksTheCommand_data() {
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

void TestConsoleCommands::picksTheCommand() {
    QFETCH(QStringList, arguments);
    QFETCH(int, kind);
    QCOMPARE(int(ConsoleCommands::kindOf(arguments)), kind);
}

void TestConsoleCommands::helpAndVersionNeedNoDisplay_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
    const QString version = QStringLiteral("Laborix Test 3.0 (28.03.2006)");
    dataRow("version", QStringList{"--version"}, QStringList{version + u'\n'});
    dataRow("help", QStringList{"--help"},
            QStringList{version, "Aufruf: labquiz", "--check [DATEI]", "Rückgabewert", "-DEV",
                        "/NEW", "--version"});
    dataRow("help mit anderen Schaltern", QStringList{"-DEV", "/NEW", "--help", "--check"},
            QStringList{"Aufruf: labquiz"});
}

void TestConsoleCommands::helpAndVersionNeedNoDisplay() {
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
        QVERIFY2(r.out.contains(piece), qPrintable(piece + QStringLiteral(" fehlt in:\n") + r.out));
    // Nothing was set up in the data folder: no window, no seeding.
    QVERIFY(QDir(data.path()).isEmpty());
}

void TestConsoleCommands::checkExitCodes_data() {
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

void TestConsoleCommands::checkExitCodes() {
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
    const ProgramRun r =
        run(QStringList{QStringLiteral("--check"), bank} + extraArguments, headless(data.path()));
    QVERIFY(r.finished);
    QCOMPARE(r.exitCode, exitCode);
    QVERIFY2((r.out + r.err).contains(said), qPrintable(r.out + r.err));
}

void TestConsoleCommands::checkFindsElementTable() {
    QTemporaryDir dir;
    const QString bank = dir.filePath(QStringLiteral("labquiz.dat"));
    QVERIFY(writeFile(bank, m_shippedBank));
    QTemporaryDir data;

    // Nothing beside the bank, nothing in the data folder: the compiled-in
    // table, and the chemistry is still checked (a wrong mass is found).
    ProgramRun r = run({QStringLiteral("--check"), bank}, headless(data.path()));
    QCOMPARE(r.exitCode, 0);
    QVERIFY2(r.out.startsWith(QStringLiteral("Elementtabelle: die eingebaute")), qPrintable(r.out));
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
    QVERIFY(writeFile(beside, cp1252Lines({QStringLiteral("1;H;Wasserstoff;1.01;1;1;Nichtmetall;"
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

void TestConsoleCommands::checkWithoutFileSeedsDataFolder() {
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
    QVERIFY(QFile::exists(m_home.filePath(QStringLiteral("share/Laborix/LabQuiz/labquiz.dat"))));
}

QTEST_MAIN(TestConsoleCommands)
#include "test_console_commands.moc"
