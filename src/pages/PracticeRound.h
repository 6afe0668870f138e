#pragma once

#include "session/TestRecord.h"

#include <QDialog>
#include <QList>
#include <QPointer>

class ElementTable;
class QLabel;
class QPushButton;
class QTextBrowser;
class TaskBank;
class TaskPage;
class TestFlow;

// "Fehler üben": the tasks a test got wrong, set again on the test's own
// pages and judged by them, page by page, until all are right or the
// student stops. The pages run on a flow of their own, so the test's
// counters, its record, the session log and the result folder never see a
// practice answer.
class PracticeRound final : public QDialog {
    Q_OBJECT
public:
    // One practice page: a page of the test drawn again as it was, showing
    // only the tasks (places in its record) still to practise.
    struct Step {
        int page = 0;
        QList<int> draws;
        QList<int> items;
        bool operator==(const Step&) const = default;
    };
    // The steps for the wrong tasks of these pages, in the order of the
    // test; pages that cannot be drawn again (no draw noted) are left out.
    static QList<Step> plan(const QList<PageRecord>& pages);
    // The tasks of a step still wrong after its practice page was judged
    // (record: that page's record); empty items when all are right now.
    static Step stillWrong(const Step& step, const PageRecord& record);

    PracticeRound(const QList<PageRecord>& pages, const TaskBank& bank,
                  const ElementTable& elements, int expertLevel, QWidget* parent = nullptr);
    ~PracticeRound() override;

    // The page on show; nullptr between rounds.
    TaskPage* page() const { return m_page; }
    int round() const { return m_round; }
    // What the practice pages counted, apart from the test.
    const TestFlow& flow() const { return *m_flow; }

private:
    void startRound(QList<Step> steps);
    void showStep();
    void pageChecked();
    void pageDone();
    void showEnd();
    void dropPage();

    TestFlow* m_flow = nullptr;
    QWidget* m_card = nullptr;
    QWidget* m_end = nullptr;
    QLabel* m_endTitle = nullptr;
    QLabel* m_endText = nullptr;
    QPushButton* m_again = nullptr;
    QPushButton* m_back = nullptr;
    QLabel* m_progress = nullptr;
    QLabel* m_outcome = nullptr;
    QTextBrowser* m_hints = nullptr;
    QPushButton* m_stop = nullptr;
    QPointer<TaskPage> m_page;
    QList<Step> m_steps;
    QList<Step> m_wrong;
    int m_index = 0;
    int m_round = 0;
};
