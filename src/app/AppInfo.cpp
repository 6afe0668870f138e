#include "app/AppInfo.h"

#include "chem/LegacyText.h"
#include "controls/NoticeBox.h"
#include "result/ResultFile.h"
#include "session/AtomicFile.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>

#ifdef Q_OS_UNIX
#include <pwd.h>
#include <unistd.h>
#endif

namespace {

constexpr int kLogLinesKept = 5000;

QString withSeparator(QString path) {
    path = QDir::cleanPath(QDir(path).absolutePath());
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

} // namespace

QString AppInfo::foldersText(const Folders& folders) {
    return QStringLiteral(
               "Aufgabenordner:\n  %1\nPersönlicher Ordner:\n  %2\nErgebnisordner:\n  %3")
        .arg(QDir::toNativeSeparators(folders.tasks), QDir::toNativeSeparators(folders.personal),
             QDir::toNativeSeparators(folders.results));
}

AppInfo::AppInfo(CommandLine commandLine, QProcessEnvironment environment)
    : m_commandLine(std::move(commandLine)), m_environment(std::move(environment)),
      m_folders(resolveFolders(m_commandLine, m_environment, readSystemConfig())),
      m_names(namesPath()) {}

AppInfo::~AppInfo() = default;

QString AppInfo::developerFolder() const {
    const QString dev = m_environment.value(QStringLiteral("LABQUIZ_DEV_DIR"));
    return withSeparator(dev.isEmpty() ? QStringLiteral(LABQUIZ_SOURCE_DATA_DIR) : dev);
}

AppInfo::SystemConfig AppInfo::readSystemConfig() {
    // The system scope alone: a student's own file must not move the
    // folders the administrator chose.
    const QSettings settings(QSettings::NativeFormat, QSettings::SystemScope,
                             QStringLiteral("Laborix"), QStringLiteral("LabQuiz"));
    return {settings.value(QStringLiteral("TaskFolder")).toString().trimmed(),
            settings.value(QStringLiteral("ResultsFolder")).toString().trimmed()};
}

AppInfo::Folders AppInfo::resolveFolders(const CommandLine& commandLine,
                                         const QProcessEnvironment& environment,
                                         const SystemConfig& config) {
    Folders f;
    const QString forced = environment.value(QStringLiteral("LABQUIZ_DATA"));
    const bool oneFolder = !forced.isEmpty() || commandLine.hasDevSwitch();
    if (!forced.isEmpty()) {
        f.personal = withSeparator(forced);
    } else if (commandLine.hasDevSwitch()) {
        const QString dev = environment.value(QStringLiteral("LABQUIZ_DEV_DIR"));
        f.personal = withSeparator(dev.isEmpty() ? QStringLiteral(LABQUIZ_SOURCE_DATA_DIR) : dev);
    } else {
        QString user = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        if (user.isEmpty())
            user = QDir::homePath() + QStringLiteral("/.laborix");
        f.personal = withSeparator(user);
    }
    auto choose = [&](const char* variable, const QString& configured, const QString& otherwise) {
        const QString set = environment.value(QLatin1String(variable));
        if (!set.isEmpty())
            return withSeparator(set);
        if (!oneFolder && !configured.isEmpty())
            return withSeparator(configured);
        return otherwise;
    };
    f.tasks = choose("LABQUIZ_TASKS", config.taskFolder, f.personal);
    f.results =
        choose("LABQUIZ_RESULTS", config.resultsFolder, f.personal + QStringLiteral("Ergebnisse/"));
    return f;
}

QString AppInfo::accountName(const QProcessEnvironment& environment) {
    for (const char* variable : {"USER", "LOGNAME", "USERNAME"}) {
        const QString name = environment.value(QLatin1String(variable));
        if (!name.isEmpty())
            return name;
    }
#ifdef Q_OS_UNIX
    if (const passwd* entry = ::getpwuid(::getuid()))
        return QString::fromLocal8Bit(entry->pw_name);
    return QString::number(::getuid());
#else
    return QStringLiteral("benutzer");
#endif
}

QString AppInfo::machineName() {
    const QString name = QSysInfo::machineHostName();
    return name.isEmpty() ? QStringLiteral("rechner") : name;
}

QString AppInfo::lockPath() const {
    return m_folders.personal + QStringLiteral("laborix-") +
           ResultFile::safePart(accountName(m_environment), 40) + u'@' +
           ResultFile::safePart(machineName(), 40) + QStringLiteral(".lock");
}

QString AppInfo::taskFileOrBuiltIn(const QString& fileName, QString* notice) const {
    const QString path = m_folders.tasks + fileName;
    if (!m_folders.separateTasks())
        return path;
    const QFileInfo file(path);
    if (file.isFile() && file.isReadable())
        return path;
    if (notice)
        *notice =
            QStringLiteral("Im Aufgabenordner %1 %2 die Datei %3; es gilt die eingebaute.")
                .arg(QDir::toNativeSeparators(m_folders.tasks),
                     file.exists() ? QStringLiteral("ist nicht lesbar:") : QStringLiteral("fehlt"),
                     fileName);
    return QStringLiteral(":/data/") + fileName;
}

void AppInfo::deliverOutbox() const {
    ResultFile::deliverOutbox(outboxFolder(), m_folders.results);
}

CandidateRecords::ResultPlaces AppInfo::resultPlaces() const {
    return {m_folders.results, outboxFolder(), machineName()};
}

QString AppInfo::prepareDataFolder() {
    QStringList problems;
    if (!QDir().mkpath(m_folders.personal))
        return QStringLiteral("Der Datenordner %1 kann nicht angelegt werden.")
            .arg(m_folders.personal);
    // A task folder of its own belongs to the teacher: nothing is copied
    // into it, and none of the bank into the personal folder either.
    const QList<const char*> seeded = m_folders.separateTasks()
                                          ? QList<const char*>()
                                          : QList<const char*>{"labquiz.dat", "elements.dat"};
    for (const char* name : seeded) {
        const QString target = m_folders.personal + QLatin1String(name);
        if (QFile::exists(target))
            continue;
        // Written whole under a temporary name and then renamed: a second
        // program starting at the same moment never reads half a file, and
        // if it wins the race its identical copy is as good as ours.
        QFile source(QStringLiteral(":/data/") + QLatin1String(name));
        QSaveFile copy(target);
        const bool written = source.open(QIODevice::ReadOnly) && copy.open(QIODevice::WriteOnly) &&
                             copy.write(source.readAll()) == source.size() && copy.commit();
        if (!written && !QFile::exists(target))
            problems << QStringLiteral("%1 konnte nicht nach %2 kopiert werden.")
                            .arg(QLatin1String(name), m_folders.personal);
    }
    m_names.load();
    if (m_names.readProblem().refused()) {
        problems << m_names.readProblem().text +
                        QStringLiteral(" Neue Namen werden darum nicht gespeichert.");
        m_toldCannotSave = true; // this notice says it already
    }
    return problems.join(u'\n');
}

bool AppInfo::claimInstance() {
    if (m_unlocked)
        return true;
    const QString lockPath = this->lockPath();
    if (!m_lock) {
        m_lock = std::make_unique<QLockFile>(lockPath);
        m_lock->setStaleLockTime(0); // a lock of a crashed instance is recognised by its PID
    }
    if (m_lock->isLocked())
        return true;
    auto take = [this] {
        if (!m_lock->tryLock(0))
            return false;
        // Alone in the folder now: whatever a killed predecessor left
        // half-way is of no use to anyone.
        AtomicFile::removeLeftovers(namesPath());
        AtomicFile::removeLeftovers(logPath());
        // Results that could not be handed in last time go now.
        deliverOutbox();
        return true;
    };
    if (take())
        return true;
    if (m_lock->error() != QLockFile::LockFailedError) {
        m_unlocked = true;
        return true;
    }
    const QDateTime written = QFileInfo(lockPath).lastModified();
    if (!m_lock->getLockInfo(nullptr, nullptr, nullptr) && written.isValid() &&
        qAbs(written.msecsTo(QDateTime::currentDateTime())) > kOwnerlessLockMs &&
        m_lock->removeStaleLockFile())
        return take();
    return false;
}

bool AppInfo::holdsInstance() const {
    return m_lock && m_lock->isLocked();
}

void AppInfo::cannotSave(const QString& why) {
    if (m_toldCannotSave)
        return;
    m_toldCannotSave = true;
    message(QApplication::activeWindow(),
            QStringLiteral("Namen und Ergebnisse können nicht gespeichert werden: %1.\n\nDer "
                           "Test läuft trotzdem weiter; was schon gespeichert ist, bleibt, wie es "
                           "ist.")
                .arg(why));
}

bool AppInfo::saveNames() {
    if (m_names.save())
        return true;
    cannotSave(m_names.saveProblem());
    return false;
}

bool AppInfo::addName(const QString& name) {
    m_names.load(); // another instance may have added names meanwhile
    if (!m_names.addName(name))
        return true;
    return saveNames();
}

bool AppInfo::removeName(const QString& name) {
    m_names.load();
    m_names.removeName(name);
    return saveNames();
}

void AppInfo::setDifficulty(int level) {
    m_names.load();
    m_names.setDifficulty(level);
    saveNames();
}

void AppInfo::log(const QString& line) {
    LegacyText::ReadProblem problem;
    const QByteArray old =
        LegacyText::readBytes(logPath(), &problem, kMaxLogBytes).value_or(QByteArray());
    if (problem.refused()) {
        cannotSave(QStringLiteral("das Protokoll %1 ließ sich nicht lesen und wird darum nicht "
                                  "überschrieben")
                       .arg(QLatin1String(kLogName)));
        return;
    }
    QList<QByteArray> lines = old.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    lines.append(line.toUtf8());
    if (lines.size() > kLogLinesKept)
        lines = lines.mid(lines.size() - kLogLinesKept);
    QByteArray out;
    out.reserve(old.size() + line.size() * 3 + 2);
    for (const QByteArray& l : lines) {
        out += l.endsWith('\r') ? l.chopped(1) : l;
        out += "\r\n";
    }
    QString why;
    if (!AtomicFile::write(logPath(), out, &why))
        cannotSave(why);
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
                                 "10.\n\n%4")
                      .arg(QLatin1String(kProductName), QLatin1String(kVersion),
                           QLatin1String(kReleaseDate), foldersText(m_folders)),
                  QStringLiteral("Info"), NoticeBox::Buttons::Ok);
    box.setObjectName(QStringLiteral("InfoBox"));
    box.exec();
}

void AppInfo::message(QWidget* parent, const QString& text) const {
    // Without a window system (a tool run, a background writer) the notice
    // can only go to the error stream.
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        qWarning("%s", qPrintable(text));
        return;
    }
    NoticeBox::inform(parent, text, QString());
}
