#include "app/AppInfo.h"

#include "controls/NoticeBox.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

constexpr int kLogLinesKept = 5000;

QString withSeparator(QString path) {
    path = QDir::cleanPath(QDir(path).absolutePath());
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

} // namespace

AppInfo::AppInfo(CommandLine commandLine, QProcessEnvironment environment)
    : m_commandLine(std::move(commandLine)), m_environment(std::move(environment)),
      m_dataFolder(resolveDataFolder(m_commandLine, m_environment)), m_names(namesPath()) {}

AppInfo::~AppInfo() = default;

QString AppInfo::developerFolder() const {
    const QString dev = m_environment.value(QStringLiteral("LABQUIZ_DEV_DIR"));
    return withSeparator(dev.isEmpty() ? QStringLiteral(LABQUIZ_SOURCE_DATA_DIR) : dev);
}

QString AppInfo::resolveDataFolder(const CommandLine& commandLine,
                                   const QProcessEnvironment& environment) {
    const QString forced = environment.value(QStringLiteral("LABQUIZ_DATA"));
    if (!forced.isEmpty())
        return withSeparator(forced);
    if (commandLine.hasDevSwitch()) {
        const QString dev = environment.value(QStringLiteral("LABQUIZ_DEV_DIR"));
        return withSeparator(dev.isEmpty() ? QStringLiteral(LABQUIZ_SOURCE_DATA_DIR) : dev);
    }
    QString user = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (user.isEmpty())
        user = QDir::homePath() + QStringLiteral("/.laborix");
    return withSeparator(user);
}

QString AppInfo::prepareDataFolder() {
    QStringList problems;
    if (!QDir().mkpath(m_dataFolder))
        return QStringLiteral("Der Datenordner %1 kann nicht angelegt werden.").arg(m_dataFolder);
    for (const char* name : {"labquiz.dat", "elements.dat"}) {
        const QString target = m_dataFolder + QLatin1String(name);
        if (QFile::exists(target))
            continue;
        const QString source = QStringLiteral(":/data/") + QLatin1String(name);
        if (!QFile::copy(source, target)) {
            problems << QStringLiteral("%1 konnte nicht nach %2 kopiert werden.")
                            .arg(QLatin1String(name), m_dataFolder);
            continue;
        }
        // Resource copies are read-only; the teacher must be able to edit.
        QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner |
                                          QFileDevice::WriteUser);
    }
    m_names.load();
    return problems.join(u'\n');
}

bool AppInfo::claimInstance() {
    if (!m_lock) {
        m_lock = std::make_unique<QLockFile>(m_dataFolder + QStringLiteral("laborix.lock"));
        m_lock->setStaleLockTime(0); // a lock of a crashed instance is recognised by its PID
    }
    if (m_lock->isLocked())
        return true;
    return m_lock->tryLock(0);
}

bool AppInfo::holdsInstance() const {
    return m_lock && m_lock->isLocked();
}

bool AppInfo::addName(const QString& name) {
    m_names.load(); // another instance may have added names meanwhile
    if (!m_names.addName(name))
        return true;
    return m_names.save();
}

bool AppInfo::removeName(const QString& name) {
    m_names.load();
    m_names.removeName(name);
    return m_names.save();
}

void AppInfo::setDifficulty(int level) {
    m_names.load();
    m_names.setDifficulty(level);
    m_names.save();
}

void AppInfo::log(const QString& line) {
    QByteArray old;
    {
        QFile existing(logPath());
        if (existing.open(QIODevice::ReadOnly))
            old = existing.readAll();
    }
    QList<QByteArray> lines = old.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    lines.append(line.toUtf8());
    if (lines.size() > kLogLinesKept)
        lines = lines.mid(lines.size() - kLogLinesKept);
    QSaveFile file(logPath());
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (const QByteArray& l : lines) {
        QByteArray clean = l;
        if (clean.endsWith('\r'))
            clean.chop(1);
        file.write(clean);
        file.write("\r\n");
    }
    file.commit();
}

void AppInfo::logStart(const QString& record, const QString& name) {
    Q_UNUSED(name);
    log(record);
}

void AppInfo::endSession() {
    if (m_sessionEnded)
        return;
    m_sessionEnded = true;
    if (m_lock)
        m_lock->unlock();
}

void AppInfo::showInfo(QWidget* parent) const {
    NoticeBox box(parent,
                  QStringLiteral("%1\nVersion %2 vom %3\n\nSelbsttest Chemie für die Klassen 8 bis "
                                 "10.\n\nDatenordner:\n%4")
                      .arg(QLatin1String(kProductName), QLatin1String(kVersion),
                           QLatin1String(kReleaseDate), QDir::toNativeSeparators(m_dataFolder)),
                  QStringLiteral("Info"), NoticeBox::Buttons::Ok);
    box.setObjectName(QStringLiteral("InfoBox"));
    box.exec();
}

void AppInfo::message(QWidget* parent, const QString& text) const {
    NoticeBox::inform(parent, text, QString());
}
