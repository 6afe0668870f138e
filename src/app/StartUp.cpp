#include "app/StartUp.h"

#include "app/AppInfo.h"
#include "app/AppMain.h"
#include "app/AppSplash.h"
#include "controls/ButtonEnterKey.h"
#include "controls/GermanQtTexts.h"
#include "controls/Look.h"
#include "session/TestFlow.h"

#include <QApplication>
#include <QProcessEnvironment>

namespace {

// The main window owns its AppInfo through this holder so that both end
// together when the window is deleted.
class AppMainWithInfo final : public QObject {
public:
    AppMainWithInfo(QObject* parent, std::unique_ptr<AppInfo> info)
        : QObject(parent), m_info(std::move(info)) {}

private:
    std::unique_ptr<AppInfo> m_info;
};

} // namespace

QWidget* StartUp(const QStringList& commandLine) {
    if (qApp) {
        // Once per application: tests start several windows in one process.
        if (!qApp->findChild<GermanQtTexts*>())
            QCoreApplication::installTranslator(new GermanQtTexts(qApp));
        Look::install();
        ButtonEnterKey::install(qApp);
    }
    // Arguments after the program's own name form the command line.
    QStringList arguments = commandLine;
    if (!arguments.isEmpty())
        arguments.removeFirst();

    auto splash = std::make_unique<AppSplash>();
    splash->show();
    QApplication::setOverrideCursor(Qt::WaitCursor);

    auto info =
        std::make_unique<AppInfo>(CommandLine(arguments), QProcessEnvironment::systemEnvironment());
    const QString problem = info->prepareDataFolder();

    auto* main = new AppMain(*info);
    if (!main->formLoad(splash.get())) {
        delete main;
        return nullptr;
    }
    // Everything the data folder could not give goes into one notice: a
    // file that was refused (a pipe, a device, one far too large) is named
    // with the reason, and the pages then say what they lack.
    QStringList problems;
    if (!problem.isEmpty())
        problems << problem;
    problems << main->loadNotices();
    if (!main->flow().bank().readProblem.isEmpty())
        problems << main->flow().bank().readProblem;
    const QString elements = main->elements().readProblem();
    if (!elements.isEmpty())
        problems << elements;
    new AppMainWithInfo(main, std::move(info));
    main->show();
    if (!problems.isEmpty())
        main->info().message(main, problems.join(QStringLiteral("\n\n")));
    return main;
}
