#include "checker/FieldRules.h"

#include "checker/BankChecker.h"
#include "checker/CheckContext.h"
#include "session/TermList.h"
#include "session/TextRules.h"

#include <cmath>

void FieldRules::checkWidth(CheckContext& ctx, int line, QStringView text, int width,
                            const QString& what) {
    const QStringView kept = TrimRightBlanks(text);
    if (kept.size() <= width)
        return;
    ctx.error(line, QStringLiteral("%1 ist %2 Zeichen lang; das Programm nimmt nur die ersten %3 "
                                   "und schneidet \"%4\" ab.")
                        .arg(what)
                        .arg(kept.size())
                        .arg(width)
                        .arg(CheckContext::shown(kept.mid(width))));
}

void FieldRules::checkAlternatives(CheckContext& ctx, int line, QStringView text,
                                   QStringView separator, const QString& what) {
    const TermList list = TermList::Build(text, separator);
    for (const QString& item : list.items()) {
        if (item.isEmpty()) {
            ctx.warning(line, QStringLiteral("%1 enthält eine leere Schreibweise (\"%2\" doppelt "
                                             "oder am Rand).")
                                  .arg(what, separator.toString()));
            return;
        }
    }
}

// The value when the whole line reads as a number, as the reader takes it.
std::optional<double> FieldRules::readNumber(CheckContext& ctx, int line, QStringView text,
                                             const QString& what) {
    const QStringView t = TrimBlanks(text);
    const LeadingNumber r = ReadLeadingNumber(t);
    if (!r.found) {
        ctx.error(line, QStringLiteral("%1 \"%2\" ist keine Zahl; das Programm liest 0.")
                            .arg(what, CheckContext::shown(t)));
        return std::nullopt;
    }
    if (r.used != t.size()) {
        ctx.error(line, QStringLiteral("%1 \"%2\" liest sich nicht ganz als Zahl: das Programm "
                                       "liest nur \"%3\", also %4 (Dezimalzeichen ist der Punkt).")
                            .arg(what, CheckContext::shown(t), CheckContext::shown(t.left(r.used)),
                                 CheckContext::numberText(r.value)));
        return std::nullopt;
    }
    if (!std::isfinite(r.value) || std::fabs(r.value) > 3.4e38) {
        ctx.error(line, QStringLiteral("%1 \"%2\" ist zu groß; das Programm liest 0.")
                            .arg(what, CheckContext::shown(t)));
        return std::nullopt;
    }
    return r.value;
}

std::optional<int> FieldRules::readWholeNumber(CheckContext& ctx, int line, QStringView text,
                                               const QString& what) {
    const std::optional<double> v = FieldRules::readNumber(ctx, line, text, what);
    if (!v)
        return std::nullopt;
    bool overflow = false;
    const std::int16_t read = ReadInt16Field(text, &overflow);
    if (overflow) {
        ctx.error(line, QStringLiteral("%1 %2 liegt außerhalb von -32768 bis 32767; das Programm "
                                       "liest 0.")
                            .arg(what, CheckContext::numberText(*v)));
        return std::nullopt;
    }
    if (*v != std::floor(*v)) {
        ctx.error(line, QStringLiteral("%1 %2 ist keine ganze Zahl; das Programm liest %3.")
                            .arg(what, CheckContext::numberText(*v))
                            .arg(read));
        return std::nullopt;
    }
    return read;
}

void FieldRules::checkFlag(CheckContext& ctx, int line, QStringView text) {
    const QString flag = TrimBlanks(text).toString().toUpper();
    if (flag == u"J" || flag == u"N")
        return;
    ctx.error(line, QStringLiteral("Die Angabe \"%1\" ist weder J noch N; das Programm liest sie "
                                   "als N (die Aussage gilt als falsch).")
                        .arg(CheckContext::shown(text)));
}