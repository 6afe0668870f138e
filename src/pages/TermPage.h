#pragma once

#include "pages/TaskPage.h"

#include <QStringList>
#include <array>

class FormulaTextLabel;
class ChoiceList;
class QLabel;

// Page 4: four definitions, each with a list of every term of the bank to
// pick the defined one from.
class TermPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 4;

    TermPage(TestFlow& flow, QWidget* parent);

    // What a draw of entries r1..r4 shows and expects.
    struct Draw {
        std::array<QString, kQuestions> definitions; // right-trimmed
        std::array<QString, kQuestions> answers;     // the padded terms
        std::array<QString, kQuestions> corrections; // "Korrekter Begriff ist:  Atom"
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);
    // Every term of the table in table order, padded as stored: at the
    // normal level the expert terms stand in the lists as distractors.
    static QStringList allTerms(const TaskBank& bank);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;

private:
    std::array<FormulaTextLabel*, kQuestions> m_definitions{};
    std::array<ChoiceList*, kQuestions> m_lists{};
    std::array<QLabel*, kQuestions> m_corrections{};
};
