#pragma once

#include <QDate>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

class QIODevice;
class QTextStream;

// "labquiz --auswertung [ORDNER] [--csv DATEI|-] [--von JJJJ-MM-TT]
// [--bis JJJJ-MM-TT]": the teacher's overview of a results folder, as a
// window, or with --csv as the class table written without any display
// (for scripts and school servers).
class OverviewCommand final {
public:
    static constexpr const char* kSwitch = "--auswertung";

    // Exit codes of the CSV run.
    static constexpr int kAllRead = 0;
    static constexpr int kSomeSkipped = 1;
    static constexpr int kCannotRun = 2; // folder unreadable, arguments wrong, file not written

    struct Arguments {
        QString folder; // empty: the results folder in use
        bool csv = false;
        QString csvTarget; // a path, or "-" for standard output
        QDate from, to;
        QString error; // German, whole sentence; empty when the words are right
    };
    // arguments: the command line without the program's name.
    static Arguments parse(const QStringList& arguments);

    // Reads the folder and writes the CSV into its file, or into standard
    // (for "-"); skipped files and problems go to err, one line each.
    // Returns one of the exit codes above.
    static int runCsv(const QStringList& arguments, const QProcessEnvironment& environment,
                      QIODevice& standard, QTextStream& err);
    // The folder to read: the one given, else the results folder in use.
    static QString folderFor(const Arguments& arguments, const QStringList& commandLine,
                             const QProcessEnvironment& environment);
};
