#include "pages/AmountPage.h"

#include "aids/CalculatorButton.h"
#include "controls/FormulaTextLabel.h"
#include "controls/Look.h"
#include "pages/Marking.h"
#include "pages/NumberAnswer.h"
#include "pages/TaskNames.h"
#include "session/SessionState.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

AmountPage::AmountPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 12, 12, parent) {
    setHeading(QStringLiteral(" 5 Stoffmengen in mol"),
               QStringLiteral("(Bei Gasen: O°C, 1013 hPa)"));
    QGridLayout* g = grid();
    g->setColumnStretch(0, 1);
    g->setVerticalSpacing(16);
    for (int i = 0; i < kQuestions; ++i) {
        // The questions name substances by their formulas; they are shown
        // with real subscripts, the rest of the sentence as it stands.
        m_questions[i] = new FormulaTextLabel(this);
        m_questions[i]->setObjectName(QStringLiteral("AnzS12(%1)").arg(i));
        Look::setRole(m_questions[i], QStringLiteral("prompt"));
        m_questions[i]->setWordWrap(true);
        m_fields[i] = makeInput(QStringLiteral("Stoffm(%1)").arg(i));
        m_fields[i]->setFixedWidth(220);
        m_calc[i] = new CalculatorButton(4 + i, m_fields[i], state(), this);
        g->addWidget(m_questions[i], i, 0);
        g->addWidget(m_fields[i], i, 1);
        g->addWidget(m_calc[i], i, 2);
        setTabOrder(m_fields[i], m_calc[i]);
        if (i + 1 < kQuestions)
            setTabOrder(m_calc[i], m_fields[i + 1]);
    }
    chainEnter({m_fields[0], m_fields[1], m_fields[2], m_fields[3], m_fields[4]},
               [](int i) { return (i + 1) % kQuestions; });
}

QList<TaskPage::Need> AmountPage::needs() const {
    return {{TaskBank::AmountSubstancesSection, kQuestions}};
}

AmountPage::Draw AmountPage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    for (int i = 0; i < kQuestions && i < records.size(); ++i) {
        const AmountRecord& r = bank.AmountSubstances[records[i]];
        d.questions[i] = r.First;
        d.answers[i] = r.Second;
    }
    return d;
}

void AmountPage::reset() {
    for (int i = 0; i < kQuestions; ++i) {
        m_fields[i]->clear();
        m_fields[i]->setReadOnly(false);
        Look::clearMarks(m_fields[i]);
        m_calc[i]->setEnabled(true);
    }
}

void AmountPage::draw() {
    m_fields[0]->setFocus();
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::AmountSubstancesSection, kQuestions));
    for (int i = 0; i < kQuestions; ++i) {
        m_questions[i]->setStoredText(d.questions[i]);
        state().DrawnAnswers[i] = d.answers[i];
        const QString task = TaskNames::amountFor(d.questions[i]);
        m_fields[i]->setAccessibleName(task);
        m_calc[i]->setAccessibleName(TaskNames::calculatorFor(task));
    }
}

bool AmountPage::judge(Marking& marking) {
    const SessionState& s = state();
    for (int i = 0; i < kQuestions; ++i) {
        QLineEdit* field = m_fields[i];
        const AnswerItem item{m_questions[i]->text(), s.DrawnAnswers[i], field->text()};
        if (NumberAnswer::matches(field->text(), s.DrawnAnswers[i])) {
            marking.right(field, item);
        } else {
            marking.wrong(field, item);
            field->setText(NumberAnswer::correction(field->text(), s.DrawnAnswers[i]));
        }
        field->setReadOnly(true);
        field->setCursorPosition(0);
        m_calc[i]->setEnabled(false);
    }
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> AmountPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_fields[item], m_questions[item], m_calc[item]};
}
