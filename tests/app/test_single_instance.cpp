#include "ProbeSupport.h"
#include "TestSupport.h"
#include "app/AppInfo.h"

#include <QLockFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

// One program per account and machine: of two started at the same moment
// exactly one runs, two accounts on one folder both run, and the lock of a
// program that was killed does not block.
class TestSingleInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void twoStartedAtOnce();
    void lockOfKilledProgramDoesNotBlock();
    void lockWithoutOwner_data();
    void lockWithoutOwner();
    void computerRoom_data();
    void computerRoom();

private:
    QTemporaryDir m_dir;
};

namespace {

const QString kRunning = QStringLiteral("Der Laborixtest läuft bereits oder wird noch geladen.");

// The lock a probe on this folder takes, with the account of this process.
QString lockIn(const QString& folder) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LABQUIZ_DATA"), folder);
    return AppInfo(CommandLine(), env).lockPath();
}

} // namespace

void TestSingleInstance::twoStartedAtOnce() {
    QTemporaryDir dir;
    // Both stay long enough for the other to have looked at the lock.
    const QStringList args{QStringLiteral("--stay"), QStringLiteral("3000")};
    ProbeRun a(dir.path(), args);
    ProbeRun b(dir.path(), args);
    a.start();
    b.start();
    QVERIFY2(a.finish(), qPrintable(a.transcript()));
    QVERIFY2(b.finish(), qPrintable(b.transcript()));
    QVERIFY2(a.exitedCleanly() && b.exitedCleanly(),
             qPrintable(a.transcript() + u'\n' + b.transcript()));
    const bool aRuns = a.lines().contains(QStringLiteral("RUNNING"));
    const bool bRuns = b.lines().contains(QStringLiteral("RUNNING"));
    QVERIFY2(aRuns != bRuns, qPrintable(a.transcript() + u'\n' + b.transcript()));
    ProbeRun& loser = aRuns ? b : a;
    ProbeRun& winner = aRuns ? a : b;
    QCOMPARE(loser.linesStartingWith(QStringLiteral("NOTICE ")), QStringList{kRunning});
    QVERIFY(loser.lines().contains(QStringLiteral("ENDED")));
    QVERIFY2(winner.linesStartingWith(QStringLiteral("NOTICE ")).isEmpty(),
             qPrintable(winner.transcript()));
    // The winner let go of the folder when it ended.
    QVERIFY(!QFile::exists(lockIn(dir.path())));
}

void TestSingleInstance::lockOfKilledProgramDoesNotBlock() {
    QTemporaryDir dir;
    ProbeRun killed(dir.path(), {QStringLiteral("--stay"), QStringLiteral("60000")});
    killed.start();
    QVERIFY2(killed.waitFor(QStringLiteral("RUNNING")), qPrintable(killed.transcript()));
    killed.kill(); // SIGKILL: no chance to remove its lock
    QVERIFY(QFile::exists(lockIn(dir.path())));

    ProbeRun next(dir.path(), {});
    next.start();
    QVERIFY2(next.finish() && next.exitedCleanly(), qPrintable(next.transcript()));
    QVERIFY2(next.lines().contains(QStringLiteral("RUNNING")), qPrintable(next.transcript()));
    QCOMPARE(next.linesStartingWith(QStringLiteral("NOTICE ")), QStringList());
}

void TestSingleInstance::lockWithoutOwner_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("ageSeconds");
    QTest::addColumn<bool>("claimed");
    // A program killed between creating the lock file and writing its
    // number into it leaves it empty; nobody can say whose it is.
    QTest::newRow("leer, alt") << QByteArray() << 60 << true;
    QTest::newRow("Unsinn, alt") << QByteArray("kein Prozess\n") << 60 << true;
    // Just made: its owner may be writing its number right now.
    QTest::newRow("leer, eben angelegt") << QByteArray() << 0 << false;
}

