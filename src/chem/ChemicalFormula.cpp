#include "chem/ChemicalFormula.h"

namespace {

constexpr char16_t kDot = u'\u00B7';

bool isUpper(char16_t c) {
    return c >= u'A' && c <= u'Z';
}
bool isLower(char16_t c) {
    return c >= u'a' && c <= u'z';
}
bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

using Atoms = QMap<QString, qint64>;

// Reads a formula left to right with an explicit stack of open groups, so
// that deep nesting in a damaged file cannot exhaust the call stack.
class Reader {
public:
    explicit Reader(QStringView text) : m_text(text) {}

    bool run(Atoms& total, QList<ChemicalFormula::Piece>& pieces, QStringList& symbols,
             bool& hasCharge, int& charge) {
        const qsizetype n = m_text.size();
        if (n == 0)
            return fail(0, QStringLiteral("Die Formel ist leer."));
        QList<Atoms> groups{Atoms{}};
        QList<qsizetype> openedAt;
        qint64 partFactor = 1;
        while (m_pos < n) {
            const char16_t c = m_text.at(m_pos).unicode();
            if (isUpper(c)) {
                const qsizetype start = m_pos++;
                while (m_pos < n && isLower(m_text.at(m_pos).unicode()))
                    ++m_pos;
                if (m_pos - start > 3)
                    return fail(start,
                                QStringLiteral("\"%1\" ist kein Elementsymbol (ein Symbol hat "
                                               "höchstens drei Buchstaben).")
                                    .arg(m_text.mid(start, m_pos - start)));
                const QString symbol = m_text.mid(start, m_pos - start).toString();
                pieces.append({ChemicalFormula::PieceKind::Element, symbol});
                if (!symbols.contains(symbol))
                    symbols.append(symbol);
                qint64 k = 1;
                if (!readCount(k, ChemicalFormula::PieceKind::Count, pieces))
                    return false;
                if (!add(groups.last(), symbol, k, start))
                    return false;
            } else if (c == u'(') {
                if (groups.size() > ChemicalFormula::kMaxDepth)
                    return fail(m_pos, QStringLiteral("Die Klammern sind zu tief verschachtelt."));
                groups.append(Atoms{});
                openedAt.append(m_pos);
                pieces.append({ChemicalFormula::PieceKind::Open, QStringLiteral("(")});
                ++m_pos;
            } else if (c == u')') {
                if (openedAt.isEmpty())
                    return fail(m_pos, QStringLiteral("Zu \")\" fehlt die öffnende Klammer."));
                const qsizetype at = m_pos;
                const Atoms inner = groups.takeLast();
                openedAt.removeLast();
                if (inner.isEmpty())
                    return fail(at, QStringLiteral("Die Klammer ist leer."));
                pieces.append({ChemicalFormula::PieceKind::Close, QStringLiteral(")")});
                ++m_pos;
                qint64 k = 1;
                if (!readCount(k, ChemicalFormula::PieceKind::Count, pieces))
                    return false;
                for (auto it = inner.cbegin(); it != inner.cend(); ++it) {
                    if (!add(groups.last(), it.key(), it.value() * k, at))
                        return false;
                }
            } else if (c == kDot) {
                if (!openedAt.isEmpty())
                    return fail(openedAt.last(),
                                QStringLiteral("\"(\" wird vor dem \"·\" nicht geschlossen."));
                if (groups.last().isEmpty())
                    return fail(m_pos, QStringLiteral("Vor dem \"·\" steht kein Stoff."));
                if (!addPart(total, groups.last(), partFactor, m_pos))
                    return false;
                groups.last().clear();
                pieces.append({ChemicalFormula::PieceKind::Dot, QString(QChar(kDot))});
                ++m_pos;
                partFactor = 1;
                if (!readCount(partFactor, ChemicalFormula::PieceKind::Multiplier, pieces))
                    return false;
            } else if (c == u'^') {
                if (!openedAt.isEmpty())
                    return fail(openedAt.last(),
                                QStringLiteral("\"(\" wird vor der Ladung nicht geschlossen."));
                if (groups.last().isEmpty())
                    return fail(m_pos, QStringLiteral("Vor der Ladung steht kein Stoff."));
                const qsizetype at = m_pos++;
                qint64 size = 1;
                const qsizetype digitsAt = m_pos;
                if (!readNumber(size))
                    return false;
                if (m_pos >= n || (m_text.at(m_pos) != u'+' && m_text.at(m_pos) != u'-'))
                    return fail(m_pos, QStringLiteral("Nach \"^\" folgt eine Ladung wie \"+\", "
                                                      "\"2-\" oder \"3+\"."));
                if (size > ChemicalFormula::kMaxCharge)
                    return fail(digitsAt, QStringLiteral("Die Ladung ist zu groß."));
                const bool negative = m_text.at(m_pos) == u'-';
                ++m_pos;
                hasCharge = true;
                charge = static_cast<int>(negative ? -size : size);
                pieces.append({ChemicalFormula::PieceKind::Charge,
                               m_text.mid(at + 1, m_pos - at - 1).toString()});
                if (m_pos < n)
                    return fail(m_pos, QStringLiteral("Nach der Ladung darf nichts mehr folgen."));
            } else if (isDigit(c)) {
                return fail(m_pos, QStringLiteral("Die Zahl %1 steht, wo ein Elementsymbol oder "
                                                  "\"(\" kommen muss; eine Anzahl folgt dem "
                                                  "Symbol oder der Klammer.")
                                       .arg(digitsAt(m_pos)));
            } else if (isLower(c)) {
                return fail(m_pos, QStringLiteral("Ein Elementsymbol beginnt mit einem "
                                                  "Großbuchstaben (\"%1\").")
                                       .arg(QChar(c)));
            } else if (c == u' ' || c == u'\t') {
                return fail(m_pos, QStringLiteral("Die Formel enthält ein Leerzeichen."));
            } else {
                return fail(m_pos, QStringLiteral("Das Zeichen \"%1\" gehört nicht in eine Formel.")
                                       .arg(QChar(c)));
            }
        }
        if (!openedAt.isEmpty())
            return fail(openedAt.last(), QStringLiteral("\"(\" wird nicht geschlossen."));
        if (groups.last().isEmpty())
            return fail(n, QStringLiteral("Nach dem \"·\" fehlt ein Stoff."));
        return addPart(total, groups.last(), partFactor, n);
    }

