#include "controls/FormulaLabel.h"

#include "chem/FormulaText.h"

FormulaLabel::FormulaLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    setProperty("role", QStringLiteral("formula"));
}

void FormulaLabel::setFormula(const QString& formula) {
    m_formula = formula;
    setText(FormulaText::formulaToHtml(formula));
}
