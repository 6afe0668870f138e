#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

struct SessionState;

// but_Calc(i): the small calculator beside a numeric answer field. At the
// normal level it opens the calculator and writes a result other than 0 into
// its own field, as the system's locale writes numbers; at the expert level
// it only teases.
class CalculatorButton final : public QPushButton {
    Q_OBJECT
public:
    CalculatorButton(int index, QLineEdit* target, const SessionState& state, QWidget* parent);

    QLineEdit* target() const { return m_target; }
    // What a click does.
    void press();

private:
    QPointer<QLineEdit> m_target;
    const SessionState& m_state;
};
