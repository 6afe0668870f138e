// Test helper: runs the program's own start-up in a process of its own, so
// that tests can start it several times at once, kill it, or take rights and
// disk space away from it, and read what happened from its standard output,
// one event per line:
//
//   NOTICE <text>        a notice was shown (and answered with its first button)
//   RUNNING              the main window is up
//   ENDED                the start-up ended this instance (another one runs)
//   PAGE <n>             the page on show after the start page was accepted
//   BANKNOTICE <n> <class> <t>  the bank notice of task page n (class: the
//                        page's C++ class; t empty when it has none)
//   READY <names> <log> <pid>  (--write) names read, last log line number
//                        found, and the writing process
//   GONE <status>        (--write-server) the writing child has ended
//   WROTE <path>         (--results) a result file was handed in
//   OUTBOX <path>        (--results) it went to the outbox instead
//   FAILED <why>         (--results) it went nowhere
//
// Line breaks in texts are written as "\n".
//
//   labquiz_probe [--no-override] [--file-size-limit BYTES] [--name NAME]
//                 [--pages] [--stay MS] [-- ARGS FOR THE PROGRAM]
//   labquiz_probe --write [--limit N]
//   labquiz_probe --write-server
//   labquiz_probe --results DIR [--outbox DIR] [--count N] [--at FILE]
//                 [--name NAME] [--server]
//   labquiz_probe [--no-override] --overview -- ARGS FOR --auswertung
//
// --no-override   drop the capabilities that let root ignore file rights,
//                 so that a read-only folder is read-only for root too
// --file-size-limit  no file may grow past BYTES (RLIMIT_FSIZE), as if the
//                 disk were full
// --write         no window: appends names and log lines through the
//                 program's own records until killed (or N names in all)
// --write-server  for each line on standard input, starts a fresh process
//                 (a fork, so without loading the libraries again) that does
//                 what --write does, and says GONE when it has been killed
// --results       no window: hands in N result files (0: until killed) into
//                 DIR, waiting first until FILE exists when --at is given;
//                 with --server, a forked child does that for each line on
//                 standard input and says READY with its pid first
// --overview      no window: "labquiz --auswertung ARGS" as the program runs
//                 it, here so that root's override can be dropped first
#include "app/AppInfo.h"
#include "app/AppMain.h"
#include "app/CommandLine.h"
#include "app/OverviewCommand.h"
#include "app/StartUp.h"
#include "chem/LegacyText.h"
#include "pages/TaskPage.h"
#include "result/ResultFile.h"
#include "result/ResultRecord.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <functional>
#include <memory>

#ifdef Q_OS_LINUX
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

void say(const QString& line) {
    QString oneLine = line;
    oneLine.replace(u'\n', QStringLiteral("\\n"));
    std::fputs(oneLine.toUtf8().constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

bool dropFileOverrides() {
#ifdef Q_OS_LINUX
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2] = {};
    if (syscall(SYS_capget, &header, data) != 0)
        return false;
    for (int cap : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER}) {
        const unsigned bit = 1u << (cap % 32);
        data[cap / 32].effective &= ~bit;
        data[cap / 32].permitted &= ~bit;
        data[cap / 32].inheritable &= ~bit;
    }
    return syscall(SYS_capset, &header, data) == 0;
#else
    return false;
#endif
}

bool limitFileSize(long long bytes) {
#ifdef Q_OS_LINUX
    std::signal(SIGXFSZ, SIG_IGN); // a write past the limit then fails with EFBIG
    const rlimit limit{rlim_t(bytes), rlim_t(bytes)};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
#else
    Q_UNUSED(bytes);
    return false;
#endif
}

// Answers every notice with its first button and reports its text.
class NoticeWatcher final : public QObject {
public:
    NoticeWatcher() {
        m_timer.setInterval(5);
        connect(&m_timer, &QTimer::timeout, this, &NoticeWatcher::poll);
        m_timer.start();
    }

private:
    void poll() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        const auto* label = dialog->findChild<QLabel*>(QStringLiteral("NoticeText"));
        say(QStringLiteral("NOTICE ") + (label ? label->text() : dialog->windowTitle()));
        const auto buttons = dialog->findChildren<QAbstractButton*>();
        if (!buttons.isEmpty())
            buttons.first()->click();
        else
            dialog->reject();
    }
    QTimer m_timer;
};

