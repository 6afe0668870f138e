#pragma once

// Runs the test helper labquiz_probe (tests/helpers) or the program itself in
// a process of its own on a chosen data folder, and collects what it says.

#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#ifndef LABQUIZ_PROBE
#error "LABQUIZ_PROBE must name the probe executable"
#endif

class ProbeRun {
public:
    ProbeRun(const QString& dataFolder, const QStringList& arguments,
             const QString& program = QStringLiteral(LABQUIZ_PROBE)) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("LABQUIZ_DATA"), dataFolder);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.multimedia*=false"));
        m_process.setProcessEnvironment(env);
        m_process.setProgram(program);
        m_process.setArguments(arguments);
    }
    ~ProbeRun() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    // Before start(): another variable for this run (an account, a folder).
    void setEnv(const QString& name, const QString& value) {
        QProcessEnvironment env = m_process.processEnvironment();
        env.insert(name, value);
        m_process.setProcessEnvironment(env);
    }
    void start() { m_process.start(); }
    void send(const QByteArray& line) {
        m_process.write(line);
        m_process.waitForBytesWritten(5000);
    }
    // Waits for the end; false when it did not end in time (it is killed then).
    bool finish(int timeoutMs = 20000) {
        if (m_process.state() == QProcess::NotRunning &&
            m_process.error() == QProcess::FailedToStart)
            return false;
        if (!m_process.waitForFinished(timeoutMs)) {
            m_process.kill();
            m_process.waitForFinished(5000);
            collect();
            return false;
        }
        collect();
        return true;
    }
    // Waits until count lines starting with prefix have been said.
    bool waitFor(const QString& prefix, int timeoutMs = 20000, int count = 1) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            collect();
            if (linesStartingWith(prefix).size() >= count)
                return true;
            if (m_process.state() == QProcess::NotRunning)
                return false;
            m_process.waitForReadyRead(50);
        }
        return false;
    }
    void kill() {
        m_process.kill();
        m_process.waitForFinished(5000);
        collect();
    }

    bool exitedCleanly() const {
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }
    int exitCode() const { return m_process.exitCode(); }
    QStringList lines() const { return m_lines; }
    QStringList linesStartingWith(const QString& prefix) const {
        QStringList out;
        for (const QString& l : m_lines) {
            if (l.startsWith(prefix))
                out << l.mid(prefix.size());
        }
        return out;
    }
    // Everything it said, for failure messages.
    QString transcript() const {
        return m_lines.join(u'\n') + QStringLiteral("\n--- stderr ---\n") + m_errors;
    }
    QProcess& process() { return m_process; }

private:
    void collect() {
        m_pending += m_process.readAllStandardOutput();
        qsizetype nl;
        while ((nl = m_pending.indexOf('\n')) >= 0) {
            m_lines << QString::fromUtf8(m_pending.left(nl));
            m_pending.remove(0, nl + 1);
        }
        m_errors += QString::fromLocal8Bit(m_process.readAllStandardError());
    }

    QProcess m_process;
    QByteArray m_pending;
    QStringList m_lines;
    QString m_errors;
};
