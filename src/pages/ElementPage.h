#pragma once

#include "pages/TaskPage.h"

#include <array>

class QLabel;
class QLineEdit;

// Page 1: three element names to give the symbol of, three symbols to give
// the name of.
class ElementPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 6;

    ElementPage(TestFlow& flow, QWidget* parent);

    // What a draw of records k1..k6 shows and expects; apart from the
    // widgets so that it can be checked on its own.
    struct Draw {
        std::array<QString, kQuestions> prompts; // 0-2 names, 3-5 symbols
        std::array<QString, kQuestions> answers; // 0-2 symbols, 3-5 "*"-joined names
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
    std::array<QLabel*, kQuestions> m_prompts{};
    std::array<QLineEdit*, 3> m_symbols{};
    std::array<QLineEdit*, 3> m_names{};
};
