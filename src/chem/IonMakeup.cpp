#include "chem/IonMakeup.h"

#include "chem/ChemicalFormula.h"
#include "chem/FormulaText.h"

#include <QMap>
#include <optional>

namespace {

QStringList nonEmpty(const QStringList& ions) {
    QStringList out;
    for (const QString& ion : ions) {
        const QString t = ion.trimmed();
        if (!t.isEmpty())
            out << t;
    }
    return out;
}

} // namespace

QList<IonMakeup::Share> IonMakeup::of(QStringView formula, const QStringList& ionTexts) {
    const ChemicalFormula salt = ChemicalFormula::parse(formula.trimmed());
    const QStringList texts = nonEmpty(ionTexts);
    if (!salt.isValid() || salt.hasCharge() || texts.isEmpty() || texts.size() > kMaxKinds)
        return {};
    QList<ChemicalFormula> ions;
    for (const QString& text : texts) {
        ChemicalFormula ion = ChemicalFormula::parse(text);
        if (!ion.isValid() || !ion.hasCharge())
            return {};
        ions.append(ion);
    }

    // Counted up like an odometer, first ion fastest, so that the first
    // match has the smallest counts of the leading ions.
    const auto kinds = ions.size();
    QList<int> counts(kinds, 1);
    while (true) {
        QMap<QString, qint64> atoms;
        qint64 charge = 0;
        for (qsizetype k = 0; k < kinds; ++k) {
            charge += qint64(counts[k]) * ions[k].charge();
            const auto& c = ions[k].counts();
            for (auto it = c.cbegin(); it != c.cend(); ++it)
                atoms[it.key()] += qint64(counts[k]) * it.value();
        }
        bool same = charge == 0 && atoms.size() == salt.counts().size();
        for (auto it = atoms.cbegin(); same && it != atoms.cend(); ++it)
            same = salt.counts().value(it.key(), -1) == it.value();
        if (same) {
            QList<Share> shares;
            for (qsizetype k = 0; k < kinds; ++k)
                shares.append({counts[k], texts[k]});
            return shares;
        }
        qsizetype k = 0;
        while (k < kinds && counts[k] == kMaxCount)
            counts[k++] = 1;
        if (k == kinds)
            return {};
        ++counts[k];
    }
}

namespace {

// Both renderings build the same line; only the formula rendering differs.
template <typename Render>
QString line(QStringView formula, const QStringList& ionTexts, const QString& gap, Render render) {
    const QStringView shownFormula = formula.trimmed();
    const QStringList texts = nonEmpty(ionTexts);
    const QString arrow = gap + QStringLiteral("\u2192 ");
    const QString plus = QStringLiteral(" + ");

    const QList<IonMakeup::Share> shares = IonMakeup::of(shownFormula, texts);
    if (!shares.isEmpty()) {
        QStringList parts;
        for (const IonMakeup::Share& s : shares) {
            const QString ion = render(s.ion);
            parts << (s.count == 1 ? ion : QStringLiteral("%1 %2").arg(s.count).arg(ion));
        }
        return parts.join(plus) + arrow + render(shownFormula);
    }
    QStringList ions;
    for (const QString& t : texts)
        ions << render(t);
    if (shownFormula.isEmpty())
        return ions.join(QStringLiteral(", "));
    if (ions.isEmpty())
        return render(shownFormula);
    return render(shownFormula) + gap + QStringLiteral("(Ionen: ") +
           ions.join(QStringLiteral(", ")) + u')';
}

} // namespace

QString IonMakeup::toHtml(QStringView formula, const QStringList& ions, bool twoLines) {
    return line(formula, ions, twoLines ? QStringLiteral("<br>") : QStringLiteral(" "),
                [](QStringView f) { return FormulaText::formulaToHtml(f); });
}

QString IonMakeup::toPlain(QStringView formula, const QStringList& ions) {
    return line(formula, ions, QStringLiteral(" "),
                [](QStringView f) { return FormulaText::formulaToPlain(f); });
}
