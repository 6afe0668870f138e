#pragma once

#include "chem/ChemicalFormula.h"

#include <QStringView>
#include <optional>

class CheckContext;

// Formulas and elements against elements.dat: readable formulas, known
// symbols, element names that fit their symbols, and molar masses that match
// their formulas.
class ElementRules final {
public:
    static std::optional<ChemicalFormula> readFormula(CheckContext& ctx, int line, QStringView text,
                                                      const QString& what);
    static bool knownSymbols(CheckContext& ctx, int line, const ChemicalFormula& f);
    static void checkElementSymbol(CheckContext& ctx, int line, QStringView names,
                                   QStringView symbolLine, bool repeated);
    static void checkMolarMass(CheckContext& ctx, int massLine, int formulaLine,
                               std::optional<double> stored, QStringView formulaText);
};
