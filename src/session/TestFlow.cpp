#include "session/TestFlow.h"

#include "chem/ElementTable.h"
#include "controls/GradeMark.h"
#include "controls/PraisePanel.h"
#include "session/Grades.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QThread>
#include <QWidget>
#include <cmath>

const char* const TestFlow::kJingle = "T255 L16 gdgdg";

TestFlow::TestFlow(QWidget* holder, QObject* parent)
    : QObject(parent), m_holder(holder), m_random(std::make_unique<ClockRandomSource>()) {}

TestFlow::~TestFlow() = default;

const ElementTable& TestFlow::elements() const {
    if (m_elements)
        return *m_elements;
    static const ElementTable builtIn = ElementTable::load(QStringLiteral(":/data/elements.dat"));
    return builtIn;
}

void TestFlow::setBank(TaskBank bank, const QString& path) {
    m_bank = std::move(bank);
    m_bankPath = path;
}

void TestFlow::setRandomSource(std::unique_ptr<RandomSource> source) {
    if (source)
        m_random = std::move(source);
}

int TestFlow::RandomBetween(int max, int ex1, int ex2, int ex3, int ex4, int ex5, int ex6) {
    const int n = m_replay.isEmpty() ? ::RandomBetween(*m_random, max, ex1, ex2, ex3, ex4, ex5, ex6)
                                     : m_replay.takeFirst();
    m_drawn.append(n);
    return n;
}

int TestFlow::nextPageAfter(int page) {
    switch (page) {
    case 0:
        return 1;
    case 1:
        return 2;
    case 2:
        return 11;
    case 11:
        return 8;
    case 8:
        return 12;
    case 12:
        return 9;
    case 9:
        return 3;
    case 3:
        return 4;
    case 4:
        return 5;
    case 5:
        return 6;
    default:
        return -1;
    }
}

void TestFlow::setStartPage(QWidget* page, std::function<void()> generate) {
    m_startPage = page;
    m_generateStart = std::move(generate);
}

void TestFlow::addPage(FlowPage* page) {
    m_pages.insert(page->pageNumber(), page);
}

void TestFlow::addPageFactory(int number, std::function<FlowPage*()> make) {
    m_factories.insert(number, std::move(make));
}

void TestFlow::buildAllPages() {
    for (auto it = m_factories.cbegin(); it != m_factories.cend(); ++it)
        flowPage(it.key());
}

bool TestFlow::buildNextPage() {
    for (int page = nextPageAfter(0); page > 0; page = nextPageAfter(page)) {
        if (m_factories.contains(page) && !m_pages.value(page)) {
            flowPage(page);
            return true;
        }
    }
    for (auto it = m_factories.cbegin(); it != m_factories.cend(); ++it) {
        if (!m_pages.value(it.key())) {
            flowPage(it.key());
            return true;
        }
    }
    return false;
}

QWidget* TestFlow::pageWidget(int number) const {
    if (number == 0)
        return m_startPage;
    return flowPage(number);
}

FlowPage* TestFlow::flowPage(int number) const {
    FlowPage* page = m_pages.value(number);
    if (!page && m_factories.contains(number)) {
        page = m_factories.value(number)();
        m_pages.insert(number, page);
    }
    return page;
}

void TestFlow::setScoreBoard(QLabel* tasks, QLabel* correct, GradeMark* mark) {
    m_tasksLabel = tasks;
    m_correctLabel = correct;
    m_mark = mark;
}

void TestFlow::setPraisePanel(PraisePanel* panel) {
    m_praise = panel;
}
PraisePanel* TestFlow::praisePanel() const {
    return m_praise;
}

void TestFlow::pause() {
    if (m_slideStepMs <= 0) {
        QCoreApplication::processEvents();
        return;
    }
    QElapsedTimer t;
    t.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, m_slideStepMs);
        if (t.elapsed() < m_slideStepMs)
            QThread::msleep(1);
    } while (t.elapsed() < m_slideStepMs);
}

