#include "chem/ElementTable.h"

#include "chem/LegacyText.h"
#include "chem/TextLines.h"

namespace {

bool allDigits(QStringView s) {
    if (s.isEmpty())
        return false;
    for (QChar c : s) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

// A small whole number; long digit runs are refused rather than overflowed.
std::optional<int> readWhole(QStringView s) {
    if (!allDigits(s) || s.size() > 6)
        return std::nullopt;
    return s.toInt();
}

// "22.99", "16", "16.0" -> hundredths; no more than two decimals, as the
// file promises, so that the sums stay exact.
std::optional<int> readHundredths(QStringView s) {
    const qsizetype dot = s.indexOf(u'.');
    const QStringView whole = dot < 0 ? s : s.left(dot);
    const QStringView fraction = dot < 0 ? QStringView() : s.mid(dot + 1);
    if (!allDigits(whole) || whole.size() > 5)
        return std::nullopt;
    if (dot >= 0 && (!allDigits(fraction) || fraction.size() > 2))
        return std::nullopt;
    int value = whole.toInt() * 100;
    if (fraction.size() == 1)
        value += fraction.toInt() * 10;
    else if (fraction.size() == 2)
        value += fraction.toInt();
    return value;
}

bool isSymbol(QStringView s) {
    if (s.isEmpty() || s.size() > 3 || s.at(0) < u'A' || s.at(0) > u'Z')
        return false;
    for (qsizetype i = 1; i < s.size(); ++i) {
        if (s.at(i) < u'a' || s.at(i) > u'z')
            return false;
    }
    return true;
}

} // namespace

ElementTable ElementTable::load(const QString& path) {
    LegacyText::ReadProblem problem;
    const std::optional<QString> text = LegacyText::readFile(path, &problem);
    if (text)
        return fromText(*text);
    ElementTable none;
    none.m_readProblem = problem.text;
    return none;
}

ElementTable ElementTable::fromText(QStringView text) {
    ElementTable table;
    table.m_fileRead = true;
    TextLines lines(text);
    QStringView line;
    while (lines.next(line)) {
        const QStringView t = line.trimmed();
        if (t.isEmpty() || t.startsWith(u'#'))
            continue;
        table.readLine(t, lines.lineNumber());
    }
    return table;
}

const ElementTable::Element* ElementTable::find(QStringView symbol) const {
    const auto it = m_bySymbol.constFind(symbol.toString());
    return it == m_bySymbol.cend() ? nullptr : &m_elements.at(it.value());
}

const ElementTable::Element* ElementTable::byNumber(int number) const {
    const auto it = m_byNumber.constFind(number);
    return it == m_byNumber.cend() ? nullptr : &m_elements.at(it.value());
}

void ElementTable::readLine(QStringView line, int lineNumber) {
    auto problem = [&](const QString& text) { m_problems.append({lineNumber, text}); };
    QList<QStringView> fields = line.split(u';');
    for (QStringView& f : fields)
        f = f.trimmed();
    // The electronegativity may be left out together with its ";".
    if (fields.size() != 7 && fields.size() != 8) {
        problem(QStringLiteral("Die Zeile hat %1 Felder statt 8 (Ordnungszahl;Symbol;Name;"
                               "Atommasse;Gruppe;Periode;Kategorie;Elektronegativität).")
                    .arg(fields.size()));
        return;
    }
    Element e;
    e.line = lineNumber;
    const std::optional<int> number = readWhole(fields[0]);
    if (!number || *number < 1 || *number > 999) {
        problem(QStringLiteral("Die Ordnungszahl \"%1\" ist keine ganze Zahl ab 1.")
                    .arg(fields[0].left(20)));
        return;
    }
    e.number = *number;
    if (!isSymbol(fields[1])) {
        problem(QStringLiteral("\"%1\" ist kein Elementsymbol (Großbuchstabe, dann bis zu zwei "
                               "Kleinbuchstaben).")
                    .arg(fields[1].left(20)));
        return;
    }
    e.symbol = fields[1].toString();
    if (m_bySymbol.contains(e.symbol)) {
        problem(QStringLiteral("Das Symbol %1 steht schon in Zeile %2.")
                    .arg(e.symbol)
                    .arg(m_elements.at(m_bySymbol.value(e.symbol)).line));
        return;
    }
    if (m_byNumber.contains(e.number)) {
        problem(QStringLiteral("Die Ordnungszahl %1 steht schon in Zeile %2.")
                    .arg(e.number)
                    .arg(m_elements.at(m_byNumber.value(e.number)).line));
        return;
    }
    e.name = fields[2].toString();
    if (e.name.isEmpty())
        problem(QStringLiteral("Der Name von %1 fehlt.").arg(e.symbol));

    const QStringView mass = fields[3];
    if (mass.startsWith(u'[') && mass.endsWith(u']') && mass.size() > 2) {
        const std::optional<int> massNumber = readWhole(mass.mid(1, mass.size() - 2));
        if (massNumber && *massNumber > 0 && *massNumber < 1000) {
            e.massHundredths = *massNumber * 100;
            e.massNumberOnly = true;
        } else {
            problem(QStringLiteral("Die Massenzahl \"%1\" von %2 ist keine ganze Zahl.")
                        .arg(mass.left(20), e.symbol));
        }
    } else {
        const std::optional<int> hundredths = readHundredths(mass);
        if (hundredths && *hundredths > 0)
            e.massHundredths = *hundredths;
        else
            problem(QStringLiteral("Die Atommasse \"%1\" von %2 ist keine Zahl mit Punkt und "
                                   "höchstens zwei Nachkommastellen (oder [Massenzahl]).")
                        .arg(mass.left(20), e.symbol));
    }

    const std::optional<int> group = readWhole(fields[4]);
    if (group && *group >= 1 && *group <= 18)
        e.group = *group;
    else
        problem(QStringLiteral("Die Gruppe \"%1\" von %2 liegt nicht zwischen 1 und 18.")
                    .arg(fields[4].left(20), e.symbol));
    const std::optional<int> period = readWhole(fields[5]);
    if (period && *period >= 1 && *period <= 7)
        e.period = *period;
    else
        problem(QStringLiteral("Die Periode \"%1\" von %2 liegt nicht zwischen 1 und 7.")
                    .arg(fields[5].left(20), e.symbol));
    e.category = fields[6].toString();
    if (e.category.isEmpty())
        problem(QStringLiteral("Die Kategorie von %1 fehlt.").arg(e.symbol));

    if (fields.size() == 8 && !fields[7].isEmpty()) {
        const std::optional<int> en = readHundredths(fields[7]);
        if (en)
            e.electronegativity = *en / 100.0;
        else
            problem(QStringLiteral("Die Elektronegativität \"%1\" von %2 ist keine Zahl mit Punkt.")
                        .arg(fields[7].left(20), e.symbol));
    }

    m_bySymbol.insert(e.symbol, static_cast<int>(m_elements.size()));
    m_byNumber.insert(e.number, static_cast<int>(m_elements.size()));
    m_elements.append(std::move(e));
}
