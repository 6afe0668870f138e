#pragma once

#include "pages/TaskPage.h"

#include <array>

class QLabel;
class QLineEdit;

// Page 2: two number syllables to give the number of, two numbers to give
// the syllable of.
class NumberSyllablePage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 4;

    explicit NumberSyllablePage(TestFlow& flow, QWidget* parent);

    // What a draw of records k1..k4 shows and expects, apart from the widgets.
    struct Draw {
        std::array<QString, kQuestions> prompts; // 0-1 syllables, 2-3 numbers
        std::array<QString, kQuestions> answers; // 0-1 numbers, 2-3 "*"-joined syllables
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);

    // A typed number: outer blanks cut, then the same characters (so "02" is
    // not "2"). A typed syllable: one of the "*"-separated ones, case counts.
    static bool numberRight(QStringView typed, QStringView expected);
    static bool syllableRight(QStringView typed, QStringView key);
    // The field's text after a wrong answer; the key is shown as stored.
    static QString correction(QStringView typed, QStringView expected);

protected:
    QList<Need> needs() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;

private:
    std::array<QLabel*, kQuestions> m_prompts{};
    std::array<QLineEdit*, kQuestions> m_fields{};
};
