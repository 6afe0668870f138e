#include "pages/MolarMassPage.h"

#include "aids/CalculatorButton.h"
#include "aids/ExpertLimits.h"
#include "controls/FormulaLabel.h"
#include "controls/Look.h"
#include "pages/Marking.h"
#include "pages/NumberAnswer.h"
#include "pages/TaskNames.h"
#include "session/SessionState.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

MolarMassPage::MolarMassPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 8, 7, parent) {
    setHeading(QStringLiteral(" 4 Molare Massen in g Substanzen"),
               QStringLiteral("Molare Massen (in Gramm) auf eine Nachkommastelle runden!   "
                              "(Periodensystem mit [Strg]+[F1])"));
    QGridLayout* g = grid();
    g->setColumnMinimumWidth(0, 250);
    g->setColumnMinimumWidth(1, 150);
    g->setColumnStretch(4, 1);
    g->addWidget(makeLabel(QStringLiteral("Stoff"), "groupTitle"), 0, 0);
    m_formulaHeading = makeLabel(QStringLiteral("Formel"), "groupTitle");
    g->addWidget(m_formulaHeading, 0, 1);
    g->addWidget(makeLabel(QStringLiteral("Molare Masse in g/mol"), "groupTitle"), 0, 2, 1, 2);
    for (int k = 0; k < kQuestions; ++k) {
        m_names[k] = makeNamed(QStringLiteral("AnzS7(%1)").arg(k), "prompt");
        m_formulas[k] = new FormulaLabel(this);
        m_formulas[k]->setObjectName(QStringLiteral("lab_MolTerm(%1)").arg(k));
        m_fields[k] = makeInput(QStringLiteral("Mol(%1)").arg(k));
        m_fields[k]->setFixedWidth(330);
        m_calc[k] = new CalculatorButton(k, m_fields[k], state(), this);
        g->addWidget(m_names[k], 1 + k, 0);
        g->addWidget(m_formulas[k], 1 + k, 1);
        g->addWidget(m_fields[k], 1 + k, 2);
        g->addWidget(m_calc[k], 1 + k, 3);
        setTabOrder(m_fields[k], m_calc[k]);
        if (k + 1 < kQuestions)
            setTabOrder(m_calc[k], m_fields[k + 1]);
    }
    chainEnter({m_fields[0], m_fields[1], m_fields[2], m_fields[3]},
               [](int i) { return (i + 1) % kQuestions; });
}

QList<TaskPage::Need> MolarMassPage::needs() const {
    return {{TaskBank::MolarMassSubstancesSection, kQuestions}};
}

MolarMassPage::Draw MolarMassPage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    for (int k = 0; k < kQuestions && k < records.size(); ++k) {
        const MolarMassRecord& r = bank.MolarMassSubstances[records[k]];
        d.names[k] = r.Name;
        d.formulas[k] = r.Formula;
        d.answers[k] = SingleToText(r.MolarMass);
    }
    return d;
}

void MolarMassPage::reset() {
    for (int k = 0; k < kQuestions; ++k) {
        m_fields[k]->clear();
        m_fields[k]->setReadOnly(false);
        Look::clearMarks(m_fields[k]);
        m_calc[k]->setEnabled(true);
    }
}

void MolarMassPage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::MolarMassSubstancesSection, kQuestions));
    const bool formulas =
        ExpertLimits::allows(ExpertLimits::Aid::MolarMassFormulas, state().ExpertLevel);
    for (int k = 0; k < kQuestions; ++k) {
        m_names[k]->setText(d.names[k]);
        m_formulas[k]->setFormula(formulas ? d.formulas[k] : QString());
        m_formulas[k]->setVisible(formulas);
        state().DrawnAnswers[k] = d.answers[k];
        const QString task = TaskNames::molarMassOf(d.names[k]);
        m_fields[k]->setAccessibleName(task);
        m_calc[k]->setAccessibleName(TaskNames::calculatorFor(task));
    }
    m_formulaHeading->setVisible(formulas);
    m_fields[0]->setFocus();
}

QString MolarMassPage::promptOf(int k) const {
    const QString name = m_names[k]->text().trimmed();
    const QString formula = m_formulas[k]->isVisibleTo(this) ? m_formulas[k]->formula() : QString();
    return formula.isEmpty() ? name : name + QStringLiteral(" (") + formula + u')';
}

bool MolarMassPage::judge(Marking& marking) {
    const SessionState& s = state();
    for (int k = 0; k < kQuestions; ++k) {
        QLineEdit* field = m_fields[k];
        const AnswerItem item{promptOf(k), s.DrawnAnswers[k], field->text()};
        if (NumberAnswer::matches(field->text(), s.DrawnAnswers[k])) {
            marking.right(field, item);
        } else {
            marking.wrong(field, item);
            field->setText(NumberAnswer::correction(field->text(), s.DrawnAnswers[k]));
        }
        field->setReadOnly(true);
        field->setCursorPosition(0);
        // The checked answer stays as marked; nothing is written over it.
        m_calc[k]->setEnabled(false);
    }
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> MolarMassPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_fields[item], m_names[item], m_formulas[item], m_calc[item]};
}
