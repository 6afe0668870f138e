#include "pages/SubstancePage.h"

#include "chem/FormulaText.h"
#include "chem/IonMakeup.h"
#include "controls/FormulaLabel.h"
#include "controls/IonMakeupLabel.h"
#include "controls/Look.h"
#include "controls/TermInput.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRect>

namespace {

// The rows of the grid: a group title, three tasks, a gap, a group title,
// three tasks.
int gridRow(int task) {
    return task < SubstancePage::kFormulaTasks ? 1 + task : 3 + task;
}

// Gaps in the correction cell: caption, answer, (double gap) ions.
constexpr int kGap = 6;
constexpr int kCellSpacing = 4 * kGap;

} // namespace

SubstancePage::SubstancePage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 11, 11, parent) {
    setHeading(QStringLiteral("Formeln und Namen von Stoffen"),
               QStringLiteral("(ohne Zahlsilben - wenn möglich: Metall zuerst)"));
    QGridLayout* g = grid();
    g->setColumnMinimumWidth(0, 180);
    g->setColumnStretch(2, 1);

    auto addGroup = [&](int row, const QString& title, const QString& hint) {
        g->addWidget(makeLabel(title, "groupTitle"), row, 0);
        g->addWidget(makeLabel(hint, "hint"), row, 1, 1, 2);
    };
    addGroup(
        0, QStringLiteral(" 3 Formeln der Stoffe"),
        QStringLiteral("(Zahlen einfach mittippen: H2SO4 - daneben steht, wie es sich liest)"));
    g->setRowMinimumHeight(4, 14);
    // Keeps the last column in the layout while every correction is hidden,
    // so that the spare width goes there and the rows stay on the left.
    auto* spare = new QWidget(this);
    spare->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    spare->setFixedHeight(0);
    g->addWidget(spare, 4, 2);
    addGroup(5, QStringLiteral(" 3 Namen der Stoffe"),
             QStringLiteral("(Groß- / Kleinschreibung!)"));

    for (int i = 0; i < kQuestions; ++i) {
        const int row = gridRow(i);
        m_names[i] = makeNamed(QStringLiteral("Substanz(%1)").arg(i), "prompt");
        m_names[i]->setMaximumWidth(230);
        m_formulas[i] = new FormulaLabel(this);
        m_formulas[i]->setObjectName(QStringLiteral("lab_SubsTerm(%1)").arg(i));
        m_formulas[i]->setMaximumWidth(230);
        // The prompt of a task is the name or the formula, in the same place.
        g->addWidget(m_names[i], row, 0);
        g->addWidget(m_formulas[i], row, 0);
        (i < kFormulaTasks ? static_cast<QWidget*>(m_formulas[i]) : m_names[i])->hide();

        m_inputs[i] = new TermInput(QStringLiteral("Substein(%1)").arg(i), this);
        m_inputs[i]->setPreviewEnabled(i < kFormulaTasks);
        m_inputs[i]->setFixedWidth(260);
        m_inputs[i]->edit()->setProperty("answerSlot", i);
        g->addWidget(m_inputs[i], row, 1);

        // Tasks 0-2 are corrected with a formula, tasks 3-5 with a name.
        if (i < kFormulaTasks) {
            auto* shown = new FormulaLabel(this);
            shown->setObjectName(QStringLiteral("lab_SubCorrect(%1)").arg(i));
            m_corrections[i] = shown;
        } else {
            m_corrections[i] = makeNamed(QStringLiteral("lab_SubCorrect(%1)").arg(i));
        }
        Look::setText(m_corrections[i], 15, QFont::Bold, Look::paletteColour(4));
        m_corrections[i]->setMaximumWidth(260);
        m_corrections[i]->hide();
        m_rightIs[i] = makeLabel(QStringLiteral("richtig:"), "hint");
        m_rightIs[i]->hide();

        m_titles[i] = new IonMakeupLabel(this);
        m_titles[i]->setObjectName(QStringLiteral("lab_SubsTermTitle(%1)").arg(i));
        Look::setText(m_titles[i], 15, QFont::Normal, Look::accentDark());
        m_titles[i]->hide();

        // The correction and the ions follow each other in one cell, so
        // that one long name does not push every row's ions aside.
        auto* cell = new QHBoxLayout;
        cell->setSpacing(kGap);
        cell->addWidget(m_rightIs[i]);
        cell->addWidget(m_corrections[i]);
        cell->addSpacing(2 * kGap);
        cell->addWidget(m_titles[i], 1);
        g->addLayout(cell, row, 2);
    }
    QList<QWidget*> ring;
    for (TermInput* input : m_inputs)
        ring << input->edit();
    chainEnter(ring, [](int i) { return (i + 1) % kQuestions; });

    // "&Weiter" clears the marks before the page slides away.
}

QList<TaskPage::Need> SubstancePage::needs() const {
    return {{TaskBank::SubstancesSection, kQuestions}};
}

