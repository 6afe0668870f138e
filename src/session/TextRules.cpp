#include "session/TextRules.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

inline bool isNumberBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}
inline bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

} // namespace

LeadingNumber ReadLeadingNumber(QStringView text) {
    // The accepted characters go into a plain ASCII buffer; blanks
    // anywhere in the number are skipped, as BASIC's Val() does.
    std::string buf;
    LeadingNumber result;
    const qsizetype n = text.size();
    qsizetype i = 0;
    auto at = [&](qsizetype k) { return text.at(k).unicode(); };
    auto skipBlanks = [&] {
        while (i < n && isNumberBlank(at(i)))
            ++i;
    };
    bool digits = false;
    qsizetype lastGood = 0;
    auto scanDigits = [&] {
        bool any = false;
        while (true) {
            skipBlanks();
            if (i >= n || !isDigit(at(i)))
                return any;
            buf.push_back(static_cast<char>(at(i)));
            ++i;
            any = true;
            lastGood = i;
        }
    };

    skipBlanks();
    if (i < n && (at(i) == u'+' || at(i) == u'-')) {
        buf.push_back(static_cast<char>(at(i)));
        ++i;
    }
    digits = scanDigits();
    skipBlanks();
    if (i < n && at(i) == u'.') {
        buf.push_back('.');
        ++i;
        digits = scanDigits() || digits;
    }
    if (!digits)
        return result;
    // An exponent only counts when at least one digit follows it.
    skipBlanks();
    if (i < n && (at(i) == u'e' || at(i) == u'E' || at(i) == u'd' || at(i) == u'D')) {
        const size_t mantissaEnd = buf.size();
        const qsizetype save = i;
        buf.push_back('e');
        ++i;
        skipBlanks();
        if (i < n && (at(i) == u'+' || at(i) == u'-')) {
            buf.push_back(static_cast<char>(at(i)));
            ++i;
        }
        if (!scanDigits()) {
            buf.resize(mantissaEnd);
            i = save;
        }
    }
    // from_chars, not strtod: the C locale of a German desktop would expect a
    // comma, and the task bank always uses a point.
    const char* first = buf.data();
    const char* last = buf.data() + buf.size();
    bool negative = false;
    if (first != last && (*first == '+' || *first == '-')) {
        negative = *first == '-';
        ++first;
    }
    double value = 0.0;
    const auto [ptr, ec] = std::from_chars(first, last, value);
    (void)ptr;
    if (ec == std::errc::result_out_of_range)
        value = buf.find("e-") != std::string::npos ? 0.0 : HUGE_VAL;
    result.value = negative ? -value : value;
    result.found = true;
    result.used = lastGood;
    return result;
}

std::int16_t ReadInt16Field(QStringView line, bool* overflow) {
    const double v = LeadingValue(line);
    const double r = std::nearbyint(v); // default rounding mode: half to even
    const bool out = !(r >= -32768.0 && r <= 32767.0);
    if (overflow)
        *overflow = out;
    return out ? std::int16_t(0) : static_cast<std::int16_t>(r);
}

float ReadSingleField(QStringView line, bool* overflow) {
    const double v = LeadingValue(line);
    const bool out = !(std::fabs(v) <= static_cast<double>(FLT_MAX));
    if (overflow)
        *overflow = out;
    return out ? 0.0f : static_cast<float>(v);
}

QStringView TrimLeftBlanks(QStringView text) {
    qsizetype b = 0;
    while (b < text.size() && text.at(b) == u' ')
        ++b;
    return text.mid(b);
}

QStringView TrimRightBlanks(QStringView text) {
    qsizetype e = text.size();
    while (e > 0 && text.at(e - 1) == u' ')
        --e;
    return text.left(e);
}

QStringView TrimBlanks(QStringView text) {
    return TrimRightBlanks(TrimLeftBlanks(text));
}

QString CanonicalText(QStringView text) {
    return TrimBlanks(text.toString().toUpper()).toString();
}

void NormaliseDecimal(QString& text) {
    for (QChar& c : text) {
        if (c == u',')
            c = u'.';
        else if (c == u'e')
            c = u'E';
    }
}

float ParseDecimal(QString& text) {
    NormaliseDecimal(text);
    const double v = LeadingValue(text);
    if (!(std::fabs(v) <= static_cast<double>(FLT_MAX)))
        return 0.0f;
    return static_cast<float>(v);
}

QString StripBlanks(QStringView text) {
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        if (c != u' ' && c != QChar(u'\0'))
            out += c;
    }
    return out;
}

QString NumberWithSignSpace(long long value) {
    return value >= 0 ? QStringLiteral(" ") + QString::number(value) : QString::number(value);
}

QString SingleToText(float value) {
    QString digits = QString::number(static_cast<double>(value), 'g', 7);
    // Str() writes 0.5 as ".5" in the old runtime; the pages only ever read
    // this text back as a number and show it, so the clearer "0.5" is kept.
    if (digits.contains(u'e')) {
        // Str() uses "E+" with at least two exponent digits.
        digits.replace(u'e', u'E');
    }
    return value >= 0 ? QStringLiteral(" ") + digits : digits;
}
