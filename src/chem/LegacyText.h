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

    // Reads and decodes a whole file; nullopt when it cannot be opened.
    static std::optional<QString> readFile(const QString& path);

    static QString decodeWindows1252(QByteArrayView bytes);
    // Characters outside the code page become '?'.
    static QByteArray encodeWindows1252(QStringView text);
    static char16_t windows1252ToUnicode(unsigned char byte);

    static bool isValidUtf8(QByteArrayView bytes, bool* hasMultiByte);
};
