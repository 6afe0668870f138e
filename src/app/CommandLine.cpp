#include "app/CommandLine.h"

#include <QFileInfo>
#include <QProcess>

bool CommandLine::wantsCheck(QString* file) const {
    const qsizetype at = m_arguments.indexOf(QStringLiteral("--check"));
    if (at < 0)
        return false;
    if (file)
        *file = at + 1 < m_arguments.size() ? m_arguments.at(at + 1) : QString();
    return true;
}

QString CommandLine::successorCommand(const QString& folder, const QString& baseName,
                                      const QString& commandLine) {
    return u'"' + folder + baseName + u'"' + QStringLiteral(" /NEW") + commandLine;
}

CommandLine::Launch CommandLine::launchFor(const QString& command, const QString& ownExecutable) {
    Launch launch;
    QString named;
    QString rest = command;
    if (command.startsWith(u'"')) {
        const qsizetype close = command.indexOf(u'"', 1);
        if (close > 0) {
            named = command.mid(1, close - 1);
            rest = command.mid(close + 1);
        }
    }
    const QFileInfo info(named);
    launch.program = (!named.isEmpty() && info.exists() && info.isFile()) ? named : ownExecutable;
    launch.arguments = QProcess::splitCommand(rest);
    return launch;
}
