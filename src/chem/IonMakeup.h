#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

// How a salt is built from its ions: which ions, and how many of each, give
// the formula with no charge left over (CaCl2 is one Ca^2+ and two Cl^-).
// The formulas page shows this beside a wrong answer so that the student
// sees where the formula and the name come from.
class IonMakeup final {
public:
    struct Share {
        int count = 1;
        QString ion; // as the task bank writes it: "Cl^-"
    };

    // More kinds of ions, or more of one kind, are not looked for: school
    // salts stay well inside these.
    static constexpr int kMaxKinds = 3;
    static constexpr int kMaxCount = 9;

    // The shares in the order of the ions; empty when the ions cannot be
    // read or do not add up to the uncharged formula. Where several ways
    // would fit, the one with the smallest counts (first ion first) is taken.
    static QList<Share> of(QStringView formula, const QStringList& ions);

    // Rich text for a label: "Ca²⁺ + 2 Cl⁻ → CaCl₂" when the ions add up;
    // otherwise whatever is there: the formula with its ions in brackets,
    // or only the formula, or only the ions. twoLines breaks the line before
    // the arrow (or the brackets) for a narrow place.
    static QString toHtml(QStringView formula, const QStringList& ions, bool twoLines = false);
    // The same line with Unicode sub- and superscripts, for measuring it or
    // for places without rich text.
    static QString toPlain(QStringView formula, const QStringList& ions);
};