    QString error;
    qsizetype errorAt = 0;

private:
    bool fail(qsizetype at, QString message) {
        errorAt = at;
        error = std::move(message);
        return false;
    }

    QString digitsAt(qsizetype at) const {
        qsizetype e = at;
        while (e < m_text.size() && isDigit(m_text.at(e).unicode()))
            ++e;
        // A damaged line may hold a long digit run; a note needs only its start.
        return m_text.mid(at, qMin(e - at, qsizetype(12))).toString();
    }

    // A digit run, if any; none leaves value as it is.
    bool readNumber(qint64& value) {
        const qsizetype start = m_pos;
        if (m_pos >= m_text.size() || !isDigit(m_text.at(m_pos).unicode()))
            return true;
        if (m_text.at(m_pos) == u'0')
            return fail(start, QStringLiteral("Eine Anzahl ist mindestens 1 und beginnt nicht "
                                              "mit 0."));
        qint64 v = 0;
        while (m_pos < m_text.size() && isDigit(m_text.at(m_pos).unicode())) {
            v = v * 10 + (m_text.at(m_pos).unicode() - u'0');
            ++m_pos;
            if (v > ChemicalFormula::kMaxAtoms)
                return fail(start, QStringLiteral("Die Zahl %1 ist zu groß.").arg(digitsAt(start)));
        }
        value = v;
        return true;
    }

    bool readCount(qint64& value, ChemicalFormula::PieceKind kind,
                   QList<ChemicalFormula::Piece>& pieces) {
        const qsizetype start = m_pos;
        if (!readNumber(value))
            return false;
        if (m_pos > start)
            pieces.append({kind, m_text.mid(start, m_pos - start).toString()});
        return true;
    }

    bool add(Atoms& into, const QString& symbol, qint64 k, qsizetype at) {
        qint64& slot = into[symbol];
        slot += k;
        if (slot > ChemicalFormula::kMaxAtoms)
            return fail(at, QStringLiteral("Die Formel hat unglaubhaft viele Atome."));
        return true;
    }

    bool addPart(Atoms& total, const Atoms& part, qint64 factor, qsizetype at) {
        for (auto it = part.cbegin(); it != part.cend(); ++it) {
            if (!add(total, it.key(), it.value() * factor, at))
                return false;
        }
        return true;
    }

    QStringView m_text;
    qsizetype m_pos = 0;
};

} // namespace

ChemicalFormula ChemicalFormula::parse(QStringView text) {
    ChemicalFormula f;
    f.m_text = text.toString();
    Reader reader(text);
    Atoms total;
    if (!reader.run(total, f.m_pieces, f.m_symbols, f.m_hasCharge, f.m_charge)) {
        f.m_error = reader.error;
        f.m_errorPosition = reader.errorAt;
        f.m_pieces.clear();
        f.m_symbols.clear();
        f.m_hasCharge = false;
        f.m_charge = 0;
        return f;
    }
    for (auto it = total.cbegin(); it != total.cend(); ++it)
        f.m_counts.insert(it.key(), static_cast<int>(it.value()));
    f.m_valid = true;
    return f;
}
