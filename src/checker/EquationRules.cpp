#include "checker/EquationRules.h"

#include "checker/CheckContext.h"
#include "checker/ElementRules.h"
#include "chem/Equation.h"
#include "session/TextRules.h"

void EquationRules::checkEquation(CheckContext& ctx, int line, QStringView text) {
    const Equation::Reading reading = Equation::read(text);
    for (const QString& e : reading.errors)
        ctx.error(line, e);
    for (const auto& side : reading.sides) {
        for (const Equation::Member& m : side)
            ElementRules::knownSymbols(ctx, line, m.formula);
    }
    if (!reading.ok())
        return;

    // The page takes the line apart by its own simple walk; a line that
    // reads well here must come out of it in the same slots.
    const Equation::Slots slots = Equation::pageSlots(StripBlanks(text));
    for (int k = 0; k < 2; ++k) {
        const QList<Equation::Member>& side = reading.sides[k];
        for (int j = 0; j < Equation::kMaxPerSide; ++j) {
            const int slot = 2 * k + j;
            const QString coefficient = j < side.size() ? side[j].coefficientText : QString();
            const QString formula = j < side.size() ? side[j].formula.text() : QString();
            if (slots.coefficient[slot] != coefficient || slots.formula[slot] != formula) {
                ctx.error(line, QStringLiteral("Die Seite \"Gleichungen einrichten\" liest hier "
                                               "\"%1\" mit dem Koeffizienten \"%2\" statt \"%3\" "
                                               "mit \"%4\" (Leerzeichen in der Formel?).")
                                    .arg(CheckContext::shown(slots.formula[slot]),
                                         slots.coefficient[slot], CheckContext::shown(formula),
                                         coefficient));
                return;
            }
        }
    }

    const Equation::Balance balance = Equation::balance(reading);
    if (!balance.balanced) {
        ctx.error(line, QStringLiteral("Die Gleichung ist nicht ausgeglichen: %1.")
                            .arg(balance.differences.join(QStringLiteral("; "))));
        return;
    }
    if (balance.divisor > 1)
        ctx.error(line, QStringLiteral("Alle Koeffizienten lassen sich durch %1 teilen; verlangt "
                                       "sind die kleinsten ganzen Zahlen.")
                            .arg(balance.divisor));
}
