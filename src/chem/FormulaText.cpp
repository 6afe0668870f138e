#include "chem/FormulaText.h"

#include <QRegularExpression>

namespace {

QString escaped(QChar c) {
    switch (c.unicode()) {
    case u'&':
        return QStringLiteral("&amp;");
    case u'<':
        return QStringLiteral("&lt;");
    case u'>':
        return QStringLiteral("&gt;");
    default:
        return QString(c);
    }
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Calls the three callbacks for the plain, subscript and superscript runs of
// a formula; both renderings share this walk.
template <typename Plain, typename Sub, typename Sup>
void walk(QStringView f, Plain plain, Sub sub, Sup sup) {
    qsizetype i = 0;
    while (i < f.size()) {
        const QChar c = f.at(i);
        if (c == u'^') {
            qsizetype j = i + 1;
            while (j < f.size() && isDigit(f.at(j)))
                ++j;
            if (j < f.size() && (f.at(j) == u'+' || f.at(j) == u'-'))
                ++j;
            sup(f.mid(i + 1, j - i - 1));
            i = j;
            continue;
        }
        if (isDigit(c) && i > 0 &&
            (f.at(i - 1).isLetter() || f.at(i - 1) == u')' || f.at(i - 1) == u']')) {
            qsizetype j = i;
            while (j < f.size() && isDigit(f.at(j)))
                ++j;
            sub(f.mid(i, j - i));
            i = j;
            continue;
        }
        plain(c);
        ++i;
    }
}

QChar superscript(QChar c) {
    static const char16_t digits[] = {0x2070, 0x00B9, 0x00B2, 0x00B3, 0x2074,
                                      0x2075, 0x2076, 0x2077, 0x2078, 0x2079};
    if (isDigit(c))
        return QChar(digits[c.unicode() - u'0']);
    if (c == u'+')
        return QChar(0x207A);
    if (c == u'-')
        return QChar(0x207B);
    return c;
}

} // namespace

QString FormulaText::formulaToHtml(QStringView formula) {
    QString out;
    walk(
        formula, [&](QChar c) { out += escaped(c); },
        [&](QStringView digits) {
            out += QStringLiteral("<sub>") + digits.toString() + QStringLiteral("</sub>");
        },
        [&](QStringView charge) {
            QString shown = charge.toString();
            shown.replace(u'-', QChar(0x2212)); // a real minus sign
            out += QStringLiteral("<sup>") + shown + QStringLiteral("</sup>");
        });
    return out;
}

QString FormulaText::formulaToPlain(QStringView formula) {
    QString out;
    walk(
        formula, [&](QChar c) { out += c; },
        [&](QStringView digits) {
            for (QChar d : digits)
                out += QChar(0x2080 + (d.unicode() - u'0'));
        },
        [&](QStringView charge) {
            for (QChar c : charge)
                out += superscript(c);
        });
    return out;
}

namespace {

// The formulas in a sentence: element symbols and bracketed groups with
// counts, optionally a charge and a "·" hydrate part, standing as a word of
// their own and holding at least one count or charge (so "Na" or "Ein"
// stay). Each is set by `formula`, every other character by `other`.
template <class Formula, class Other>
QString setFormulas(QStringView text, Formula formula, Other other) {
    static const QRegularExpression pattern(
        QStringLiteral("(?<![\\w^])(?:[A-Z][a-z]?\\d*|\\((?:[A-Z][a-z]?\\d*)+\\)\\d*)+"
                       "(?:\\^\\d*[+-])?(?:\\x{00B7}\\d*(?:[A-Z][a-z]?\\d*)+)?(?![\\w])"));
    QString out;
    qsizetype last = 0;
    auto it = pattern.globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        const QStringView found = text.mid(m.capturedStart(), m.capturedLength());
        bool marked = false;
        for (QChar c : found)
            marked = marked || isDigit(c) || c == u'^';
        if (!marked)
            continue;
        for (QChar c : text.mid(last, m.capturedStart() - last))
            out += other(c);
        out += formula(found);
        last = m.capturedEnd();
    }
    for (QChar c : text.mid(last))
        out += other(c);
    return out;
}

} // namespace

QString FormulaText::textToHtml(QStringView text) {
    return setFormulas(text, &FormulaText::formulaToHtml, escaped);
}

QString FormulaText::textToPlain(QStringView text) {
    return setFormulas(text, &FormulaText::formulaToPlain, [](QChar c) { return c; });
}
