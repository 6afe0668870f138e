#include "app/ConsoleCommands.h"

#include "app/AppInfo.h"
#include "app/CommandLine.h"
#include "app/OverviewCommand.h"
#include "checker/BankChecker.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace {

const QString kCheck = QStringLiteral("--check");
const QString kBuiltInElements = QStringLiteral(":/data/elements.dat");

bool isSwitch(const QString& word) {
    return word == QLatin1String("/NEW") ||
           word.compare(QLatin1String("-DEV"), Qt::CaseInsensitive) == 0;
}

} // namespace

ConsoleCommands::Kind ConsoleCommands::kindOf(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--help")))
        return Kind::Help;
    if (arguments.contains(QStringLiteral("--version")))
        return Kind::Version;
    if (arguments.contains(kCheck))
        return Kind::Check;
    if (arguments.contains(QLatin1String(OverviewCommand::kSwitch)))
        return arguments.contains(QStringLiteral("--csv")) ? Kind::OverviewCsv : Kind::Overview;
    return Kind::Window;
}

QString ConsoleCommands::versionText() {
    return QStringLiteral("%1 %2 (%3)")
        .arg(QLatin1String(AppInfo::kProductName), QLatin1String(AppInfo::kVersion),
             QLatin1String(AppInfo::kReleaseDate));
}

QString ConsoleCommands::usageText() {
    return versionText() +
           QStringLiteral(
               " – Selbsttest Chemie für die Klassen 8 bis 10\n"
               "\n"
               "Aufruf: labquiz [-DEV] [/NEW]\n"
               "        labquiz --check [DATEI]\n"
               "        labquiz --auswertung [ORDNER] [--csv DATEI|-] [--von JJJJ-MM-TT]\n"
               "                [--bis JJJJ-MM-TT]\n"
               "        labquiz --help | --version\n"
               "\n"
               "Ohne Schalter öffnet sich das Programm mit seiner Startseite.\n"
               "\n"
               "  -DEV             Entwickler-Datenordner nutzen (LABQUIZ_DEV_DIR, sonst data/ "
               "der\n"
               "                   Quellen); Groß- und Kleinschreibung egal\n"
               "  /NEW             Start als neuer Test: darf starten, während der vorige noch\n"
               "                   endet\n"
               "  --check [DATEI]  Aufgabendatei prüfen, ohne Fenster; ohne DATEI die labquiz.dat\n"
               "                   des Datenordners. Die elements.dat wird neben der Datei\n"
               "                   gesucht, sonst im Datenordner, sonst gilt die eingebaute.\n"
               "                   Rückgabewert: 0 ohne Fehler (Warnungen erlaubt), 1 bei\n"
               "                   Fehlern, 2 wenn die Datei nicht lesbar ist oder die Angaben\n"
               "                   nicht stimmen\n"
               "  --auswertung [ORDNER]\n"
               "                   Ergebnisse auswerten: liest jede Ergebnisdatei des Ordners\n"
               "                   (ohne ORDNER den Ergebnisordner in Gebrauch) und öffnet das\n"
               "                   Fenster mit Klassentabelle, Stärken und Schwächen und den\n"
               "                   schwierigsten Aufgaben\n"
               "    --csv DATEI|-  statt des Fensters die Klassentabelle als CSV für deutsche\n"
               "                   Tabellenkalkulationen schreiben (- für die Ausgabe), ohne\n"
               "                   Anzeige. Rückgabewert: 0 wenn alle Dateien gelesen wurden,\n"
               "                   1 wenn welche übersprungen wurden (jede mit Grund auf der\n"
               "                   Fehlerausgabe), 2 wenn der Ordner nicht lesbar ist oder die\n"
               "                   Angaben nicht stimmen\n"
               "    --von JJJJ-MM-TT, --bis JJJJ-MM-TT\n"
               "                   nur Tests ab oder bis zu diesem Tag\n"
               "  --help           diese Hilfe zeigen\n"
               "  --version        Version zeigen\n"
               "\n"
               "Ordner:\n"
               "  Aufgabenordner      labquiz.dat und elements.dat, wird nur gelesen\n"
               "  Persönlicher Ordner names.ini, laborix.log, Sperrdatei, Ausgang/\n"
               "  Ergebnisordner      eine Datei je beendetem Test (Standard: Ergebnisse/ im\n"
               "                      persönlichen Ordner)\n"
               "Der persönliche Ordner ist LABQUIZ_DATA, sonst mit -DEV der Entwicklerordner,\n"
               "sonst der Programmdatenordner des Benutzers (unter Linux\n"
               "~/.local/share/Laborix/LabQuiz/); ohne eigene Angabe liegt die Aufgabendatei\n"
               "dort. LABQUIZ_TASKS und LABQUIZ_RESULTS legen Aufgaben- und Ergebnisordner fest;\n"
               "für alle Benutzer eines Rechners auch TaskFolder= und ResultsFolder= in\n"
               "/etc/xdg/Laborix/LabQuiz.conf. Die Umgebung hat Vorrang vor der Datei.\n");
}

