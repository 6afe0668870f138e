#include "pages/PracticeRound.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"
#include "pages/PageSet.h"
#include "pages/TaskPage.h"
#include "session/TestFlow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

constexpr int kCardWidth = 960;
constexpr int kCardHeight = 520;
constexpr int kSideWidth = 330;

int taskCount(const QList<PracticeRound::Step>& steps) {
    int n = 0;
    for (const PracticeRound::Step& step : steps)
        n += static_cast<int>(step.items.size());
    return n;
}

QString tasksText(int n) {
    return n == 1 ? QStringLiteral("1 Aufgabe") : QStringLiteral("%1 Aufgaben").arg(n);
}

} // namespace

QList<PracticeRound::Step> PracticeRound::plan(const QList<PageRecord>& pages) {
    QList<Step> steps;
    for (const PageRecord& record : pages) {
        if (record.draws.isEmpty())
            continue;
        Step step{record.page, record.draws, {}};
        for (int i = 0; i < record.items.size(); ++i) {
            if (!record.items[i].right)
                step.items.append(i);
        }
        if (!step.items.isEmpty())
            steps.append(step);
    }
    return steps;
}

PracticeRound::Step PracticeRound::stillWrong(const Step& step, const PageRecord& record) {
    Step left{step.page, step.draws, {}};
    for (int i : step.items) {
        if (i >= record.items.size() || !record.items[i].right)
            left.items.append(i);
    }
    return left;
}

PracticeRound::PracticeRound(const QList<PageRecord>& pages, const TaskBank& bank,
                             const ElementTable& elements, int expertLevel, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("PracticeRound"));
    setWindowTitle(QStringLiteral("Fehler üben"));
    // A soft grey around the white card, so the card reads as the page.
    Look::setFill(this, QColor(0xec, 0xef, 0xf1));

    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(QStringLiteral("Fehler üben"), this);
    Look::setText(heading, 20, QFont::Bold, Look::accentDark());
    layout->addWidget(heading);
    auto* intro = new QLabel(QStringLiteral("Die Aufgaben, die im Test falsch waren – ohne Note, "
                                            "sie zählen nicht zum Test."),
                             this);
    Look::setRole(intro, QStringLiteral("hint"));
    layout->addWidget(intro);

    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    m_card = new QWidget(this);
    m_card->setObjectName(QStringLiteral("PracticeCard"));
    m_card->setFixedSize(kCardWidth, kCardHeight);
    Look::setFill(m_card, Qt::white);
    row->addWidget(m_card, 0, Qt::AlignTop);

    auto* side = new QVBoxLayout;
    side->setSpacing(10);
    m_progress = new QLabel(this);
    m_progress->setObjectName(QStringLiteral("PracticeProgress"));
    m_progress->setWordWrap(true);
    Look::setText(m_progress, 15, QFont::Bold, Look::ink());
    side->addWidget(m_progress);
    m_outcome = new QLabel(this);
    m_outcome->setObjectName(QStringLiteral("PracticeOutcome"));
    m_outcome->setWordWrap(true);
    Look::setText(m_outcome, 15, QFont::Normal, Look::ink());
    side->addWidget(m_outcome);
    m_hints = new QTextBrowser(this);
    m_hints->setObjectName(QStringLiteral("PracticeHints"));
    m_hints->setAccessibleName(QStringLiteral("Tipps zu den falschen Antworten dieser Seite"));
    m_hints->setOpenLinks(false);
    // Read by the screen reader and scrolled with the keys, but not a stop
    // between the answer fields and "Weiter".
    m_hints->setFocusPolicy(Qt::ClickFocus);
    Look::setText(m_hints, 14, QFont::Normal, Look::ink());
    m_hints->hide();
    side->addWidget(m_hints, 1);
    side->addStretch(0);
    m_stop = new QPushButton(QStringLiteral("Übung &beenden"), this);
    m_stop->setObjectName(QStringLiteral("PracticeStop"));
    m_stop->setAccessibleName(
        QStringLiteral("Übung beenden und zur Fehlerliste zurückkehren (Esc)"));
    m_stop->setAutoDefault(false);
    side->addWidget(m_stop, 0, Qt::AlignRight);
    auto* sideWidget = new QWidget(this);
    sideWidget->setFixedWidth(kSideWidth);
    sideWidget->setLayout(side);
    row->addWidget(sideWidget);
    layout->addLayout(row, 1);

    // Between rounds the card says how it went and what comes next.
    m_end = new QWidget(m_card);
    m_end->setObjectName(QStringLiteral("PracticeEnd"));
    m_end->setGeometry(0, 0, kCardWidth, kCardHeight);
    auto* end = new QVBoxLayout(m_end);
    end->setContentsMargins(48, 60, 48, 40);
    end->setSpacing(18);
    m_endTitle = new QLabel(m_end);
    m_endTitle->setObjectName(QStringLiteral("PracticeEndTitle"));
    Look::setText(m_endTitle, 28, QFont::Bold, Look::accentDark());
    end->addWidget(m_endTitle);
    m_endText = new QLabel(m_end);
    m_endText->setWordWrap(true);
    Look::setText(m_endText, 17, QFont::Normal, Look::ink());
    end->addWidget(m_endText);
    end->addStretch(1);
    auto* endButtons = new QHBoxLayout;
    endButtons->addStretch(1);
    m_again = new QPushButton(QStringLiteral("&Noch einmal üben"), m_end);
    m_again->setObjectName(QStringLiteral("PracticeAgain"));
    m_again->setAccessibleName(QStringLiteral("Die noch falschen Aufgaben noch einmal üben"));
    m_back = new QPushButton(QStringLiteral("&Zurück zur Fehlerliste"), m_end);
    m_back->setObjectName(QStringLiteral("PracticeBack"));
    m_back->setAccessibleName(QStringLiteral("Übung abschließen und zur Fehlerliste zurückkehren"));
    for (QPushButton* b : {m_again, m_back}) {
        b->setAutoDefault(false);
        endButtons->addWidget(b);
    }
    end->addLayout(endButtons);
    m_end->hide();

    m_flow = new TestFlow(m_card, this);
    m_flow->setBank(bank, QStringLiteral("labquiz.dat"));
    m_flow->setElements(&elements);
    m_flow->state().ExpertLevel = expertLevel;
    // No records: a practice page writes no log line and hands nothing in.
    m_flow->setOnward([this](int) { pageDone(); });

    connect(m_stop, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_back, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_again, &QPushButton::clicked, this, [this] { startRound(m_wrong); });

    startRound(plan(pages));
}

