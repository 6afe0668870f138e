#pragma once

#include "session/FlowPage.h"
#include "session/TaskBank.h"

#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class Marking;
class TestFlow;
struct SessionState;

// What every task page has: a title bar, a hint, a grid of tasks, and the
// button pair "&OK" (checks once) / "&Weiter" (goes on). A page draws its
// tasks when it slides in and judges them when "&OK" is pressed; the frame
// around that (counting, colours, praise, score) lives here so that each
// page only says what to draw and how to judge.
class TaskPage : public FlowPage {
    Q_OBJECT
public:
    // pageNumber: the container number (Seite(n)); buttonNumber: the number
    // in the name of the page's button pair (OKS<n>).
    TaskPage(TestFlow& flow, int pageNumber, int buttonNumber, QWidget* parent);

    int buttonNumber() const { return m_buttonNumber; }
    QPushButton* okButton() const { return m_ok; }
    QPushButton* nextButton() const { return m_next; }
    bool isChecked() const { return m_checked; }
    // The notice shown instead of the tasks when the bank cannot serve the page.
    QString bankNotice() const;

    // Draws the page afresh (GenerateTest's block for this page).
    void generate() override;
    // "&OK": marks the page once.
    void check();
    // "&Weiter".
    void goOn();

    // Shows only these tasks (by their place in the page's record) from the
    // next draw on; the others stay hidden for the life of the page, so a
    // practice round makes a fresh page for each set.
    void setPractised(QList<int> items) { m_practised = std::move(items); }

Q_SIGNALS:
    // "&OK" has judged the page and its record is in the session.
    void checked();

protected:
    // What the page draws from the bank: distinct entries of a section.
    struct Need {
        TaskBank::Section section;
        int entries;
        bool allRecords = false; // draws from all records at either level
    };

    virtual QList<Need> needs() const = 0;
    virtual int taskCount() const = 0;
    // Clears the fields and marks of an earlier draw.
    virtual void reset() {}
    // Draws the tasks; called only when the bank can serve the page.
    virtual void draw() = 0;
    // Judges the answers; returns true when the page earns the praise.
    virtual bool judge(Marking& marking) = 0;
    // The page's record is in the session now: what follows a check.
    virtual void judged() {}
    // Further reasons why the bank cannot serve the page; empty when it can.
    virtual QString extraBankProblem() const { return {}; }
    // "&Weiter" was pressed: what the page tidies up before the next one
    // slides in.
    virtual void leaving() {}
    // The widgets that show task `item` (its place in the record), the one
    // the student answers in first; empty past the last task.
    virtual QList<QWidget*> taskWidgets(int item) const = 0;
    // Tab stays on the page: its fields in order, then "&OK" / "&Weiter",
    // then round again. Of an option group with a choice, only the chosen
    // button is a stop (arrow keys move within the group).
    bool focusNextPrevChild(bool next) override;

    TestFlow& flow() { return m_flow; }
    const TestFlow& flow() const { return m_flow; }
    SessionState& state();
    const TaskBank& bank() const;
    bool expert() const;

    // Draws count pairwise distinct record numbers of a section by the level
    // rule, each draw excluding the earlier ones (at most six are excluded,
    // as RandomBetween takes six).
    QList<int> drawDistinct(TaskBank::Section section, int count, bool allRecords = false);

    void setHeading(const QString& title, const QString& hint);
    QGridLayout* grid() const { return m_grid; }
    QLabel* makeLabel(const QString& text, const char* role = nullptr);
    QLabel* makeNamed(const QString& name, const char* role = nullptr);
    QLineEdit* makeInput(const QString& name);
    // Enter in fields[i] moves the focus to fields[next(i)].
    void chainEnter(const QList<QWidget*>& fields, const std::function<int(int)>& next);

private:
    QString bankProblem() const;
    void hideUnpractised();

    TestFlow& m_flow;
    int m_buttonNumber;
    bool m_checked = false;
    QList<int> m_draws;
    QList<int> m_practised;
    QLabel* m_title;
    QLabel* m_hint;
    QWidget* m_body;
    QGridLayout* m_grid;
    QLabel* m_notice;
    QPushButton* m_ok;
    QPushButton* m_next;
};
