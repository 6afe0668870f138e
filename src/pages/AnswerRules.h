#pragma once

#include <QString>
#include <QStringView>

// How typed answers are judged; shared by the task pages.
class AnswerRules final {
public:
    // Outer blanks cut, then equal character by character (case counts).
    static bool matchesExactly(QStringView typed, QStringView expected);
    // Outer blanks cut, not empty, and "*answer*" found in "*key*": the
    // answer is one of the "*"-separated alternatives, not a part of one.
    static bool matchesListItem(QStringView typed, QStringView key);
    // The alternatives of a "*"-joined key for a person to read: "Iod oder Jod".
    static QString readableAlternatives(QStringView key);
};
