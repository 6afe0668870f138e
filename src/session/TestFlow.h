#pragma once

#include "session/FlowPage.h"
#include "session/RandomSource.h"
#include "session/SessionState.h"
#include "session/TaskBank.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

class QLabel;
class QWidget;
class CandidateRecords;
class ElementTable;
class GradeMark;
class PraisePanel;
class TaskPage;

// The frame every page plugs into: page order, the slide from page to page,
// drawing a page afresh when it comes in, the two counters and the running
// grade, and the praise panel. One per main window.
class TestFlow final : public QObject {
    Q_OBJECT
public:
    static constexpr int kLastPage = 12;
    static constexpr int kSlideSteps = 40;
    static const char* const kJingle; // "T255 L16 gdgdg"

    explicit TestFlow(QWidget* holder, QObject* parent = nullptr);
    ~TestFlow() override;

    SessionState& state() { return m_state; }
    const SessionState& state() const { return m_state; }
    TaskBank& bank() { return m_bank; }
    const TaskBank& bank() const { return m_bank; }
    void setBank(TaskBank bank, const QString& path);
    QString bankPath() const { return m_bankPath; }

    void setRandomSource(std::unique_ptr<RandomSource> source);
    RandomSource& randomSource() { return *m_random; }
    int RandomBetween(int max, int ex1 = 0, int ex2 = 0, int ex3 = 0, int ex4 = 0, int ex5 = 0,
                      int ex6 = 0);
    // What RandomBetween gave since the last clearDrawn(), so that a page
    // can note its draw.
    void clearDrawn() { m_drawn.clear(); }
    const QList<int>& drawn() const { return m_drawn; }
    // RandomBetween gives these numbers first, then draws again: a page
    // drawn after this sets the tasks of an earlier draw.
    void replay(QList<int> draws) { m_replay = std::move(draws); }

    // The page that follows n in a test (0 → 1 → 2 → 11 → 8 → 12 → 9 → 3 →
    // 4 → 5 → 6); -1 after page 6, where the result follows.
    static int nextPageAfter(int page);
    static bool isPageNumber(int page) {
        return page >= 0 && page <= kLastPage && page != 7 && page != 10;
    }

    void setStartPage(QWidget* page, std::function<void()> generate);
    void addPage(FlowPage* page);
    // A page made only when it is first needed (shown, drawn or looked up):
    // the start page comes up without building the nine task pages.
    void addPageFactory(int number, std::function<FlowPage*()> make);
    // Builds every page not built yet.
    void buildAllPages();
    // Builds the next page in the order of a test that is not built yet;
    // false when there is none left.
    bool buildNextPage();
    QWidget* pageWidget(int number) const;
    FlowPage* flowPage(int number) const;
    // The page as the kind of page its caller knows (pages/TaskPage by
    // default); the flow itself only needs what every page has.
    template <class Page = TaskPage> Page* taskPage(int number) const {
        return static_cast<Page*>(flowPage(number));
    }

    // The element table the main window read; the hints on wrong answers
    // look names and symbols up there. Without one, the built-in table.
    void setElements(const ElementTable* elements) { m_elements = elements; }
    const ElementTable& elements() const;

    // Where the pages keep what a teacher reads later (the session log).
    void setRecords(CandidateRecords* records) { m_records = records; }
    CandidateRecords* records() const { return m_records; }

    void setScoreBoard(QLabel* tasks, QLabel* correct, GradeMark* mark);
    void setPraisePanel(PraisePanel* panel);
    PraisePanel* praisePanel() const;
    // Milliseconds each slide step lasts at least; 0 slides as fast as painting allows.
    void setSlideStepMs(int ms) { m_slideStepMs = ms; }

    void ShowPage(int target);
    void GenerateTest(int page);
    void UpdateScore();
    void ShowPraise(int buttonNumber);
    // The per-page tune is switched off on purpose; only the text is kept.
    void PlayJingle(const QString& tune);
    int PreviousPage() const { return m_state.PreviousPage; }

    bool isSliding() const { return m_sliding; }
    int jingleCalls() const { return m_jingleCalls; }
    QString lastJingle() const { return m_lastJingle; }
    int praiseCalls() const { return m_praiseCalls; }
    int lastPraise() const { return m_lastPraise; }

    // Page 6's "&Weiter": the test is over.
    void finishTest();
    // A page's "&Weiter": the next page of the test, or its end. A flow that
    // runs pages outside a test (a practice round) decides itself.
    void pageDone(int page);
    void setOnward(std::function<void(int page)> onward) { m_onward = std::move(onward); }

Q_SIGNALS:
    void hidePeriodicTableRequested();
    void pageShown(int page);
    void testFinished();

private:
    void slideOut(QWidget* page);
    void slideIn(QWidget* page, int number);
    void pause();

    QWidget* m_holder;
    SessionState m_state;
    TaskBank m_bank;
    QString m_bankPath;
    std::unique_ptr<RandomSource> m_random;
    QPointer<QWidget> m_startPage;
    std::function<void()> m_generateStart;
    mutable QMap<int, QPointer<FlowPage>> m_pages;
    QMap<int, std::function<FlowPage*()>> m_factories;
    QPointer<QLabel> m_tasksLabel;
    QPointer<QLabel> m_correctLabel;
    QPointer<GradeMark> m_mark;
    QPointer<PraisePanel> m_praise;
    CandidateRecords* m_records = nullptr;
    const ElementTable* m_elements = nullptr;
    int m_slideStepMs = 6;
    bool m_sliding = false;
    int m_jingleCalls = 0;
    QString m_lastJingle;
    int m_praiseCalls = 0;
    int m_lastPraise = 0;
    QList<int> m_drawn;
    QList<int> m_replay;
    std::function<void(int)> m_onward;
};
