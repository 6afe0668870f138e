// Prints the program's speed and memory figures beside their floors:
//   reading a task bank of one million records against plain line splitting,
//   RandomBetween draws per second,
//   time and peak memory from process start to the start page shown, against
//   an empty Qt main window shown the same way.
//   drawing and checking each task page (GenerateTest and "&OK") on the shipped
//   task bank.
//   reading and summarising a folder of result files for the teacher's
//   overview, against just reading the same files' bytes; and the overview
//   window on them: the time until its views are filled and the longest
//   stretch its event loop stood still meanwhile.
// Usage: labquiz_bench [--records N] [--runs N] [--results N] [--results-only]
//                      [--window-only]

#include "app/AppMain.h"
#include "app/StartUp.h"
#include "chem/LegacyText.h"
#include "overview/ClassSummary.h"
#include "overview/OverviewWindow.h"
#include "overview/ResultFolder.h"
#include "pages/TaskPage.h"
#include "result/FinalGrade.h"
#include "result/ResultFile.h"
#include "result/ResultRecord.h"
#include "session/RandomSource.h"
#include "session/TaskBank.h"
#include "session/TestFlow.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/resource.h>

namespace {

long peakRssKiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines)
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

// A bank with `records` records in all, spread evenly over the nine sections.
QByteArray generateBank(int records) {
    const int per = records / 9;
    QByteArray out;
    out.reserve(qsizetype(records) * 40);
    const char* mark = "\xE6\xE6\r\n";
    for (int s = 0; s < 9; ++s) {
        out += "Abschnitt\r\nKommentar\r\n#\r\n";
        for (int i = 1; i <= per; ++i) {
            if (i == per / 2)
                out += mark;
            const QByteArray n = QByteArray::number(i);
            switch (s) {
            case 0:
                out += "Element" + n + "*Alt" + n + "\r\nE" + n + "\r\n";
                break;
            case 1:
                out += n + "\r\nsilbe*syllabe\r\n";
                break;
            case 2:
                out += "Stoff Nummer " + n + "\r\n" + n + ".5\r\nH2SO4\r\n";
                break;
            case 3:
                out += "Begriff " + n + "\r\nDie Definition des Begriffs Nummer " + n + "\r\n";
                break;
            case 4:
                out += "Ion " + n + "\r\n" + QByteArray::number(i % 7 - 3) + "\r\n";
                break;
            case 5:
                out += "Aussage Nummer " + n + " ist wahr oder falsch\r\nJ\r\n";
                break;
            case 6:
                out += "@2H2+@1O2=@2H2O\r\n";
                break;
            case 7:
                out += "NaCl*ClNa\r\nNa^+*Cl^-\r\nNatriumchlorid|Kochsalz\r\n";
                break;
            default:
                out += "Wie viel mol sind " + n + " g Wasser?\r\n0.5\r\n";
                break;
            }
        }
        out += "@\r\n";
    }
    return out;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Child mode: show the window and report the moment its first frame is on
// screen: when the window's first expose has been handled, which paints and
// flushes it. What the program does after that (building the task pages
// while the candidate types a name) is not part of its start.
enum class Window { Empty, Text, Program };

class FrameClock final : public QApplication {
public:
    using QApplication::QApplication;

    // The window to wait for; a frame it showed before it was named counts.
    void watch(QWindow* window) {
        m_target = window;
        if (m_exposed.contains(window))
            report();
    }
    bool reported() const { return m_reported; }

    bool notify(QObject* receiver, QEvent* event) override {
        const bool result = QApplication::notify(receiver, event);
        if (event->type() == QEvent::Expose && receiver->isWindowType() &&
            static_cast<QWindow*>(receiver)->isExposed()) {
            m_exposed.insert(receiver);
            if (receiver == m_target)
                report();
        }
        return result;
    }

private:
    void report() {
        if (m_reported)
            return;
        m_reported = true;
        std::printf("shown 0 %ld\n", peakRssKiB());
        std::fflush(stdout);
    }

    QSet<QObject*> m_exposed;
    QObject* m_target = nullptr;
    bool m_reported = false;
};

int showAndReport(Window kind, const QStringList& args) {
    int argc = 1;
    char name[] = "labquiz_bench";
    char* argv[] = {name, nullptr};
    FrameClock app(argc, argv);
    QWidget* window = nullptr;
    if (kind == Window::Program) {
        window = StartUp(args);
        if (!window)
            return 2;
    } else {
        auto* main = new QMainWindow;
        main->resize(1080, 800);
        if (kind == Window::Text)
            main->setCentralWidget(new QLabel(QStringLiteral("Laborix Test"), main));
        main->show();
        window = main;
    }
    app.watch(window->windowHandle());
    QElapsedTimer waited;
    waited.start();
    while (!app.reported() && waited.elapsed() < 30000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    if (kind == Window::Program && args.contains(QStringLiteral("--settle"))) {
        // Half a second of idling: the rest of the window gets built.
        waited.restart();
        while (waited.elapsed() < 500)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        std::printf("settled %ld\n", peakRssKiB());
        std::fflush(stdout);
    }
    // A normal end: the program gives up its lock, so the next run starts
    // like a candidate's, not like one after a crash.
    delete window;
    return app.reported() ? 0 : 3;
}

// Child mode: draws and checks every task page many times, unanswered, and
// prints one line per page: "page N draw_us check_us".
int measurePages(const QStringList& args, int rounds) {
    int argc = 1;
    char name[] = "labquiz_bench";
    char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    auto* main = qobject_cast<AppMain*>(StartUp(args));
    if (!main)
        return 2;
    TestFlow& flow = main->flow();
    for (const int n : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6}) {
        TaskPage* page = flow.taskPage(n);
        if (!page)
            continue;
        page->show();
        std::vector<double> draw, check;
        for (int r = 0; r < rounds; ++r) {
            QElapsedTimer t;
            t.start();
            flow.GenerateTest(n);
            draw.push_back(t.nsecsElapsed() / 1e3);
            t.restart();
            page->check();
            check.push_back(t.nsecsElapsed() / 1e3);
        }
        page->hide();
        std::printf("page %d %.1f %.1f\n", n, median(draw), median(check));
    }
    std::fflush(stdout);
    delete main;
    return 0;
}

// Child mode: a whole test's page changes, with the time of every slide step
// (the gap between two moves of a sliding page: moving, painting, events).
// Prints "slide N median_us p95_us max_us" once for all steps, and
// "change us us ..." for the steps of one page change (page 1 out, page 2
// in), each step from one move of a page to the next move of either page.
class MoveClock final : public QObject {
public:
    std::vector<double> gaps;
    std::vector<qint64> moves; // every move, in nanoseconds

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Move && watched->objectName().startsWith(u"Seite(")) {
            const qint64 now = m_clock.nsecsElapsed();
            moves.push_back(now);
            // A new slide starts after a longer pause: the page was drawn in
            // between, which the page figures measure on their own.
            if (watched == m_last && now - m_at < 50'000'000)
                gaps.push_back((now - m_at) / 1e3);
            m_last = watched;
            m_at = now;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QElapsedTimer m_clock = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    QObject* m_last = nullptr;
    qint64 m_at = 0;
};

int measureSlide(const QStringList& args) {
    int argc = 1;
    char name[] = "labquiz_bench";
    char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    auto* main = qobject_cast<AppMain*>(StartUp(args));
    if (!main)
        return 2;
    main->resize(1366, 768);
    TestFlow& flow = main->flow();
    flow.setSlideStepMs(0);
    flow.buildAllPages();
    MoveClock clock;
    for (const int n : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6})
        flow.taskPage(n)->installEventFilter(&clock);
    std::vector<double> change;
    for (const int n : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6}) {
        const std::size_t before = clock.moves.size();
        flow.ShowPage(n);
        if (n == 2) {
            for (std::size_t i = before + 1; i < clock.moves.size(); ++i)
                change.push_back((clock.moves[i] - clock.moves[i - 1]) / 1e3);
        }
    }
    std::printf("change");
    for (const double us : change)
        std::printf(" %.1f", us);
    std::printf("\n");
    std::vector<double> gaps = clock.gaps;
    std::sort(gaps.begin(), gaps.end());
    if (gaps.empty())
        return 3;
    std::printf("slide %zu %.1f %.1f %.1f\n", gaps.size(), gaps[gaps.size() / 2],
                gaps[gaps.size() * 95 / 100], gaps.back());
    std::fflush(stdout);
    delete main;
    return 0;
}

