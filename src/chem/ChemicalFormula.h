#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

// A chemical formula in the task bank's notation: element symbols followed
// by their counts, nested parentheses with a count after ")", an ion charge
// after "^" ("SO4^2-", "Na^+"), and water of crystallisation after "·" with
// an optional multiplier ("CuSO4·5H2O"). Parsing yields the atoms per
// element and the charge; the pieces keep the written order so that a
// display can set counts as subscripts and the charge as a superscript.
// Whether a symbol names a real element is the element table's business.
class ChemicalFormula final {
public:
    enum class PieceKind {
        Element,    // "Ca"
        Count,      // "2" after a symbol or ")": a subscript
        Open,       // "("
        Close,      // ")"
        Dot,        // "·"
        Multiplier, // "5" right after "·": normal size
        Charge      // "2-" (written after "^"): a superscript
    };
    struct Piece {
        PieceKind kind;
        QString text;
    };

    // Counts and charges beyond these are taken as typing errors; the limits
    // also keep sums over whole equations far from integer overflow.
    static constexpr int kMaxAtoms = 100000;
    static constexpr int kMaxCharge = 99;
    static constexpr int kMaxDepth = 16;

    ChemicalFormula() = default;

    static ChemicalFormula parse(QStringView text);

    bool isValid() const { return m_valid; }
    // German, for notes to the teacher; empty when the formula is valid.
    const QString& error() const { return m_error; }
    // Index into text() where reading failed.
    qsizetype errorPosition() const { return m_errorPosition; }

    const QString& text() const { return m_text; }
    // Atoms per element symbol, water of crystallisation included.
    const QMap<QString, int>& counts() const { return m_counts; }
    int count(const QString& symbol) const { return m_counts.value(symbol, 0); }
    // The symbols in the order they are first written.
    const QStringList& symbols() const { return m_symbols; }
    bool hasCharge() const { return m_hasCharge; }
    int charge() const { return m_charge; }
    const QList<Piece>& pieces() const { return m_pieces; }

private:
    QString m_text;
    bool m_valid = false;
    QString m_error;
    qsizetype m_errorPosition = 0;
    QMap<QString, int> m_counts;
    QStringList m_symbols;
    bool m_hasCharge = false;
    int m_charge = 0;
    QList<Piece> m_pieces;
};
