#pragma once

#include "pages/TaskPage.h"

#include <QStringList>
#include <array>

class FormulaLabel;
class IonMakeupLabel;
class QLabel;
class TermInput;

// Page 11: three substances named, to be given as a formula; three
// formulas shown, to be named. A wrong answer gets the right one and the
// salt's ions beside it.
class SubstancePage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 6;
    static constexpr int kFormulaTasks = 3; // tasks 0-2 ask for a formula, 3-5 for a name

    SubstancePage(TestFlow& flow, QWidget* parent);

    // What a draw of six records shows and expects; apart from the widgets
    // so that it can be checked on its own.
    struct Draw {
        std::array<QString, kQuestions> prompts;  // 0-2 names, 3-5 formulas
        std::array<QString, kQuestions> formulas; // the first formula of each record
        std::array<QStringList, kQuestions> ions; // the ions of each record
        std::array<QString, kQuestions> answers;  // 0-2 "|"-joined formulas, 3-5 the name line
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);

    // A key with "|" accepts any of its pieces, one without only itself;
    // the typed text counts with its outer blanks cut, case counts.
    static bool accepts(QStringView typed, QStringView key);
    // What a wrong answer is shown: the first piece of the key.
    static QString correction(QStringView key);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;
    void leaving() override;

private:
    void fitTitle(int task);

    std::array<QLabel*, kQuestions> m_names{};          // Substanz(i), tasks 0-2
    std::array<FormulaLabel*, kQuestions> m_formulas{}; // lab_SubsTerm(i), tasks 3-5
    std::array<TermInput*, kQuestions> m_inputs{};      // Substein(i)
    std::array<QLabel*, kQuestions> m_corrections{};    // lab_SubCorrect(i)
    std::array<QLabel*, kQuestions> m_rightIs{};        // its caption
    std::array<IonMakeupLabel*, kQuestions> m_titles{}; // lab_SubsTermTitle(i)
};