struct StartFigures {
    double ms;
    long rssKiB;
};

struct StartMode {
    QString argument;
    QString dataDir; // LABQUIZ_DATA
    QString tasks;   // LABQUIZ_TASKS, none when empty
    QString results; // LABQUIZ_RESULTS, none when empty
};

// Starts each mode once per round, the modes in turn, so that a change in
// the machine's load falls on all of them alike.
std::vector<StartFigures> measureStarts(const QString& self, const QList<StartMode>& modes,
                                        int runs) {
    std::vector<std::vector<double>> times(modes.size());
    std::vector<long> rss(modes.size(), 0);
    for (int r = 0; r < runs; ++r) {
        for (qsizetype m = 0; m < modes.size(); ++m) {
            QProcess child;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            env.insert(QStringLiteral("LABQUIZ_DATA"), modes[m].dataDir);
            if (!modes[m].tasks.isEmpty())
                env.insert(QStringLiteral("LABQUIZ_TASKS"), modes[m].tasks);
            if (!modes[m].results.isEmpty())
                env.insert(QStringLiteral("LABQUIZ_RESULTS"), modes[m].results);
            child.setProcessEnvironment(env);
            QElapsedTimer t;
            t.start();
            child.start(self, {modes[m].argument, QStringLiteral("/NEW")});
            QByteArray out;
            while (!out.contains('\n') && child.waitForReadyRead(30000))
                out += child.readAllStandardOutput();
            const double ms = t.nsecsElapsed() / 1e6;
            child.waitForFinished(30000);
            const QList<QByteArray> parts = out.trimmed().split(' ');
            if (parts.size() == 3 && parts[0] == "shown") {
                times[m].push_back(ms);
                rss[m] = std::max(rss[m], parts[2].toLong());
            }
        }
    }
    std::vector<StartFigures> figures;
    for (qsizetype m = 0; m < modes.size(); ++m)
        figures.push_back({times[m].empty() ? -1 : median(times[m]), rss[m]});
    return figures;
}

} // namespace

