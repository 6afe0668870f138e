#include "chem/LegacyText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <array>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

// 0x80..0x9F of Windows-1252. The five holes (81, 8D, 8F, 90, 9D) map to the
// C1 controls of the same number, as Windows itself converts them.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

char16_t LegacyText::windows1252ToUnicode(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F)
        return kHighControls[byte - 0x80];
    return byte;
}

QString LegacyText::decodeWindows1252(QByteArrayView bytes) {
    QString out(bytes.size(), Qt::Uninitialized);
    char16_t* dst = reinterpret_cast<char16_t*>(out.data());
    const auto* src = reinterpret_cast<const unsigned char*>(bytes.data());
    for (qsizetype i = 0; i < bytes.size(); ++i)
        dst[i] = windows1252ToUnicode(src[i]);
    return out;
}

QByteArray LegacyText::encodeWindows1252(QStringView text) {
    QByteArray out(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        char b = '?';
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            b = static_cast<char>(c);
        } else {
            for (int k = 0; k < 32; ++k) {
                if (kHighControls[k] == c) {
                    b = static_cast<char>(0x80 + k);
                    break;
                }
            }
        }
        out[i] = b;
    }
    return out;
}

bool LegacyText::isValidUtf8(QByteArrayView bytes, bool* hasMultiByte) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const qsizetype n = bytes.size();
    bool multi = false;
    qsizetype i = 0;
    while (i < n) {
        const unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        int extra = 0;
        char32_t cp = 0;
        if (c >= 0xC2 && c <= 0xDF) {
            extra = 1;
            cp = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2;
            cp = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3;
            cp = c & 0x07;
        } else {
            return false;
        }
        if (i + extra >= n)
            return false;
        for (int k = 1; k <= extra; ++k) {
            const unsigned char cc = p[i + k];
            if ((cc & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (cc & 0x3F);
        }
        // Overlong forms, surrogates and values past U+10FFFF are not UTF-8.
        if ((extra == 2 && cp < 0x800) || (extra == 3 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        multi = true;
        i += extra + 1;
    }
    if (hasMultiByte)
        *hasMultiByte = multi;
    return true;
}

QString LegacyText::decode(QByteArrayView bytes, Encoding* found) {
    // Notepad's "Unicode" saves UTF-16 with a byte-order mark.
    if (bytes.size() >= 2) {
        const auto b0 = static_cast<unsigned char>(bytes[0]);
        const auto b1 = static_cast<unsigned char>(bytes[1]);
        if ((b0 == 0xFF && b1 == 0xFE) || (b0 == 0xFE && b1 == 0xFF)) {
            if (found)
                *found = Encoding::Utf16;
            QStringDecoder utf16(b0 == 0xFF ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
            return utf16.decode(bytes.sliced(2));
        }
    }
    if (bytes.size() >= 3 && static_cast<unsigned char>(bytes[0]) == 0xEF &&
        static_cast<unsigned char>(bytes[1]) == 0xBB &&
        static_cast<unsigned char>(bytes[2]) == 0xBF) {
        if (found)
            *found = Encoding::Utf8;
        return QString::fromUtf8(bytes.sliced(3));
    }
    bool multi = false;
    if (isValidUtf8(bytes, &multi)) {
        if (!multi) {
            if (found)
                *found = Encoding::Ascii;
            return QString::fromLatin1(bytes);
        }
        if (found)
            *found = Encoding::Utf8;
        return QString::fromUtf8(bytes);
    }
    if (found)
        *found = Encoding::Windows1252;
    return decodeWindows1252(bytes);
}

QString LegacyText::sizeText(qint64 bytes) {
    constexpr double kKilo = 1024.0;
    auto german = [](double value) { return QString::number(value, 'f', 1).replace(u'.', u','); };
    if (bytes >= qint64(kKilo * kKilo * kKilo))
        return german(bytes / (kKilo * kKilo * kKilo)) + QStringLiteral(" GB");
    if (bytes >= qint64(kKilo * kKilo))
        return QString::number(qRound64(bytes / (kKilo * kKilo))) + QStringLiteral(" MB");
    if (bytes >= qint64(kKilo))
        return QString::number(qRound64(bytes / kKilo)) + QStringLiteral(" KB");
    return QStringLiteral("%1 Bytes").arg(bytes);
}

namespace {

using ReadFailure = LegacyText::ReadFailure;

void fail(LegacyText::ReadProblem* problem, ReadFailure failure, QString text) {
    if (problem)
        *problem = {failure, std::move(text)};
}

QString shown(const QString& path) {
    return QDir::toNativeSeparators(path);
}

void tooLarge(LegacyText::ReadProblem* problem, const QString& path, qint64 size, qint64 max) {
    fail(problem, ReadFailure::TooLarge,
         QStringLiteral("Die Datei %1 ist mit %2 zu groß (erlaubt sind höchstens %3) und wird "
                        "nicht gelesen.")
             .arg(shown(path), LegacyText::sizeText(size), LegacyText::sizeText(max)));
}

void unreadable(LegacyText::ReadProblem* problem, const QString& path, bool denied) {
    fail(problem, ReadFailure::Unreadable,
         denied ? QStringLiteral("Die Datei %1 darf nicht gelesen werden (keine Berechtigung).")
                      .arg(shown(path))
                : QStringLiteral("Die Datei %1 lässt sich nicht lesen.").arg(shown(path)));
}

void missing(LegacyText::ReadProblem* problem, const QString& path) {
    fail(problem, ReadFailure::Missing, QStringLiteral("Die Datei %1 fehlt.").arg(shown(path)));
}

void notAFile(LegacyText::ReadProblem* problem, const QString& path, const QString& what) {
    fail(problem, ReadFailure::NotAFile,
         QStringLiteral("%1 ist keine gewöhnliche Datei, sondern %2, und wird nicht gelesen.")
             .arg(shown(path), what));
}

#ifdef Q_OS_UNIX
QString kindOf(mode_t mode) {
    if (S_ISDIR(mode))
        return QStringLiteral("ein Ordner");
    if (S_ISFIFO(mode))
        return QStringLiteral("eine Pipe (FIFO)");
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return QStringLiteral("ein Gerät");
    if (S_ISSOCK(mode))
        return QStringLiteral("ein Socket");
    return QStringLiteral("etwas anderes");
}

// The file's type is looked at before it is opened (opening a pipe without
// a writer would wait for ever, opening a device may do things), and again
// on the open handle, in case the name was switched in between.
std::optional<QByteArray> readRegular(const QString& path, LegacyText::ReadProblem* problem,
                                      qint64 maxBytes) {
    const QByteArray name = QFile::encodeName(path);
    struct stat st {};
    if (::stat(name.constData(), &st) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            missing(problem, path);
        else
            unreadable(problem, path, errno == EACCES || errno == EPERM);
        return std::nullopt;
    }
    if (!S_ISREG(st.st_mode)) {
        notAFile(problem, path, kindOf(st.st_mode));
        return std::nullopt;
    }
    if (st.st_size > maxBytes) {
        tooLarge(problem, path, st.st_size, maxBytes);
        return std::nullopt;
    }
    const int fd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOENT)
            missing(problem, path);
        else
            unreadable(problem, path, errno == EACCES || errno == EPERM);
        return std::nullopt;
    }
    QByteArray bytes;
    bool ok = ::fstat(fd, &st) == 0;
    if (ok && !S_ISREG(st.st_mode)) {
        notAFile(problem, path, kindOf(st.st_mode));
        ok = false;
    } else if (ok) {
        // The file may grow while it is read; one byte past the limit tells.
        bytes.resize(qMin<qint64>(qMax<qint64>(st.st_size, 0), maxBytes) + 1);
        qint64 filled = 0;
        for (;;) {
            if (filled == bytes.size()) {
                if (filled > maxBytes)
                    break;
                bytes.resize(qMin<qint64>(filled * 2 + 4096, maxBytes + 1));
            }
            const ssize_t got = ::read(fd, bytes.data() + filled, size_t(bytes.size() - filled));
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0) {
                unreadable(problem, path, false);
                ok = false;
                break;
            }
            if (got == 0)
                break;
            filled += got;
        }
        if (ok && filled > maxBytes) {
            tooLarge(problem, path, filled, maxBytes);
            ok = false;
        }
        bytes.resize(filled);
    }
    ::close(fd);
    if (!ok)
        return std::nullopt;
    return bytes;
}
#endif

// Where the system calls above are not at hand, and for the program's
// compiled-in files (":/data/…"), which only Qt can open.
std::optional<QByteArray> readThroughQt(const QString& path, LegacyText::ReadProblem* problem,
                                        qint64 maxBytes) {
    const QFileInfo info(path);
    if (!info.exists()) {
        missing(problem, path);
        return std::nullopt;
    }
    if (!info.isFile()) {
        notAFile(problem, path,
                 info.isDir() ? QStringLiteral("ein Ordner") : QStringLiteral("ein Gerät"));
        return std::nullopt;
    }
    if (info.size() > maxBytes) {
        tooLarge(problem, path, info.size(), maxBytes);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        unreadable(problem, path, file.error() == QFileDevice::PermissionsError);
        return std::nullopt;
    }
    QByteArray bytes = file.read(maxBytes + 1);
    if (bytes.size() > maxBytes) {
        tooLarge(problem, path, bytes.size(), maxBytes);
        return std::nullopt;
    }
    return bytes;
}

} // namespace

std::optional<QByteArray> LegacyText::readBytes(const QString& path, ReadProblem* problem,
                                                qint64 maxBytes) {
    if (problem)
        *problem = {};
    if (path.isEmpty()) {
        missing(problem, path);
        return std::nullopt;
    }
#ifdef Q_OS_UNIX
    if (!path.startsWith(u':'))
        return readRegular(path, problem, maxBytes);
#endif
    return readThroughQt(path, problem, maxBytes);
}

std::optional<QString> LegacyText::readFile(const QString& path, ReadProblem* problem,
                                            qint64 maxBytes) {
    const std::optional<QByteArray> bytes = readBytes(path, problem, maxBytes);
    if (!bytes)
        return std::nullopt;
    return decode(*bytes);
}