QString candidate(int i) {
    return QStringLiteral("Kandidat %1 Jürgen Größe").arg(i, 6, 10, QLatin1Char('0'));
}

int lastLogNumber(const QString& path) {
    const QByteArray log = LegacyText::readBytes(path).value_or(QByteArray());
    const QList<QByteArray> lines = log.split('\n');
    for (qsizetype i = lines.size() - 1; i >= 0; --i) {
        const QByteArray l = lines.at(i).trimmed();
        if (l.startsWith("Zeile "))
            return l.mid(6, 6).toInt();
    }
    return 0;
}

int writeLoop(int limit) {
    AppInfo info(CommandLine(), QProcessEnvironment::systemEnvironment());
    const QString problem = info.prepareDataFolder();
    if (!problem.isEmpty()) {
        say(QStringLiteral("PROBLEM ") + problem);
        return 5;
    }
    if (!info.claimInstance() || info.runsUnlocked()) {
        say(QStringLiteral("LOCKED"));
        return 3;
    }
    const int names = int(info.names().names().size());
    int logged = lastLogNumber(info.logPath());
    say(QStringLiteral("READY %1 %2 %3")
            .arg(names)
            .arg(logged)
            .arg(QCoreApplication::applicationPid()));
    auto logLine = [&](int i) {
        info.log(QStringLiteral("Zeile %1 -> 0 Start von: %2")
                     .arg(i, 6, 10, QLatin1Char('0'))
                     .arg(candidate(i)));
    };
    // A kill between the two writes of a round leaves the log one behind.
    if (logged == names - 1)
        logLine(names);
    for (int i = names + 1; limit == 0 || i <= limit; ++i) {
        info.addName(candidate(i));
        logLine(i);
        if (info.toldCannotSave())
            return 4;
    }
    return 0;
}

// A result of a whole test: ten pages of six tasks, every second one wrong.
ResultRecord sampleResult(const QString& name) {
    ResultRecord r;
    r.program = QStringLiteral("Laborix Test 3.0");
    r.machine = QStringLiteral("probe");
    r.candidate = name;
    r.started = QDateTime::currentDateTime().addSecs(-1500);
    r.finished = QDateTime::currentDateTime();
    r.grade = QStringLiteral("ausreichend");
    r.points = 5;
    for (int page : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6}) {
        PageRecord p{page, pageTitle(page), 6, 0, {}, {}};
        for (int i = 0; i < 6; ++i) {
            const bool right = i % 2 == 0;
            p.items.append(
                {QStringLiteral("Aufgabe %1 mit etwas Text, damit die Datei wächst").arg(i),
                 QStringLiteral("Na"), right ? QStringLiteral("Na") : QStringLiteral("na"), right});
            p.correct += right;
        }
        r.tasks += p.tasks;
        r.correct += p.correct;
        r.pages.append(p);
    }
    return r;
}

int resultLoop(const QString& folder, const QString& outbox, int count, const QString& at,
               const QString& name) {
    while (!at.isEmpty() && !QFileInfo::exists(at))
        QThread::usleep(500);
    const ResultRecord record = sampleResult(name);
    for (int i = 0; count == 0 || i < count; ++i) {
        const ResultFile::HandIn done =
            ResultFile::handIn(record, folder, outbox, QCoreApplication::applicationPid());
        if (done.path.isEmpty())
            say(QStringLiteral("FAILED ") + done.why);
        else if (count != 0)
            say((done.inOutbox ? QStringLiteral("OUTBOX ") : QStringLiteral("WROTE ")) + done.path);
    }
    return 0;
}

int forkServer(const std::function<int()>& work) {
#ifdef Q_OS_LINUX
    char line[64];
    while (std::fgets(line, sizeof line, stdin)) {
        const pid_t child = fork();
        if (child < 0)
            return 6;
        if (child == 0)
            _exit(work());
        int status = 0;
        // Reaped before the next child starts, so that the lock's owner is
        // gone for good and not a zombie that still counts as running.
        waitpid(child, &status, 0);
        say(QStringLiteral("GONE %1").arg(status));
    }
    return 0;
#else
    return 2;
#endif
}

} // namespace

