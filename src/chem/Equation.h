#pragma once

#include "chem/ChemicalFormula.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <array>

// A reaction equation in the task bank's notation: each species is "@", its
// coefficient and its formula; "+" joins two species of one side and "="
// the sides ("@2H2+@1O2=@2H2O").
//
// There are two readings of the same line. The balancing page reads it with
// a simple walk into four slots, as it always has, whatever the line holds;
// the checker reads it strictly, with a German reason for whatever is
// wrong, and works out whether it is balanced. The checker also compares the
// two, so a line that reads well strictly is shown by the page as meant.
class Equation final {
public:
    // Slots 0 and 1 are the species of the left side, 2 and 3 those of the
    // right; an empty formula is an empty slot.
    struct Slots {
        std::array<QString, 4> coefficient;
        std::array<QString, 4> formula;
    };
    // The page's walk over a line with its blanks removed: the run of digits
    // and points after "@" is the coefficient, every later character up to
    // the next "+", "=" or "@" belongs to the formula; "=" always moves on to
    // the right side. Anything that would land outside the four slots is
    // dropped.
    static Slots pageSlots(QStringView stripped);

    struct Member {
        QString coefficientText;
        qint64 coefficient = 1;
        ChemicalFormula formula;
    };
    struct Reading {
        std::array<QList<Member>, 2> sides;
        // German reasons, in the order found; empty when the line is sound.
        QStringList errors;
        bool ok() const { return errors.isEmpty(); }
    };
    // Species with a charge, a missing coefficient or more than two species
    // on a side are errors: the page cannot show them.
    static constexpr int kMaxPerSide = 2;
    static Reading read(QStringView text);

    struct Balance {
        bool balanced = false;
        // "H links 4, rechts 2" for each element whose counts differ.
        QStringList differences;
        // Greatest common divisor of all coefficients: above 1 the
        // coefficients are not the smallest whole numbers.
        qint64 divisor = 0;
    };
    static Balance balance(const Reading& reading);
};
