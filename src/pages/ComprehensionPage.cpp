#include "pages/ComprehensionPage.h"

#include "controls/BoxLabel.h"
#include "controls/FormulaTextLabel.h"
#include "controls/Look.h"
#include "controls/RoundPanel.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "result/ResultFile.h"
#include "result/ResultRecord.h"
#include "session/CandidateRecords.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QTime>
#include <cmath>

namespace {

// A click on the word beside a choice button chooses it, as a click on the
// button would.
class WordClick final : public QObject {
public:
    WordClick(QObject* parent, QAbstractButton* button) : QObject(parent), m_button(button) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && m_button->isEnabled() &&
            !m_button->isChecked()) {
            m_button->click();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QAbstractButton* m_button;
};

} // namespace

ComprehensionPage::ComprehensionPage(TestFlow& flow, QWidget* parent)
    : TaskPage(flow, 6, 6, parent) {
    setHeading(QStringLiteral("6 Verständnisfragen"), QStringLiteral("(Antwort anklicken!)"));
    QGridLayout* g = grid();
    g->setColumnStretch(0, 1);
    g->setVerticalSpacing(8);
    for (int k = 0; k < kQuestions; ++k) {
        // A right/wrong mark fills a rounded box behind the statement.
        auto* statement = new FormulaTextLabel(this);
        statement->setObjectName(QStringLiteral("AnzS6(%1)").arg(k));
        Look::setRole(statement, QStringLiteral("prompt"));
        statement->setBox({QColor(), QColor(), 0, 4});
        statement->setContentsMargins(8, 2, 8, 2);
        statement->setWordWrap(true);
        statement->setMinimumHeight(44);
        m_statements[k] = statement;
        g->addWidget(statement, k, 0);

        // Each pair sits on a dark panel of its own, on which the yellow of
        // a word not chosen reads at well over 4.5:1; the chosen word (black)
        // stands on a white chip of its own, which also shows the choice
        // without colour.
        auto* panel = new RoundPanel({Look::slate(), QColor(), 0, 6}, this);
        panel->setObjectName(QStringLiteral("JaNeinPanel(%1)").arg(k));
        panel->setFixedWidth(176);
        auto* row = new QHBoxLayout(panel);
        row->setContentsMargins(12, 6, 12, 6);
        row->setSpacing(6);
        m_pairs[k] = new QButtonGroup(this);
        for (int side = 0; side < 2; ++side) {
            const int i = 2 * k + side;
            auto* choice = new QRadioButton(panel);
            choice->setObjectName(QStringLiteral("JaNein1(%1)").arg(i));
            // Padding, so that the focus ring stands clear of the button.
            choice->setContentsMargins(4, 4, 4, 4);
            choice->setAccessibleName(TaskNames::choiceFor(
                side == 0 ? QStringLiteral("Ja") : QStringLiteral("Nein"), k + 1));
            m_pairs[k]->addButton(choice, i);
            m_choices[i] = choice;
            auto* word =
                new BoxLabel(side == 0 ? QStringLiteral("Ja") : QStringLiteral("Nein"), panel);
            word->setObjectName(QStringLiteral("AA(%1)").arg(i));
            Look::setText(word, 15, QFont::Bold);
            word->setContentsMargins(6, 1, 6, 1);
            word->installEventFilter(new WordClick(word, choice));
            m_words[i] = word;
            row->addWidget(choice);
            row->addWidget(word);
            if (side == 0)
                row->addStretch(1);
            connect(choice, &QAbstractButton::toggled, this, &ComprehensionPage::JaNein1_Click);
        }
        g->addWidget(panel, k, 1, Qt::AlignVCenter);
    }
    JaNein1_Click();
}

QList<TaskPage::Need> ComprehensionPage::needs() const {
    return {{TaskBank::StatementsSection, kQuestions}};
}

ComprehensionPage::Draw ComprehensionPage::drawFor(const TaskBank& bank,
                                                   const QList<int>& records) {
    Draw d;
    for (int k = 0; k < kQuestions && k < records.size(); ++k) {
        const StatementRecord& r = bank.Statements[records[k]];
        d.statements[k] = r.Statement;
        d.answers[k] = NumberWithSignSpace(2 * k + (r.IsTrue ? 0 : 1));
    }
    return d;
}

int ComprehensionPage::expectedButton(const QString& answer) {
    QString text = answer;
    const long index = std::lround(ParseDecimal(text));
    return index >= 0 && index < kChoices ? static_cast<int>(index) : -1;
}

