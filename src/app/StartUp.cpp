#include "app/StartUp.h"

#include "app/AppInfo.h"
#include "app/AppMain.h"
#include "app/AppSplash.h"
#include "app/OverviewCommand.h"
#include "controls/ButtonEnterKey.h"
#include "controls/GermanQtTexts.h"
#include "controls/Look.h"
#include "overview/OverviewWindow.h"
#include "session/NamesFile.h"
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

// The overview's remembered folder lives in the personal names.ini; the
// window keeps the file it reads through this holder.
class NamesHolder final : public QObject {
public:
    NamesHolder(QObject* parent, const QString& path) : QObject(parent), names(path) {}
    NamesFile names;
};

void prepareApplication() {
    if (!qApp)
        return;
    // Once per application: tests start several windows in one process.
    if (!qApp->findChild<GermanQtTexts*>())
        QCoreApplication::installTranslator(new GermanQtTexts(qApp));
    Look::install();
    ButtonEnterKey::install(qApp);
}

// Arguments after the program's own name form the command line.
QStringList withoutProgram(QStringList commandLine) {
    if (!commandLine.isEmpty())
        commandLine.removeFirst();
    return commandLine;
}

} // namespace

QWidget* StartOverview(const QStringList& commandLine, QString* error) {
    const QStringList arguments = withoutProgram(commandLine);
    const OverviewCommand::Arguments words = OverviewCommand::parse(arguments);
    if (!words.error.isEmpty()) {
        if (error)
            *error = words.error;
        return nullptr;
    }
    prepareApplication();
    const AppInfo info(CommandLine(arguments), QProcessEnvironment::systemEnvironment());
    auto* window = new OverviewWindow(info.resultsFolder(), nullptr);
    auto* holder = new NamesHolder(window, info.namesPath());
    holder->names.load();
    window->setRememberedIn(&holder->names);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->presetDates(words.from, words.to);
    window->openFolder(words.folder.isEmpty() ? window->startFolder() : words.folder);
    window->show();
    return window;
}

QWidget* StartUp(const QStringList& commandLine) {
    prepareApplication();
    const QStringList arguments = withoutProgram(commandLine);

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
