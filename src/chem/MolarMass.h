#pragma once

#include "chem/ChemicalFormula.h"
#include "chem/ElementTable.h"

#include <QString>
#include <QStringList>

// The molar mass of a formula from the masses of the element table. Sums are
// kept exactly in hundredths of a gram per mole: the table's two-decimal
// masses are exact there, and a sum such as 74.55 must round up to 74.6,
// which binary floating point gets wrong.
class MolarMass final {
public:
    struct Sum {
        qint64 hundredths = 0;
        // Elements the table does not know, or knows only by a mass number.
        QStringList unknown;
        QStringList massNumberOnly;
        QStringList noMass;
        bool complete() const {
            return unknown.isEmpty() && massNumberOnly.isEmpty() && noMass.isEmpty();
        }
        // Rounded half up to one decimal, as the bank writes molar masses.
        qint64 tenths() const { return (hundredths + 5) / 10; }
    };
    static Sum of(const ChemicalFormula& formula, const ElementTable& elements);

    // "74.55" and "74.6".
    static QString hundredthsText(qint64 hundredths);
    static QString tenthsText(qint64 tenths);
};