void ComprehensionPage::JaNein1_Click() {
    for (int i = 0; i < kChoices; ++i) {
        const bool chosen = m_choices[i]->isChecked();
        Look::setTextColour(m_words[i], Look::paletteColour(chosen ? 0 : 14));
        m_words[i]->setBox({chosen ? QColor(Qt::white) : QColor(), QColor(), 0, 4});
    }
}

void ComprehensionPage::reset() {
    m_result.reset();
    for (int k = 0; k < kQuestions; ++k) {
        Look::clearMarks(m_statements[k]);
        m_statements[k]->setStoredText(QString());
        // An exclusive group keeps one button checked; let go to clear the pair.
        m_pairs[k]->setExclusive(false);
        for (int side = 0; side < 2; ++side) {
            m_choices[2 * k + side]->setChecked(false);
            m_choices[2 * k + side]->setEnabled(true);
            m_choices[2 * k + side]->setAccessibleDescription(QString());
        }
        m_pairs[k]->setExclusive(true);
    }
    JaNein1_Click();
}

void ComprehensionPage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::StatementsSection, kQuestions));
    for (int k = 0; k < kQuestions; ++k) {
        m_statements[k]->setStoredText(d.statements[k]);
        m_choices[2 * k]->parentWidget()->setAccessibleName(
            TaskNames::answerTo(k + 1, d.statements[k]));
        state().DrawnAnswers[k] = d.answers[k];
    }
    m_choices[0]->setFocus();
}

bool ComprehensionPage::judge(Marking& marking) {
    SessionState& s = state();
    for (int k = 0; k < kQuestions; ++k) {
        const int e = expectedButton(s.DrawnAnswers[k]);
        auto word = [](int button) {
            return button < 0 ? QString()
                              : (button % 2 == 0 ? QStringLiteral("Ja") : QStringLiteral("Nein"));
        };
        int chosen = -1;
        for (int side = 0; side < 2; ++side) {
            if (m_choices[2 * k + side]->isChecked())
                chosen = 2 * k + side;
        }
        const AnswerItem item{m_statements[k]->text().trimmed(), word(e), word(chosen)};
        const bool ok = e >= 0 && m_choices[e]->isChecked();
        for (int side = 0; side < 2; ++side)
            m_choices[2 * k + side]->setAccessibleDescription(TaskNames::verdict(ok, word(e)));
        if (e >= 0 && m_choices[e]->isChecked()) {
            marking.right(m_statements[k], item);
        } else {
            if (e >= 0)
                m_choices[e]->setChecked(true);
            marking.wrong(m_statements[k], item);
        }
    }
    for (QAbstractButton* choice : m_choices)
        choice->setEnabled(false);
    JaNein1_Click();
    s.FinishedAt = QDateTime::currentDateTime();
    s.EndTime = s.FinishedAt.time().toString(QStringLiteral("HH:mm:ss"));
    return marking.rightOnPage() == kQuestions;
}

void ComprehensionPage::judged() {
    // Once this last page is in the record, the test is complete.
    prepareResult();
}

void ComprehensionPage::prepareResult() {
    m_result = FinalGrade::prepare(state());
    if (CandidateRecords* records = flow().records()) {
        records->log(m_result->historyLine);
        handIn(*records);
    }
}

void ComprehensionPage::handIn(CandidateRecords& records) {
    const CandidateRecords::ResultPlaces places = records.resultPlaces();
    if (places.results.isEmpty())
        return;
    ResultRecord record = ResultRecord::fromTest(state(), *m_result);
    record.machine = places.machine;
    record.bankFile = QFileInfo(flow().bankPath()).fileName();
    record.bankSha256 = flow().bank().sha256;
    const ResultFile::HandIn done = ResultFile::handIn(record, places.results, places.outbox,
                                                       QCoreApplication::applicationPid());
    if (!done.inOutbox)
        return;
    if (done.path.isEmpty())
        records.message(window(), QStringLiteral("Dein Ergebnis konnte nicht gespeichert werden: "
                                                 "%1.\n\nBitte sag deiner Lehrkraft Bescheid; "
                                                 "die Urkunde kannst du trotzdem drucken.")
                                      .arg(done.why));
    else
        records.message(window(), QStringLiteral("Der Ergebnisordner ist gerade nicht erreichbar "
                                                 "(%1).\n\nDein Ergebnis ist aufbewahrt und wird "
                                                 "beim nächsten Start abgegeben.")
                                      .arg(done.why));
}

const FinalResult& ComprehensionPage::finalResult() {
    if (!m_result) {
        if (state().EndTime.isEmpty())
            state().EndTime = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
        prepareResult();
    }
    return *m_result;
}

QList<QWidget*> ComprehensionPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    QAbstractButton* yes = m_choices[2 * item];
    return {yes, m_statements[item], yes->parentWidget()};
}