// A class's worth of result files, many times over: ten pages of six tasks
// each, the prompts drawn from a pool as a task bank would give them, a
// third of the answers wrong.
void writeResultFiles(const QString& folder, int count) {
    const QDateTime start(QDate(2026, 9, 1), QTime(8, 0));
    for (int n = 0; n < count; ++n) {
        ResultRecord r;
        r.program = QStringLiteral("Laborix Test 3.0");
        r.machine = QStringLiteral("pc-%1").arg(n % 30, 2, 10, QLatin1Char('0'));
        r.candidate = QStringLiteral("Schüler Nummer %1").arg(n % 600);
        r.expert = n % 5 == 0;
        r.started = start.addSecs(qint64(n) * 600);
        r.finished = r.started.addSecs(1500);
        r.bankFile = QStringLiteral("labquiz.dat");
        r.bankSha256 = QString(64, u'a');
        for (int page : ClassSummary::kPageOrder) {
            PageRecord p{page, pageTitle(page), 0, 0, {}, {}};
            for (int i = 0; i < 6; ++i) {
                const int task = (n * 7 + i * 13 + page) % 120;
                const bool right = (n + i + page) % 3 != 0;
                p.items.append({QStringLiteral("Aufgabe %1 der Seite %2").arg(task).arg(page),
                                QStringLiteral("Antwort %1").arg(task),
                                right ? QStringLiteral("Antwort %1").arg(task)
                                      : QStringLiteral("falsch %1").arg(task % 4),
                                right});
                p.tasks += 1;
                p.correct += right;
            }
            r.tasks += p.tasks;
            r.correct += p.correct;
            r.pages.append(p);
        }
        r.grade = FinalGrade::gradeWord(r.correct, r.tasks);
        r.points = FinalGrade::stepOf(r.grade);
        QFile f(QDir(folder).filePath(QStringLiteral("r%1.json").arg(n, 6, 10, QLatin1Char('0'))));
        f.open(QIODevice::WriteOnly);
        f.write(r.toJson());
    }
}

// CPU time of this process so far (all threads), in ms.
double cpuMs() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto ms = [](const timeval& t) { return t.tv_sec * 1e3 + t.tv_usec / 1e3; };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

struct ResultFigures {
    double floorMs = 0, programMs = 0, summaryMs = 0, cpuMs = 0, mib = 0;
    int tests = 0;
};

