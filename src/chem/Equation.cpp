#include "chem/Equation.h"

#include <QSet>
#include <algorithm>
#include <numeric>

namespace {

bool isCoefficientChar(QChar c) {
    return (c >= u'0' && c <= u'9') || c == u'.';
}

QString shown(QStringView text) {
    constexpr qsizetype kMax = 60;
    return text.size() <= kMax ? text.toString()
                               : text.left(kMax).toString() + QStringLiteral("...");
}

} // namespace

Equation::Slots Equation::pageSlots(QStringView stripped) {
    Slots out;
    // k is the slot the next "@" opens minus one; "=" sets it so that the
    // right side starts in slot 2 however many species stand on the left.
    int k = stripped.startsWith(u'@') ? -1 : 0;
    bool inCoefficient = false;
    for (const QChar c : stripped) {
        if (c == u'=') {
            k = 1;
        } else if (c == u'@') {
            ++k;
            inCoefficient = true;
            continue;
        }
        if (!isCoefficientChar(c))
            inCoefficient = false;
        if (k < 0 || k > 3)
            continue;
        if (inCoefficient)
            out.coefficient[k] += c;
        else if (c != u'=' && c != u'+')
            out.formula[k] += c;
    }
    return out;
}

Equation::Reading Equation::read(QStringView text) {
    Reading r;
    const QList<QStringView> sides = text.split(u'=');
    if (sides.size() != 2) {
        r.errors << QStringLiteral("Die Gleichung \"%1\" braucht genau ein \"=\" zwischen zwei "
                                   "Seiten.")
                        .arg(shown(text));
        return r;
    }
    for (int k = 0; k < 2; ++k) {
        const QString which = k == 0 ? QStringLiteral("linke") : QStringLiteral("rechte");
        const QStringView side = sides[k];
        if (!side.startsWith(u'@')) {
            r.errors << QStringLiteral("Die %1 Seite \"%2\" beginnt nicht mit \"@\"; jeder Stoff "
                                       "wird als @, Koeffizient und Formel geschrieben, z. B. "
                                       "@2H2O.")
                            .arg(which, shown(side));
            continue;
        }
        const QList<QStringView> parts = side.mid(1).split(u'@');
        for (qsizetype p = 0; p < parts.size(); ++p) {
            QStringView part = parts[p];
            if (p + 1 < parts.size()) {
                if (!part.endsWith(u'+')) {
                    r.errors << QStringLiteral(
                                    "Nach \"%1\" fehlt das \"+\" vor dem nächsten \"@\".")
                                    .arg(shown(part));
                    continue;
                }
                part.chop(1);
            }
            if (part.isEmpty()) {
                r.errors
                    << QStringLiteral("Nach einem \"@\" der %1 Seite fehlt der Stoff.").arg(which);
                continue;
            }
            qsizetype digits = 0;
            while (digits < part.size() && part.at(digits) >= u'0' && part.at(digits) <= u'9')
                ++digits;
            if (digits == 0) {
                r.errors << QStringLiteral("Vor der Formel \"%1\" fehlt der Koeffizient (auch 1 "
                                           "wird geschrieben, z. B. @1O2).")
                                .arg(shown(part));
                continue;
            }
            if (part.at(0) == u'0' || digits > 4) {
                r.errors << QStringLiteral("Der Koeffizient \"%1\" ist keine positive ganze Zahl "
                                           "bis 9999.")
                                .arg(shown(part.left(digits)));
                continue;
            }
            const QStringView formulaText = part.mid(digits);
            ChemicalFormula f = ChemicalFormula::parse(formulaText);
            if (!f.isValid()) {
                r.errors << QStringLiteral("Die Formel \"%1\" lässt sich nicht lesen: %2")
                                .arg(shown(formulaText), f.error());
                continue;
            }
            if (f.hasCharge()) {
                r.errors << QStringLiteral("\"%1\" trägt eine Ladung; Gleichungen enthalten nur "
                                           "ungeladene Teilchen.")
                                .arg(shown(f.text()));
            }
            r.sides[k].append({part.left(digits).toString(), part.left(digits).toLongLong(), f});
        }
        if (r.sides[k].size() > kMaxPerSide)
            r.errors << QStringLiteral("Die %1 Seite hat %2 Stoffe; höchstens zwei passen auf "
                                       "eine Seite.")
                            .arg(which)
                            .arg(r.sides[k].size());
    }
    return r;
}

Equation::Balance Equation::balance(const Reading& reading) {
    Balance b;
    QMap<QString, qint64> atoms[2];
    for (int k = 0; k < 2; ++k) {
        for (const Member& m : reading.sides[k]) {
            b.divisor = std::gcd(b.divisor, m.coefficient);
            const auto& counts = m.formula.counts();
            for (auto it = counts.cbegin(); it != counts.cend(); ++it)
                atoms[k][it.key()] += m.coefficient * it.value();
        }
    }
    b.balanced = atoms[0] == atoms[1];
    if (b.balanced)
        return b;
    QSet<QString> symbols;
    for (int k = 0; k < 2; ++k) {
        for (auto it = atoms[k].cbegin(); it != atoms[k].cend(); ++it)
            symbols.insert(it.key());
    }
    QStringList sorted(symbols.cbegin(), symbols.cend());
    std::sort(sorted.begin(), sorted.end());
    for (const QString& symbol : sorted) {
        const qint64 left = atoms[0].value(symbol);
        const qint64 right = atoms[1].value(symbol);
        if (left != right)
            b.differences
                << QStringLiteral("%1 links %2, rechts %3").arg(symbol).arg(left).arg(right);
    }
    return b;
}
