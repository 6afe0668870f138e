// Developer tool: starts the program as a candidate would, goes to one page
// and saves a picture of the whole screen, so that a page can be looked at
// under Xvfb without clicking through a test. Run it through tools/shot.
//
//   labquiz_shot OUT.png [--page N] [--expert] [--check] [--fill right|wrong|mixed]
//                [--candidate TEXT] [--score C/T] [--finish] [--print]
//                [--table] [--calc EXPR] [--button NAME]
//
// --fill right types the expected answers into the page's line edits where a
// page keeps them one to one in DrawnAnswers, or where a field names its
// slot in the property "answerSlot"; where DrawnAnswers holds the
// index of a choice button instead (yes/no pairs), it clicks that button
// (right) or its partner (wrong). Other fields are left as drawn. --fill
// mixed answers every third field wrong and the rest right.
// --score C/T sets the counters before the page is checked; --finish then
// presses the page's "Weiter" and shoots what comes up (the result form
// after the last page); --print presses "Graphik Drucken" on the result
// form first (LABQUIZ_PRINT_TO names the PDF).
// --table opens the periodic table, --calc opens the calculator from the
// menu and types EXPR followed by Enter, --button clicks the named button
// (e.g. "but_Calc(0)"); a dialog that opens stays open for the picture.
#include "app/AppMain.h"
#include "app/StartUp.h"
#include "pages/TaskPage.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cstdio>

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
    const bool table = args.contains(QStringLiteral("--table"));
    const int calcAt = args.indexOf(QStringLiteral("--calc"));
    const int buttonAt = args.indexOf(QStringLiteral("--button"));

    auto* main = qobject_cast<AppMain*>(StartUp({args.first()}));
    if (!main)
        return 1;
    main->flow().setSlideStepMs(0);
    main->setLauncher([](const QString&, const QStringList&) { return true; });
    main->setExiter([] {});
    auto shoot = [&] {
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
            if (p && !fill.isEmpty()) {
                const auto edits = p->findChildren<QLineEdit*>();
                int i = 0;
                int filled = 0;
                for (QLineEdit* e : edits) {
                    if (!e->isVisible() || e->isReadOnly())
                        continue;
                    // A field that names its slot in DrawnAnswers takes that one.
                    const QVariant slot = e->property("answerSlot");
                    const QString a =
                        main->flow().state().DrawnAnswers[slot.isValid() ? slot.toInt() : i];
                    ++i;
                    const bool right = fill == QLatin1String("right") ||
                                       (fill == QLatin1String("mixed") && filled++ % 3 != 1);
                    e->setText(right ? a.section(u'*', 1, 1).isEmpty() ? a.section(u'|', 0, 0)
                                                                       : a.section(u'*', 1, 1)
                                     : QStringLiteral("falsch"));
                }
                QString choiceName;
                int pairs = 0;
                for (QAbstractButton* b : p->findChildren<QAbstractButton*>()) {
                    if (b->isCheckable() && b->objectName().endsWith(u')')) {
                        choiceName = b->objectName().section(u'(', 0, 0);
                        ++pairs;
                    }
                }
                pairs /= 2;
                for (int k = 0; !choiceName.isEmpty() && k < pairs; ++k) {
                    bool isIndex = false;
                    const int e = main->flow().state().DrawnAnswers[k].trimmed().toInt(&isIndex);
                    const int pick = fill == QLatin1String("right") ? e : (e ^ 1);
                    auto* b = p->findChild<QAbstractButton*>(
                        QStringLiteral("%1(%2)").arg(choiceName).arg(pick));
                    if (isIndex && b)
                        b->click();
                }
            }
            if (!score.isEmpty()) {
                main->flow().state().CorrectSoFar = score.section(u'/', 0, 0).toInt();
                main->flow().state().TasksSoFar = score.section(u'/', 1, 1).toInt();
            }
            if (p && check)
                p->okButton()->click();
            if (p && finish) {
                QTimer::singleShot(600, [&] {
                    auto* form = qobject_cast<QWidget*>(QApplication::activeModalWidget());
                    auto* druck =
                        form ? form->findChild<QPushButton*>(QStringLiteral("Druck")) : nullptr;
                    // Shot first: a notice after printing would hold the click.
                    QTimer::singleShot(400, shoot);
                    if (print && druck)
                        druck->click();
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
        }
    });
    return app.exec();
}
