#include "chem/MolarMass.h"

MolarMass::Sum MolarMass::of(const ChemicalFormula& formula, const ElementTable& elements) {
    Sum sum;
    const auto& counts = formula.counts();
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        const ElementTable::Element* e = elements.find(it.key());
        if (!e)
            sum.unknown << it.key();
        else if (e->massNumberOnly)
            sum.massNumberOnly << it.key();
        else if (!e->hasMass())
            sum.noMass << it.key();
        else
            sum.hundredths += qint64(it.value()) * e->massHundredths;
    }
    return sum;
}

QString MolarMass::hundredthsText(qint64 h) {
    return QStringLiteral("%1.%2").arg(h / 100).arg(h % 100, 2, 10, QLatin1Char('0'));
}

QString MolarMass::tenthsText(qint64 t) {
    return QStringLiteral("%1.%2").arg(t / 10).arg(t % 10);
}
