#include "overview/ResultFolder.h"

#include "result/ResultFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentMap>

#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

QString tooLarge() {
    return QStringLiteral("zu groß für eine Ergebnisdatei");
}

QString openProblem(int error) {
    switch (error) {
    case ENOENT:
        return QStringLiteral("verschwunden, während der Ordner gelesen wurde");
    case ELOOP:
        return QStringLiteral("ein Verweis, der im Kreis oder ins Leere führt");
    case EACCES:
    case EPERM:
        return QStringLiteral("nicht lesbar (keine Leseberechtigung)");
    default:
        return QStringLiteral("nicht lesbar (%1)")
            .arg(QString::fromLocal8Bit(std::strerror(error)));
    }
}

QString listProblem(const QString& folder, int error) {
    const QString shown = QDir::toNativeSeparators(folder);
    switch (error) {
    case ENOENT:
        return QStringLiteral("Den Ordner %1 gibt es nicht (oder er ist nicht erreichbar).")
            .arg(shown);
    case ENOTDIR:
        return QStringLiteral("%1 ist kein Ordner.").arg(shown);
    case EACCES:
    case EPERM:
        return QStringLiteral("Der Ordner %1 lässt sich nicht auflisten: Dieses Konto darf ihn "
                              "nicht lesen. Ist er ein Abgabeordner, in den Schülerinnen und "
                              "Schüler nur hineinschreiben dürfen, kann ihn nur ein Konto mit "
                              "Leserecht auswerten, etwa das der Lehrkraft.")
            .arg(shown);
    default:
        return QStringLiteral("Der Ordner %1 lässt sich nicht auflisten (%2).")
            .arg(shown, QString::fromLocal8Bit(std::strerror(error)));
    }
}

} // namespace

QStringList ResultFolder::list(const QString& folder, QString* problem) {
    QStringList names;
#ifdef Q_OS_UNIX
    DIR* dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir) {
        if (problem)
            *problem = listProblem(folder, errno);
        return {};
    }
    errno = 0;
    while (const dirent* entry = ::readdir(dir)) {
        const QString name = QFile::decodeName(entry->d_name);
        if (ResultFile::isResultName(name))
            names << name;
    }
    const int error = errno;
    ::closedir(dir);
    if (error != 0) {
        if (problem)
            *problem = listProblem(folder, error);
        return {};
    }
#else
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        if (problem)
            *problem =
                listProblem(folder, info.exists() ? (info.isDir() ? EACCES : ENOTDIR) : ENOENT);
        return {};
    }
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::System))
        if (ResultFile::isResultName(name))
            names << name;
#endif
    // The names begin with the finishing time, so this is the order of the
    // tests; it also keeps every reading of the same folder alike.
    names.sort();
    return names;
}

std::optional<ResultRecord> ResultFolder::readFile(const QString& path, QString* why) {
    auto refuse = [why](const QString& text) -> std::optional<ResultRecord> {
        if (why)
            *why = text;
        return std::nullopt;
    };
    QByteArray bytes;
#ifdef Q_OS_UNIX
    // Non-blocking: opening a FIFO for reading must not wait for a writer.
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        int error = errno;
        // Still there, but leading nowhere: a link to a file that is gone.
        struct stat link;
        if (error == ENOENT && ::lstat(QFile::encodeName(path).constData(), &link) == 0)
            error = ELOOP;
        return refuse(openProblem(error));
    }
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return refuse(QStringLiteral("keine gewöhnliche Datei"));
    }
    if (st.st_size > ResultRecord::kMaxFileBytes) {
        ::close(fd);
        return refuse(tooLarge());
    }
    // One byte more than allowed shows a file that grew while it was read.
    bytes.resize(qsizetype(st.st_size) + 1);
    qsizetype got = 0;
    for (;;) {
        if (got == bytes.size()) {
            if (bytes.size() > ResultRecord::kMaxFileBytes)
                break;
            bytes.resize(qMin<qsizetype>(bytes.size() * 2, ResultRecord::kMaxFileBytes + 1));
        }
        const ssize_t n = ::read(fd, bytes.data() + got, size_t(bytes.size() - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            const int error = errno;
            ::close(fd);
            return refuse(openProblem(error));
        }
        if (n == 0)
            break;
        got += n;
    }
    ::close(fd);
    bytes.truncate(got);
#else
    QFile file(path);
    if (!QFileInfo(path).isFile())
        return refuse(QStringLiteral("keine gewöhnliche Datei"));
    if (!file.open(QIODevice::ReadOnly))
        return refuse(openProblem(EACCES));
    bytes = file.read(ResultRecord::kMaxFileBytes + 1);
#endif
    if (bytes.size() > ResultRecord::kMaxFileBytes)
        return refuse(tooLarge());
    if (bytes.isEmpty())
        return refuse(QStringLiteral("leer"));
    return ResultRecord::fromJson(bytes, why);
}

ResultFolder::Reading ResultFolder::read(const QString& folder, Progress* progress) {
    Reading reading;
    reading.folder = folder;
    const QStringList names = list(folder, &reading.problem);
    if (!reading.problem.isEmpty())
        return reading;
    if (progress)
        progress->total = int(names.size());
    const QString dir = QDir(folder).absolutePath() + u'/';

    struct One {
        std::optional<ResultRecord> record;
        QString why;
    };
    // Each file on its own: the work spreads over the cores in blocks, and
    // the results come back in the order of the names. A pool of its own, so
    // that no idle worker outlives the reading: the global pool's threads
    // would otherwise only wind down while the program exits.
    QThreadPool pool;
    QList<One> ones = QtConcurrent::blockingMapped<QList<One>>(
        &pool, names, [&dir, progress](const QString& name) {
            One one;
            if (progress && progress->cancel.load(std::memory_order_relaxed))
                return one;
            one.record = readFile(dir + name, &one.why);
            if (progress)
                progress->done.fetch_add(1, std::memory_order_relaxed);
            return one;
        });
    if (progress && progress->cancel) {
        reading.cancelled = true;
        return reading;
    }
    reading.records.reserve(ones.size());
    for (qsizetype i = 0; i < ones.size(); ++i) {
        if (ones[i].record) {
            reading.records.append(std::move(*ones[i].record));
            reading.files.append(names[i]);
        } else {
            reading.skipped.append({names[i], ones[i].why});
        }
    }
    reading.seen = int(names.size());
    return reading;
}