PracticeRound::~PracticeRound() = default;

void PracticeRound::startRound(QList<Step> steps) {
    ++m_round;
    m_steps = std::move(steps);
    m_wrong.clear();
    m_index = 0;
    if (m_steps.isEmpty())
        showEnd();
    else
        showStep();
}

void PracticeRound::showStep() {
    dropPage();
    const Step& step = m_steps[m_index];
    TaskPage* page = PageSet::create(step.page, *m_flow, m_card);
    if (!page) {
        pageDone();
        return;
    }
    m_page = page;
    m_end->hide();
    page->setGeometry(0, 0, kCardWidth, kCardHeight);
    page->setPractised(step.items);
    connect(page, &TaskPage::checked, this, &PracticeRound::pageChecked);
    m_flow->replay(step.draws);
    page->show();
    page->generate();

    m_progress->setText(QStringLiteral("Runde %1 · Seite %2 von %3\n%4 · %5")
                            .arg(m_round)
                            .arg(m_index + 1)
                            .arg(m_steps.size())
                            .arg(pageTitle(step.page), tasksText(int(step.items.size()))));
    m_outcome->setText(QStringLiteral("Antworten geben, dann „OK“."));
    m_hints->clear();
    m_hints->hide();
}

void PracticeRound::pageChecked() {
    const Step& step = m_steps[m_index];
    const PageRecord& record = m_flow->state().Pages.last();
    const Step left = stillWrong(step, record);
    if (!left.items.isEmpty())
        m_wrong.append(left);
    const int right = int(step.items.size() - left.items.size());
    m_outcome->setText(
        left.items.isEmpty()
            ? QStringLiteral("✓ Alle %1 richtig.").arg(tasksText(int(step.items.size())))
            : QStringLiteral("✓ %1 von %2 richtig, ✗ %3 falsch – die richtige Antwort steht "
                             "daneben. Weiter mit „Weiter“.")
                  .arg(right)
                  .arg(step.items.size())
                  .arg(left.items.size()));

    QString html;
    for (int i : left.items) {
        const AnswerItem item = record.items.value(i);
        if (item.hint.isEmpty())
            continue;
        html += QStringLiteral("<p><b>%1</b><br><b>Tipp:</b> %2</p>")
                    .arg(FormulaText::textToHtml(item.prompt), item.hint.toHtmlEscaped());
    }
    m_hints->setHtml(html);
    m_hints->setVisible(!html.isEmpty());
}

void PracticeRound::pageDone() {
    ++m_index;
    if (m_index < m_steps.size())
        showStep();
    else
        showEnd();
}

void PracticeRound::dropPage() {
    if (!m_page)
        return;
    // The page may be in the middle of its own "Weiter" click.
    m_page->hide();
    m_page->deleteLater();
    m_page = nullptr;
}

void PracticeRound::showEnd() {
    dropPage();
    m_hints->hide();
    m_outcome->clear();
    const int left = taskCount(m_wrong);
    if (left == 0) {
        m_progress->setText(QStringLiteral("Runde %1 beendet").arg(m_round));
        m_endTitle->setText(QStringLiteral("Alles geübt"));
        m_endText->setText(QStringLiteral("Jede Aufgabe ist jetzt richtig gelöst."));
    } else {
        m_progress->setText(QStringLiteral("Runde %1 beendet").arg(m_round));
        m_endTitle->setText(QStringLiteral("Noch %1 falsch").arg(tasksText(left)));
        m_endText->setText(QStringLiteral("Noch eine Runde mit genau diesen Aufgaben? "
                                          "Oder „Übung beenden“ – das geht jederzeit, auch mit "
                                          "Esc."));
    }
    m_again->setVisible(left > 0);
    m_back->setVisible(left == 0);
    m_end->show();
    m_end->raise();
    (left > 0 ? m_again : m_back)->setFocus();
}
