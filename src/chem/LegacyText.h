#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <optional>

// Text files of the program (task bank, element table, names list) come from
// Windows machines in code page 1252, but a teacher's modern editor may save
// them as UTF-8. Decoding picks the right one so that an edited file keeps
// its umlauts and its "ææ" level mark.
class LegacyText final {
public:
    enum class Encoding { Ascii, Utf8, Utf16, Windows1252 };

    // UTF-16 when the bytes start with its byte-order mark; UTF-8 when they start with a BOM or are
    // valid UTF-8 with at least one multi-byte sequence; otherwise Windows-1252 (all 256 code
    // points).
    static QString decode(QByteArrayView bytes, Encoding* found = nullptr);

    // Why a file was not read; text is a German sentence for a notice.
    enum class ReadFailure { None, Missing, Unreadable, NotAFile, TooLarge };
    struct ReadProblem {
        ReadFailure failure = ReadFailure::None;
        QString text;
        // The file is there but was not taken: writing over it would lose it.
        bool refused() const {
            return failure != ReadFailure::None && failure != ReadFailure::Missing;
        }
    };

    // Far above any real task bank (the shipped one has 28 KB, a million
    // records 33 MB), far below what would exhaust memory.
    static constexpr qint64 kMaxFileBytes = 64 * 1024 * 1024;

    // Reads a whole regular file of at most maxBytes. A folder, a device such
    // as /dev/zero, a pipe or a larger file is refused before a byte of it is
    // read, so that none of them can hang the program or fill its memory.
    // nullopt when nothing was read; *problem then says why.
    static std::optional<QByteArray> readBytes(const QString& path, ReadProblem* problem = nullptr,
                                               qint64 maxBytes = kMaxFileBytes);
    // readBytes, decoded.
    static std::optional<QString> readFile(const QString& path, ReadProblem* problem = nullptr,
                                           qint64 maxBytes = kMaxFileBytes);
    // "2,0 GB", "64 MB", "900 Bytes".
    static QString sizeText(qint64 bytes);

    static QString decodeWindows1252(QByteArrayView bytes);
    // Characters outside the code page become '?'.
    static QByteArray encodeWindows1252(QStringView text);
    static char16_t windows1252ToUnicode(unsigned char byte);

    static bool isValidUtf8(QByteArrayView bytes, bool* hasMultiByte);
};
