// Developer tool: starts the program as a candidate would, goes to one page
// and saves a picture of the whole screen, so that a page can be looked at
// under Xvfb without clicking through a test. Run it through tools/shot.
//
//   labquiz_shot OUT.png [--page N] [--expert] [--check] [--fill right|wrong|mixed]
//                [--candidate TEXT] [--score C/T] [--finish] [--print]
//                [--table] [--calc EXPR] [--button NAME] [--splash] [--menu NAME]
//                [--practice PAGES]
//   labquiz_shot OUT.png --overview DIR [--sample] [--tab N] [--detail N] [--report PDF]
//
// --fill right types the expected answers into the page's line edits where a
// page keeps them one to one in DrawnAnswers (or where a field names its slot
// in the property "answerSlot"), picks the matching item of each choice list,
// and checks the button numbered by the answer in each row of option buttons;
// "wrong" gives a wrong answer everywhere; "mixed" answers task 0 right,
// task 1 wrong, leaves task 2 as drawn, and so on. Pages with other fields
// are left as drawn.
// --score C/T sets the counters before the page is checked; --finish then
// presses the page's "Weiter" and shoots what comes up (the result form
// after the last page); --print presses "Graphik Drucken" on the result
// form first (LABQUIZ_PRINT_TO names the PDF); --review records a few
// typical wrong answers of earlier pages and opens "Fehler ansehen" on the
// result form.
// --table opens the periodic table, --calc opens the calculator from the
// menu and types EXPR followed by Enter, --button clicks the named button
// (e.g. "but_Calc(0)"); a dialog that opens stays open for the picture.
// --practice 1,11 answers a whole test, the listed pages half wrong, opens
// "Fehler ansehen" and "Fehler üben" on the result form; --fill and --check
// then work on the first practice page, and --finish answers the other
// pages right up to the round's end. --fill lower types the right answers
// in small letters.
// --overview opens "Ergebnisse auswerten" on DIR (with --sample first filled
// with a made-up class of 24 with one to three attempts each), shows tab N,
// opens the Einzelansicht of the N-th test with --detail, and prints the
// class report into PDF with --report.
#include "app/AppMain.h"
#include "app/AppSplash.h"
#include "app/StartUp.h"
#include "app/TextScale.h"
#include "overview/OverviewWindow.h"
#include "pages/PageHints.h"
#include "pages/PracticeRound.h"
#include "pages/TaskPage.h"
#include "result/FinalGrade.h"
#include "result/ResultRecord.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>

