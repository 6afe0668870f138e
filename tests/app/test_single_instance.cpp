#include "ProbeSupport.h"
#include "TestSupport.h"
#include "app/AppInfo.h"

#include <QLockFile>
#include <QTemporaryDir>
#include <QtTest>

// One program per data folder: of two started at the same moment exactly
// one runs, and the lock of a program that was killed does not block.
class TestSingleInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void twoStartedAtOnce();
    void lockOfKilledProgramDoesNotBlock();
    void lockWithoutOwner_data();
    void lockWithoutOwner();

private:
    QTemporaryDir m_dir;
};

namespace {

const QString kRunning = QStringLiteral("Der Laborixtest läuft bereits oder wird noch geladen.");

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
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("laborix.lock"))));
}

void TestSingleInstance::lockOfKilledProgramDoesNotBlock() {
    QTemporaryDir dir;
    ProbeRun killed(dir.path(), {QStringLiteral("--stay"), QStringLiteral("60000")});
    killed.start();
    QVERIFY2(killed.waitFor(QStringLiteral("RUNNING")), qPrintable(killed.transcript()));
    killed.kill(); // SIGKILL: no chance to remove its lock
    QVERIFY(QFile::exists(dir.filePath(QStringLiteral("laborix.lock"))));

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
    const QString lock = dir.filePath(QStringLiteral("laborix.lock"));
    QVERIFY(writeFile(lock, content));
    {
        QFile f(lock);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(-ageSeconds),
                              QFileDevice::FileModificationTime));
    }
    QProcessEnvironment env;
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

QTEST_MAIN(TestSingleInstance)
#include "test_single_instance.moc"