SubstancePage::Draw SubstancePage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    const auto& table = bank.Substances;
    for (int i = 0; i < kQuestions && i < records.size(); ++i) {
        if (records[i] < 1 || records[i] > table.count())
            continue;
        const SubstanceRecord& r = table[records[i]];
        // A hand-made bank may lack a list; it reads as an empty one.
        const TermList formulas = r.Formula.value_or(TermList());
        d.formulas[i] = formulas.Item(1);
        d.ions[i] = r.SecondTerm ? r.SecondTerm->items() : QStringList();
        if (i < kFormulaTasks) {
            d.prompts[i] = correction(r.Name);
            d.answers[i] = formulas.Join(u"", u"|", u"");
        } else {
            d.prompts[i] = d.formulas[i];
            d.answers[i] = r.Name;
        }
    }
    return d;
}

bool SubstancePage::accepts(QStringView typed, QStringView key) {
    const QStringView answer = TrimBlanks(typed);
    if (!key.contains(u'|'))
        return answer == key;
    for (QStringView piece : key.split(u'|')) {
        if (answer == piece)
            return true;
    }
    return false;
}

QString SubstancePage::correction(QStringView key) {
    const qsizetype bar = key.indexOf(u'|');
    return (bar < 0 ? key : key.left(bar)).toString();
}

void SubstancePage::reset() {
    for (int i = 0; i < kQuestions; ++i) {
        QLineEdit* e = m_inputs[i]->edit();
        e->clear();
        e->setReadOnly(false);
        Look::clearMarks(e);
        m_corrections[i]->hide();
        m_rightIs[i]->hide();
        m_titles[i]->hide();
        m_titles[i]->setTwoLines(false);
    }
}

void SubstancePage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::SubstancesSection, kQuestions));
    for (int i = 0; i < kQuestions; ++i) {
        if (i < kFormulaTasks) {
            m_names[i]->setText(d.prompts[i]);
            m_formulas[i]->setFormula(QString());
            m_inputs[i]->edit()->setAccessibleName(TaskNames::formulaFor(d.prompts[i]));
        } else {
            m_names[i]->clear();
            m_formulas[i]->setFormula(d.prompts[i]);
            m_inputs[i]->edit()->setAccessibleName(TaskNames::nameForFormula(d.prompts[i]));
        }
        m_titles[i]->setSubstance(d.formulas[i], d.ions[i]);
        state().DrawnAnswers[i] = d.answers[i];
    }
    m_inputs[0]->edit()->setFocus();
}

bool SubstancePage::judge(Marking& marking) {
    const SessionState& s = state();
    for (int i = 0; i < kQuestions; ++i) {
        QLineEdit* field = m_inputs[i]->edit();
        field->setReadOnly(true);
        field->setCursorPosition(0);
        const QString right = correction(s.DrawnAnswers[i]);
        const AnswerItem item{i < kFormulaTasks ? m_names[i]->text().trimmed()
                                                : m_formulas[i]->formula(),
                              right, field->text()};
        if (accepts(field->text(), s.DrawnAnswers[i])) {
            marking.right(field, item);
            continue;
        }
        marking.wrong(field, item);
        if (i < kFormulaTasks)
            static_cast<FormulaLabel*>(m_corrections[i])->setFormula(right);
        else
            m_corrections[i]->setText(right);
        m_corrections[i]->show();
        m_rightIs[i]->setVisible(!right.isEmpty());
        fitTitle(i);
        m_titles[i]->show();
    }
    return marking.rightOnPage() == kQuestions;
}

void SubstancePage::fitTitle(int task) {
    // A long salt beside a long name goes on two lines rather than leaving
    // the card. Word wrap would lay the rich text out for every width the
    // grid tries; a fixed break where the plain-text width says it is needed
    // costs nothing in the usual case.
    const QRect cell = grid()->cellRect(gridRow(task), 2);
    if (cell.width() <= 0)
        return;
    auto width = [](QLabel* label, const QString& text) {
        label->ensurePolished();
        return label->fontMetrics().horizontalAdvance(text);
    };
    const QString right = correction(state().DrawnAnswers[task]);
    IonMakeupLabel* title = m_titles[task];
    const int needed = width(m_rightIs[task], m_rightIs[task]->text()) +
                       width(m_corrections[task],
                             task < kFormulaTasks ? FormulaText::formulaToPlain(right) : right) +
                       kCellSpacing +
                       width(title, IonMakeup::toPlain(title->formula(), title->ions()));
    title->setTwoLines(needed > cell.width());
}

void SubstancePage::leaving() {
    for (TermInput* input : m_inputs)
        Look::clearMarks(input->edit());
    for (int i = kFormulaTasks; i < kQuestions; ++i)
        m_titles[i]->hide();
}

QList<QWidget*> SubstancePage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_inputs[item],      m_names[item],   m_formulas[item],
            m_corrections[item], m_rightIs[item], m_titles[item]};
}
