// Developer tool: starts the program as a candidate would, goes to one page
// and saves a picture of the whole screen, so that a page can be looked at
// under Xvfb without clicking through a test. Run it through tools/shot.
//
//   labquiz_shot OUT.png [--page N] [--expert] [--check] [--fill right|wrong|mixed]
//
// --fill right types the expected answers into the page's line edits where a
// page keeps them one to one in DrawnAnswers, or where a field names its
// slot in the property "answerSlot"; --fill wrong types "falsch"; --fill
// mixed types a wrong answer into every third field and right ones into the
// rest.
#include "app/AppMain.h"
#include "app/StartUp.h"
#include "pages/TaskPage.h"
#include "session/TestFlow.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
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

    auto* main = qobject_cast<AppMain*>(StartUp({args.first()}));
    if (!main)
        return 1;
    main->flow().setSlideStepMs(0);
    QTimer::singleShot(300, [&] {
        if (page > 0) {
            main->findChild<QLineEdit*>(QStringLiteral("BenutzerName"))
                ->setText(QStringLiteral("Anna"));
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
            }
            if (p && check)
                p->okButton()->click();
        }
        QTimer::singleShot(400, [&] {
            const QPixmap shot = main->screen()->grabWindow(0);
            const bool ok = shot.save(out);
            std::printf("%s %s\n", ok ? "saved" : "could not save", qPrintable(out));
            app.exit(ok ? 0 : 1);
        });
    });
    return app.exec();
}
