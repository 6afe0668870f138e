#pragma once

#include "pages/TaskPage.h"

#include <QStringList>
#include <array>
#include <functional>

class ChoiceList;
class QLabel;

// Page 3: three chemical terms, each with a list of seven definitions to
// pick the right one from.
class DefinitionPage final : public TaskPage {
    Q_OBJECT
public:
    static constexpr int kQuestions = 3;
    static constexpr int kWrongChoices = 6;

    DefinitionPage(TestFlow& flow, QWidget* parent);

    // What a draw of entries k1..k4 shows and expects. k4 is never asked;
    // it only keeps one more definition out of every list. Each list holds
    // the right definition first, then the wrong ones in the order drawn.
    struct Draw {
        std::array<QString, kQuestions> terms;       // right-trimmed
        std::array<QStringList, kQuestions> choices; // padded, as stored
        std::array<QString, kQuestions> answers;     // padded, as stored
    };
    // drawWrong gives an entry number of the whole table other than k1..k4.
    static Draw drawFor(const TaskBank& bank, const QList<int>& drawn,
                        const std::function<int()>& drawWrong);
    // Six definitions for one list that differ from each other and from the
    // definitions of the drawn entries, compared as stored. Entries are
    // taken in the order drawWrong offers them; should it keep offering
    // used ones, the first unused entry of the table is taken instead, and
    // a table without enough different texts gives fewer rather than
    // drawing forever.
    static QStringList wrongDefinitions(const BankTable<DefinitionRecord>& table,
                                        const QList<int>& drawn,
                                        const std::function<int()>& drawWrong);
    // Different definition texts of the whole table.
    static int distinctDefinitions(const BankTable<DefinitionRecord>& table);

    // Text sizes of the lists in pixels, largest first.
    static constexpr std::array<int, 3> kTextSizes{13, 12, 11};

protected:
    QList<Need> needs() const override;
    QString extraBankProblem() const override;
    int taskCount() const override { return kQuestions; }
    void reset() override;
    void draw() override;
    bool judge(Marking& marking) override;
    QList<QWidget*> taskWidgets(int item) const override;

private:
    // Chooses the lists' text size so that all seven definitions of every
    // list show without scrolling.
    void fitLists();

    std::array<QLabel*, kQuestions> m_terms{};
    std::array<ChoiceList*, kQuestions> m_lists{};
};
