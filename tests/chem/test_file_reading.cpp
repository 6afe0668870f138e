#include "TestSupport.h"
#include "chem/LegacyText.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

// The one file reader of the program: what it refuses, and that refusing
// never waits on the file.

using Failure = LegacyText::ReadFailure;

class TestFileReading : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void refusesWhatIsNoFile_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("failure");
        QTest::addColumn<QString>("says");
        QTest::newRow("fehlt") << "missing" << int(Failure::Missing) << "fehlt";
        QTest::newRow("Ordner") << "folder" << int(Failure::NotAFile) << "ein Ordner";
        QTest::newRow("FIFO ohne Schreiber") << "fifo" << int(Failure::NotAFile) << "Pipe";
        QTest::newRow("/dev/zero") << "zero" << int(Failure::NotAFile) << "ein Gerät";
        QTest::newRow("Verweis auf /dev/zero")
            << "zerolink" << int(Failure::NotAFile) << "ein Gerät";
        QTest::newRow("2 GB, dünn belegt") << "sparse" << int(Failure::TooLarge) << "mit 2,0 GB";
    }
    void refusesWhatIsNoFile() {
        QFETCH(QString, kind);
        QFETCH(int, failure);
        QFETCH(QString, says);
        QTemporaryDir dir;
        QString path = dir.filePath(QStringLiteral("labquiz.dat"));
        if (kind == QLatin1String("folder"))
            QVERIFY(QDir().mkdir(path));
        else if (kind == QLatin1String("fifo"))
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0644), 0);
        else if (kind == QLatin1String("zero"))
            path = QStringLiteral("/dev/zero");
        else if (kind == QLatin1String("zerolink"))
            QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path));
        if (kind == QLatin1String("sparse")) {
            QVERIFY(writeFile(path, QByteArray()));
            QCOMPARE(::truncate(QFile::encodeName(path).constData(), 2LL << 30), 0);
        }

        QElapsedTimer clock;
        clock.start();
        LegacyText::ReadProblem problem;
        const std::optional<QByteArray> bytes = LegacyText::readBytes(path, &problem);
        QVERIFY(!bytes);
        QVERIFY2(clock.elapsed() < 1000, "refusing must not read the file");
        QCOMPARE(int(problem.failure), failure);
        QVERIFY2(problem.text.contains(says), qPrintable(problem.text));
        QVERIFY2(problem.text.contains(QDir::toNativeSeparators(path)), qPrintable(problem.text));
        QCOMPARE(problem.refused(), failure != int(Failure::Missing));
        QVERIFY(!LegacyText::readFile(path));
    }
    void readsUpToTheLimit_data() {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("limit");
        QTest::addColumn<bool>("read");
        QTest::newRow("leer") << 0 << 100 << true;
        QTest::newRow("genau die Grenze") << 100 << 100 << true;
        QTest::newRow("ein Byte darüber") << 101 << 100 << false;
        QTest::newRow("weit darunter") << 5000 << 1 << false;
        QTest::newRow("größer als ein Lesepuffer") << 300000 << 1000000 << true;
    }
    void readsUpToTheLimit() {
        QFETCH(int, size);
        QFETCH(int, limit);
        QFETCH(bool, read);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("names.ini"));
        QByteArray content(size, 'x');
        for (int i = 0; i < size; ++i)
            content[i] = char('a' + i % 26);
        QVERIFY(writeFile(path, content));
        LegacyText::ReadProblem problem;
        const std::optional<QByteArray> bytes = LegacyText::readBytes(path, &problem, limit);
        QCOMPARE(bool(bytes), read);
        if (read) {
            QCOMPARE(*bytes, content);
            QCOMPARE(int(problem.failure), int(Failure::None));
        } else {
            QCOMPARE(int(problem.failure), int(Failure::TooLarge));
            QVERIFY(problem.text.contains(QStringLiteral("zu groß")));
        }
    }
    void readsFilesWithoutSize() {
        // Files of /proc say they are empty and still have content; the reader
        // must not trust the size it was told.
        const std::optional<QByteArray> bytes =
            LegacyText::readBytes(QStringLiteral("/proc/self/status"));
        QVERIFY(bytes);
        QVERIFY(bytes->contains("Name:"));
        // The limit holds for them too.
        LegacyText::ReadProblem problem;
        QVERIFY(!LegacyText::readBytes(QStringLiteral("/proc/self/status"), &problem, 10));
        QCOMPARE(int(problem.failure), int(Failure::TooLarge));
    }
    void readsCompiledInFiles() {
        // The copies compiled into the program are no files on disk.
        const std::optional<QString> text =
            LegacyText::readFile(QStringLiteral(":/data/elements.dat"));
        QVERIFY(text);
        QVERIFY(text->contains(QStringLiteral(";Na;Natrium;")));
        LegacyText::ReadProblem problem;
        QVERIFY(!LegacyText::readBytes(QStringLiteral(":/data/fehlt.dat"), &problem));
        QCOMPARE(int(problem.failure), int(Failure::Missing));
    }
    void sizeText_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("Bytes") << qint64(900) << "900 Bytes";
        QTest::newRow("KB") << qint64(28115) << "27 KB";
        QTest::newRow("MB") << qint64(64) * 1024 * 1024 << "64 MB";
        QTest::newRow("GB mit Komma") << (qint64(2) << 30) << "2,0 GB";
    }
    void sizeText() {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(LegacyText::sizeText(bytes), text);
    }
};

QTEST_APPLESS_MAIN(TestFileReading)
#include "test_file_reading.moc"
