#include "pages/TaskPage.h"

#include "aids/ExpertLimits.h"
#include "controls/BoxLabel.h"
#include "controls/Look.h"
#include "pages/Marking.h"
#include "pages/PageHints.h"
#include "session/TestFlow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Moves the focus on Enter without swallowing the key.
class EnterMover final : public QObject {
public:
    EnterMover(QObject* parent, QWidget* target) : QObject(parent), m_target(target) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const auto key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                // A hidden field (a task a practice round leaves out) passes
                // the focus on along the ring.
                QWidget* target = m_target;
                for (int hops = 0; target && !target->isVisible() && hops < 64; ++hops) {
                    const EnterMover* next = of(target);
                    target = next ? next->m_target.data() : nullptr;
                }
                if (target && target->isVisible())
                    target->setFocus(Qt::OtherFocusReason);
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    // The mover installed on a field; the class has no meta-object of its
    // own, so findChild would take any child object for one.
    static const EnterMover* of(const QWidget* field) {
        for (const QObject* child : field->children()) {
            if (const auto* mover = dynamic_cast<const EnterMover*>(child))
                return mover;
        }
        return nullptr;
    }

    QPointer<QWidget> m_target;
};

// Fields and corrections shown one at a time while a page is drawn or
// judged would each lay the whole page out anew, rich-text formulas and
// all. The page's layouts rest meanwhile and lay it out once at the end.
class LayoutPause final {
public:
    explicit LayoutPause(QWidget* page) {
        for (QLayout* layout : page->findChildren<QLayout*>()) {
            // Only a widget's own layout acts; nested ones follow it.
            if (layout->isEnabled() && qobject_cast<QWidget*>(layout->parent())) {
                layout->setEnabled(false);
                m_paused.append(layout);
            }
        }
    }
    ~LayoutPause() {
        for (QLayout* layout : m_paused)
            layout->setEnabled(true);
        for (QLayout* layout : m_paused)
            layout->activate();
    }
    LayoutPause(const LayoutPause&) = delete;
    LayoutPause& operator=(const LayoutPause&) = delete;

private:
    QList<QPointer<QLayout>> m_paused;
};

} // namespace

TaskPage::TaskPage(TestFlow& flow, int pageNumber, int buttonNumber, QWidget* parent)
    : FlowPage(pageNumber, parent), m_flow(flow), m_buttonNumber(buttonNumber) {
    setObjectName(QStringLiteral("Seite(%1)").arg(pageNumber));
    setAutoFillBackground(true);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    m_title = makeLabel(QString(), "pageTitle");
    outer->addWidget(m_title);

    auto* inner = new QVBoxLayout;
    inner->setContentsMargins(28, 10, 28, 18);
    inner->setSpacing(10);
    m_hint = makeLabel(QString(), "hint");
    m_hint->setWordWrap(true);
    inner->addWidget(m_hint);

    m_body = new QWidget(this);
    m_grid = new QGridLayout(m_body);
    m_grid->setContentsMargins(0, 8, 0, 0);
    m_grid->setHorizontalSpacing(14);
    m_grid->setVerticalSpacing(10);
    inner->addWidget(m_body);

    // The notice sits on a rounded box of its own.
    auto* notice = new BoxLabel(QString(), this);
    notice->setTextFormat(Qt::PlainText);
    Look::setRole(notice, QStringLiteral("notice"));
    m_notice = notice;
    m_notice->setWordWrap(true);
    m_notice->setObjectName(QStringLiteral("BankNotice(%1)").arg(pageNumber));
    m_notice->hide();
    inner->addWidget(m_notice);
    inner->addStretch(1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const QString pair = QStringLiteral("OKS%1").arg(buttonNumber);
    m_ok = new QPushButton(QStringLiteral("&OK"), this);
    m_ok->setObjectName(pair + QStringLiteral("(0)"));
    m_next = new QPushButton(QStringLiteral("&Weiter"), this);
    m_next->setObjectName(pair + QStringLiteral("(1)"));
    m_next->hide();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_next);
    inner->addLayout(buttons);
    outer->addLayout(inner, 1);

    connect(m_ok, &QPushButton::clicked, this, &TaskPage::check);
    connect(m_next, &QPushButton::clicked, this, &TaskPage::goOn);
    hide();
}

SessionState& TaskPage::state() {
    return m_flow.state();
}
const TaskBank& TaskPage::bank() const {
    return m_flow.bank();
}
bool TaskPage::expert() const {
    return ExpertLimits::drawsAllRecords(m_flow.state().ExpertLevel);
}

void TaskPage::setHeading(const QString& title, const QString& hint) {
    m_title->setText(title);
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty());
}

QLabel* TaskPage::makeLabel(const QString& text, const char* role) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    if (role)
        Look::setRole(label, QString::fromLatin1(role));
    return label;
}

QLabel* TaskPage::makeNamed(const QString& name, const char* role) {
    QLabel* label = makeLabel(QString(), role);
    label->setObjectName(name);
    return label;
}

QLineEdit* TaskPage::makeInput(const QString& name) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    return edit;
}

void TaskPage::chainEnter(const QList<QWidget*>& fields, const std::function<int(int)>& next) {
    for (int i = 0; i < fields.size(); ++i) {
        const int to = next(i);
        if (to >= 0 && to < fields.size())
            fields[i]->installEventFilter(new EnterMover(fields[i], fields[to]));
    }
}

