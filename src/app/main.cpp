#include "app/AppInfo.h"
#include "app/AppMain.h"
#include "app/CommandLine.h"
#include "app/ConsoleCommands.h"
#include "app/OverviewCommand.h"
#include "app/StartUp.h"
#include "app/TextScale.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTextStream>
#include <QWidget>
#include <cstdio>

namespace {

void nameApplication() {
    // The names decide the per-user data folder, so the checker must use
    // the same ones as the program to find the teacher's copy of the bank.
    // No display name: the window system would add it to every caption.
    QCoreApplication::setApplicationName(QStringLiteral("LabQuiz"));
    QCoreApplication::setOrganizationName(QStringLiteral("Laborix"));
}

// The words after the program's name, read before any Qt application
// exists: --help and --version must work where no display is reachable.
QStringList wordsOf(int argc, char* argv[]) {
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    return words;
}

int print(const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    const QStringList words = wordsOf(argc, argv);
    switch (ConsoleCommands::kindOf(words)) {
    case ConsoleCommands::Kind::Help: {
        // No window, but the folders in use need the application's name.
        QCoreApplication app(argc, argv);
        nameApplication();
        const AppInfo::Folders folders =
            AppInfo::resolveFolders(CommandLine(words), QProcessEnvironment::systemEnvironment(),
                                    AppInfo::readSystemConfig());
        return print(ConsoleCommands::usageText() + QStringLiteral("\nIn Gebrauch:\n") +
                     AppInfo::foldersText(folders) + u'\n');
    }
    case ConsoleCommands::Kind::Version:
        return print(ConsoleCommands::versionText() + u'\n');
    case ConsoleCommands::Kind::Check: {
        QCoreApplication app(argc, argv);
        nameApplication();
        QTextStream out(stdout);
        QTextStream err(stderr);
        return ConsoleCommands::runCheck(words, QProcessEnvironment::systemEnvironment(), out, err);
    }
    case ConsoleCommands::Kind::OverviewCsv: {
        QCoreApplication app(argc, argv);
        nameApplication();
        QFile out;
        out.open(stdout, QIODevice::WriteOnly);
        QTextStream err(stderr);
        return OverviewCommand::runCsv(words, QProcessEnvironment::systemEnvironment(), out, err);
    }
    case ConsoleCommands::Kind::Overview: {
        TextScale::applyBeforeStart(argc, argv, AppMain::smallestSize());
        QApplication app(argc, argv);
        nameApplication();
        QGuiApplication::setDesktopFileName(QStringLiteral("de.laborix.LabQuiz"));
        QString error;
        if (!StartOverview(QApplication::arguments(), &error)) {
            QTextStream(stderr) << QStringLiteral("labquiz --auswertung: ") << error << '\n';
            return OverviewCommand::kCannotRun;
        }
        return app.exec();
    }
    case ConsoleCommands::Kind::Window:
        break;
    }
    TextScale::applyBeforeStart(argc, argv, AppMain::smallestSize());
    QApplication app(argc, argv);
    nameApplication();
    QGuiApplication::setDesktopFileName(QStringLiteral("de.laborix.LabQuiz"));
    QWidget* main = StartUp(QApplication::arguments());
    if (!main)
        return 0;
    main->setAttribute(Qt::WA_DeleteOnClose);
    return app.exec();
}
