#include "controls/IonMakeupLabel.h"

#include "chem/IonMakeup.h"
#include "controls/Look.h"

IonMakeupLabel::IonMakeupLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    Look::setRole(this, QStringLiteral("formula"));
}

void IonMakeupLabel::setSubstance(const QString& formula, const QStringList& ions) {
    m_formula = formula;
    m_ions = ions;
    m_stale = true;
    if (!isHidden())
        setVisible(true);
}

void IonMakeupLabel::setTwoLines(bool twoLines) {
    if (twoLines == m_twoLines)
        return;
    m_twoLines = twoLines;
    m_stale = true;
    if (!isHidden())
        setVisible(true);
}

void IonMakeupLabel::setVisible(bool visible) {
    if (visible && m_stale) {
        m_stale = false;
        setText(IonMakeup::toHtml(m_formula, m_ions, m_twoLines));
    }
    QLabel::setVisible(visible);
}
