// Reading a results folder as students and programs leave it: every kind of
// bad file is skipped and named with its reason, temporary and foreign files
// are passed over in silence, nothing hangs, and nothing is changed.
#include "overview/ResultFolder.h"
#include "overview/ResultSamples.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

class TestResultFolder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void skipsEachBadFileWithItsReason() {
        QTemporaryDir dir;
        const QByteArray good = sampleClass().first().toJson();
        QByteArray v2 = good, sums = good, missing = good, large = good;
        v2.replace("\"version\": 1", "\"version\": 2");
        sums.replace("\"tasks\": 3,", "\"tasks\": 4,"); // three tasks on the pages, four in all
        missing.replace("\"candidate\"", "\"kandidat\"");
        large.insert(1, QByteArray(ResultRecord::kMaxFileBytes, ' ')); // valid JSON all the same
        const QList<std::tuple<QString, QByteArray, QString>> bad{
            {"cut.json", good.left(good.size() / 2), "kein gültiges JSON"},
            {"empty.json", "", "leer"},
            {"csv.json", "Name;Note\r\nAnna;gut\r\n", "kein gültiges JSON"},
            {"array.json", "[1, 2]", "kein gültiges JSON"},
            {"quiz.json", R"({"format": "quiz", "version": 1})", "keine Ergebnisdatei"},
            {"v2.json", v2, "Version 2 wird nicht unterstützt"},
            {"sums.json", sums, "Summen"},
            {"missing.json", missing, "Pflichtfeld"},
            {"large.json", large, "zu groß"}};
        QMap<QString, QString> expected;
        for (const auto& [name, bytes, why] : bad) {
            QVERIFY(writeBytes(dir.filePath(name), bytes));
            expected.insert(name, why);
        }
        QVERIFY(writeBytes(dir.filePath("2026-11-20_good.json"), good));
        // A result still being written, a teacher's notes, a spreadsheet, an
        // archive folder: passed over in silence.
        writeBytes(dir.filePath(".2026-11-21_anna.json.part"), good.left(40));
        writeBytes(dir.filePath(".hidden.json"), "{");
        writeBytes(dir.filePath("Notizen.txt"), "Klasse 8b");
        QDir(dir.path()).mkdir("Archiv");
        writeBytes(dir.filePath("Archiv/2026-10-01_alt.json"), good);
        // A pipe, links and a folder must never hang the reading.
        QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("pipe.json")).constData(), 0644) == 0);
        QVERIFY(QFile::link(dir.filePath("loop.json"), dir.filePath("loop.json")));
        QVERIFY(QFile::link(dir.filePath("nowhere"), dir.filePath("dangling.json")));
        QVERIFY(QFile::link(dir.filePath("2026-11-20_good.json"), dir.filePath("link.json")));
        QDir(dir.path()).mkdir("folder.json");
        expected.insert("pipe.json", "keine gewöhnliche Datei");
        expected.insert("folder.json", "keine gewöhnliche Datei");
        expected.insert("loop.json", "Verweis");
        expected.insert("dangling.json", "Verweis");

        auto snapshot = [&dir] {
            QStringList out;
            QDirIterator it(dir.path(), QDir::AllEntries | QDir::Hidden | QDir::System |
                                            QDir::NoDotAndDotDot);
            while (it.hasNext()) {
                it.next();
                out << it.fileName() + u' ' + QString::number(it.fileInfo().size()) + u' ' +
                           it.fileInfo().lastModified().toString(Qt::ISODateWithMs);
            }
            out.sort();
            return out;
        };
        const QStringList before = snapshot();
        QElapsedTimer clock;
        clock.start();
        const ResultFolder::Reading r = ResultFolder::read(dir.path());
        QVERIFY(clock.elapsed() < 5000);
        QVERIFY(r.problem.isEmpty());
        // A link to a good result is a good result.
        QCOMPARE(r.files, (QStringList{"2026-11-20_good.json", "link.json"}));
        QCOMPARE(r.records.size(), 2);
        QCOMPARE(r.skipped.size(), expected.size());
        for (const ResultFolder::Skipped& s : r.skipped)
            QVERIFY2(expected.contains(s.file) && s.why.contains(expected.value(s.file)),
                     qPrintable(s.file + u' ' + s.why));
        QCOMPARE(r.seen, int(r.records.size() + r.skipped.size()));
        QCOMPARE(snapshot(), before);
    }

    void saysWhyAFolderOrFileCannotBeRead() {
        QTemporaryDir dir;
        const ResultFolder::Reading missing = ResultFolder::read(dir.filePath("fehlt"));
        QVERIFY2(missing.problem.contains("gibt es nicht"), qPrintable(missing.problem));
        QVERIFY(missing.records.isEmpty());
        writeBytes(dir.filePath("datei"), "x");
        QVERIFY(ResultFolder::read(dir.filePath("datei")).problem.contains("kein Ordner"));
        // The drop box, which only root could read anyway, is shown by
        // test_console_commands with root's override dropped.
        QString why;
        QVERIFY(!ResultFolder::readFile(QStringLiteral("/nonexistent/folder/x.json"), &why));
        QCOMPARE(why, QStringLiteral("verschwunden, während der Ordner gelesen wurde"));
    }

    void readsManyFilesInOrder() {
        QTemporaryDir dir;
        const QByteArray good = sampleClass().first().toJson();
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
};

QTEST_GUILESS_MAIN(TestResultFolder)
#include "test_result_folder.moc"
