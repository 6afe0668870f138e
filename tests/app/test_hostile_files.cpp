#include "ProbeSupport.h"
#include "TestSupport.h"
#include "checker/BankChecker.h"
#include "chem/ElementTable.h"
#include "session/NamesFile.h"
#include "session/TaskBank.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

// Data files that are no files, or far too large: a 2 GB file, /dev/zero, a
// FIFO without a writer. Every reader refuses them at once with a German
// reason, and the program starts anyway.
class TestHostileFiles : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readersRefuse_data();
    void readersRefuse();
    void programStartsAndPagesSayWhy_data();
    void programStartsAndPagesSayWhy();
    void checkerRefusesAPipe();

private:
    void addKinds();
};

namespace {

// Puts the hostile kind of file at path.
bool plant(const QString& kind, const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    if (kind == QLatin1String("sparse"))
        return writeFile(path, QByteArray()) && ::truncate(name.constData(), 2LL << 30) == 0;
    if (kind == QLatin1String("zero"))
        return QFile::link(QStringLiteral("/dev/zero"), path);
    return ::mkfifo(name.constData(), 0644) == 0;
}

// What is on disk at path, to show that nothing was written over it.
QString stateOf(const QString& path) {
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return QStringLiteral("fehlt");
    return QStringLiteral("%1 %2").arg(st.st_mode, 0, 8).arg(st.st_size);
}

} // namespace

void TestHostileFiles::addKinds() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reason");
    QTest::newRow("2 GB") << "sparse"
                          << "zu groß";
    QTest::newRow("/dev/zero") << "zero"
                               << "ein Gerät";
    QTest::newRow("FIFO") << "fifo"
                          << "Pipe";
}

void TestHostileFiles::readersRefuse_data() {
    addKinds();
}

void TestHostileFiles::readersRefuse() {
    QFETCH(QString, kind);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    const QString bankPath = dir.filePath(QStringLiteral("labquiz.dat"));
    const QString elementsPath = dir.filePath(QStringLiteral("elements.dat"));
    const QString namesPath = dir.filePath(QStringLiteral("names.ini"));
    for (const QString& p : {bankPath, elementsPath, namesPath})
        QVERIFY(plant(kind, p));
    const QString namesBefore = stateOf(namesPath);

    QElapsedTimer clock;
    clock.start();
    const TaskBank bank = TaskBank::LoadTaskBank(bankPath);
    QVERIFY(!bank.fileRead);
    QVERIFY2(bank.readProblem.contains(reason), qPrintable(bank.readProblem));
    QVERIFY(bank.readProblem.contains(QStringLiteral("labquiz.dat")));

    const ElementTable elements = ElementTable::load(elementsPath);
    QVERIFY(!elements.fileRead());
    QCOMPARE(elements.count(), 0);
    QVERIFY2(elements.readProblem().contains(reason), qPrintable(elements.readProblem()));

    NamesFile names(namesPath);
    QVERIFY(!names.load());
    QVERIFY(names.readProblem().refused());
    QVERIFY(names.names().isEmpty());
    // What could not be read is not written over.
    names.addName(QStringLiteral("Anna"));
    QVERIFY(!names.save());
    QVERIFY2(names.saveProblem().contains(QStringLiteral("nicht überschrieben")),
             qPrintable(names.saveProblem()));
    QCOMPARE(stateOf(namesPath), namesBefore);

    const BankChecker::Report report = BankChecker::checkFiles(bankPath, elementsPath);
    QCOMPARE(report.exitCode(), 2);
    QVERIFY(!report.findings.isEmpty());
    QVERIFY2(report.findings.first().text.contains(reason), qPrintable(report.lines().join(u'\n')));
    QVERIFY2(clock.elapsed() < 2000, "refusing must not read the files");
}

void TestHostileFiles::programStartsAndPagesSayWhy_data() {
    addKinds();
}

void TestHostileFiles::programStartsAndPagesSayWhy() {
    QFETCH(QString, kind);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    QStringList files{QStringLiteral("labquiz.dat"), QStringLiteral("elements.dat"),
                      QStringLiteral("names.ini")};
    QStringList before;
    for (const QString& f : files) {
        QVERIFY(plant(kind, dir.filePath(f)));
        before << stateOf(dir.filePath(f));
    }

    ProbeRun probe(dir.path(),
                   {QStringLiteral("--name"), QStringLiteral("Anna"), QStringLiteral("--pages")});
    QElapsedTimer clock;
    clock.start();
    probe.start();
    QVERIFY2(probe.finish(), qPrintable(probe.transcript()));
    QVERIFY2(probe.exitedCleanly(), qPrintable(probe.transcript()));
    QVERIFY2(clock.elapsed() < 15000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(probe.lines().contains(QStringLiteral("RUNNING")), qPrintable(probe.transcript()));

    // One notice names all three files and why each was refused.
    const QStringList notices = probe.linesStartingWith(QStringLiteral("NOTICE "));
    QCOMPARE(notices.size(), 1);
    for (const QString& f : files)
        QVERIFY2(notices.first().contains(f), qPrintable(notices.first()));
    QCOMPARE(notices.first().count(reason), 3);
    QVERIFY(notices.first().contains(QStringLiteral("Neue Namen werden darum nicht gespeichert")));

    // The test goes on, and each task page says what it lacks.
    QCOMPARE(probe.linesStartingWith(QStringLiteral("PAGE ")), QStringList{QStringLiteral("1")});
    const QStringList pages = probe.linesStartingWith(QStringLiteral("BANKNOTICE "));
    QCOMPARE(pages.size(), 10);
    int built = 0;
    for (const QString& page : pages) {
        const QString cls = page.section(u' ', 1, 1);
        if (cls == QLatin1String("PendingPage"))
            continue;
        ++built;
        QVERIFY2(page.contains(QStringLiteral("Diese Seite kann nicht gestellt werden")) &&
                     page.contains(QStringLiteral("labquiz.dat")),
                 qPrintable(page));
    }
    QVERIFY(built >= 1);

    for (int i = 0; i < files.size(); ++i)
        QCOMPARE(stateOf(dir.filePath(files[i])), before[i]);
}

void TestHostileFiles::checkerRefusesAPipe() {
    QTemporaryDir dir;
    const QString fifo = dir.filePath(QStringLiteral("labquiz.dat"));
    QVERIFY(plant(QStringLiteral("fifo"), fifo));
    ProbeRun check(dir.path(), {QStringLiteral("--check"), fifo}, QStringLiteral(LABQUIZ_EXE));
    check.start();
    QVERIFY2(check.finish(10000), qPrintable(check.transcript()));
    QCOMPARE(check.exitCode(), 2);
    QVERIFY2(check.lines().join(u'\n').contains(QStringLiteral("Pipe")),
             qPrintable(check.transcript()));
}

QTEST_MAIN(TestHostileFiles)
#include "test_hostile_files.moc"
