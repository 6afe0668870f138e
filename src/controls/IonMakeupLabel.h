#pragma once

#include <QLabel>
#include <QString>
#include <QStringList>

// Shows a salt together with the ions it is built from, "Ca²⁺ + 2 Cl⁻ →
// CaCl₂", so a student who got a formula or a name wrong sees why it reads
// so. Like every formula display it keeps the formula exactly as the task
// bank writes it in the property "formula"; "ions" holds the ions the same
// way.
class IonMakeupLabel final : public QLabel {
    Q_OBJECT
    Q_PROPERTY(QString formula READ formula)
    Q_PROPERTY(QStringList ions READ ions)
public:
    explicit IonMakeupLabel(QWidget* parent = nullptr);

    QString formula() const { return m_formula; }
    QStringList ions() const { return m_ions; }
    void setSubstance(const QString& formula, const QStringList& ions);
    // Two lines, the second beginning with the arrow, for a narrow place.
    void setTwoLines(bool twoLines);
    void setVisible(bool visible) override;

private:
    QString m_formula;
    QStringList m_ions;
    // The text is only built when the label is first shown: most draws
    // never show it.
    bool m_stale = false;
    bool m_twoLines = false;
};