// The floor lists the folder and reads every file's bytes, one after the
// other; the program lists, reads, checks and summarises them all.
ResultFigures measureResults(int count, int runs) {
    QTemporaryDir dir;
    writeResultFiles(dir.path(), count);
    std::vector<double> floorMs, programMs, summaryMs, programCpuMs;
    ResultFigures f;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer t;
        t.start();
        qint64 bytes = 0;
        for (const QString& name : QDir(dir.path()).entryList(QDir::Files)) {
            QFile file(dir.filePath(name));
            file.open(QIODevice::ReadOnly);
            bytes += file.readAll().size();
        }
        floorMs.push_back(t.nsecsElapsed() / 1e6);
        f.mib = bytes / (1024.0 * 1024.0);
        t.restart();
        const double cpuBefore = cpuMs();
        const ResultFolder::Reading reading = ResultFolder::read(dir.path());
        const qint64 read = t.nsecsElapsed();
        const ClassSummary summary = ClassSummary::of(reading.records);
        programMs.push_back(t.nsecsElapsed() / 1e6);
        summaryMs.push_back((t.nsecsElapsed() - read) / 1e6);
        programCpuMs.push_back(cpuMs() - cpuBefore);
        f.tests = int(summary.tests.size());
    }
    f.floorMs = median(floorMs);
    f.programMs = median(programMs);
    f.summaryMs = median(summaryMs);
    f.cpuMs = median(programCpuMs);
    return f;
}

// The overview window on a folder: from opening it until the class table,
// the charts and the hardest tasks are filled, with a timer ticking every
// 5 ms; the longest gap between two ticks is what the teacher feels as a
// frozen window.
struct WindowFigures {
    double filledMs = 0;
    double longestStallMs = 0;
};

WindowFigures measureWindow(const QString& folder) {
    WindowFigures f;
    OverviewWindow window(folder, nullptr);
    window.show();
    QCoreApplication::processEvents();
    QElapsedTimer clock, sinceTick;
    QTimer tick;
    tick.setInterval(5);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        f.longestStallMs = std::max(f.longestStallMs, sinceTick.nsecsElapsed() / 1e6);
        sinceTick.restart();
    });
    QEventLoop loop;
    QObject::connect(&window, &OverviewWindow::readingFinished, [&] {
        f.filledMs = clock.nsecsElapsed() / 1e6;
        // The views repaint after the signal; the stall that follows counts.
        QTimer::singleShot(50, &loop, &QEventLoop::quit);
    });
    clock.start();
    sinceTick.start();
    tick.start();
    window.openFolder(folder);
    loop.exec();
    return f;
}

int measureWindowChild(const QString& folder, int runs) {
    int argc = 1;
    char name[] = "labquiz_bench";
    char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    std::vector<double> filled, stall;
    for (int r = 0; r < runs; ++r) {
        const WindowFigures f = measureWindow(folder);
        filled.push_back(f.filledMs);
        stall.push_back(f.longestStallMs);
    }
    std::printf("window %.1f %.1f\n", median(filled), median(stall));
    return 0;
}

// Runs the window in a process of its own (a QApplication, offscreen).
WindowFigures windowFigures(int count, int runs) {
    QTemporaryDir dir;
    writeResultFiles(dir.path(), count);
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--child-window"), dir.path(), QString::number(runs)});
    child.waitForFinished(300000);
    WindowFigures f;
    for (const QByteArray& line : child.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> parts = line.split(' ');
        if (parts.size() == 3 && parts[0] == "window") {
            f.filledMs = parts[1].toDouble();
            f.longestStallMs = parts[2].toDouble();
        }
    }
    return f;
}

void printWindow(QTextStream& out, const WindowFigures& f, int count) {
    out << QStringLiteral("overview window on %1 result files: views filled after %2 ms; "
                          "longest stand-still of its event loop %3 ms (target: under 100 ms)\n")
               .arg(count)
               .arg(f.filledMs, 0, 'f', 1)
               .arg(f.longestStallMs, 0, 'f', 1);
}