bool TaskPage::focusNextPrevChild(bool next) {
    // The start page stays under the task pages, so Qt's own chain would
    // lead into it; and the buttons, made first, would come before the
    // fields.
    QList<QWidget*> stops;
    for (QWidget* w = nextInFocusChain(); w != this; w = w->nextInFocusChain()) {
        if (w == m_ok || w == m_next || !isAncestorOf(w) || !w->isVisibleTo(this) ||
            !w->isEnabled() || (w->focusPolicy() & Qt::TabFocus) != Qt::TabFocus)
            continue;
        if (auto* b = qobject_cast<QAbstractButton*>(w)) {
            const QButtonGroup* group = b->group();
            if (group && group->exclusive() && group->checkedButton() &&
                group->checkedButton() != b)
                continue;
        }
        stops << w;
    }
    for (QWidget* w : {static_cast<QWidget*>(m_ok), static_cast<QWidget*>(m_next)})
        if (w->isVisibleTo(this) && w->isEnabled())
            stops << w;
    if (stops.isEmpty())
        return QWidget::focusNextPrevChild(next);
    QWidget* now = QApplication::focusWidget();
    qsizetype at = stops.indexOf(now);
    // From a button passed over (not the chosen one of its group), go on
    // from the group's chosen one.
    if (at < 0)
        if (auto* b = qobject_cast<QAbstractButton*>(now); b && b->group())
            at = stops.indexOf(b->group()->checkedButton());
    const qsizetype n = stops.size();
    const qsizetype to = at < 0 ? (next ? 0 : n - 1) : (at + (next ? 1 : n - 1)) % n;
    stops[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

QString TaskPage::bankNotice() const {
    return m_notice->isVisible() ? m_notice->text() : QString();
}

QString TaskPage::bankProblem() const {
    const TaskBank& b = m_flow.bank();
    QStringList problems;
    for (const Need& need : needs()) {
        const int available =
            need.allRecords ? b.count(need.section) : b.usableCount(need.section, expert());
        if (available >= need.entries)
            continue;
        const QString where = (need.allRecords || expert())
                                  ? QStringLiteral("insgesamt")
                                  : QStringLiteral("für die normale Stufe");
        problems << QStringLiteral("Der Abschnitt %1 „%2“ (%3) der Datei labquiz.dat enthält %4 "
                                   "nur %5 %6; diese Seite braucht mindestens %7.")
                        .arg(int(need.section) + 1)
                        .arg(TaskBank::sectionTitle(need.section),
                             TaskBank::sectionName(need.section), where)
                        .arg(available)
                        .arg(available == 1 ? QStringLiteral("Eintrag")
                                            : QStringLiteral("Einträge"))
                        .arg(need.entries);
    }
    const QString extra = extraBankProblem();
    if (!extra.isEmpty())
        problems << extra;
    if (problems.isEmpty())
        return {};
    QString text = QStringLiteral("Diese Seite kann nicht gestellt werden.\n\n");
    if (!b.fileRead)
        text +=
            QStringLiteral("Die Datei labquiz.dat wurde nicht gefunden oder konnte nicht gelesen "
                           "werden (%1).\n\n")
                .arg(m_flow.bankPath());
    text += problems.join(u'\n');
    text += QStringLiteral("\n\nGrundeinträge für die normale Stufe stehen vor der Zeile „ææ“. "
                           "Mit „Weiter“ geht der Test weiter.");
    return text;
}

QList<int> TaskPage::drawDistinct(TaskBank::Section section, int count, bool allRecords) {
    const TaskBank& b = m_flow.bank();
    const int max = allRecords ? b.count(section) : b.usableCount(section, expert());
    QList<int> drawn;
    int ex[6] = {0, 0, 0, 0, 0, 0};
    for (int k = 0; k < count; ++k) {
        const int n = m_flow.RandomBetween(max, ex[0], ex[1], ex[2], ex[3], ex[4], ex[5]);
        drawn.append(n);
        if (k < 6)
            ex[k] = n;
    }
    return drawn;
}

void TaskPage::generate() {
    const LayoutPause pause(this);
    reset();
    for (QWidget* w : {static_cast<QWidget*>(m_ok), static_cast<QWidget*>(m_next)})
        w->setEnabled(true);
    const QString problem = bankProblem();
    if (!problem.isEmpty()) {
        m_body->hide();
        m_notice->setText(problem);
        m_notice->show();
        m_ok->hide();
        m_next->show();
        m_next->setFocus();
        m_checked = true;
        return;
    }
    m_notice->hide();
    m_body->show();
    m_ok->show();
    m_next->hide();
    m_checked = false;
    m_flow.clearDrawn();
    draw();
    m_draws = m_flow.drawn();
    hideUnpractised();
    if (QWidget* first = taskWidgets(m_practised.value(0, -1)).value(0))
        first->setFocus();
}

void TaskPage::hideUnpractised() {
    if (m_practised.isEmpty())
        return;
    for (int i = 0; i < taskCount(); ++i) {
        if (m_practised.contains(i))
            continue;
        for (QWidget* w : taskWidgets(i))
            w->hide();
    }
}

void TaskPage::check() {
    if (m_checked)
        return;
    m_checked = true;
    Marking marking(state(), pageNumber(), taskCount());
    bool praise = false;
    {
        const LayoutPause pause(this);
        praise = judge(marking);
        // Judging shows corrections, also for the tasks left out.
        hideUnpractised();
        m_ok->hide();
        m_next->show();
    }
    PageRecord record = marking.record();
    PageHints::fill(record, m_flow.elements());
    record.draws = m_draws;
    state().Pages.append(std::move(record));
    judged();
    if (praise) {
        m_flow.PlayJingle(QString::fromLatin1(TestFlow::kJingle));
        m_flow.ShowPraise(m_buttonNumber);
    }
    m_next->setFocus();
    m_flow.UpdateScore();
    Q_EMIT checked();
}

void TaskPage::goOn() {
    leaving();
    m_flow.pageDone(pageNumber());
}
