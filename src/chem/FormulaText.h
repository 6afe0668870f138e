#pragma once

#include <QString>
#include <QStringView>

// Turns the task bank's formula notation into rich text for a QLabel:
// counts as subscripts (H2O → H₂O), "^2-" as a superscript charge, "·" kept
// with its leading count as water of crystallisation. Formulas inside
// ordinary sentences are found and converted too, other words are left as
// they are.
class FormulaText final {
public:
    // One formula, as it stands in the bank.
    static QString formulaToHtml(QStringView formula);
    // A sentence that may contain formulas ("Kalkwasser wird durch CO2 trüb").
    static QString textToHtml(QStringView text);
    // Plain text with Unicode sub- and superscript digits, for places that
    // cannot show rich text (list items, window titles).
    static QString formulaToPlain(QStringView formula);
    // A sentence with its formulas in plain text (item views, file names).
    static QString textToPlain(QStringView text);
};