ConsoleCommands::ElementsChoice ConsoleCommands::chooseElements(const QString& bankPath,
                                                                const QString& dataFolder) {
    const QString beside = QFileInfo(bankPath).dir().filePath(QStringLiteral("elements.dat"));
    using Origin = ElementsChoice::Origin;
    if (QFileInfo(beside).isFile())
        return {beside, Origin::BesideBank};
    const QString inData = QDir(dataFolder).filePath(QStringLiteral("elements.dat"));
    if (!dataFolder.isEmpty() && QFileInfo(inData).isFile())
        return {inData, Origin::DataFolder};
    return {kBuiltInElements, Origin::BuiltIn};
}

QString ConsoleCommands::elementsLine(const ElementsChoice& choice) {
    const QString path = QDir::toNativeSeparators(choice.path);
    switch (choice.origin) {
    case ElementsChoice::Origin::BesideBank:
        return QStringLiteral("Elementtabelle: %1 (neben der Aufgabendatei)").arg(path);
    case ElementsChoice::Origin::DataFolder:
        return QStringLiteral("Elementtabelle: %1 (aus dem Datenordner; neben der Aufgabendatei "
                              "liegt keine elements.dat)")
            .arg(path);
    case ElementsChoice::Origin::BuiltIn:
        break;
    }
    return QStringLiteral("Elementtabelle: die eingebaute des Programms (weder neben der "
                          "Aufgabendatei noch im Datenordner liegt eine elements.dat)");
}

int ConsoleCommands::runCheck(const QStringList& arguments, const QProcessEnvironment& environment,
                              QTextStream& out, QTextStream& err) {
    QStringList files;
    for (const QString& word : arguments) {
        if (word == kCheck || isSwitch(word))
            continue;
        if (word.startsWith(u'-') && !QFileInfo::exists(word)) {
            err << QStringLiteral("labquiz --check: unbekannte Angabe \"%1\". Aufruf: labquiz "
                                  "--check [DATEI] (mehr mit --help)\n")
                       .arg(word);
            err.flush();
            return kCheckCannotRun;
        }
        files << word;
    }
    if (files.size() > 1) {
        err << QStringLiteral("labquiz --check: nur eine Datei auf einmal, nicht \"%1\". Aufruf: "
                              "labquiz --check [DATEI]\n")
                   .arg(files.join(QStringLiteral("\", \"")));
        err.flush();
        return kCheckCannotRun;
    }

    const CommandLine commandLine(arguments);
    QString dataFolder =
        AppInfo::resolveFolders(commandLine, environment, AppInfo::readSystemConfig()).tasks;
    QString bankPath;
    if (files.isEmpty()) {
        // The bank the program would use, seeded from the compiled-in copy
        // as at start-up when the teacher has none yet.
        AppInfo info(commandLine, environment);
        const QString problem = info.prepareDataFolder();
        if (!problem.isEmpty())
            err << problem << '\n';
        dataFolder = info.taskFolder();
        bankPath = info.taskBankPath();
    } else {
        bankPath = files.first();
    }

    const ElementsChoice elements = chooseElements(bankPath, dataFolder);
    const BankChecker::Report report = BankChecker::checkFiles(bankPath, elements.path);
    if (report.bankRead)
        out << elementsLine(elements) << '\n';
    for (const QString& line : report.lines())
        out << line << '\n';
    out.flush();
    err.flush();
    return report.exitCode();
}
