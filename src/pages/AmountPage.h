#pragma once

#include "pages/TaskPage.h"

#include <array>

class FormulaTextLabel;
class CalculatorButton;
class QLabel;
class QLineEdit;

// Page 12: five amounts of substance in mol. The questions and their answers
// come whole from the task bank; a calculator button stands beside each
// answer field.
class AmountPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 5;

    explicit AmountPage(TestFlow& flow, QWidget* parent);

    struct Draw {
        std::array<QString, kQuestions> questions;
        std::array<QString, kQuestions> answers;
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;

private:
    std::array<FormulaTextLabel*, kQuestions> m_questions{};
    std::array<QLineEdit*, kQuestions> m_fields{};
    std::array<CalculatorButton*, kQuestions> m_calc{};
};
