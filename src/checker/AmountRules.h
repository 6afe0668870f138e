#pragma once

#include <QString>
#include <QStringView>
#include <optional>

class CheckContext;
class ChemicalFormula;
class ElementTable;

// Amount-of-substance questions ("Wie viel mol sind 28 g Eisen (Fe)?"): the
// stored answer must follow from the question's own numbers, and where the
// student works out a molar mass from a formula, the answer must not depend
// on which atomic masses the student uses: the two-decimal ones of
// elements.dat, the same rounded to one decimal, or the usual school values
// (whole numbers, and x.5 where the mass lies within 0.1 of it: Cl 35.5,
// Cu 63.5). All sums are exact, in decimal, so that ties round as on paper.
class AmountRules final {
public:
    // digits × 10^exponent, e.g. 36,04 = {3604, -2}, 6,022 · 10²³ = {6022, 20}.
    struct Decimal {
        qint64 digits = 0;
        int exponent = 0;
        bool operator==(const Decimal&) const = default;
        // "36.04", "55.9", "6.022e23"
        QString text() const;
    };
    enum class Masses { Table, OneDecimal, School };
    enum class Kind { Mass, Volume, Particles };

    // What a question gives: the portion (a mass in g, a volume in l or a
    // number of particles), the amount per mole when the question states
    // it (M = ... g/mol, 22,4 l/mol, 6,022 · 10²³/mol), the formula it
    // names, and the decimals it asks for.
    struct Question {
        Kind kind = Kind::Mass;
        Decimal portion;
        std::optional<Decimal> perMole;
        QString formula;
        std::optional<int> decimals;
    };

    // A German decimal as the bank writes it in questions ("36,04", "12",
    // "6,022 · 10²³"), or an answer line ("0.50").
    static std::optional<Decimal> readDecimal(QStringView text);
    static std::optional<Question> readQuestion(QStringView question);

    // An element's mass in 0.01 u as a student of each kind would take it.
    static int elementMass(int tableHundredths, Masses masses);
    // The formula's molar mass in 0.01 g/mol; empty when an element has no
    // usable mass.
    static std::optional<qint64> molarMass(const ChemicalFormula& formula,
                                           const ElementTable& elements, Masses masses);
    // portion / perMole rounded half up to `decimals` decimals, in units of
    // 10^-decimals; empty when the numbers are out of range.
    static std::optional<qint64> roundedQuotient(const Decimal& portion, const Decimal& perMole,
                                                 int decimals);

    // One record: the question on `line`, the answer on the next line.
    static void checkAmount(CheckContext& ctx, int line, QStringView question, QStringView answer);
};
