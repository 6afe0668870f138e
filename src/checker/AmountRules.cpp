#include "checker/AmountRules.h"

#include "checker/CheckContext.h"
#include "chem/ChemicalFormula.h"
#include "chem/ElementTable.h"
#include "session/TextRules.h"

#include <QRegularExpression>
#include <QStringList>
#include <limits>

namespace {

using Decimal = AmountRules::Decimal;
using Masses = AmountRules::Masses;

constexpr int kMaxShift = 15;

// "·" between mantissa and power of ten, superscript digits for the power.
const QString kSuperscripts = QStringLiteral(u"⁰¹²³⁴⁵⁶⁷⁸⁹");
const QString kNumber = QStringLiteral(R"((\d+(?:,\d+)?))");
const QString kPower = QStringLiteral(u"\\s*·\\s*10([⁰¹²³⁴⁵⁶⁷⁸⁹]+)");

std::optional<qint64> powerOfTen(int n) {
    if (n < 0 || n > 18)
        return std::nullopt;
    qint64 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

std::optional<qint64> scaled(qint64 value, int shift) {
    const std::optional<qint64> p = powerOfTen(shift);
    qint64 out = 0;
    if (!p || qMulOverflow(value, *p, &out))
        return std::nullopt;
    return out;
}

// "36,04" read exactly; the bank's answers use "." instead.
std::optional<Decimal> plainDecimal(QStringView text, QChar point) {
    const qsizetype at = text.indexOf(point);
    const QStringView whole = at < 0 ? text : text.left(at);
    const QStringView part = at < 0 ? QStringView() : text.mid(at + 1);
    if (whole.isEmpty() || (at >= 0 && part.isEmpty()) || whole.size() + part.size() > 15)
        return std::nullopt;
    qint64 digits = 0;
    for (const QChar c : QString(whole.toString() + part.toString())) {
        if (!c.isDigit() || c.unicode() > 0x7f)
            return std::nullopt;
        digits = digits * 10 + (c.unicode() - u'0');
    }
    return Decimal{digits, -int(part.size())};
}

QString roundedText(qint64 units, int decimals) {
    QString digits = QString::number(units);
    if (decimals <= 0)
        return digits;
    while (digits.size() <= decimals)
        digits.prepend(u'0');
    return digits.left(digits.size() - decimals) + u'.' + digits.right(decimals);
}

QString massesName(Masses m) {
    switch (m) {
    case Masses::Table:
        return QStringLiteral("mit den Atommassen aus elements.dat");
    case Masses::OneDecimal:
        return QStringLiteral("mit Atommassen auf eine Nachkommastelle");
    case Masses::School:
        return QStringLiteral("mit den üblichen Schulwerten");
    }
    return QString();
}

// The formula a question names for its substance: the last parenthesised
// part before the "?" ("Eisen(III)-oxid (Fe2O3)"), else the substance's
// last word ("250 g CuSO4·5H2O").
QString namedFormula(QStringView substance) {
    substance = TrimBlanks(substance);
    if (substance.endsWith(u')')) {
        int depth = 0;
        for (qsizetype i = substance.size() - 1; i >= 0; --i) {
            if (substance[i] == u')')
                ++depth;
            else if (substance[i] == u'(' && --depth == 0) {
                if (i == 0 || substance[i - 1] == u' ')
                    return substance.mid(i + 1, substance.size() - i - 2).toString();
                break;
            }
        }
    }
    const qsizetype blank = substance.lastIndexOf(u' ');
    return substance.mid(blank + 1).toString();
}

} // namespace

QString AmountRules::Decimal::text() const {
    if (exponent >= 0 && exponent <= 6)
        return QString::number(digits) + QString(exponent, u'0');
    if (exponent < 0) {
        QString t = roundedText(digits, -exponent);
        while (t.endsWith(u'0'))
            t.chop(1);
        if (t.endsWith(u'.'))
            t.chop(1);
        return t;
    }
    const QString d = QString::number(digits);
    const QString mantissa = d.size() > 1 ? d.left(1) + u'.' + d.mid(1) : d;
    return mantissa + u'e' + QString::number(exponent + d.size() - 1);
}

std::optional<Decimal> AmountRules::readDecimal(QStringView text) {
    text = TrimBlanks(text);
    static const QRegularExpression power(u'^' + kNumber + kPower + u'$');
    const QRegularExpressionMatch m = power.match(text);
    if (m.hasMatch()) {
        std::optional<Decimal> d = plainDecimal(m.capturedView(1), u',');
        int exponent = 0;
        for (const QChar c : m.capturedView(2))
            exponent = exponent * 10 + int(kSuperscripts.indexOf(c));
        if (d)
            d->exponent += exponent;
        return d;
    }
    if (text.contains(u','))
        return plainDecimal(text, u',');
    return plainDecimal(text, u'.');
}

std::optional<AmountRules::Question> AmountRules::readQuestion(QStringView question) {
    static const QRegularExpression decimalsAsked(
        QStringLiteral(R"(auf\s+(eine|zwei|drei|vier|\d+)\s+Nachkommastellen?)"));
    static const QRegularExpression particles(kNumber + kPower + QStringLiteral(R"((\s*/mol)?)"));
    static const QRegularExpression volume(kNumber + QStringLiteral(R"(\s*l(/mol)?(?![\w/]))"));
    static const QRegularExpression mass(kNumber + QStringLiteral(R"(\s*g(?![\w/]))"));
    static const QRegularExpression statedMolarMass(QStringLiteral(R"(M\s*(?:\([^)]*\))?\s*=\s*)") +
                                                    kNumber + QStringLiteral(R"(\s*g/mol)"));

    Question q;
    const QRegularExpressionMatch asked = decimalsAsked.match(question);
    if (asked.hasMatch()) {
        static const QStringList words{QStringLiteral("eine"), QStringLiteral("zwei"),
                                       QStringLiteral("drei"), QStringLiteral("vier")};
        const qsizetype word = words.indexOf(asked.captured(1));
        q.decimals = word >= 0 ? int(word) + 1 : asked.captured(1).toInt();
    }

    // Each pattern's match without "/mol" is the portion, the one with it
    // the amount per mole the question states.
    auto scan = [&](const QRegularExpression& re, int perMoleGroup) {
        bool portionFound = false;
        for (auto it = re.globalMatch(question); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            const std::optional<Decimal> value = readDecimal(
                m.capturedView(0).left(m.capturedView(perMoleGroup).isNull()
                                           ? m.capturedLength(0)
                                           : m.capturedStart(perMoleGroup) - m.capturedStart(0)));
            if (!value)
                continue;
            if (!m.capturedView(perMoleGroup).isNull()) {
                q.perMole = value;
            } else if (!portionFound) {
                q.portion = *value;
                portionFound = true;
            }
        }
        return portionFound;
    };

    if (scan(particles, 3)) {
        q.kind = Kind::Particles;
        return q;
    }
    q.perMole.reset();
    // A volume with a unit "l": strip the unit before reading the number.
    for (auto it = volume.globalMatch(question); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const std::optional<Decimal> value = readDecimal(m.capturedView(1));
        if (!value)
            continue;
        if (!m.capturedView(2).isNull()) {
            q.perMole = value;
        } else if (q.kind != Kind::Volume) {
            q.kind = Kind::Volume;
            q.portion = *value;
        }
    }
    if (q.kind == Kind::Volume)
        return q;
    q.perMole.reset();

    const QRegularExpressionMatch m = mass.match(question);
    if (!m.hasMatch())
        return std::nullopt;
    const std::optional<Decimal> grams = readDecimal(m.capturedView(1));
    if (!grams)
        return std::nullopt;
    q.kind = Kind::Mass;
    q.portion = *grams;
    const QRegularExpressionMatch stated = statedMolarMass.match(question);
    if (stated.hasMatch())
        q.perMole = readDecimal(stated.capturedView(1));
    QStringView rest = question.mid(m.capturedEnd(0));
    const qsizetype end = rest.indexOf(u'?');
    if (end >= 0)
        rest = rest.left(end);
    q.formula = namedFormula(rest);
    return q;
}

int AmountRules::elementMass(int h, Masses masses) {
    switch (masses) {
    case Masses::Table:
        return h;
    case Masses::OneDecimal:
        return (h + 5) / 10 * 10;
    case Masses::School: {
        const int fraction = h % 100;
        if (fraction >= 40 && fraction <= 60)
            return h / 100 * 100 + 50;
        return (h + 50) / 100 * 100;
    }
    }
    return h;
}

std::optional<qint64> AmountRules::molarMass(const ChemicalFormula& formula,
                                             const ElementTable& elements, Masses masses) {
    qint64 sum = 0;
    const auto& counts = formula.counts();
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        const ElementTable::Element* e = elements.find(it.key());
        if (!e || !e->hasMass())
            return std::nullopt;
        sum += qint64(it.value()) * elementMass(e->massHundredths, masses);
    }
    return sum;
}