void TestSingleInstance::lockWithoutOwner() {
    QFETCH(QByteArray, content);
    QFETCH(int, ageSeconds);
    QFETCH(bool, claimed);
    QTemporaryDir dir;
    const QString lock = lockIn(dir.path());
    QVERIFY(writeFile(lock, content));
    {
        QFile f(lock);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds),
                              QFileDevice::FileModificationTime));
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LABQUIZ_DATA"), dir.path());
    AppInfo info(CommandLine(), env);
    QCOMPARE(info.claimInstance(), claimed);
    QCOMPARE(info.holdsInstance(), claimed);
    QVERIFY(!info.runsUnlocked());

    // A lock held by a live program always blocks, however old.
    if (claimed) {
        info.endSession();
        QLockFile live(lock);
        QVERIFY(live.tryLock(0));
        QFile f(lock);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(-3600),
                              QFileDevice::FileModificationTime));
        AppInfo second(CommandLine(), env);
        QVERIFY(!second.claimInstance());
    }
}

void TestSingleInstance::computerRoom_data() {
    QTest::addColumn<QString>("second"); // the account of the second student
    QTest::addColumn<bool>("bothRun");
    dataRow("zwei Konten", QStringLiteral("ben"), true);
    dataRow("dasselbe Konto", QStringLiteral("anna"), false);
}

void TestSingleInstance::computerRoom() {
    QFETCH(QString, second);
    QFETCH(bool, bothRun);
    if (::geteuid() != 0)
        QSKIP("braucht root: Aufgaben- und Ergebnisordner gehören einem anderen Konto");
    // One folder shared by the accounts (as a class account's home would
    // be), the teacher's task folder read-only, the results a drop box.
    QTemporaryDir dir;
    QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0755) == 0);
    const QString personal = dir.filePath(QStringLiteral("home"));
    const QString tasks = dir.filePath(QStringLiteral("aufgaben"));
    const QString results = dir.filePath(QStringLiteral("ergebnisse"));
    for (const QString& folder : {personal, tasks, results})
        QVERIFY(QDir().mkpath(folder));
    for (const char* name : {"labquiz.dat", "elements.dat"})
        QVERIFY(QFile::copy(QStringLiteral(":/data/") + QLatin1String(name),
                            QDir(tasks).filePath(QLatin1String(name))));
    for (const auto& [folder, mode] : {std::pair{tasks, 0555}, std::pair{results, 01733}}) {
        QVERIFY(::chown(QFile::encodeName(folder).constData(), 65534, 65534) == 0);
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), mode) == 0);
    }
    QVERIFY(::chmod(QFile::encodeName(personal).constData(), 0777) == 0);
    const QStringList args{QStringLiteral("--no-override"), QStringLiteral("--stay"),
                           QStringLiteral("3000")};
    ProbeRun a(personal, args);
    ProbeRun b(personal, args);
    for (auto& [run, account] : {std::pair{&a, QStringLiteral("anna")}, std::pair{&b, second}}) {
        run->setEnv(QStringLiteral("USER"), account);
        run->setEnv(QStringLiteral("LABQUIZ_TASKS"), tasks);
        run->setEnv(QStringLiteral("LABQUIZ_RESULTS"), results);
        run->start();
    }
    QVERIFY2(a.finish() && b.finish(), qPrintable(a.transcript() + u'\n' + b.transcript()));
    const int running = int(a.lines().contains(QStringLiteral("RUNNING"))) +
                        int(b.lines().contains(QStringLiteral("RUNNING")));
    QCOMPARE(running, bothRun ? 2 : 1);
    const QStringList notices = a.linesStartingWith(QStringLiteral("NOTICE ")) +
                                b.linesStartingWith(QStringLiteral("NOTICE "));
    // The bank came from the task folder, so no notice but the refusal.
    QCOMPARE(notices, bothRun ? QStringList() : QStringList{kRunning});
    // Nothing was written into the teacher's folder, nothing of the bank
    // into the personal one.
    QCOMPARE(QDir(tasks).entryList(QDir::Files | QDir::Hidden),
             (QStringList{QStringLiteral("elements.dat"), QStringLiteral("labquiz.dat")}));
    QVERIFY(!QFile::exists(QDir(personal).filePath(QStringLiteral("labquiz.dat"))));
}

QTEST_MAIN(TestSingleInstance)
#include "test_single_instance.moc"
