#include "pages/TermPage.h"

#include "controls/ChoiceList.h"
#include "controls/FormulaTextLabel.h"
#include "controls/Look.h"
#include "pages/ChoiceRules.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
// Two tasks side by side in two rows: each list shows eight terms or more
// at once, beside its definition.
constexpr int kVisibleTerms = 8;
constexpr int kListWidth = 215;
constexpr int kCorrectionWidth = 215;
constexpr int kCorrectionHeight = 40;
} // namespace

TermPage::TermPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 4, 4, parent) {
    setHeading(QStringLiteral(" 4 Chemische Begriffe suchen"),
               QStringLiteral("Begriffe  zu den gegebenen Definitionen auswählen!"));
    QGridLayout* g = grid();
    g->setColumnStretch(0, 1);
    g->setColumnStretch(2, 1);
    g->setColumnMinimumWidth(1, kListWidth);
    g->setColumnMinimumWidth(3, kListWidth);
    g->setHorizontalSpacing(12);
    g->setVerticalSpacing(12);
    QList<QWidget*> lists;
    for (int k = 0; k < kQuestions; ++k) {
        auto* cell = new QWidget(this);
        auto* column = new QVBoxLayout(cell);
        column->setContentsMargins(0, 2, 0, 0);
        column->setSpacing(4);
        m_definitions[k] = new FormulaTextLabel(this);
        m_definitions[k]->setObjectName(QStringLiteral("AnzS4(%1)").arg(k));
        Look::setRole(m_definitions[k], QStringLiteral("prompt"));
        m_definitions[k]->setWordWrap(true);
        m_definitions[k]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        // The correction sits in a slot of fixed size outside any layout:
        // showing it then does not lay the whole page out again.
        auto* slot = new QWidget(cell);
        slot->setFixedHeight(kCorrectionHeight);
        m_corrections[k] = makeNamed(QStringLiteral("RichtigVon(%1)").arg(k), "correction");
        m_corrections[k]->setParent(slot);
        m_corrections[k]->setWordWrap(true);
        m_corrections[k]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        m_corrections[k]->setGeometry(0, 0, kCorrectionWidth, kCorrectionHeight);
        m_corrections[k]->hide();
        column->addWidget(m_definitions[k]);
        column->addWidget(slot);
        column->addStretch(1);

        m_lists[k] = new ChoiceList(this);
        m_lists[k]->setObjectName(QStringLiteral("AuswahlS4(%1)").arg(k));
        m_lists[k]->setRowPadding(2);
        m_lists[k]->setFixedWidth(kListWidth);
        m_lists[k]->setToolTip(
            QStringLiteral("Die ersten Buchstaben tippen: die Liste springt zum Begriff."));
        g->addWidget(cell, k / 2, 2 * (k % 2));
        g->addWidget(m_lists[k], k / 2, 2 * (k % 2) + 1);
        lists << m_lists[k];
    }
    chainEnter(lists, [](int k) { return (k + 1) % kQuestions; });
}

QList<TaskPage::Need> TermPage::needs() const {
    return {{TaskBank::DefinitionsSection, kQuestions}};
}

TermPage::Draw TermPage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    for (int k = 0; k < kQuestions && k < records.size(); ++k) {
        const DefinitionRecord& r = bank.Definitions[records[k]];
        d.definitions[k] = TrimRightBlanks(r.Definition).toString();
        d.answers[k] = r.Term;
        d.corrections[k] =
            QStringLiteral("Korrekter Begriff ist:  ") + TrimBlanks(r.Term).toString();
    }
    return d;
}

QStringList TermPage::allTerms(const TaskBank& bank) {
    QStringList terms;
    const BankTable<DefinitionRecord>& table = bank.Definitions;
    terms.reserve(table.count());
    for (int r = 1; r <= table.count(); ++r)
        terms << table[r].Term;
    return terms;
}

void TermPage::reset() {
    for (int k = 0; k < kQuestions; ++k) {
        m_definitions[k]->setStoredText(QString());
        m_corrections[k]->hide();
        m_lists[k]->setChoices({});
        m_lists[k]->setEnabled(true);
        m_lists[k]->setMark({});
    }
}

void TermPage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::DefinitionsSection, kQuestions));
    const QStringList terms = allTerms(bank());
    for (int k = 0; k < kQuestions; ++k) {
        m_definitions[k]->setStoredText(d.definitions[k]);
        m_lists[k]->setChoices(terms);
        // Half a row more than the eight shows that the list goes on.
        const int row = m_lists[k]->sizeHintForRow(0);
        if (row > 0)
            m_lists[k]->setFixedHeight(2 * m_lists[k]->frameWidth() + kVisibleTerms * row +
                                       row / 2);
        m_lists[k]->setAccessibleName(TaskNames::termFor(k + 1, d.definitions[k]));
        state().DrawnAnswers[k] = d.answers[k];
        m_corrections[k]->setText(d.corrections[k]);
        m_corrections[k]->hide();
    }
    m_lists[0]->setFocus();
}

bool TermPage::judge(Marking& marking) {
    for (int k = 0; k < kQuestions; ++k) {
        ChoiceList* list = m_lists[k];
        list->setEnabled(false);
        const bool right = ChoiceRules::sameChoice(state().DrawnAnswers[k], list->chosenText());
        marking.note({m_definitions[k]->text().trimmed(), state().DrawnAnswers[k].trimmed(),
                      list->chosenText().trimmed(), right});
        list->setAccessibleDescription(TaskNames::verdict(right, state().DrawnAnswers[k]));
        if (right) {
            list->setMark(Look::right());
            marking.addCorrect();
        } else {
            list->setMark(Look::wrong());
            m_corrections[k]->show();
        }
    }
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> TermPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    // The definition sits in a cell with its correction below it.
    return {m_lists[item], m_definitions[item]->parentWidget()};
}