std::optional<qint64> AmountRules::roundedQuotient(const Decimal& portion, const Decimal& perMole,
                                                   int decimals) {
    if (perMole.digits <= 0 || portion.digits < 0)
        return std::nullopt;
    const int shift = portion.exponent - perMole.exponent + decimals;
    if (shift > kMaxShift || shift < -kMaxShift)
        return std::nullopt;
    const std::optional<qint64> num = scaled(portion.digits, qMax(shift, 0));
    const std::optional<qint64> den = scaled(perMole.digits, qMax(-shift, 0));
    qint64 twice = 0;
    if (!num || !den || qMulOverflow(*num, qint64(2), &twice) ||
        twice > std::numeric_limits<qint64>::max() - *den)
        return std::nullopt;
    return (twice + *den) / (2 * *den); // half up, as on paper
}

void AmountRules::checkAmount(CheckContext& ctx, int line, QStringView question,
                              QStringView answer) {
    const std::optional<Question> q = readQuestion(question);
    const std::optional<Decimal> given = readDecimal(TrimBlanks(answer));
    if (!q || !given || TrimBlanks(answer).contains(u','))
        return; // an unreadable answer is the number rule's note
    const int decimals = q->decimals.value_or(qMax(0, -given->exponent));
    const QString rounding = decimals == 1
                                 ? QStringLiteral("auf eine Nachkommastelle")
                                 : QStringLiteral("auf %1 Nachkommastellen").arg(decimals);
    auto sameAs = [&](qint64 units) {
        const int common = qMin(given->exponent, -decimals);
        const std::optional<qint64> a = scaled(given->digits, given->exponent - common);
        const std::optional<qint64> b = scaled(units, -decimals - common);
        return a && b && *a == *b;
    };
    auto wrongAnswer = [&](qint64 units, const QString& how) {
        ctx.error(line + 1, QStringLiteral("Die Antwort %1 passt nicht zur Frage: %2 ergibt %3 "
                                           "gerundet %4.")
                                .arg(CheckContext::shown(TrimBlanks(answer)), how, rounding,
                                     roundedText(units, decimals)));
    };
    static const QString unit[] = {QStringLiteral("g"), QStringLiteral("l"), QString()};
    const QString portion =
        q->portion.text() +
        (q->kind == Kind::Particles ? QStringLiteral(" Teilchen") : u' ' + unit[int(q->kind)]);

    if (q->perMole) {
        const std::optional<qint64> r = roundedQuotient(q->portion, *q->perMole, decimals);
        const QString perMole =
            q->perMole->text() + (q->kind == Kind::Particles
                                      ? QStringLiteral("/mol")
                                      : u' ' + unit[int(q->kind)] + QStringLiteral("/mol"));
        if (r && !sameAs(*r))
            wrongAnswer(*r, QStringLiteral("%1 / %2").arg(portion, perMole));
        return;
    }
    if (q->kind != Kind::Mass || !ctx.elements() || q->formula.isEmpty())
        return;
    const ChemicalFormula formula = ChemicalFormula::parse(q->formula);
    if (!formula.isValid() || formula.hasCharge())
        return; // the question names no formula to compute from
    const Masses kinds[] = {Masses::Table, Masses::OneDecimal, Masses::School};
    std::optional<qint64> molar[3];
    std::optional<qint64> rounded[3];
    for (int k = 0; k < 3; ++k) {
        molar[k] = molarMass(formula, *ctx.elements(), kinds[k]);
        if (!molar[k])
            return; // unknown elements: nothing to compute
        rounded[k] = roundedQuotient(q->portion, Decimal{*molar[k], -2}, decimals);
        if (!rounded[k])
            return;
    }
    auto molarText = [&](int k) {
        return QStringLiteral("M(%1) = %2 g/mol").arg(q->formula, Decimal{*molar[k], -2}.text());
    };
    if (!sameAs(*rounded[0]))
        wrongAnswer(
            *rounded[0],
            QStringLiteral("%1 / %2 (%3)").arg(portion, molarText(0), massesName(Masses::Table)));
    if (rounded[0] == rounded[1] && rounded[1] == rounded[2])
        return;
    QStringList ways;
    for (int k = 0; k < 3; ++k)
        ways << QStringLiteral("%1 %2 mol (%3)")
                    .arg(massesName(kinds[k]), roundedText(*rounded[k], decimals), molarText(k));
    ctx.warning(line, QStringLiteral("Die Antwort hängt davon ab, mit welchen Atommassen gerechnet "
                                     "wird: %1. Masse oder Rundung so wählen, dass alle gleich "
                                     "sind, oder die molare Masse in der Frage nennen "
                                     "(M = ... g/mol).")
                          .arg(ways.join(QStringLiteral(", "))));
}
