#include "app/OverviewCommand.h"

#include "app/AppInfo.h"
#include "app/CommandLine.h"
#include "overview/ClassCsv.h"
#include "overview/ClassSummary.h"
#include "overview/ResultFolder.h"

#include <QDir>
#include <QIODevice>
#include <QSaveFile>
#include <QTextStream>

namespace {

const QString kCsv = QStringLiteral("--csv");
const QString kFrom = QStringLiteral("--von");
const QString kTo = QStringLiteral("--bis");
const QString kUsage = QStringLiteral("Aufruf: labquiz --auswertung [ORDNER] [--csv DATEI|-] "
                                      "[--von JJJJ-MM-TT] [--bis JJJJ-MM-TT]");

bool isProgramSwitch(const QString& word) {
    return word == QLatin1String("/NEW") ||
           word.compare(QLatin1String("-DEV"), Qt::CaseInsensitive) == 0;
}

} // namespace

OverviewCommand::Arguments OverviewCommand::parse(const QStringList& arguments) {
    Arguments a;
    QStringList folders;
    auto fail = [&a](const QString& text) {
        a.error = text + u' ' + kUsage;
        return a;
    };
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& word = arguments[i];
        if (word == QLatin1String(kSwitch) || isProgramSwitch(word))
            continue;
        if (word == kCsv || word == kFrom || word == kTo) {
            if (i + 1 >= arguments.size())
                return fail(QStringLiteral("Nach %1 fehlt die Angabe.").arg(word));
            const QString value = arguments[++i];
            if (word == kCsv) {
                a.csv = true;
                a.csvTarget = value;
                continue;
            }
            const QDate day = QDate::fromString(value, Qt::ISODate);
            if (!day.isValid() || value.size() != 10)
                return fail(
                    QStringLiteral("\"%1\" ist kein Datum der Form JJJJ-MM-TT.").arg(value));
            (word == kFrom ? a.from : a.to) = day;
            continue;
        }
        if (word.startsWith(QLatin1String("--")))
            return fail(QStringLiteral("Unbekannte Angabe \"%1\".").arg(word));
        folders << word;
    }
    if (folders.size() > 1)
        return fail(QStringLiteral("Nur ein Ordner auf einmal, nicht \"%1\".")
                        .arg(folders.join(QStringLiteral("\", \""))));
    if (a.csv && a.csvTarget.isEmpty())
        return fail(QStringLiteral("Nach --csv fehlt die Datei (oder - für die Ausgabe)."));
    if (a.from.isValid() && a.to.isValid() && a.from > a.to)
        return fail(QStringLiteral("--von liegt nach --bis."));
    a.folder = folders.value(0);
    return a;
}

QString OverviewCommand::folderFor(const Arguments& arguments, const QStringList& commandLine,
                                   const QProcessEnvironment& environment) {
    if (!arguments.folder.isEmpty())
        return arguments.folder;
    return AppInfo::resolveFolders(CommandLine(commandLine), environment,
                                   AppInfo::readSystemConfig())
        .results;
}

int OverviewCommand::runCsv(const QStringList& arguments, const QProcessEnvironment& environment,
                            QIODevice& standard, QTextStream& err) {
    const Arguments a = parse(arguments);
    auto say = [&err](const QString& line) {
        err << QStringLiteral("labquiz --auswertung: ") << line << '\n';
        err.flush();
    };
    if (!a.error.isEmpty()) {
        say(a.error);
        return kCannotRun;
    }
    const QString folder = folderFor(a, arguments, environment);
    const ResultFolder::Reading reading = ResultFolder::read(folder);
    if (!reading.problem.isEmpty()) {
        say(reading.problem);
        return kCannotRun;
    }
    for (const ResultFolder::Skipped& s : reading.skipped)
        say(QStringLiteral("übersprungen: %1: %2").arg(s.file, s.why));

    TestFilter filter;
    filter.from = a.from;
    filter.to = a.to;
    const ClassSummary summary = ClassSummary::of(reading.records, filter);
    const QByteArray bytes = ClassCsv::table(reading.records, reading.files, summary.testsByName());
    if (a.csvTarget == QLatin1String("-")) {
        if (standard.write(bytes) != bytes.size()) {
            say(QStringLiteral("Die Tabelle ließ sich nicht ausgeben."));
            return kCannotRun;
        }
    } else {
        // Whole or not at all: a spreadsheet must never open half a table.
        QSaveFile file(a.csvTarget);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
            !file.commit()) {
            say(QStringLiteral("%1 ließ sich nicht schreiben: %2")
                    .arg(QDir::toNativeSeparators(a.csvTarget), file.errorString()));
            return kCannotRun;
        }
    }
    say(QStringLiteral("%1 Tests in der Tabelle, %2 Dateien gelesen, %3 übersprungen.")
            .arg(summary.tests.size())
            .arg(reading.records.size())
            .arg(reading.skipped.size()));
    return reading.skipped.isEmpty() ? kAllRead : kSomeSkipped;
}