int main(int argc, char** argv) {
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    auto value = [&](const char* option) {
        const qsizetype at = args.indexOf(QLatin1String(option));
        return at >= 0 ? args.value(at + 1) : QString();
    };
    if (args.contains(QStringLiteral("--no-override")) && !dropFileOverrides()) {
        std::fprintf(stderr, "labquiz_probe: capabilities not dropped\n");
        return 2;
    }
    if (!value("--file-size-limit").isEmpty() &&
        !limitFileSize(value("--file-size-limit").toLongLong())) {
        std::fprintf(stderr, "labquiz_probe: file size not limited\n");
        return 2;
    }
    if (args.contains(QStringLiteral("--write"))) {
        QCoreApplication app(argc, argv);
        return writeLoop(value("--limit").toInt());
    }
    if (args.contains(QStringLiteral("--overview"))) {
        QCoreApplication app(argc, argv);
        QFile out;
        out.open(stdout, QIODevice::WriteOnly);
        QTextStream err(stderr);
        return OverviewCommand::runCsv(args.mid(args.indexOf(QStringLiteral("--")) + 1),
                                       QProcessEnvironment::systemEnvironment(), out, err);
    }
    if (args.contains(QStringLiteral("--write-server"))) {
        QCoreApplication app(argc, argv);
        return forkServer([] { return writeLoop(0); });
    }
    if (args.contains(QStringLiteral("--results"))) {
        QCoreApplication app(argc, argv);
        const QString name = value("--name").isEmpty() ? candidate(0) : value("--name");
        auto loop = [&] {
            return resultLoop(value("--results"), value("--outbox"), value("--count").toInt(),
                              value("--at"), name);
        };
        if (!args.contains(QStringLiteral("--server")))
            return loop();
        return forkServer([&] {
            say(QStringLiteral("READY 0 0 %1").arg(QCoreApplication::applicationPid()));
            return loop();
        });
    }

    QApplication app(argc, argv);
    NoticeWatcher watcher;
    QStringList programLine{QCoreApplication::applicationFilePath()};
    const qsizetype dashes = args.indexOf(QStringLiteral("--"));
    if (dashes >= 0)
        programLine += args.mid(dashes + 1);

    auto* main = qobject_cast<AppMain*>(StartUp(programLine));
    if (!main) {
        say(QStringLiteral("ENDED"));
        return 0;
    }
    std::unique_ptr<AppMain> owner(main);
    say(QStringLiteral("RUNNING"));
    main->flow().setSlideStepMs(0);
    main->setLauncher([](const QString&, const QStringList&) { return true; });
    main->setExiter([] {});

    const QString name = value("--name");
    if (!name.isEmpty()) {
        main->findChild<QLineEdit*>(QStringLiteral("BenutzerName"))->setText(name);
        main->findChild<QPushButton*>(QStringLiteral("OkS0"))->click();
        for (int n = 1; n <= TestFlow::kLastPage; ++n) {
            if (TestFlow::isPageNumber(n) && main->flow().pageWidget(n) &&
                main->flow().pageWidget(n)->isVisible())
                say(QStringLiteral("PAGE %1").arg(n));
        }
    }
    if (args.contains(QStringLiteral("--pages"))) {
        // Each page is put in place and drawn as the slide would do it, only
        // without the slide's eighty repaints.
        QWidget* previous = nullptr;
        for (int n = 1; n != -1; n = TestFlow::nextPageAfter(n)) {
            if (previous)
                previous->hide();
            previous = main->flow().pageWidget(n);
            if (previous) {
                previous->move(0, 0);
                previous->raise();
                previous->show();
            }
            main->flow().GenerateTest(n);
            const TaskPage* page = main->flow().taskPage(n);
            say(QStringLiteral("BANKNOTICE %1 %2 %3")
                    .arg(n)
                    .arg(QLatin1String(page ? page->metaObject()->className() : "-"),
                         page ? page->bankNotice() : QString()));
        }
    }
    const int stay = value("--stay").toInt();
    if (stay > 0)
        QTimer::singleShot(stay, &app, &QCoreApplication::quit);
    else
        QTimer::singleShot(0, &app, &QCoreApplication::quit);
    const int rc = app.exec();
    main->info().endSession();
    return rc;
}
