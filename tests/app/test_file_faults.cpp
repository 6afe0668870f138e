#include "ProbeSupport.h"
#include "TestSupport.h"
#include "app/AppInfo.h"
#include "checker/BankChecker.h"
#include "session/AtomicFile.h"
#include "session/NamesFile.h"

#include <sys/stat.h>
#include <unistd.h>

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

using Failure = LegacyText::ReadFailure;

} // namespace

// Data folders the program cannot use as it would like. One that takes
// nothing (read-only, full, or with a names list that cannot be replaced):
// the test still runs, one notice says that names or results cannot be
// saved, and nothing on disk changes. Data files that are no files, or far
// too large (a 2 GB file, /dev/zero, a FIFO without a writer): the one file
// reader and every reader on it refuse them at once with a German reason, and
// the program starts anyway.
class TestFileFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        seed();
    }

    void cleanup() {
        ::chmod(QFile::encodeName(m_dir->path()).constData(), 0755);
        m_dir.reset();
    }

    void candidateRunsAnyway_data() {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("why"); // how the one notice goes on
        const QStringList candidate{"--name", "Carla"};
        dataRow("read-only folder", "folder", QStringList{"--no-override"} + candidate,
                "der Datenordner ");
        dataRow("names list cannot be replaced", "names", QStringList{"--no-override"} + candidate,
                "die Datei names.ini ist schreibgeschützt.");
        // No file may grow past 200 bytes: the lock (about 90) still fits, the
        // names list and the log do not, as on a disk that is almost full.
        dataRow("file size limit", "size", QStringList{"--file-size-limit", "200"} + candidate, "");
    }

    void candidateRunsAnyway() {
        QFETCH(QString, fault);
        QFETCH(QStringList, args);
        QFETCH(QString, why);
        const QString names = m_dir->filePath(QStringLiteral("names.ini"));
        if (fault == QLatin1String("folder")) {
            for (const QString& f : folderFiles(m_dir->path()).keys())
                QVERIFY(QFile::setPermissions(m_dir->filePath(f), QFileDevice::ReadOwner |
                                                                      QFileDevice::ReadGroup |
                                                                      QFileDevice::ReadOther));
            QCOMPARE(::chmod(QFile::encodeName(m_dir->path()).constData(), 0555), 0);
        } else if (fault == QLatin1String("names")) {
            QVERIFY(QFile::setPermissions(names, QFileDevice::ReadOwner | QFileDevice::ReadGroup));
        }
        const auto before = folderFiles(m_dir->path());
        QVERIFY(before.value(QStringLiteral("names.ini")).size() > 200);

        ProbeRun probe(m_dir->path(), args);
        runCandidate(probe);
        const QStringList notices = probe.linesStartingWith(QStringLiteral("NOTICE "));
        QCOMPARE(notices.size(), 1);
        QVERIFY2(
            notices.first().startsWith(
                QStringLiteral("Namen und Ergebnisse können nicht gespeichert werden: ") + why),
            qPrintable(notices.first()));
        if (fault == QLatin1String("folder"))
            QVERIFY(notices.first().contains(QStringLiteral("ist schreibgeschützt.")));
        const auto after = folderFiles(m_dir->path());
        if (fault != QLatin1String("names")) {
            // Not even a half-written temporary file is left behind.
            QCOMPARE(after, before);
            return;
        }
        // The names list is as it was; the log, which could be written, has the start.
        QCOMPARE(after.value(QStringLiteral("names.ini")),
                 before.value(QStringLiteral("names.ini")));
        QVERIFY(after.value(QStringLiteral("laborix.log"))
                    .startsWith(before.value(QStringLiteral("laborix.log"))));
        QVERIFY(after.value(QStringLiteral("laborix.log")).contains("Start von: Carla"));
        QCOMPARE(after.keys(), before.keys());
    }

    void fullTmpfs() {
        // A real full disk needs a small tmpfs, which only a mount namespace of
        // our own may hold.
        QProcess probeNs;
        probeNs.start(QStringLiteral("unshare"), {QStringLiteral("-rm"), QStringLiteral("true")});
        if (!probeNs.waitForFinished(5000) || probeNs.exitCode() != 0)
            QSKIP("no mount namespace here (unshare -rm fails); the size limit test stands in");

        QVERIFY(QDir().mkdir(m_dir->filePath(QStringLiteral("disk"))));
        const QString script =
            QStringLiteral("set -u\n"
                           "mount -t tmpfs -o size=256k tmpfs \"$D\" || exit 7\n"
                           "cp -p \"$S\"/*.dat \"$S\"/names.ini \"$S\"/laborix.log \"$D\"/\n"
                           "dd if=/dev/zero of=\"$D/fill\" bs=1024 2>/dev/null\n"
                           "LABQUIZ_DATA=\"$D\" \"$P\" --name Carla; echo \"EXIT $?\"\n"
                           "for f in labquiz.dat elements.dat names.ini laborix.log; do\n"
                           "  cmp -s \"$S/$f\" \"$D/$f\" && echo \"SAME $f\"\n"
                           "done\n"
                           "ls -A \"$D\" | sed 's/^/FILE /'\n");
        ProbeRun run(m_dir->path(),
                     {QStringLiteral("-rm"), QStringLiteral("sh"), QStringLiteral("-c"), script},
                     QStringLiteral("unshare"));
        QProcessEnvironment env = run.process().processEnvironment();
        env.insert(QStringLiteral("D"), m_dir->filePath(QStringLiteral("disk")));
        env.insert(QStringLiteral("S"), m_dir->path());
        env.insert(QStringLiteral("P"), QStringLiteral(LABQUIZ_PROBE));
        run.process().setProcessEnvironment(env);
        run.start();
        QVERIFY2(run.finish(), qPrintable(run.transcript()));
        if (run.exitCode() == 7)
            QSKIP("tmpfs cannot be mounted here");
        QVERIFY2(run.lines().contains(QStringLiteral("EXIT 0")), qPrintable(run.transcript()));
        QVERIFY2(run.lines().contains(QStringLiteral("RUNNING")), qPrintable(run.transcript()));
        QCOMPARE(run.linesStartingWith(QStringLiteral("PAGE ")), QStringList{QStringLiteral("1")});
        const QStringList notices = run.linesStartingWith(QStringLiteral("NOTICE "));
        QCOMPARE(notices.size(), 1);
        QVERIFY2(notices.first().contains(QStringLiteral("ist voll.")),
                 qPrintable(notices.first()));
        QCOMPARE(run.linesStartingWith(QStringLiteral("SAME ")),
                 (QStringList{QStringLiteral("labquiz.dat"), QStringLiteral("elements.dat"),
                              QStringLiteral("names.ini"), QStringLiteral("laborix.log")}));
        // Nothing half-written is left on the full disk.
        QStringList files = run.linesStartingWith(QStringLiteral("FILE "));
        files.sort();
        QCOMPARE(files, (QStringList{QStringLiteral("elements.dat"), QStringLiteral("fill"),
                                     QStringLiteral("laborix.log"), QStringLiteral("labquiz.dat"),
                                     QStringLiteral("names.ini")}));
    }

    void logThatCannotBeReadIsKept() {
        const QString log = m_dir->filePath(QStringLiteral("laborix.log"));
        QVERIFY(QFile::remove(log));
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), log));
        qputenv("LABQUIZ_DATA", m_dir->path().toLocal8Bit());
        AppInfo info(CommandLine(), QProcessEnvironment::systemEnvironment());
        QCOMPARE(info.prepareDataFolder(), QString());
        {
            ModalAnswer answer(QStringLiteral("OK"));
            info.log(QStringLiteral("-> 0 Start von: Carla"));
            QVERIFY(answer.seen());
            QVERIFY2(answer.text().contains(QStringLiteral("laborix.log")) &&
                         answer.text().contains(QStringLiteral("nicht überschrieben")),
                     qPrintable(answer.text()));
        }
        // Later failures stay quiet: a second notice would block this call.
        info.log(QStringLiteral("-> 0 Start von: Dora"));
        QVERIFY(info.toldCannotSave());
        QCOMPARE(QFileInfo(log).symLinkTarget(), QStringLiteral("/dev/zero"));
        // Names still go where they can.
        QVERIFY(info.addName(QStringLiteral("Carla")));
        NamesFile names(info.namesPath());
        names.load();
        QVERIFY(names.names().contains(QStringLiteral("Carla")));
    }

    void atomicWriteSaysWhy_data() {
        QTest::addColumn<QString>("where");
        QTest::addColumn<bool>("written");
        QTest::addColumn<QString>("why");
        QTest::newRow("gewöhnlich") << "file" << true << "";
        QTest::newRow("Ordner fehlt") << "nofolder" << false << "gibt es nicht";
        QTest::newRow("Ziel ist ein Ordner") << "folder" << false << "keine gewöhnliche Datei";
    }

    void atomicWriteSaysWhy() {
        QFETCH(QString, where);
        QFETCH(bool, written);
        QFETCH(QString, why);
        QString path = m_dir->filePath(QStringLiteral("names.ini"));
        if (where == QLatin1String("nofolder"))
            path = m_dir->filePath(QStringLiteral("fehlt/names.ini"));
        if (where == QLatin1String("folder"))
            QVERIFY(QDir().mkdir(path = m_dir->filePath(QStringLiteral("ordner"))));
        QString problem;
        QCOMPARE(AtomicFile::write(path, "[Namen]\r\nName=Anna\r\n", &problem), written);
        QVERIFY2(problem.contains(why), qPrintable(problem));
        if (written) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.readAll(), QByteArray("[Namen]\r\nName=Anna\r\n"));
        }
    }

    // Only the temporary files a killed writer left beside names.ini go; a
    // teacher's own copies and the other files stay.
    void leftoversOfKilledWritesOnly() {
        const QStringList doomed = {QStringLiteral("names.ini.ykQEnm"),
                                    QStringLiteral("names.ini.A1b2C3")};
        const QStringList kept = {
            QStringLiteral("names.ini.bak"),     QStringLiteral("names.ini.ykQEn"),
            QStringLiteral("names.ini.ykQEnmm"), QStringLiteral("names.ini.yk-Enm"),
            QStringLiteral("names.iniXykQEnm"),  QStringLiteral("laborix.log.ykQEnm"),
            QStringLiteral("xnames.ini.ykQEnm")};
        for (const QString& name : doomed + kept) {
            QFile f(m_dir->filePath(name));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        AtomicFile::removeLeftovers(m_dir->filePath(QStringLiteral("names.ini")));
        for (const QString& name : doomed)
            QVERIFY2(!QFile::exists(m_dir->filePath(name)), qPrintable(name));
        for (const QString& name : kept + QStringList{QStringLiteral("names.ini")})
            QVERIFY2(QFile::exists(m_dir->filePath(name)), qPrintable(name));
    }

    void refusesWhatIsNoFile_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("failure");
        QTest::addColumn<QString>("says");
        QTest::newRow("fehlt") << "missing" << int(Failure::Missing) << "fehlt";
        QTest::newRow("Ordner") << "folder" << int(Failure::NotAFile) << "ein Ordner";
        QTest::newRow("FIFO ohne Schreiber") << "fifo" << int(Failure::NotAFile) << "Pipe";
        QTest::newRow("/dev/zero") << "device" << int(Failure::NotAFile) << "ein Gerät";
        QTest::newRow("Verweis auf /dev/zero") << "zero" << int(Failure::NotAFile) << "ein Gerät";
        QTest::newRow("2 GB, dünn belegt") << "sparse" << int(Failure::TooLarge) << "mit 2,0 GB";
    }
    void refusesWhatIsNoFile() {
        QFETCH(QString, kind);
        QFETCH(int, failure);
        QFETCH(QString, says);
        QString path = m_dir->filePath(QStringLiteral("x.dat"));
        if (kind == QLatin1String("folder"))
            QVERIFY(QDir().mkdir(path));
        else if (kind == QLatin1String("device"))
            path = QStringLiteral("/dev/zero");
        else if (kind != QLatin1String("missing"))
            QVERIFY(plant(kind, path));

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
    void hostileFilesAreRefused_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason");
        dataRow("2 GB", "sparse", "zu groß");
        dataRow("/dev/zero", "zero", "ein Gerät");
        dataRow("FIFO", "fifo", "Pipe");
    }

    void hostileFilesAreRefused() {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QStringList files{QStringLiteral("labquiz.dat"), QStringLiteral("elements.dat"),
                                QStringLiteral("names.ini")};
        QStringList before;
        for (const QString& f : files) {
            QVERIFY(plant(kind, dir.filePath(f)));
            before << stateOf(dir.filePath(f));
        }
        const QString bankPath = dir.filePath(files[0]);
        const QString elementsPath = dir.filePath(files[1]);

        // Each reader on its own.
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

        NamesFile names(dir.filePath(files[2]));
        QVERIFY(!names.load());
        QVERIFY(names.readProblem().refused());
        QVERIFY(names.names().isEmpty());
        // What could not be read is not written over.
        names.addName(QStringLiteral("Anna"));
        QVERIFY(!names.save());
        QVERIFY2(names.saveProblem().contains(QStringLiteral("nicht überschrieben")),
                 qPrintable(names.saveProblem()));
        QCOMPARE(stateOf(dir.filePath(files[2])), before[2]);

        const BankChecker::Report report = BankChecker::checkFiles(bankPath, elementsPath);
        QCOMPARE(report.exitCode(), 2);
        QVERIFY(!report.findings.isEmpty());
        QVERIFY2(report.findings.first().text.contains(reason),
                 qPrintable(report.lines().join(u'\n')));
        QVERIFY2(clock.elapsed() < 2000, "refusing must not read the files");

        // The whole program on them.
        ProbeRun probe(dir.path(), {QStringLiteral("--name"), QStringLiteral("Anna"),
                                    QStringLiteral("--pages")});
        clock.restart();
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
        QVERIFY(
            notices.first().contains(QStringLiteral("Neue Namen werden darum nicht gespeichert")));

        // The test goes on, and each task page says what it lacks.
        QCOMPARE(probe.linesStartingWith(QStringLiteral("PAGE ")),
                 QStringList{QStringLiteral("1")});
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

        // The checker on the command line refuses the bank at once too.
        ProbeRun check(dir.path(), {QStringLiteral("--check"), bankPath},
                       QStringLiteral(LABQUIZ_EXE));
        check.start();
        QVERIFY2(check.finish(10000), qPrintable(check.transcript()));
        QCOMPARE(check.exitCode(), 2);
        QVERIFY2(check.lines().join(u'\n').contains(reason), qPrintable(check.transcript()));
    }

