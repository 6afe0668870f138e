#include "result/ResultFile.h"

#include "result/ResultRecord.h"
#include "session/AtomicFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

QString reasonOf(int error) {
    if (error == ENOENT || error == ENOTDIR)
        return QStringLiteral("den Ordner gibt es nicht, oder der Server ist nicht erreichbar");
    const QString known = AtomicFile::reasonOf(error);
    if (!known.isEmpty())
        return known;
    return error ? QString::fromLocal8Bit(std::strerror(error))
                 : QStringLiteral("unbekannter Fehler");
}

QString candidateName(const QString& name, int attempt) {
    if (attempt <= 1)
        return name;
    const QString stem = name.chopped(int(std::strlen(ResultFile::kSuffix)));
    return stem + QStringLiteral("-%1").arg(attempt) + QLatin1String(ResultFile::kSuffix);
}

#ifdef Q_OS_UNIX
bool writeAll(int fd, const QByteArray& bytes) {
    const char* p = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, p, size_t(left));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += n;
        left -= n;
    }
    return true;
}

// Puts temp in place under final only when final does not exist yet.
// Returns 0, or the errno of the failure (EEXIST: the name is taken).
int placeWithoutReplacing(const QByteArray& temp, const QByteArray& final) {
#if defined(__GLIBC__) && defined(RENAME_NOREPLACE)
    if (::renameat2(AT_FDCWD, temp.constData(), AT_FDCWD, final.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return errno;
#endif
    // A link fails when the name is taken, on every file system that has
    // links; the temporary name goes afterwards.
    if (::link(temp.constData(), final.constData()) == 0) {
        ::unlink(temp.constData());
        return 0;
    }
    if (errno == EEXIST)
        return EEXIST;
    // No links (some network shares): the name is unique by machine and
    // process, so a check right before the rename is as good as it gets.
    struct stat st;
    if (::lstat(final.constData(), &st) == 0)
        return EEXIST;
    return ::rename(temp.constData(), final.constData()) == 0 ? 0 : errno;
}
#endif

} // namespace

QString ResultFile::safePart(const QString& text, int maxChars) {
    QString spelt;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'ä':
            spelt += QStringLiteral("ae");
            break;
        case u'ö':
            spelt += QStringLiteral("oe");
            break;
        case u'ü':
            spelt += QStringLiteral("ue");
            break;
        case u'Ä':
            spelt += QStringLiteral("Ae");
            break;
        case u'Ö':
            spelt += QStringLiteral("Oe");
            break;
        case u'Ü':
            spelt += QStringLiteral("Ue");
            break;
        case u'ß':
            spelt += QStringLiteral("ss");
            break;
        default:
            spelt += c;
        }
    }
    // Accents come off as their own characters once decomposed.
    spelt = spelt.normalized(QString::NormalizationForm_KD);
    QString out;
    for (const QChar c : spelt) {
        const char16_t u = c.unicode();
        const bool keep = (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') ||
                          (u >= u'0' && u <= u'9') || u == u'-' || u == u'_';
        if (keep)
            out += c;
        else if (c.isSpace() && !out.endsWith(u'_'))
            out += u'_';
    }
    while (!out.isEmpty() && (out.front() == u'_' || out.front() == u'-'))
        out.remove(0, 1);
    out.truncate(maxChars);
    while (!out.isEmpty() && (out.back() == u'_' || out.back() == u'-'))
        out.chop(1);
    return out.isEmpty() ? QStringLiteral("unbenannt") : out;
}

QString ResultFile::fileName(const QDateTime& finished, const QString& candidate,
                             const QString& machine, qint64 pid) {
    return finished.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")) + u'_' +
           safePart(candidate, kMaxNameChars) + u'_' + safePart(machine, kMaxNameChars) + u'_' +
           QString::number(pid) + QLatin1String(kSuffix);
}

