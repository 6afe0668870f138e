#pragma once

#include "chem/ElementTable.h"

#include <QString>
#include <QStringView>

// Why an answer is wrong, as a chemist would say it to the student: one
// short German sentence, or nothing. Each kind of task has its own
// diagnosis; every rule fires only when the cause is certain, because a hint
// that names the wrong cause misleads more than no hint at all. Where two
// causes fit, the more specific rule is asked first.
//
// The functions take the task as the result file keeps it: the prompt as
// shown (plain text, formulas as the bank writes them), the right answer
// and what was given.
class MistakeHints final {
public:
    struct Hint {
        QString cause; // a short tag such as "sym-case", for tests and statistics
        QString text;  // the sentence for the student
        bool isEmpty() const { return text.isEmpty(); }
    };

    enum class Kind {
        ElementSymbol,  // prompt: element name, expected: symbol
        ElementName,    // prompt: symbol, expected: names joined by " oder "
        SyllableNumber, // prompt: syllable, expected: the number
        NumberSyllable, // prompt: number, expected: syllables joined by "*"
        Formula,        // prompt: substance name, expected: formula
        SubstanceName,  // prompt: formula, expected: name
        MolarMass,      // prompt: "Name (Formel)" or name, expected: "58.4"
        Amount,         // prompt: the question, expected: "0.50"
        Equation,       // prompt: "H2 + O2 = H2O", expected and given: coefficients
        IonCharge,      // prompt: "Natrium-Ion", expected and given: "+1"
        Choice          // definitions, terms, yes/no
    };

    static Hint diagnose(Kind kind, QStringView prompt, QStringView expected, QStringView given,
                         const ElementTable& elements);

    static Hint elementSymbol(QStringView name, QStringView expected, QStringView given,
                              const ElementTable& elements);
    static Hint elementName(QStringView symbol, QStringView expected, QStringView given,
                            const ElementTable& elements);
    static Hint syllableNumber(QStringView syllable, QStringView expected, QStringView given);
    static Hint numberSyllable(QStringView number, QStringView expected, QStringView given);
    static Hint formula(QStringView name, QStringView expected, QStringView given,
                        const ElementTable& elements);
    static Hint substanceName(QStringView formula, QStringView expected, QStringView given,
                              const ElementTable& elements);
    static Hint molarMass(QStringView prompt, QStringView expected, QStringView given,
                          const ElementTable& elements);
    static Hint amount(QStringView question, QStringView expected, QStringView given,
                       const ElementTable& elements);
    static Hint equation(QStringView equation, QStringView expected, QStringView given);
    static Hint ionCharge(QStringView ion, QStringView expected, QStringView given,
                          const ElementTable& elements);
    static Hint choice(QStringView given);
};
