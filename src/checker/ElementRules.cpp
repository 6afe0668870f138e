#include "checker/ElementRules.h"

#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "chem/ElementTable.h"
#include "chem/MolarMass.h"
#include "session/TermList.h"
#include "session/TextRules.h"

#include <cmath>

std::optional<ChemicalFormula> ElementRules::readFormula(CheckContext& ctx, int line,
                                                         QStringView text, const QString& what) {
    ChemicalFormula f = ChemicalFormula::parse(text);
    if (!f.isValid()) {
        ctx.error(line, QStringLiteral("%1 \"%2\" lässt sich nicht lesen: %3")
                            .arg(what, CheckContext::shown(text), f.error()));
        return std::nullopt;
    }
    return f;
}

bool ElementRules::knownSymbols(CheckContext& ctx, int line, const ChemicalFormula& f) {
    if (!ctx.elements())
        return true;
    bool all = true;
    for (const QString& symbol : f.symbols()) {
        if (!ctx.elements()->find(symbol)) {
            ctx.error(line, QStringLiteral("Das Element \"%1\" in \"%2\" steht nicht in "
                                           "elements.dat.")
                                .arg(symbol, CheckContext::shown(f.text())));
            all = false;
        }
    }
    return all;
}

void ElementRules::checkElementSymbol(CheckContext& ctx, int line, QStringView names,
                                      QStringView symbolLine, bool repeated) {
    const QString symbol = TrimRightBlanks(symbolLine).toString();
    if (!repeated) {
        const auto seen = ctx.symbolSeen.constFind(symbol);
        if (seen != ctx.symbolSeen.cend())
            ctx.warning(line,
                        QStringLiteral("Das Symbol %1 steht schon in Zeile %2; die Seite kann "
                                       "dasselbe Element zweimal zeigen.")
                            .arg(CheckContext::shown(symbol))
                            .arg(seen.value()));
        else
            ctx.symbolSeen.insert(symbol, line);
    }
    if (!ctx.elements())
        return;
    const ElementTable::Element* e = ctx.elements()->find(symbol);
    if (!e) {
        ctx.error(line, QStringLiteral("Das Symbol \"%1\" steht nicht in elements.dat.")
                            .arg(CheckContext::shown(symbolLine)));
        return;
    }
    const QStringList accepted = TermList::Build(names, u"*").items();
    for (const QString& name : accepted) {
        if (QString::compare(TrimBlanks(name), e->name, Qt::CaseInsensitive) == 0)
            return;
    }
    ctx.warning(line - 1, QStringLiteral("Keiner der Namen \"%1\" ist der Name \"%2\", den "
                                         "elements.dat für %3 nennt.")
                              .arg(CheckContext::shown(names), e->name, e->symbol));
}

void ElementRules::checkMolarMass(CheckContext& ctx, int massLine, int formulaLine,
                                  std::optional<double> stored, QStringView formulaText) {
    const std::optional<ChemicalFormula> f =
        readFormula(ctx, formulaLine, formulaText, QStringLiteral("Die Formel"));
    if (!f)
        return;
    if (f->hasCharge())
        ctx.warning(formulaLine, QStringLiteral("Die Formel \"%1\" trägt eine Ladung; die molare "
                                                "Masse gilt für den ungeladenen Stoff.")
                                     .arg(CheckContext::shown(formulaText)));
    if (!ctx.elements())
        return;
    const MolarMass::Sum sum = MolarMass::of(*f, *ctx.elements());
    for (const QString& symbol : sum.unknown)
        ctx.error(formulaLine, QStringLiteral("Das Element \"%1\" in \"%2\" steht nicht in "
                                              "elements.dat.")
                                   .arg(symbol, CheckContext::shown(formulaText)));
    for (const QString& symbol : sum.massNumberOnly)
        ctx.error(formulaLine, QStringLiteral("Für %1 nennt elements.dat nur die Massenzahl "
                                              "[%2]; die molare Masse von \"%3\" lässt sich "
                                              "damit nicht berechnen.")
                                   .arg(symbol)
                                   .arg(ctx.elements()->find(symbol)->massHundredths / 100)
                                   .arg(CheckContext::shown(formulaText)));
    for (const QString& symbol : sum.noMass)
        ctx.error(formulaLine,
                  QStringLiteral("Für %1 hat elements.dat keine lesbare Atommasse.").arg(symbol));
    if (!sum.complete() || !stored)
        return;
    if (std::fabs(*stored * 10.0 - double(sum.tenths())) > 1e-6)
        ctx.error(massLine, QStringLiteral("Die molare Masse %1 passt nicht zur Formel %2 "
                                           "(berechnet: %3 g/mol, gerundet %4).")
                                .arg(CheckContext::shown(TrimBlanks(ctx.at(massLine))),
                                     CheckContext::shown(formulaText),
                                     MolarMass::hundredthsText(sum.hundredths),
                                     MolarMass::tenthsText(sum.tenths())));
}
