#pragma once

#include "pages/TaskPage.h"

#include <array>

class QButtonGroup;
class QLabel;
class QRadioButton;

// Page 5: four ions, each with a row of seven choices from -3 to +3 for its
// preferred charge number.
class IonChargePage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kIons = 4;
    static constexpr int kCharges = 7;
    static constexpr int kButtons = kIons * kCharges;
    static constexpr int kLowestCharge = -3;

    IonChargePage(TestFlow& flow, QWidget* parent);

    // Button i stands for ion i div 7 and charge (i mod 7) - 3.
    static QString caption(int column); // "-3", ..., "0", ..., "+3"
    static bool chargeFits(int charge) { return charge >= -3 && charge <= 3; }
    // The right button of a row, 7·row + charge + 3, summed as the bank's
    // 16-bit numbers; outside the row when the charge does not fit.
    static int answerButton(int row, int charge);
    // Where Enter on button i moves the focus: to the first button of the
    // next row, from the last row back to the first; -1 for button 15 (the
    // "-2" of the third row), which keeps the focus.
    static int enterTarget(int button);

    struct Draw {
        std::array<QString, kIons> names;   // as stored, padded
        std::array<QString, kIons> answers; // decimal button numbers
    };
    static Draw drawFor(const TaskBank& bank, const QList<int>& records);

protected:
    QList<Need> needs() const override;
    QString extraBankProblem() const override;
    int taskCount() const override { return kIons; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;

private:
    std::array<QLabel*, kIons> m_names{};
    std::array<QButtonGroup*, kIons> m_groups{};
    std::array<QRadioButton*, kButtons> m_buttons{};
};