namespace {

enum class Answer { Right, Wrong, Leave, Lower };

Answer answerFor(const QString& fill, int task) {
    if (fill == QLatin1String("right"))
        return Answer::Right;
    if (fill == QLatin1String("lower"))
        return Answer::Lower;
    if (fill == QLatin1String("wrong"))
        return Answer::Wrong;
    return task % 3 == 0 ? Answer::Right : task % 3 == 1 ? Answer::Wrong : Answer::Leave;
}

// The index in a control-array name: "Auswahl(2)" gives 2.
int arrayIndex(const QObject* o) {
    const QString name = o->objectName();
    const qsizetype open = name.lastIndexOf(u'(');
    return open < 0 ? -1 : name.mid(open + 1).chopped(1).toInt();
}

template <class W> QList<W*> byIndex(QWidget* page) {
    QList<W*> out;
    for (W* w : page->findChildren<W*>())
        if (w->isVisible() && w->isEnabled() && arrayIndex(w) >= 0)
            out << w;
    std::sort(out.begin(), out.end(), [](W* a, W* b) { return arrayIndex(a) < arrayIndex(b); });
    return out;
}

void fillPage(QWidget* p, const SessionState& s, const QString& fill) {
    int task = 0;
    // Fields a practice page hides keep their places in DrawnAnswers.
    int place = 0;
    for (QLineEdit* e : p->findChildren<QLineEdit*>()) {
        if (e->isReadOnly())
            continue;
        const int own = place++;
        if (!e->isVisible())
            continue;
        // A field that names its slot in DrawnAnswers takes that one.
        const QVariant slot = e->property("answerSlot");
        const QString a = s.DrawnAnswers[slot.isValid() ? slot.toInt() : own];
        const Answer how = answerFor(fill, task++);
        if (how == Answer::Leave)
            continue;
        const QString right =
            a.section(u'*', 1, 1).isEmpty() ? a.section(u'|', 0, 0) : a.section(u'*', 1, 1);
        e->setText(how == Answer::Right   ? right
                   : how == Answer::Lower ? right.toLower()
                                          : QStringLiteral("falsch"));
    }
    // Choice lists: the item that stands for the expected answer, or another.
    const QList<QListWidget*> lists = byIndex<QListWidget>(p);
    for (int i = 0; i < lists.size(); ++i) {
        const Answer how = answerFor(fill, i);
        QListWidget* list = lists[i];
        for (int row = 0; row < list->count() && how != Answer::Leave; ++row) {
            const bool match = CanonicalText(list->item(row)->text()) ==
                               CanonicalText(s.DrawnAnswers[arrayIndex(list)]);
            if (match == (how == Answer::Right)) {
                list->setCurrentRow(row);
                list->scrollToItem(list->item(row));
                break;
            }
        }
    }
    // Rows of option buttons whose answer is the number of the right button.
    QList<QWidget*> rows;
    for (QRadioButton* b : byIndex<QRadioButton>(p))
        if (!rows.contains(b->parentWidget()))
            rows << b->parentWidget();
    for (int r = 0; r < rows.size(); ++r) {
        const QList<QRadioButton*> row = byIndex<QRadioButton>(rows[r]);
        bool numeric = false;
        const int right = s.DrawnAnswers[arrayIndex(row.first()) / int(row.size())].toInt(&numeric);
        const Answer how = answerFor(fill, r);
        if (!numeric || how == Answer::Leave)
            continue;
        // A wrong pick is the last button of the row that is not the right one.
        QRadioButton* pick = nullptr;
        for (QRadioButton* b : row)
            if ((arrayIndex(b) == right) == (how == Answer::Right))
                pick = (how == Answer::Right && pick) ? pick : b;
        if (pick)
            pick->click();
    }
}

// Wrong answers a class gives, as the pages would record them, placed before
// the pages already checked.
void recordMistakes(TestFlow& flow) {
    auto page = [](int number, QList<AnswerItem> items) {
        PageRecord r;
        r.page = number;
        r.title = pageTitle(number);
        r.items = std::move(items);
        r.tasks = int(r.items.size());
        return r;
    };
    QList<PageRecord> earlier = {
        page(1, {{QStringLiteral("Cobalt"), QStringLiteral("Co"), QStringLiteral("CO")},
                 {QStringLiteral("Kalium"), QStringLiteral("K"), QStringLiteral("Ca")},
                 {QStringLiteral("Natrium"), QStringLiteral("Na"), QStringLiteral("Na"), true}}),
        page(11,
             {{QStringLiteral("Lithiumoxid"), QStringLiteral("Li2O"), QStringLiteral("LiO")},
              {QStringLiteral("Eisen(III)-oxid"), QStringLiteral("Fe2O3"), QStringLiteral("FeO")}}),
        page(8, {{QStringLiteral("Lithiumchlorid (LiCl)"), QStringLiteral("42.4"),
                  QStringLiteral("42,39")}}),
        page(9,
             {{QStringLiteral("H2 + O2 = H2O"), QStringLiteral("2 1 2"), QStringLiteral("4 2 4")},
              {QStringLiteral("N2 + H2 = NH3"), QStringLiteral("1 3 2"), QStringLiteral("1 3 1")}}),
        page(5, {{QStringLiteral("Definition"), QStringLiteral("Katalysator"), QString()}})};
    earlier.last().page = 4;
    earlier.last().title = pageTitle(4);
    for (PageRecord& r : earlier)
        PageHints::fill(r, flow.elements());
    flow.state().Pages = earlier + flow.state().Pages;
}

// A whole test whose pages in `wrongPages` ("1,11") are answered half
// wrong and the rest right, then the result form, "Fehler ansehen" and
// "Fehler üben"; `inRound` runs once the practice round is up.
void startPractice(AppMain& main, const QString& wrongPages, const QString& name,
                   std::function<void()> inRound) {
    QStringList wrong = wrongPages.split(u',', Qt::SkipEmptyParts);
    main.findChild<QLineEdit*>(QStringLiteral("BenutzerName"))->setText(name);
    main.findChild<QPushButton*>(QStringLiteral("OkS0"))->click();
    TestFlow& flow = main.flow();
    for (int number = 1; number > 0; number = TestFlow::nextPageAfter(number)) {
        if (number != 1)
            flow.ShowPage(number);
        TaskPage* p = flow.taskPage(number);
        fillPage(p, flow.state(),
                 wrong.contains(QString::number(number)) ? QStringLiteral("mixed")
                                                         : QStringLiteral("right"));
        p->okButton()->click();
        if (number == 6) {
            auto inModal = [](const char* button, std::function<void()> then) {
                QTimer::singleShot(300, [button, then] {
                    QWidget* dialog = QApplication::activeModalWidget();
                    if (then)
                        QTimer::singleShot(300, then);
                    if (auto* b = dialog
                                      ? dialog->findChild<QPushButton*>(QString::fromLatin1(button))
                                      : nullptr)
                        b->click();
                });
            };
            inModal("FehlerAnsehen", [inModal, inRound] { inModal("FehlerUeben", inRound); });
            p->nextButton()->click();
            return;
        }
    }
}

// A made-up class for pictures of the overview: names, attempts, tasks and
// typical mistakes as a teacher would meet them.
void writeSampleClass(const QString& folder) {
    struct Task {
        int page;
        const char* prompt;
        const char* expected;
        const char* wrong;
    };
    static const Task tasks[] = {
        {1, "Natrium", "Na", "na"},
        {1, "Kobalt", "Co", "Ko"},
        {1, "Fe", "Eisen", "Ferrum"},
        {1, "Kalium", "K", "Ka"},
        {2, "4", "tetra", "quadro"},
        {2, "6", "hexa", "sexa"},
        {11, "Kohlenstoffmonoxid", "CO", "Co"},
        {11, "NaCl", "Natriumchlorid", "Kochsalz"},
        {11, "Schwefelsäure", "H2SO4", "H2SO3"},
        {8, "Wasser H2O", "18,02", "17,01"},
        {8, "Kohlenstoffdioxid CO2", "44,01", "28,01"},
        {12, "18 g Wasser", "1", "18"},
        {12, "11,2 l Sauerstoff bei Normbedingungen", "0,5", "2"},
        {9, "H2 + O2 = H2O", "2 1 2", "1 1 1"},
        {9, "Fe + O2 = Fe2O3", "4 3 2", "2 3 1"},
        {3, "Stoff, der aus einer Atomsorte besteht", "Element", "Verbindung"},
        {4, "Teilchen mit elektrischer Ladung", "Ion", "Atom"},
        {5, "Sulfid", "-2", "-1"},
        {5, "Aluminium-Ion", "+3", "+2"},
        {6, "Ein Katalysator wird bei der Reaktion verbraucht.", "Nein", "Ja"},
        {6, "Metalle leiten den elektrischen Strom.", "Ja", "Nein"}};
    static const char* names[] = {
        "Lena Köhler",    "Paul Schmidt",   "Mia Wagner",    "Ben Fischer",     "Emma Becker",
        "Jonas Hoffmann", "Hannah Schulz",  "Luca Koch",     "Sophie Richter",  "Finn Klein",
        "Marie Wolf",     "Elias Neumann",  "Lea Schwarz",   "Noah Zimmermann", "Clara Braun",
        "Felix Krüger",   "Emilia Hofmann", "Leon Hartmann", "Lina Lange",      "Tim Werner",
        "Ida Krause",     "Moritz Lehmann", "Nele Köhler",   "Anton Meier"};
    QDir().mkpath(folder);
    int file = 0;
    for (int s = 0; s < 24; ++s) {
        const int attempts = 1 + (s * 7) % 3;
        for (int a = 0; a < attempts; ++a) {
            ResultRecord r;
            r.program = QStringLiteral("Laborix Test 3.0");
            r.machine = QStringLiteral("pc-%1").arg(s + 1, 2, 10, QLatin1Char('0'));
            r.candidate = QString::fromUtf8(names[s]);
            r.expert = s % 6 == 5;
            r.finished = QDateTime(QDate(2026, 11, 17 + a * 3), QTime(8 + s % 4, (s * 13) % 60));
            r.started = r.finished.addSecs(-1500);
            r.bankFile = QStringLiteral("labquiz.dat");
            for (int page : {1, 2, 11, 8, 12, 9, 3, 4, 5, 6}) {
                PageRecord p{page, pageTitle(page), 0, 0, {}, {}};
                int n = 0;
                for (const Task& t : tasks) {
                    if (t.page != page)
                        continue;
                    // Hard tasks stay hard; practice helps with the rest.
                    const int chance = (s * 31 + n * 17 + page * 7) % 10;
                    const bool right = chance >= 3 + (page == 9 || page == 12 ? 2 : 0) - a;
                    const int worth = page == 9 ? 2 : 1;
                    p.items.append(
                        {QString::fromUtf8(t.prompt), QString::fromUtf8(t.expected),
                         right ? QString::fromUtf8(t.expected)
                               : (chance % 4 == 0 ? QString() : QString::fromUtf8(t.wrong)),
                         right});
                    p.tasks += worth;
                    p.correct += right ? worth : 0;
                    ++n;
                }
                r.tasks += p.tasks;
                r.correct += p.correct;
                r.pages.append(p);
            }
            r.grade = FinalGrade::gradeWord(r.correct, r.tasks);
            r.points = FinalGrade::stepOf(r.grade);
            QFile f(
                QDir(folder).filePath(r.finished.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss_")) +
                                      QString::number(++file) + QStringLiteral(".json")));
            f.open(QIODevice::WriteOnly);
            f.write(r.toJson());
        }
    }
    // One file a student's crash left cut off.
    QFile cut(QDir(folder).filePath(QStringLiteral("2026-11-20_09-12-40_Tim_Werner_pc-20.json")));
    cut.open(QIODevice::WriteOnly);
    cut.write("{\"format\": \"laborix-result\", \"version\": 1, \"candid");
}

int shootOverview(QApplication& app, const QString& out, const QStringList& args) {
    const QString folder = args.value(args.indexOf(QStringLiteral("--overview")) + 1);
    if (args.contains(QStringLiteral("--sample")))
        writeSampleClass(folder);
    QString error;
    auto* w = qobject_cast<OverviewWindow*>(
        StartOverview({args.first(), QStringLiteral("--auswertung"), folder}, &error));
    if (!w) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    const int tabAt = args.indexOf(QStringLiteral("--tab"));
    const int detailAt = args.indexOf(QStringLiteral("--detail"));
    const int reportAt = args.indexOf(QStringLiteral("--report"));
    QObject::connect(w, &OverviewWindow::readingFinished, w, [=, &app] {
        if (tabAt > 0)
            w->findChild<QTabWidget*>()->setCurrentIndex(args.value(tabAt + 1).toInt());
        if (detailAt > 0)
            w->showTest(w->shownTests().value(args.value(detailAt + 1).toInt()));
        if (reportAt > 0) {
            qputenv("LABQUIZ_PRINT_TO", args.value(reportAt + 1).toLocal8Bit());
            w->printReport();
        }
        QTimer::singleShot(500, [&app, w, out] {
            const bool ok = w->screen()->grabWindow(0).save(out);
            std::printf("%s %s\n", ok ? "saved" : "could not save", qPrintable(out));
            app.exit(ok ? 0 : 1);
        });
    });
    return app.exec();
}

} // namespace

