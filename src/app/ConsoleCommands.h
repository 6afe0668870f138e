#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

class QTextStream;

// What the program does in a terminal instead of opening its window:
// "--help", "--version", "--check [FILE]" and "--auswertung … --csv". None of
// them needs a display, so main() looks at them before any GUI object exists.
// "--auswertung" without "--csv" opens the teacher's overview instead of the
// test.
class ConsoleCommands final {
public:
    enum class Kind { Window, Help, Version, Check, Overview, OverviewCsv };

    // Exit codes of --check.
    static constexpr int kCheckClean = 0;     // no errors (warnings allowed)
    static constexpr int kCheckErrors = 1;    // errors in the bank or the element table
    static constexpr int kCheckCannotRun = 2; // file unreadable or arguments wrong

    // arguments: the command line without the program's name. --help wins
    // over --version, both over --check, and all three over --auswertung;
    // anything else opens the window.
    static Kind kindOf(const QStringList& arguments);

    static QString versionText(); // "Laborix Test 3.0 (28.03.2006)"
    static QString usageText();   // German, ends with a newline

    // Where the element table for a check comes from.
    struct ElementsChoice {
        enum class Origin { BesideBank, DataFolder, BuiltIn };
        QString path;
        Origin origin = Origin::BuiltIn;
    };
    // Beside the bank, else in the data folder, else the compiled-in table.
    static ElementsChoice chooseElements(const QString& bankPath, const QString& dataFolder);
    // The line that tells the teacher which table the check used.
    static QString elementsLine(const ElementsChoice& choice);

    // --check [FILE]: prints the element table used, the findings and the
    // summary to out, problems with the arguments to err; returns the exit
    // code. Without FILE the data folder is prepared as at start-up first.
    static int runCheck(const QStringList& arguments, const QProcessEnvironment& environment,
                        QTextStream& out, QTextStream& err);
};
