#include "session/AtomicFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <cerrno>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

// The system's reason for the last failed call, in German; empty for reasons
// that tell a teacher nothing.
QString AtomicFile::reasonOf(int error) {
    switch (error) {
    case ENOSPC:
        return QStringLiteral("kein Platz mehr auf dem Datenträger");
    case EFBIG:
        return QStringLiteral("die Datei würde zu groß");
#ifdef EDQUOT
    case EDQUOT:
        return QStringLiteral("das Speicherkontingent ist erschöpft");
#endif
    case EROFS:
        return QStringLiteral("der Datenträger ist schreibgeschützt");
    case EACCES:
    case EPERM:
        return QStringLiteral("keine Schreibberechtigung");
    case EIO:
        return QStringLiteral("Ein-/Ausgabefehler");
    default:
        return {};
    }
}

QString AtomicFile::whyNotWritable(const QString& path, const QString& writeError) {
    const QFileInfo file(path);
    const QString folder = QDir::toNativeSeparators(file.absolutePath());
    const QFileInfo folderInfo(file.absolutePath());
    if (!folderInfo.isDir())
        return QStringLiteral("den Datenordner %1 gibt es nicht").arg(folder);
    if (file.exists() && !file.isFile())
        return QStringLiteral("%1 ist keine gewöhnliche Datei").arg(file.fileName());
    if (!folderInfo.isWritable())
        return QStringLiteral("der Datenordner %1 ist schreibgeschützt").arg(folder);
    if (file.exists() && !file.isWritable())
        return QStringLiteral("die Datei %1 ist schreibgeschützt").arg(file.fileName());
    const QStorageInfo storage(file.absolutePath());
    if (storage.isValid() && storage.isReadOnly())
        return QStringLiteral("der Datenträger mit dem Ordner %1 ist schreibgeschützt").arg(folder);
    // A few kilobytes are what any of the program's files needs.
    if (storage.isValid() && storage.bytesAvailable() < 64 * 1024)
        return QStringLiteral("der Datenträger mit dem Ordner %1 ist voll").arg(folder);
    if (writeError.isEmpty())
        return QStringLiteral("%1 ließ sich nicht vollständig schreiben").arg(file.fileName());
    return QStringLiteral("%1 lässt sich nicht schreiben (%2)").arg(file.fileName(), writeError);
}

bool AtomicFile::write(const QString& path, const QByteArray& bytes, QString* problem) {
    QSaveFile file(path);
    // Writing straight into the old file would put it at risk.
    file.setDirectWriteFallback(false);
    errno = 0;
    bool ok = file.open(QIODevice::WriteOnly);
    if (ok) {
        // QSaveFile alone is not enough: a write cut short (a full disk, a
        // size limit) is only noticed when it happens in write(), not when
        // the rest fails in the flush inside commit(), and a failing sync
        // is ignored. Either way it would put a cut-off file in place of
        // the old one. So every step is checked here before the commit.
        ok = file.write(bytes) == bytes.size() && file.flush();
#ifdef Q_OS_UNIX
        ok = ok && ::fsync(file.handle()) == 0;
#endif
        if (!ok) {
            const int error = errno;
            file.cancelWriting(); // the temporary file goes, the old one stays
            if (problem)
                *problem = whyNotWritable(path, reasonOf(error));
            return false;
        }
        ok = file.commit();
    }
    if (!ok && problem)
        *problem = whyNotWritable(path, reasonOf(errno));
    return ok;
}

void AtomicFile::removeLeftovers(const QString& path) {
    // QSaveFile names its temporary file after the target: "names.ini.ykQEnm".
    // Matched by hand: a name filter or a pattern would start the regular
    // expression engine, which nothing else needs at start.
    const QFileInfo target(path);
    const QString prefix = target.fileName() + u'.';
    auto isTemporary = [&prefix](const QString& name) {
        if (name.size() != prefix.size() + 6 || !name.startsWith(prefix))
            return false;
        for (qsizetype i = prefix.size(); i < name.size(); ++i) {
            const char16_t c = name.at(i).unicode();
            if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')))
                return false;
        }
        return true;
    };
    QDir folder(target.absolutePath());
    QDirIterator it(folder.path(), QDir::Files | QDir::Hidden);
    QStringList doomed;
    while (it.hasNext()) {
        it.next();
        const QString name = it.fileName();
        if (isTemporary(name))
            doomed << name;
    }
    for (const QString& name : doomed)
        folder.remove(name);
}
