// Reading a results folder as students and programs leave it: every kind of
// bad file is skipped and named with its reason, temporary and foreign files
// are passed over in silence, nothing hangs, and nothing is changed.
#include "overview/ResultFolder.h"
#include "overview/ResultSamples.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

class TestResultFolder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void skipsABadFile_data();
    void skipsABadFile();
    void passesOverTemporaryAndForeignFiles();
    void neverHangsOnSpecialFiles();
    void aFileThatVanished();
    void saysWhyAFolderCannotBeListed();
    void changesNothing();
    void readsManyFilesInOrder();
};

namespace {

QByteArray goodBytes() {
    return sampleClass().first().toJson();
}

// Two results in one folder, the second given as bytes.
ResultFolder::Reading readWith(const QString& name, const QByteArray& bytes) {
    QTemporaryDir dir;
    writeBytes(dir.filePath(QStringLiteral("2026-11-20_good.json")), goodBytes());
    writeBytes(dir.filePath(name), bytes);
    return ResultFolder::read(dir.path());
}

} // namespace

void TestResultFolder::skipsABadFile_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("why");
    const QByteArray good = goodBytes();
    QTest::newRow("cut off") << good.left(good.size() / 2) << "kein gültiges JSON";
    QTest::newRow("empty") << QByteArray() << "leer";
    QTest::newRow("not JSON") << QByteArray("Name;Note\r\nAnna;gut\r\n") << "kein gültiges JSON";
    QTest::newRow("JSON, but an array") << QByteArray("[1, 2]") << "kein gültiges JSON";
    QTest::newRow("another program's JSON")
        << QByteArray(R"({"format": "quiz", "version": 1})") << "keine Ergebnisdatei";
    QByteArray v2 = good;
    v2.replace("\"version\": 1", "\"version\": 2");
    QTest::newRow("a later version") << v2 << "Version 2 wird nicht unterstützt";
    QByteArray sums = good; // three tasks on the pages, four in all
    sums.replace("\"tasks\": 3,", "\"tasks\": 4,");
    QTest::newRow("sums do not add up") << sums << "Summen";
    QByteArray missing = good;
    missing.replace("\"candidate\"", "\"kandidat\"");
    QTest::newRow("a field missing") << missing << "Pflichtfeld";
    // Valid JSON all the same: the size alone refuses it.
    QByteArray large = good;
    large.insert(1, QByteArray(ResultRecord::kMaxFileBytes, ' '));
    QTest::newRow("over 1 MiB") << large << "zu groß";
}

void TestResultFolder::skipsABadFile() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, why);
    const ResultFolder::Reading r = readWith(QStringLiteral("2026-11-21_bad.json"), bytes);
    QVERIFY(r.problem.isEmpty());
    QCOMPARE(r.records.size(), 1);
    QCOMPARE(r.files, QStringList{"2026-11-20_good.json"});
    QCOMPARE(r.skipped.size(), 1);
    QCOMPARE(r.skipped[0].file, QStringLiteral("2026-11-21_bad.json"));
    QVERIFY2(r.skipped[0].why.contains(why), qPrintable(r.skipped[0].why));
    QCOMPARE(r.seen, 2);
}

void TestResultFolder::passesOverTemporaryAndForeignFiles() {
    QTemporaryDir dir;
    writeBytes(dir.filePath("2026-11-20_good.json"), goodBytes());
    // A result still being written, a teacher's notes, a spreadsheet.
    writeBytes(dir.filePath(".2026-11-21_anna.json.part"), goodBytes().left(40));
    writeBytes(dir.filePath(".hidden.json"), "{");
    writeBytes(dir.filePath("Notizen.txt"), "Klasse 8b");
    writeBytes(dir.filePath("Klasse.csv"), "Name;Note");
    QDir(dir.path()).mkdir("Archiv");
    writeBytes(dir.filePath("Archiv/2026-10-01_alt.json"), goodBytes());
    const ResultFolder::Reading r = ResultFolder::read(dir.path());
    QCOMPARE(r.records.size(), 1);
    QVERIFY(r.skipped.isEmpty());
    QCOMPARE(r.seen, 1);
}