void printResults(QTextStream& out, const ResultFigures& f, int count) {
    out << QStringLiteral("\nteacher's overview: %1 result files (%2 MiB), %3 tests summarised\n"
                          "  read, check and summarise %4 ms (of which summarising %7 ms); just "
                          "reading the bytes %5 ms; ratio %6 x; target: under 1000 ms\n"
                          "  CPU time of all threads for it %8 ms (the reading runs on every "
                          "core; a busy machine stretches the wall time)\n")
               .arg(count)
               .arg(f.mib, 0, 'f', 1)
               .arg(f.tests)
               .arg(f.programMs, 0, 'f', 1)
               .arg(f.floorMs, 0, 'f', 1)
               .arg(f.programMs / f.floorMs, 0, 'f', 2)
               .arg(f.summaryMs, 0, 'f', 1)
               .arg(f.cpuMs, 0, 'f', 1);
}

int main(int argc, char* argv[]) {
    if (argc >= 2 &&
        (qstrcmp(argv[1], "--child-program") == 0 || qstrcmp(argv[1], "--child-empty") == 0 ||
         qstrcmp(argv[1], "--child-text") == 0)) {
        QStringList args;
        for (int i = 0; i < argc; ++i)
            args << QString::fromLocal8Bit(argv[i]);
        const Window kind = qstrcmp(argv[1], "--child-program") == 0 ? Window::Program
                            : qstrcmp(argv[1], "--child-text") == 0  ? Window::Text
                                                                     : Window::Empty;
        return showAndReport(kind, args);
    }
    if (argc >= 4 && qstrcmp(argv[1], "--child-window") == 0)
        return measureWindowChild(QString::fromLocal8Bit(argv[2]), std::max(1, atoi(argv[3])));
    if (argc >= 2 && qstrcmp(argv[1], "--child-slide") == 0)
        return measureSlide({QString::fromLocal8Bit(argv[0]), QStringLiteral("/NEW")});
    if (argc >= 2 && qstrcmp(argv[1], "--child-pages") == 0)
        return measurePages({QString::fromLocal8Bit(argv[0]), QStringLiteral("/NEW")}, 200);
    QCoreApplication app(argc, argv);
    int records = 1'000'000;
    int runs = 5;
    int results = 10'000;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--records"))
            records = args[i + 1].toInt();
        if (args[i] == QLatin1String("--runs"))
            runs = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--results"))
            results = std::max(1, args[i + 1].toInt());
    }
    if (args.contains(QStringLiteral("--results-only"))) {
        QTextStream out(stdout);
        printResults(out, measureResults(results, runs), results);
        return 0;
    }
    if (args.contains(QStringLiteral("--window-only"))) {
        QTextStream out(stdout);
        printWindow(out, windowFigures(results, runs), results);
        return 0;
    }

    QTemporaryDir dir;
    const QString bankPath = dir.filePath(QStringLiteral("bank.dat"));
    {
        QFile f(bankPath);
        f.open(QIODevice::WriteOnly);
        f.write(generateBank(records));
    }
    const double mib = QFile(bankPath).size() / (1024.0 * 1024.0);

    std::vector<double> floorMs, readerMs;
    qsizetype lines = 0;
    int loaded = 0;
    for (int r = 0; r < runs; ++r) {
        QElapsedTimer t;
        t.start();
        {
            QFile f(bankPath);
            f.open(QIODevice::ReadOnly);
            const QString text = LegacyText::decode(f.readAll());
            const QStringList split = text.split(QStringLiteral("\r\n"));
            lines = split.size();
        }
        floorMs.push_back(t.nsecsElapsed() / 1e6);
        t.restart();
        {
            const TaskBank bank = TaskBank::LoadTaskBank(bankPath);
            loaded = 0;
            for (int s = 0; s < TaskBank::SectionCount; ++s)
                loaded += bank.count(TaskBank::Section(s));
        }
        readerMs.push_back(t.nsecsElapsed() / 1e6);
    }

    ClockRandomSource source;
    const int draws = 2'000'000;
    QElapsedTimer t;
    t.start();
    long long sum = 0;
    for (int i = 0; i < draws; ++i)
        sum += RandomBetween(source, 118, 1, 2, 3, 4, 5, 6);
    const double drawSeconds = t.nsecsElapsed() / 1e9;

    QTemporaryDir data;
    // The computer room: the bank in a task folder of its own that the
    // student may only read, results elsewhere, a personal folder apart.
    QTemporaryDir room;
    const QString roomTasks = room.filePath(QStringLiteral("aufgaben"));
    QDir().mkpath(roomTasks);
    for (const char* name : {"labquiz.dat", "elements.dat"})
        QFile::copy(QStringLiteral(":/data/") + QLatin1String(name),
                    QDir(roomTasks).filePath(QLatin1String(name)));
    QFile(roomTasks).setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const QString self = QCoreApplication::applicationFilePath();
    const QString programArg = QStringLiteral("--child-program");
    const std::vector<StartFigures> starts =
        measureStarts(self,
                      {{QStringLiteral("--child-empty"), data.path(), {}, {}},
                       {QStringLiteral("--child-text"), data.path(), {}, {}},
                       {programArg, data.path(), {}, {}},
                       {programArg, room.filePath(QStringLiteral("home")), roomTasks,
                        room.filePath(QStringLiteral("ergebnisse"))}},
                      runs);

    // Handing in one result file, the sync included, as page 6's check does.
    std::vector<double> handInMs;
    {
        QTemporaryDir results;
        ResultRecord record;
        record.program = QStringLiteral("Laborix Test 3.0");
        record.candidate = QStringLiteral("Lena Köhler");
        record.started = record.finished = QDateTime::currentDateTime();
        for (int page : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6}) {
            PageRecord p{page, pageTitle(page), 6, 3, {}, {}};
            for (int i = 0; i < 6; ++i)
                p.items.append({QStringLiteral("Eisen(III)-oxid"), QStringLiteral("Fe2O3"),
                                i % 2 ? QStringLiteral("FeO") : QStringLiteral("Fe2O3"),
                                i % 2 == 0});
            record.pages.append(p);
            record.tasks += 6;
            record.correct += 3;
        }
        for (int i = 0; i < 100; ++i) {
            QElapsedTimer clock;
            clock.start();
            ResultFile::handIn(record, results.path(), results.filePath(QStringLiteral("Ausgang")),
                               i);
            handInMs.push_back(clock.nsecsElapsed() / 1e6);
        }
    }
    long settledKiB = 0;
    {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("LABQUIZ_DATA"), data.path());
        child.setProcessEnvironment(env);
        child.start(self, {QStringLiteral("--child-program"), QStringLiteral("/NEW"),
                           QStringLiteral("--settle")});
        child.waitForFinished(60000);
        for (const QByteArray& line : child.readAllStandardOutput().split('\n')) {
            if (line.startsWith("settled "))
                settledKiB = line.mid(8).trimmed().toLong();
        }
    }
    const StartFigures& empty = starts[0];
    const StartFigures& text = starts[1];
    const StartFigures& program = starts[2];
    const StartFigures& roomStart = starts[3];

    QTextStream out(stdout);
    out << "Laborix Test benchmark (median of " << runs << " runs)\n\n";
    out << QStringLiteral("%1 %2 %3 %4\n")
               .arg(QStringLiteral("measure"), -44)
               .arg(QStringLiteral("program"), 14)
               .arg(QStringLiteral("floor"), 14)
               .arg(QStringLiteral("ratio"), 8);
    auto row = [&](const QString& what, double a, double b, const QString& unit, double ratio) {
        out << QStringLiteral("%1 %2 %3 %4\n")
                   .arg(what, -44)
                   .arg(QString::number(a, 'f', 1) + u' ' + unit, 14)
                   .arg(QString::number(b, 'f', 1) + u' ' + unit, 14)
                   .arg(QString::number(ratio, 'f', 2), 8);
    };
    const double fm = median(floorMs), rm = median(readerMs);
    row(QStringLiteral("read %1 records (%2 MiB), LoadTaskBank vs split")
            .arg(loaded)
            .arg(mib, 0, 'f', 1),
        rm, fm, QStringLiteral("ms"), fm / rm);
    out << QStringLiteral("  reader rate %1 MiB/s, line splitting %2 MiB/s (%3 lines); target: "
                          "reader >= 0.5 x floor rate\n")
               .arg(mib / (rm / 1000), 0, 'f', 1)
               .arg(mib / (fm / 1000), 0, 'f', 1)
               .arg(lines);
    out << QStringLiteral("%1 %2\n")
               .arg(QStringLiteral("RandomBetween draws per second (max 118, 6 excl.)"), -44)
               .arg(QString::number(draws / drawSeconds / 1e6, 'f', 2) + QStringLiteral(" M/s"),
                    14);
    row(QStringLiteral("process start to start page shown"), program.ms, empty.ms,
        QStringLiteral("ms"), program.ms / empty.ms);
    out << "  target: start page within 1.3 x the empty window's time\n";
    row(QStringLiteral("peak memory (VmHWM) when shown"), program.rssKiB / 1024.0,
        empty.rssKiB / 1024.0, QStringLiteral("MiB"),
        double(program.rssKiB) / double(empty.rssKiB));
    out << "  target: within 1.2 x the empty window's memory\n";
    row(QStringLiteral("  peak once the pages are built (0.5 s later)"), settledKiB / 1024.0,
        empty.rssKiB / 1024.0, QStringLiteral("MiB"), double(settledKiB) / double(empty.rssKiB));
    // Any window that shows a word loads the font database and a font
    // first; this line shows what that alone costs on this machine.
    row(QStringLiteral("  for scale: empty window with one line of text"), text.ms, empty.ms,
        QStringLiteral("ms"), text.ms / empty.ms);
    row(QStringLiteral("  its peak memory"), text.rssKiB / 1024.0, empty.rssKiB / 1024.0,
        QStringLiteral("MiB"), double(text.rssKiB) / double(empty.rssKiB));
    row(QStringLiteral("computer room start vs LABQUIZ_DATA start"), roomStart.ms, program.ms,
        QStringLiteral("ms"), roomStart.ms / program.ms);
    out << QStringLiteral("%1 %2 %3\n")
               .arg(QStringLiteral("hand in one result file (with sync), 100 times"), -44)
               .arg(QStringLiteral("median %1 ms").arg(median(handInMs), 0, 'f', 2), 14)
               .arg(QStringLiteral("longest %1 ms")
                        .arg(*std::max_element(handInMs.begin(), handInMs.end()), 0, 'f', 2));

    QProcess pages;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("LABQUIZ_DATA"), data.path());
    pages.setProcessEnvironment(env);
    pages.start(self, {QStringLiteral("--child-pages")});
    pages.waitForFinished(300000);
    out << "\ntask pages on the shipped bank (median of 200 draws and checks, unanswered; "
           "target < 1 ms each)\n";
    const QList<QByteArray> pageLines = pages.readAllStandardOutput().trimmed().split('\n');
    for (const QByteArray& line : pageLines) {
        const QList<QByteArray> f = line.split(' ');
        if (f.size() != 4 || f[0] != "page")
            continue;
        out << QStringLiteral("  page %1  draw %2 ms  check %3 ms\n")
                   .arg(QString::fromLatin1(f[1]), 2)
                   .arg(f[2].toDouble() / 1000.0, 0, 'f', 3)
                   .arg(f[3].toDouble() / 1000.0, 0, 'f', 3);
    }

    QProcess slide;
    slide.setProcessEnvironment(env);
    slide.start(self, {QStringLiteral("--child-slide")});
    slide.waitForFinished(300000);
    const QList<QByteArray> slideLines = slide.readAllStandardOutput().trimmed().split('\n');
    const QList<QByteArray> sf = slideLines.value(1).trimmed().split(' ');
    const QList<QByteArray> steps = slideLines.value(0).trimmed().split(' ');
    if (steps.size() > 1 && steps[0] == "change") {
        out << QStringLiteral("\none page change at 1366x768 (page 1 slides out, page 2 in): "
                              "%1 steps, each in ms:")
                   .arg(steps.size() - 1);
        for (qsizetype i = 1; i < steps.size(); ++i) {
            if ((i - 1) % 10 == 0)
                out << "\n ";
            out << QStringLiteral(" %1").arg(steps[i].toDouble() / 1000.0, 5, 'f', 2);
        }
        out << "\n";
    }
    if (sf.size() == 5 && sf[0] == "slide")
        out << QStringLiteral("\nslide steps of a whole test (%1 steps, window 1366x768): median "
                              "%2 ms, 95th percentile %3 ms, longest %4 ms; target: every "
                              "step < 8 ms\n")
                   .arg(QString::fromLatin1(sf[1]))
                   .arg(sf[2].toDouble() / 1000.0, 0, 'f', 2)
                   .arg(sf[3].toDouble() / 1000.0, 0, 'f', 2)
                   .arg(sf[4].toDouble() / 1000.0, 0, 'f', 2);
    printResults(out, measureResults(results, runs), results);
    printWindow(out, windowFigures(results, std::min(runs, 3)), results);
    out << "(checksum " << sum % 1000 << ")\n";
    return 0;
}
