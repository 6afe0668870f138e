#pragma once

#include "chem/ChemicalFormula.h"

#include <QList>
#include <QStringView>

class CheckContext;

// A substance's formulas agree with each other, and its ions add up to the
// formula with a total charge of zero, in exactly one way.
class SubstanceRules final {
public:
    static void checkSubstance(CheckContext& ctx, int first, QStringView formulaLine,
                               QStringView ionLine);

private:
    static void matchIons(CheckContext& ctx, int line, const ChemicalFormula& formula,
                          const QList<ChemicalFormula>& ions);
};
