#include "pages/NumberAnswer.h"

#include "session/TextRules.h"

float NumberAnswer::read(QStringView text) {
    QString canonical = CanonicalText(text);
    return ParseDecimal(canonical);
}

bool NumberAnswer::matches(QStringView typed, QStringView expected) {
    return read(typed) == read(expected);
}

QString NumberAnswer::correction(QStringView typed, QStringView expected) {
    return typed.toString() + QStringLiteral(" - richtig ist: ") + expected.toString();
}
