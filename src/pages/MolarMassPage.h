#pragma once

#include "pages/TaskPage.h"

#include <array>

class CalculatorButton;
class FormulaLabel;
class QLabel;
class QLineEdit;

// Page 8: the molar masses of four substances, in grams with one decimal.
// The formulas are shown beside the names unless the expert level withholds
// them; a calculator button stands beside each answer field.
class MolarMassPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 4;

    explicit MolarMassPage(TestFlow& flow, QWidget* parent);

    struct Draw {
        std::array<QString, kQuestions> names;
        std::array<QString, kQuestions> formulas;
        std::array<QString, kQuestions> answers; // the stored mass as " 58.4"
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;
    // The task as the student saw it: the substance, with its formula
    // where the level shows one.
    QString promptOf(int k) const;

private:
    QLabel* m_formulaHeading;
    std::array<QLabel*, kQuestions> m_names{};
    std::array<FormulaLabel*, kQuestions> m_formulas{};
    std::array<QLineEdit*, kQuestions> m_fields{};
    std::array<CalculatorButton*, kQuestions> m_calc{};
};
