#pragma once

#include "pages/TaskPage.h"
#include "result/FinalGrade.h"

#include <array>
#include <optional>

class BoxLabel;
class CandidateRecords;
class FormulaTextLabel;
class QAbstractButton;
class QButtonGroup;
class QLabel;

// Page 6, the last one: six statements to answer with "Ja" or "Nein". Its
// check also closes the test: it takes the end time, works out the final
// result and writes the history line into the session log.
class ComprehensionPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 6;
    static constexpr int kChoices = 2 * kQuestions;

    ComprehensionPage(TestFlow& flow, QWidget* parent);

    // What a draw of records r1..r6 shows and expects: the statements as
    // stored and, for question k, the index of the right button (2k for
    // "Ja", 2k + 1 for "Nein") as text with a leading blank.
    struct Draw {
        std::array<QString, kQuestions> statements;
        std::array<QString, kQuestions> answers;
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);
    // The button an expected answer names, rounded; -1 when it names none.
    static int expectedButton(const QString& answer);

    // The result of the test, as the check prepared it; prepared now when
    // the page could not be drawn and was never checked.
    const FinalResult& finalResult();

    // Selection feedback: the chosen word of each pair black, the other yellow.
    void JaNein1_Click();

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;
    void judged() override;

private:
    void prepareResult();
    // Leaves the finished test as a result file for the teacher.
    void handIn(CandidateRecords& records);

    std::array<FormulaTextLabel*, kQuestions> m_statements{};
    std::array<QButtonGroup*, kQuestions> m_pairs{};
    std::array<QAbstractButton*, kChoices> m_choices{};
    std::array<BoxLabel*, kChoices> m_words{};
    std::optional<FinalResult> m_result;
};