int main(int argc, char** argv) {
    // Drawn as the program itself is, at the desktop's text size.
    TextScale::applyBeforeStart(argc, argv, AppMain::smallestSize());
    QApplication app(argc, argv);
    QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: labquiz_shot OUT.png [--page N] [--expert] [--check] "
                             "[--fill right|wrong|mixed]\n");
        return 2;
    }
    const QString out = args.at(1);
    const int pageAt = args.indexOf(QStringLiteral("--page"));
    const int page = pageAt > 0 ? args.value(pageAt + 1).toInt() : 0;
    const bool expert = args.contains(QStringLiteral("--expert"));
    const bool check = args.contains(QStringLiteral("--check"));
    const int fillAt = args.indexOf(QStringLiteral("--fill"));
    const QString fill = fillAt > 0 ? args.value(fillAt + 1) : QString();
    const int nameAt = args.indexOf(QStringLiteral("--candidate"));
    const QString name = nameAt > 0 ? args.value(nameAt + 1) : QStringLiteral("Anna");
    const int scoreAt = args.indexOf(QStringLiteral("--score"));
    const QString score = scoreAt > 0 ? args.value(scoreAt + 1) : QString();
    const bool finish = args.contains(QStringLiteral("--finish"));
    const bool print = args.contains(QStringLiteral("--print"));
    const bool review = args.contains(QStringLiteral("--review"));
    const bool table = args.contains(QStringLiteral("--table"));
    const int calcAt = args.indexOf(QStringLiteral("--calc"));
    const int buttonAt = args.indexOf(QStringLiteral("--button"));
    const int menuAt = args.indexOf(QStringLiteral("--menu"));
    const int practiceAt = args.indexOf(QStringLiteral("--practice"));

    if (args.contains(QStringLiteral("--overview")))
        return shootOverview(app, out, args);
    if (args.contains(QStringLiteral("--splash"))) {
        // The splash is gone before anything could photograph it on screen.
        AppSplash splash;
        const bool ok = splash.grab().save(out);
        std::printf("%s %s\n", ok ? "saved" : "could not save", qPrintable(out));
        return ok ? 0 : 1;
    }
    auto* main = qobject_cast<AppMain*>(StartUp({args.first()}));
    if (!main)
        return 1;
    main->flow().setSlideStepMs(0);
    main->setLauncher([](const QString&, const QStringList&) { return true; });
    main->setExiter([] {});
    // Xvfb has no window manager to activate the window; without that no
    // focus ring would show in the picture.
    main->activateWindow();
    bool shotTaken = false;
    auto shoot = [&] {
        if (shotTaken)
            return;
        shotTaken = true;
        const QPixmap shot = main->screen()->grabWindow(0);
        const bool ok = shot.save(out);
        std::printf("%s %s\n", ok ? "saved" : "could not save", qPrintable(out));
        app.exit(ok ? 0 : 1);
    };
    QTimer::singleShot(300, [&] {
        if (practiceAt > 0) {
            startPractice(*main, args.value(practiceAt + 1), name, [&] {
                // Inside the practice round: its page as asked, then the picture.
                auto* round = qobject_cast<PracticeRound*>(QApplication::activeModalWidget());
                TaskPage* p = round ? round->page() : nullptr;
                if (p && !fill.isEmpty())
                    fillPage(p, round->flow().state(), fill);
                if (p && check)
                    p->okButton()->click();
                // --finish: every further page answered right, up to the round's end.
                while (finish && p && p->isChecked()) {
                    p->nextButton()->click();
                    p = round->page();
                    if (p) {
                        fillPage(p, round->flow().state(), QStringLiteral("right"));
                        p->okButton()->click();
                    }
                }
                QTimer::singleShot(400, shoot);
            });
            return;
        }
        if (page > 0) {
            main->findChild<QLineEdit*>(QStringLiteral("BenutzerName"))->setText(name);
            main->findChild<QRadioButton*>(QStringLiteral("Expert(%1)").arg(expert ? 1 : 0))
                ->click();
            main->findChild<QPushButton*>(QStringLiteral("OkS0"))->click();
            if (page != 1)
                main->flow().ShowPage(page);
            TaskPage* p = main->flow().taskPage(page);
            if (p && !fill.isEmpty())
                fillPage(p, main->flow().state(), fill);
            if (!score.isEmpty()) {
                main->flow().state().CorrectSoFar = score.section(u'/', 0, 0).toInt();
                main->flow().state().TasksSoFar = score.section(u'/', 1, 1).toInt();
            }
            // A notice the check shows holds the click; the picture is taken
            // from inside it.
            if (p && check && !finish)
                QTimer::singleShot(700, shoot);
            if (p && check)
                p->okButton()->click();
            if (p && finish && review)
                recordMistakes(main->flow());
            if (p && finish) {
                QTimer::singleShot(600, [&] {
                    auto* form = qobject_cast<QWidget*>(QApplication::activeModalWidget());
                    auto* druck =
                        form ? form->findChild<QPushButton*>(QStringLiteral("Druck")) : nullptr;
                    // Shot first: a notice after printing would hold the click.
                    QTimer::singleShot(400, shoot);
                    if (print && druck)
                        druck->click();
                    if (auto* b = review && form ? form->findChild<QPushButton*>(
                                                       QStringLiteral("FehlerAnsehen"))
                                                 : nullptr)
                        b->click();
                });
                p->nextButton()->click();
                return;
            }
        }
        if (table)
            main->M_H_P2_Click();
        // The picture is taken from inside whatever modal dialog opens below.
        QTimer::singleShot(400, shoot);
        if (calcAt > 0) {
            const QString expression = args.value(calcAt + 1);
            QTimer::singleShot(150, [expression] {
                QWidget* dialog = QApplication::activeModalWidget();
                auto* display =
                    dialog ? dialog->findChild<QLineEdit*>(QStringLiteral("Anzeige")) : nullptr;
                if (display && !expression.isEmpty()) {
                    QTest::keyClicks(display, expression);
                    QTest::keyClick(display, Qt::Key_Return);
                }
            });
            main->mnu_HelpCalc_Click();
        } else if (buttonAt > 0) {
            if (auto* b = main->findChild<QAbstractButton*>(args.value(buttonAt + 1)))
                b->click();
        } else if (args.contains(QStringLiteral("--info"))) {
            main->M_H_INFO_Click();
        } else if (menuAt > 0) {
            // Opens the named menu (mnu_File, mnu_Help) as a click on its title would.
            if (auto* menu = main->findChild<QMenu*>(args.value(menuAt + 1)))
                main->menuBar()->setActiveAction(menu->menuAction());
        }
    });
    return app.exec();
}
