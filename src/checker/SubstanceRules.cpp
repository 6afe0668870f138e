#include "checker/SubstanceRules.h"

#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "checker/ElementRules.h"
#include "session/TextRules.h"

#include <algorithm>
#include <optional>

namespace {
QString chargeText(int charge) {
    return charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge);
}
} // namespace

void SubstanceRules::checkSubstance(CheckContext& ctx, int first, QStringView formulaLine,
                                    QStringView ionLine) {
    std::optional<ChemicalFormula> reference;
    for (QStringView item : formulaLine.split(u'*')) {
        if (item.isEmpty())
            continue; // noted with the alternatives
        const std::optional<ChemicalFormula> f =
            ElementRules::readFormula(ctx, first, item, QStringLiteral("Die Formel"));
        if (!f)
            continue;
        if (f->hasCharge())
            ctx.error(first, QStringLiteral("Die Formel \"%1\" trägt eine Ladung; in die erste "
                                            "Zeile gehört der Stoff ohne Ladung, die Ionen stehen "
                                            "in der zweiten.")
                                 .arg(CheckContext::shown(item)));
        ElementRules::knownSymbols(ctx, first, *f);
        if (!reference)
            reference = f;
        else if (f->counts() != reference->counts())
            ctx.error(first,
                      QStringLiteral("Die Formeln \"%1\" und \"%2\" haben nicht dieselbe "
                                     "Zusammensetzung.")
                          .arg(CheckContext::shown(reference->text()), CheckContext::shown(item)));
    }
    const int ionsAt = first + 1;
    QList<ChemicalFormula> ions;
    bool ionsReadable = true;
    for (QStringView item : ionLine.split(u'*')) {
        if (item.isEmpty())
            continue;
        const std::optional<ChemicalFormula> f =
            ElementRules::readFormula(ctx, ionsAt, item, QStringLiteral("Das Ion"));
        if (!f) {
            ionsReadable = false;
            continue;
        }
        if (!f->hasCharge()) {
            ctx.error(ionsAt, QStringLiteral("\"%1\" hat keine Ladung; ein Ion wird z. B. als "
                                             "Na^+ oder SO4^2- geschrieben.")
                                  .arg(CheckContext::shown(item)));
            ionsReadable = false;
        }
        ElementRules::knownSymbols(ctx, ionsAt, *f);
        ions.append(*f);
    }
    if (reference && !reference->hasCharge() && ionsReadable && !ions.isEmpty())
        SubstanceRules::matchIons(ctx, ionsAt, *reference, ions);
}

// The ions, each taken 1 to kMaxIonMultiplier times, must give the

// The ions, each taken 1 to kMaxIonMultiplier times, must give the
// formula's atoms with a total charge of 0, and in exactly one way.
void SubstanceRules::matchIons(CheckContext& ctx, int line, const ChemicalFormula& formula,
                               const QList<ChemicalFormula>& ions) {
    QStringList ionTexts;
    for (const ChemicalFormula& ion : ions)
        ionTexts << ion.text();
    const QString ionList = CheckContext::shown(ionTexts.join(QStringLiteral(", ")));
    if (ions.size() > BankChecker::kMaxIonsPerSubstance) {
        ctx.error(line, QStringLiteral("Die Zeile nennt %1 Ionen; geprüft werden Stoffe aus "
                                       "höchstens %2 Ionensorten.")
                            .arg(ions.size())
                            .arg(BankChecker::kMaxIonsPerSubstance));
        return;
    }
    QStringList symbols = formula.counts().keys();
    QStringList notInFormula;
    for (const ChemicalFormula& ion : ions) {
        for (const QString& symbol : ion.counts().keys()) {
            if (!formula.counts().contains(symbol) && !notInFormula.contains(symbol))
                notInFormula << symbol;
        }
    }
    QStringList notInIons;
    for (const QString& symbol : symbols) {
        const bool found = std::any_of(ions.cbegin(), ions.cend(), [&](const auto& ion) {
            return ion.counts().contains(symbol);
        });
        if (!found)
            notInIons << symbol;
    }
    if (!notInFormula.isEmpty() || !notInIons.isEmpty()) {
        QStringList why;
        if (!notInFormula.isEmpty())
            why << QStringLiteral("%1 kommt in der Formel nicht vor")
                       .arg(notInFormula.join(QStringLiteral(", ")));
        if (!notInIons.isEmpty())
            why << QStringLiteral("%1 fehlt in den Ionen")
                       .arg(notInIons.join(QStringLiteral(", ")));
        ctx.error(line, QStringLiteral("Die Ionen %1 passen nicht zu den Elementen der Formel %2: "
                                       "%3.")
                            .arg(ionList, CheckContext::shown(formula.text()),
                                 why.join(QStringLiteral("; "))));
        return;
    }

    const int kinds = static_cast<int>(ions.size());
    const int dims = static_cast<int>(symbols.size());
    QList<int> target(dims);
    QList<QList<int>> ionAtoms(kinds, QList<int>(dims));
    for (int d = 0; d < dims; ++d) {
        target[d] = formula.counts().value(symbols[d]);
        for (int k = 0; k < kinds; ++k)
            ionAtoms[k][d] = ions[k].counts().value(symbols[d]);
    }
    QList<int> multiplier(kinds, 1);
    int solutions = 0;
    std::optional<QList<int>> atomsOnly; // atoms right, charge not
    std::optional<int> atomsOnlyCharge;
    while (true) {
        bool atomsMatch = true;
        for (int d = 0; d < dims && atomsMatch; ++d) {
            qint64 sum = 0;
            for (int k = 0; k < kinds; ++k)
                sum += qint64(multiplier[k]) * ionAtoms[k][d];
            atomsMatch = sum == target[d];
        }
        if (atomsMatch) {
            qint64 charge = 0;
            for (int k = 0; k < kinds; ++k)
                charge += qint64(multiplier[k]) * ions[k].charge();
            if (charge == 0) {
                ++solutions;
            } else if (!atomsOnly) {
                atomsOnly = multiplier;
                atomsOnlyCharge = static_cast<int>(charge);
            }
        }
        int k = 0;
        while (k < kinds && multiplier[k] == BankChecker::kMaxIonMultiplier)
            multiplier[k++] = 1;
        if (k == kinds)
            break;
        ++multiplier[k];
    }
    if (solutions == 1)
        return;
    if (solutions > 1) {
        ctx.warning(line, QStringLiteral("Die Ionen %1 ergeben die Formel %2 auf mehrere Arten; "
                                         "steht ein Ion doppelt?")
                              .arg(ionList, CheckContext::shown(formula.text())));
        return;
    }
    if (atomsOnly) {
        QStringList terms;
        for (int k = 0; k < kinds; ++k)
            terms << QStringLiteral("%1 × %2").arg((*atomsOnly)[k]).arg(ions[k].text());
        ctx.error(line,
                  QStringLiteral("Die Ladungen heben sich nicht auf: %1 ergibt die Formel %2 "
                                 "mit der Ladung %3.")
                      .arg(CheckContext::shown(terms.join(QStringLiteral(" + "))),
                           CheckContext::shown(formula.text()), chargeText(*atomsOnlyCharge)));
        return;
    }
    ctx.error(line, QStringLiteral("Aus den Ionen %1 lässt sich die Formel %2 nicht "
                                   "zusammensetzen (geprüft: je 1 bis %3 Ionen jeder Sorte).")
                        .arg(ionList, CheckContext::shown(formula.text()))
                        .arg(BankChecker::kMaxIonMultiplier));
}
