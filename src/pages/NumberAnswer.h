#pragma once

#include <QString>
#include <QStringView>

// How the numeric pages (molar masses, amounts of substance) read a typed
// number and compare it with the stored one. Both sides are read the same
// way: upper case and outer blanks cut, then "," taken as ".", then the
// leading number as a 32-bit float. So "58,4 g", "58.40" and " 58.4" are all
// the same number, and there is no tolerance: 58.44 is not 58.4.
class NumberAnswer final {
public:
    static float read(QStringView text);
    static bool matches(QStringView typed, QStringView expected);
    // The field's text after a wrong answer: what was typed, then the stored
    // answer exactly as stored.
    static QString correction(QStringView typed, QStringView expected);
};
