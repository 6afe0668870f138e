#pragma once

#include <QLabel>
#include <QString>

// Shows a chemical formula written in the task bank's notation ("H2SO4",
// "SO4^2-", "CuSO4·5H2O") with real subscripts and superscripts. The
// property "formula" keeps the text exactly as the bank writes it, whatever
// is drawn, so that pages and tests can read back what is shown.
class FormulaLabel : public QLabel {
    Q_OBJECT
    Q_PROPERTY(QString formula READ formula WRITE setFormula)
public:
    explicit FormulaLabel(QWidget* parent = nullptr);

    QString formula() const { return m_formula; }
    void setFormula(const QString& formula);

private:
    QString m_formula;
};
