// Developer tool: starts the program as a candidate would, goes to one page
// and saves a picture of the whole screen, so that a page can be looked at
// under Xvfb without clicking through a test. Run it through tools/shot.
//
//   labquiz_shot OUT.png [--page N] [--expert] [--check] [--fill right|wrong|mixed]
//                [--candidate TEXT] [--score C/T] [--finish] [--print]
//                [--table] [--calc EXPR] [--button NAME] [--splash] [--menu NAME]
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
#include "app/AppMain.h"
#include "app/AppSplash.h"
#include "app/StartUp.h"
#include "pages/PageHints.h"
#include "pages/TaskPage.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {

enum class Answer { Right, Wrong, Leave };

Answer answerFor(const QString& fill, int task) {
    if (fill == QLatin1String("right"))
        return Answer::Right;
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
    for (QLineEdit* e : p->findChildren<QLineEdit*>()) {
        if (!e->isVisible() || e->isReadOnly())
            continue;
        // A field that names its slot in DrawnAnswers takes that one.
        const QVariant slot = e->property("answerSlot");
        const QString a = s.DrawnAnswers[slot.isValid() ? slot.toInt() : task];
        const Answer how = answerFor(fill, task++);
        if (how == Answer::Leave)
            continue;
        e->setText(how == Answer::Right ? a.section(u'*', 1, 1).isEmpty() ? a.section(u'|', 0, 0)
                                                                          : a.section(u'*', 1, 1)
                                        : QStringLiteral("falsch"));
    }
    // Choice lists: the item that stands for the expected answer, or another.
    const QList<QListWidget*> lists = byIndex<QListWidget>(p);
    for (int i = 0; i < lists.size(); ++i) {
        const Answer how = answerFor(fill, i);
        QListWidget* list = lists[i];
        for (int row = 0; row < list->count() && how != Answer::Leave; ++row) {
            const bool match =
                CanonicalText(list->item(row)->text()) == CanonicalText(s.DrawnAnswers[i]);
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
        bool numeric = false;
        const int right = s.DrawnAnswers[r].toInt(&numeric);
        const Answer how = answerFor(fill, r);
        if (!numeric || how == Answer::Leave)
            continue;
        // A wrong pick is the last button of the row that is not the right one.
        QRadioButton* pick = nullptr;
        for (QRadioButton* b : byIndex<QRadioButton>(rows[r]))
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

} // namespace

int main(int argc, char** argv) {
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
