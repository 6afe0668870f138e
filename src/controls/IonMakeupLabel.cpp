#include "controls/IonMakeupLabel.h"

#include "chem/IonMakeup.h"

IonMakeupLabel::IonMakeupLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    setProperty("role", QStringLiteral("formula"));
}

void IonMakeupLabel::setSubstance(const QString& formula, const QStringList& ions) {
    m_formula = formula;
    m_ions = ions;
    setText(IonMakeup::toHtml(formula, ions));
}