void TestFlow::slideOut(QWidget* page) {
    QPointer<QWidget> guard(page);
    const int w = m_holder->width();
    const int left = page->x();
    // A step of 0 (page already at the edge) would never get there.
    const int step = qMax(1, static_cast<int>(std::lround((w - left) / double(kSlideSteps))));
    for (int x = left; x <= w; x += step) {
        page->move(x, page->y());
        page->repaint();
        pause();
        if (!guard)
            return;
    }
    page->hide();
}

void TestFlow::slideIn(QWidget* page, int number) {
    QPointer<QWidget> guard(page);
    const int w = m_holder->width();
    page->move(w, 0);
    page->raise();
    page->show();
    GenerateTest(number);
    if (!guard)
        return;
    if (m_praise)
        m_praise->raise();
    const int step = qMax(1, static_cast<int>(std::lround(w / double(kSlideSteps))));
    for (int x = w; x >= 0; x -= step) {
        page->move(x, 0);
        page->repaint();
        pause();
        if (!guard)
            return;
    }
    page->move(0, 0);
}

void TestFlow::ShowPage(int target) {
    // A second "Weiter" while a slide runs must not start another slide.
    if (m_sliding)
        return;
    m_sliding = true;
    Q_EMIT hidePeriodicTableRequested();
    if (m_praise)
        m_praise->hide();

    QPointer<TestFlow> self(this);
    for (int i = 1; i <= kLastPage; ++i) {
        if (i == target || !isPageNumber(i))
            continue;
        QWidget* page = m_pages.value(i);
        if (page && page->isVisible()) {
            slideOut(page);
            if (!self)
                return;
            m_state.PreviousPage = i;
        }
        QCoreApplication::processEvents();
        if (!self)
            return;
    }
    if (target >= 1 && isPageNumber(target)) {
        if (QWidget* page = flowPage(target)) {
            slideIn(page, target);
            if (!self)
                return;
        }
        QCoreApplication::processEvents();
        if (!self)
            return;
    }
    m_sliding = false;
    Q_EMIT pageShown(target);
}

void TestFlow::GenerateTest(int page) {
    if (page == 0) {
        if (m_generateStart)
            m_generateStart();
        return;
    }
    if (FlowPage* p = flowPage(page))
        p->generate();
}

void TestFlow::UpdateScore() {
    // A screen reader reads a counter with its caption, not as a bare number.
    if (m_tasksLabel) {
        m_tasksLabel->setText(Grades::counterText(m_state.TasksSoFar));
        m_tasksLabel->setAccessibleName(
            QStringLiteral("Aufgaben bisher: %1").arg(m_state.TasksSoFar));
    }
    if (m_correctLabel) {
        m_correctLabel->setText(Grades::counterText(m_state.CorrectSoFar));
        m_correctLabel->setAccessibleName(
            QStringLiteral("davon richtig: %1").arg(m_state.CorrectSoFar));
    }
    m_state.RunningGrade =
        Grades::runningGrade(Grades::ratio(m_state.CorrectSoFar, m_state.TasksSoFar));
    if (m_mark)
        m_mark->setText(m_state.RunningGrade);
}

void TestFlow::ShowPraise(int buttonNumber) {
    ++m_praiseCalls;
    m_lastPraise = buttonNumber;
    if (!m_praise)
        return;
    m_praise->adjustSize();
    // Bottom left of the card, clear of the page's buttons.
    m_praise->move(24, m_holder->height() - m_praise->height() - 70);
    m_praise->show();
    m_praise->raise();
}

void TestFlow::PlayJingle(const QString& tune) {
    ++m_jingleCalls;
    m_lastJingle = tune;
}

void TestFlow::finishTest() {
    Q_EMIT testFinished();
}

void TestFlow::pageDone(int page) {
    if (m_onward) {
        m_onward(page);
        return;
    }
    const int next = nextPageAfter(page);
    if (next < 0)
        finishTest();
    else
        ShowPage(next);
}