void TestResultFolder::neverHangsOnSpecialFiles() {
#ifdef Q_OS_UNIX
    QTemporaryDir dir;
    writeBytes(dir.filePath("2026-11-20_good.json"), goodBytes());
    QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("pipe.json")).constData(), 0644) == 0);
    QVERIFY(QFile::link(dir.filePath("loop.json"), dir.filePath("loop.json")));
    QVERIFY(QFile::link(dir.filePath("nowhere"), dir.filePath("dangling.json")));
    QVERIFY(QFile::link(dir.filePath("2026-11-20_good.json"), dir.filePath("link.json")));
    QDir(dir.path()).mkdir("folder.json");
    QElapsedTimer clock;
    clock.start();
    const ResultFolder::Reading r = ResultFolder::read(dir.path());
    QVERIFY(clock.elapsed() < 5000);
    QMap<QString, QString> why;
    for (const ResultFolder::Skipped& s : r.skipped)
        why.insert(s.file, s.why);
    QCOMPARE(why.value("pipe.json"), QStringLiteral("keine gewöhnliche Datei"));
    QCOMPARE(why.value("folder.json"), QStringLiteral("keine gewöhnliche Datei"));
    QVERIFY2(why.value("loop.json").contains("Verweis"), qPrintable(why.value("loop.json")));
    QVERIFY2(why.value("dangling.json").contains("Verweis"),
             qPrintable(why.value("dangling.json")));
    // A link to a good result is a good result.
    QCOMPARE(r.files, (QStringList{"2026-11-20_good.json", "link.json"}));
#else
    QSKIP("FIFOs and symbolic links are a Unix matter");
#endif
}

void TestResultFolder::aFileThatVanished() {
    QString why;
    QVERIFY(!ResultFolder::readFile(QStringLiteral("/nonexistent/folder/x.json"), &why));
    QCOMPARE(why, QStringLiteral("verschwunden, während der Ordner gelesen wurde"));
}

void TestResultFolder::saysWhyAFolderCannotBeListed() {
    QTemporaryDir dir;
    const ResultFolder::Reading missing = ResultFolder::read(dir.filePath("fehlt"));
    QVERIFY2(missing.problem.contains("gibt es nicht"), qPrintable(missing.problem));
    QVERIFY(missing.records.isEmpty());
    writeBytes(dir.filePath("datei"), "x");
    QVERIFY(ResultFolder::read(dir.filePath("datei")).problem.contains("kein Ordner"));
    // The drop box, which only root could read anyway, is shown by
    // test_overview_command with root's override dropped.
}

void TestResultFolder::changesNothing() {
    QTemporaryDir dir;
    writeBytes(dir.filePath("2026-11-20_good.json"), goodBytes());
    writeBytes(dir.filePath("2026-11-21_bad.json"), "{");
    writeBytes(dir.filePath(".temp.json.part"), "{");
    auto snapshot = [&dir] {
        QStringList out;
        QDirIterator it(dir.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        while (it.hasNext()) {
            it.next();
            QFile f(it.filePath());
            f.open(QIODevice::ReadOnly);
            out << it.fileName() + u' ' + QString::number(qHash(f.readAll())) + u' ' +
                       it.fileInfo().lastModified().toString(Qt::ISODateWithMs);
        }
        out.sort();
        return out;
    };
    const QStringList before = snapshot();
    ResultFolder::read(dir.path());
    QCOMPARE(snapshot(), before);
}

void TestResultFolder::readsManyFilesInOrder() {
    QTemporaryDir dir;
    const QByteArray good = goodBytes();
    for (int i = 0; i < 300; ++i)
        writeBytes(dir.filePath(QStringLiteral("r%1.json").arg(i, 4, 10, QLatin1Char('0'))),
                   i % 50 == 7 ? QByteArray("{") : good);
    ResultFolder::Progress progress;
    const ResultFolder::Reading r = ResultFolder::read(dir.path(), &progress);
    QCOMPARE(r.records.size(), 294);
    QCOMPARE(r.skipped.size(), 6);
    QCOMPARE(r.skipped[0].file, QStringLiteral("r0007.json"));
    QCOMPARE(r.files.first(), QStringLiteral("r0000.json"));
    QCOMPARE(r.files.last(), QStringLiteral("r0299.json"));
    QCOMPARE(progress.total.load(), 300);
    QCOMPARE(progress.done.load(), 300);
    // Stopped before it starts, it reads nothing.
    ResultFolder::Progress stopped;
    stopped.cancel = true;
    QVERIFY(ResultFolder::read(dir.path(), &stopped).cancelled);
}

QTEST_GUILESS_MAIN(TestResultFolder)
#include "test_result_folder.moc"
