#include "chem/LegacyText.h"

#include <QFile>
#include <QStringDecoder>
#include <array>

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

std::optional<QString> LegacyText::readFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return decode(file.readAll());
}
