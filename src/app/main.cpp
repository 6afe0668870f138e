#include "app/AppInfo.h"
#include "app/CommandLine.h"
#include "app/StartUp.h"
#include "checker/BankChecker.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTextStream>
#include <QWidget>
#include <cstring>

namespace {

void nameApplication() {
    // The names decide the per-user data folder, so the checker must use
    // the same ones as the program to find the teacher's copy of the bank.
    QCoreApplication::setApplicationName(QStringLiteral("LabQuiz"));
    QCoreApplication::setOrganizationName(QStringLiteral("Laborix"));
}

bool asksForCheck(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--check") == 0)
            return true;
    }
    return false;
}

// "labquiz --check [FILE]": checks a task bank without any window, so that
// it also runs where there is no display.
int runChecker(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    nameApplication();
    const CommandLine commandLine(QCoreApplication::arguments());
    QString bankPath;
    commandLine.wantsCheck(&bankPath);
    // "--check -DEV" asks for the developer folder, not for a file "-DEV".
    if (bankPath.startsWith(u'-') && !QFileInfo::exists(bankPath))
        bankPath.clear();
    const QString dataFolder =
        AppInfo::resolveDataFolder(commandLine, QProcessEnvironment::systemEnvironment());
    if (bankPath.isEmpty())
        bankPath = dataFolder + QStringLiteral("labquiz.dat");
    QString elementsPath = QFileInfo(bankPath).dir().filePath(QStringLiteral("elements.dat"));
    if (!QFileInfo(elementsPath).isFile())
        elementsPath = dataFolder + QStringLiteral("elements.dat");

    const BankChecker::Report report = BankChecker::checkFiles(bankPath, elementsPath);
    QTextStream out(stdout);
    for (const QString& line : report.lines())
        out << line << '\n';
    out.flush();
    return report.exitCode();
}

} // namespace

int main(int argc, char* argv[]) {
    if (asksForCheck(argc, argv))
        return runChecker(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("LabQuiz"));
    QApplication::setOrganizationName(QStringLiteral("Laborix"));
    QApplication::setApplicationDisplayName(QStringLiteral("Laborix Test"));
    QWidget* main = StartUp(QApplication::arguments());
    if (!main)
        return 0;
    main->setAttribute(Qt::WA_DeleteOnClose);
    return app.exec();
}
