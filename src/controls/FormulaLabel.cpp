#include "controls/FormulaLabel.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"

FormulaLabel::FormulaLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    Look::setRole(this, QStringLiteral("formula"));
}

void FormulaLabel::setFormula(const QString& formula) {
    m_formula = formula;
    setText(FormulaText::formulaToHtml(formula));
}
