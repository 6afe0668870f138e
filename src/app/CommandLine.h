#pragma once

#include <QString>
#include <QStringList>

// The command line as the program reads it: one text of the arguments,
// searched for its switches, and the text that starts a successor for a new
// test.
class CommandLine final {
public:
    CommandLine() = default;
    explicit CommandLine(QStringList arguments) : m_arguments(std::move(arguments)) {}

    const QStringList& arguments() const { return m_arguments; }
    // The arguments joined by blanks, as the program was given them.
    QString text() const { return m_arguments.join(u' '); }

    // "/NEW" anywhere, case-sensitive: "/new" does not count.
    bool hasNewSwitch() const { return text().contains(QLatin1String("/NEW")); }
    // "-DEV" anywhere, in any case.
    bool hasDevSwitch() const { return text().toUpper().contains(QLatin1String("-DEV")); }
    // --check [FILE]: the task-bank checker instead of the window.
    bool wantsCheck(QString* file) const;

    // The successor's command: a quote, the program's folder, its base name
    // joined without a separator, a quote, " /NEW" and this command line.
    static QString successorCommand(const QString& folder, const QString& baseName,
                                    const QString& commandLine);

    struct Launch {
        QString program;
        QStringList arguments;
    };
    // How to run a successor command without a shell: the program the text
    // names when that file exists, else ownExecutable; the arguments are the
    // words after the quoted part.
    static Launch launchFor(const QString& command, const QString& ownExecutable);

private:
    QStringList m_arguments;
};