bool ResultFile::isResultName(const QString& fileName) {
    return !fileName.startsWith(u'.') && fileName.endsWith(QLatin1String(kSuffix)) &&
           fileName.size() > int(std::strlen(kSuffix));
}

QString ResultFile::writeNew(const QString& folder, const QString& name, const QByteArray& bytes,
                             QString* why) {
    const QString dir = QDir(folder).absolutePath() + u'/';
    // Hidden while it is written, so that a reader never takes a half file.
    const QString temp = dir + u'.' + name + QStringLiteral(".part");
    auto fail = [why](int error) {
        if (why)
            *why = reasonOf(error);
        return QString();
    };
#ifdef Q_OS_UNIX
    const QByteArray tempPath = QFile::encodeName(temp);
    const int fd = ::open(tempPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0)
        return fail(errno);
    const bool written = writeAll(fd, bytes) && ::fsync(fd) == 0;
    const int writeError = errno;
    ::close(fd);
    if (!written) {
        ::unlink(tempPath.constData());
        return fail(writeError);
    }
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString final = dir + candidateName(name, attempt);
        const int error = placeWithoutReplacing(tempPath, QFile::encodeName(final));
        if (error == 0) {
            // Makes the new name itself durable where the folder can be
            // opened; a drop box cannot be, and the file is synced already.
            const int dirFd = ::open(QFile::encodeName(dir).constData(), O_RDONLY | O_DIRECTORY);
            if (dirFd >= 0) {
                ::fsync(dirFd);
                ::close(dirFd);
            }
            return final;
        }
        if (error != EEXIST) {
            ::unlink(tempPath.constData());
            return fail(error);
        }
    }
    ::unlink(tempPath.constData());
    return fail(EEXIST);
#else
    QFile file(temp);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return fail(EACCES);
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    if (!written) {
        file.remove();
        return fail(ENOSPC);
    }
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString final = dir + candidateName(name, attempt);
        if (!QFileInfo::exists(final) && file.rename(final)) // rename never replaces here
            return final;
    }
    file.remove();
    return fail(EEXIST);
#endif
}

ResultFile::HandIn ResultFile::handIn(const ResultRecord& record, const QString& resultsFolder,
                                      const QString& outbox, qint64 pid) {
    const QString name = fileName(record.finished, record.candidate, record.machine, pid);
    const QByteArray bytes = record.toJson();
    HandIn result;
    QDir().mkpath(resultsFolder); // fails quietly in a drop box that exists
    result.path = writeNew(resultsFolder, name, bytes, &result.why);
    if (!result.path.isEmpty())
        return result;
    result.inOutbox = true;
    QString outboxWhy;
    if (QDir().mkpath(outbox))
        result.path = writeNew(outbox, name, bytes, &outboxWhy);
    if (result.path.isEmpty())
        result.why += QStringLiteral("; auch im Ausgang nicht: ") +
                      (outboxWhy.isEmpty() ? reasonOf(ENOENT) : outboxWhy);
    return result;
}

int ResultFile::deliverOutbox(const QString& outbox, const QString& resultsFolder) {
    if (!QFileInfo(outbox).isDir())
        return 0;
    int waiting = 0;
    QDirIterator it(outbox, QDir::Files | QDir::Hidden);
    while (it.hasNext()) {
        it.next();
        const QString name = it.fileName();
        if (name.startsWith(u'.') && name.endsWith(QLatin1String(".part"))) {
            // A write cut off by a kill: it never became a result.
            QFile::remove(it.filePath());
            continue;
        }
        if (!isResultName(name))
            continue;
        QFile file(it.filePath());
        if (file.size() > ResultRecord::kMaxFileBytes || !file.open(QIODevice::ReadOnly)) {
            ++waiting;
            continue;
        }
        const QByteArray bytes = file.readAll();
        file.close();
        QDir().mkpath(resultsFolder);
        if (writeNew(resultsFolder, name, bytes).isEmpty())
            ++waiting;
        else
            file.remove();
    }
    return waiting;
}
