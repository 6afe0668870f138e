#pragma once

#include "chem/Equation.h"
#include "pages/TaskPage.h"

#include <array>

class FormulaLabel;
class QLabel;
class QLineEdit;

// Page 9: five reaction equations without their coefficients; the student
// fills them in. Each equation counts as two tasks and is right only when
// all its coefficients are.
class EquationPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kRows = 5;
    static constexpr int kFields = 4 * kRows;
    static constexpr int kTasks = 2 * kRows;
    // Where the stored answer of field i lies in DrawnAnswers.
    static constexpr int answerSlot(int field) { return field + 1; }

    EquationPage(TestFlow& flow, QWidget* parent);

    // The four slots of one bank line, read as the page has always read it.
    static Equation::Slots rowFor(QStringView line);
    // A visible field left empty means the coefficient 1.
    static bool fillsWithOne(QStringView typed, bool hidden);
    // Compared as numbers: " 2 ", "02", "2.0" and "2x" are all 2.
    static bool coefficientRight(QStringView typed, QStringView expected);
    // The field Enter moves to from field i: the next one that is not
    // hidden, wrapping to 0 on reaching 19, so field 19 is left to the
    // mouse and the Tab key.
    static int nextField(int from, const std::array<bool, kFields>& hidden);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kTasks; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;
    // "H2 + O2 = H2O": the equation of a row as the bank writes its formulas.
    QString equationText(int row) const;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::array<bool, kFields> hiddenFields() const;

    std::array<QLineEdit*, kFields> m_fields{};   // Einsetz(i)
    std::array<FormulaLabel*, kFields> m_texts{}; // EText(i)
    std::array<QLabel*, kFields> m_corrections{}; // Einsetz2(i)
    std::array<QLabel*, kRows> m_plusLeft{};      // PlusL(r)
    std::array<QLabel*, kRows> m_plusRight{};     // PlusR(r)
    std::array<QLabel*, kRows> m_numbers{};       // "1." ... before each row
    std::array<QWidget*, kRows> m_rows{};
};