private:
    // A data folder with the shipped files, two names and two log lines.
    void seed() {
        for (const char* f : {"labquiz.dat", "elements.dat"})
            QVERIFY(QFile::copy(QStringLiteral(LABQUIZ_SOURCE_DATA_DIR "/") + QLatin1String(f),
                                m_dir->filePath(QLatin1String(f))));
        NamesFile names(m_dir->filePath(QStringLiteral("names.ini")));
        // Enough names that the file is larger than the size limit used below.
        for (int i = 1; i <= 12; ++i)
            names.addName(QStringLiteral("Schülerin Nummer %1").arg(i));
        names.setDifficulty(1);
        QVERIFY(names.save());
        QByteArray log;
        for (int i = 1; i <= 6; ++i)
            log += "-> 0 Start von: Schülerin Nummer " + QByteArray::number(i) +
                   " - 03-28-2006/08:00:00\r\n";
        QVERIFY(writeFile(m_dir->filePath(QStringLiteral("laborix.log")), log));
    }

    void runCandidate(ProbeRun& probe) {
        probe.start();
        QVERIFY2(probe.finish(), qPrintable(probe.transcript()));
        if (probe.exitCode() == 2)
            QSKIP("the helper cannot drop its rights or limit file sizes here");
        QVERIFY2(probe.exitedCleanly(), qPrintable(probe.transcript()));
        QVERIFY2(probe.lines().contains(QStringLiteral("RUNNING")), qPrintable(probe.transcript()));
        // The test went on to its first page.
        QCOMPARE(probe.linesStartingWith(QStringLiteral("PAGE ")),
                 QStringList{QStringLiteral("1")});
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_MAIN(TestFileFaults)
#include "test_file_faults.moc"
