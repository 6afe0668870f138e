#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>

// The few text and number rules shared by the task bank reader and every
// page that judges an answer. They follow the classic BASIC behaviour the
// task bank was written for: a point is the only decimal mark a number line
// knows, blanks inside a number are skipped, and reading stops quietly at the
// first character that does not fit.

struct LeadingNumber {
    double value = 0.0;
    bool found = false; // a mantissa digit was seen
    qsizetype used = 0; // characters taken, blanks included
};

// The longest leading part of text that reads as a number.
LeadingNumber ReadLeadingNumber(QStringView text);
inline double LeadingValue(QStringView text) {
    return ReadLeadingNumber(text).value;
}

// 16-bit field of the task bank: rounded half to even; a value outside the
// 16-bit range gives 0, as the old reader left such a field untouched.
std::int16_t ReadInt16Field(QStringView line, bool* overflow = nullptr);
// Single-precision field; a value beyond float range gives 0.
float ReadSingleField(QStringView line, bool* overflow = nullptr);

// Upper case, then outer blanks cut.
QString CanonicalText(QStringView text);
// Every "," becomes "." and every "e" becomes "E", in place.
void NormaliseDecimal(QString& text);
// NormaliseDecimal on the caller's text, then its leading value as float.
float ParseDecimal(QString& text);
// The text without any blank or NUL character.
QString StripBlanks(QStringView text);

QStringView TrimBlanks(QStringView text);
QStringView TrimRightBlanks(QStringView text);
QStringView TrimLeftBlanks(QStringView text);

// Number as the classic Str() wrote it: one leading blank for a value >= 0.
QString NumberWithSignSpace(long long value);
// Float as the classic Str() wrote it: leading blank for >= 0, "." as point,
// at most seven significant digits, no trailing zeros.
QString SingleToText(float value);
