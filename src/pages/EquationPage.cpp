#include "pages/EquationPage.h"

#include "chem/FormulaText.h"
#include "controls/FormulaLabel.h"
#include "controls/Look.h"
#include "controls/MarkSign.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

namespace {

// Columns of one equation's grid: field and formula per slot, with the
// signs between them.
constexpr int kSlotColumn[4] = {0, 3, 6, 9};
constexpr int kPlusLeftColumn = 2;
constexpr int kEqualsColumn = 5;
constexpr int kPlusRightColumn = 8;

} // namespace

EquationPage::EquationPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 9, 8, parent) {
    setHeading(QStringLiteral(" 5 Gleichungen einrichten"),
               QStringLiteral("Möglichst kleine ganzzahlige Koeffizienten einsetzen!"));
    QGridLayout* g = grid();
    g->setVerticalSpacing(12);
    g->setColumnStretch(1, 1);

    auto sign = [&](const QString& text, const QString& name) {
        QLabel* l = name.isEmpty() ? makeLabel(text, "prompt") : makeNamed(name, "prompt");
        l->setText(text);
        l->setAlignment(Qt::AlignCenter);
        l->setMinimumWidth(18);
        return l;
    };

    for (int r = 0; r < kRows; ++r) {
        // The number stands level with the fields, not with the corrections.
        QLabel* number = makeLabel(QStringLiteral("%1.").arg(r + 1), "hint");
        number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        g->addWidget(number, r, 0, Qt::AlignTop);

        auto* rowWidget = new QWidget(this);
        auto* row = new QGridLayout(rowWidget);
        row->setContentsMargins(0, 0, 0, 0);
        row->setHorizontalSpacing(8);
        row->setVerticalSpacing(1);
        // Room for the right coefficients under the fields, so that the
        // rows do not move when they appear.
        row->setRowMinimumHeight(1, 18);
        for (int s = 0; s < 4; ++s) {
            const int i = 4 * r + s;
            const int column = kSlotColumn[s];
            m_fields[i] = makeInput(QStringLiteral("Einsetz(%1)").arg(i));
            // Room for two digits beside a tick or cross once checked.
            m_fields[i]->setFixedWidth(48 + MarkSign::kRoom - 6);
            m_fields[i]->setAlignment(Qt::AlignCenter);
            m_fields[i]->setProperty("answerSlot", answerSlot(i));
            m_fields[i]->installEventFilter(this);
            row->addWidget(m_fields[i], 0, column);

            m_texts[i] = new FormulaLabel(this);
            m_texts[i]->setObjectName(QStringLiteral("EText(%1)").arg(i));
            m_texts[i]->setMaximumWidth(170);
            row->addWidget(m_texts[i], 0, column + 1);

            m_corrections[i] = makeNamed(QStringLiteral("Einsetz2(%1)").arg(i));
            Look::setText(m_corrections[i], 14, QFont::Bold, Look::paletteColour(4));
            m_corrections[i]->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
            m_corrections[i]->setToolTip(QStringLiteral("richtiger Koeffizient"));
            m_corrections[i]->hide();
            row->addWidget(m_corrections[i], 1, column);
        }
        m_plusLeft[r] = sign(QStringLiteral("+"), QStringLiteral("PlusL(%1)").arg(r));
        m_plusRight[r] = sign(QStringLiteral("+"), QStringLiteral("PlusR(%1)").arg(r));
        row->addWidget(m_plusLeft[r], 0, kPlusLeftColumn);
        row->addWidget(sign(QStringLiteral("="), QString()), 0, kEqualsColumn);
        row->addWidget(m_plusRight[r], 0, kPlusRightColumn);
        row->setColumnStretch(11, 1);
        g->addWidget(rowWidget, r, 1);
        m_numbers[r] = number;
        m_rows[r] = rowWidget;
        number->setFixedHeight(m_fields[4 * r]->sizeHint().height());
    }
}

QList<TaskPage::Need> EquationPage::needs() const {
    return {{TaskBank::EquationsSection, kRows}};
}

Equation::Slots EquationPage::rowFor(QStringView line) {
    return Equation::pageSlots(StripBlanks(line));
}

bool EquationPage::fillsWithOne(QStringView typed, bool hidden) {
    return !hidden && TrimLeftBlanks(typed).isEmpty();
}

bool EquationPage::coefficientRight(QStringView typed, QStringView expected) {
    return LeadingValue(TrimBlanks(typed)) == LeadingValue(expected);
}

int EquationPage::nextField(int from, const std::array<bool, kFields>& hidden) {
    int next = from;
    // Slots 0 and 2 are never hidden, so a few steps always find a field;
    // the bound only guards against a caller that hides them all.
    for (int step = 0; step < kFields; ++step) {
        ++next;
        if (next >= kFields - 1)
            next = 0;
        if (!hidden[next])
            return next;
    }
    return from;
}

std::array<bool, EquationPage::kFields> EquationPage::hiddenFields() const {
    std::array<bool, kFields> hidden{};
    for (int i = 0; i < kFields; ++i)
        hidden[i] = !m_fields[i]->isVisibleTo(this); // its row may be hidden too
    return hidden;
}

void EquationPage::reset() {
    for (int i = 0; i < kFields; ++i) {
        m_fields[i]->clear();
        m_fields[i]->setReadOnly(false);
        Look::clearMarks(m_fields[i]);
        m_corrections[i]->hide();
    }
}

void EquationPage::draw() {
    const QList<int> records = drawDistinct(TaskBank::EquationsSection, kRows);
    SessionState& s = state();
    for (int r = 0; r < kRows; ++r) {
        const Equation::Slots slots = rowFor(bank().Equations[records[r]].Equation);
        for (int k = 0; k < 4; ++k) {
            const int i = 4 * r + k;
            s.DrawnAnswers[answerSlot(i)] = slots.coefficient[k];
            m_corrections[i]->setText(slots.coefficient[k]);
            m_texts[i]->setFormula(slots.formula[k]);
        }
        // A side with one species shows neither its second field nor its "+".
        const bool oneLeft = slots.formula[1].isEmpty();
        const bool oneRight = slots.formula[3].isEmpty();
        for (QWidget* w :
             {static_cast<QWidget*>(m_fields[4 * r + 1]), static_cast<QWidget*>(m_texts[4 * r + 1]),
              static_cast<QWidget*>(m_plusLeft[r])})
            w->setHidden(oneLeft);
        for (QWidget* w :
             {static_cast<QWidget*>(m_fields[4 * r + 3]), static_cast<QWidget*>(m_texts[4 * r + 3]),
              static_cast<QWidget*>(m_plusRight[r])})
            w->setHidden(oneRight);
        // Shown fields are counted left to right, as the student sees them.
        int shown = 0;
        for (int k = 0; k < 4; ++k) {
            if (!slots.formula[k].isEmpty())
                m_fields[4 * r + k]->setAccessibleName(
                    TaskNames::coefficient(++shown, r + 1) + QStringLiteral(", vor ") +
                    FormulaText::formulaToPlain(slots.formula[k]));
        }
    }
    m_fields[0]->setFocus();
}

QString EquationPage::equationText(int row) const {
    QString left, right;
    for (int k = 0; k < 4; ++k) {
        const QString formula = m_texts[4 * row + k]->formula();
        if (formula.isEmpty() || m_fields[4 * row + k]->isHidden())
            continue;
        QString& side = k < 2 ? left : right;
        side += (side.isEmpty() ? QString() : QStringLiteral(" + ")) + formula;
    }
    return left + QStringLiteral(" = ") + right;
}

bool EquationPage::judge(Marking& marking) {
    const SessionState& s = state();
    for (QLineEdit* field : m_fields) {
        if (fillsWithOne(field->text(), field->isHidden()))
            field->setText(QStringLiteral("1"));
    }
    int points = 0;
    for (int r = 0; r < kRows; ++r) {
        AnswerItem item{equationText(r), QString(), QString()};
        for (int k = 0; k < 4; ++k) {
            const int i = 4 * r + k;
            if (m_fields[i]->isHidden())
                continue;
            const QString sep = item.expected.isEmpty() ? QString() : QStringLiteral(" ");
            item.expected += sep + s.DrawnAnswers[answerSlot(i)].trimmed();
            item.given += sep + m_fields[i]->text().trimmed();
        }
        bool all = true;
        // Hidden slots are compared too: both sides are empty there, so
        // they count as right.
        for (int k = 0; k < 4; ++k) {
            const int i = 4 * r + k;
            QLineEdit* field = m_fields[i];
            field->setReadOnly(true);
            field->setCursorPosition(0);
            const QString& expected = s.DrawnAnswers[answerSlot(i)];
            const bool right = coefficientRight(field->text(), expected);
            field->setAccessibleDescription(TaskNames::verdict(right, expected));
            if (right) {
                marking.colourRight(field);
            } else {
                all = false;
                m_corrections[i]->show();
                marking.wrong(field);
            }
        }
        if (all) {
            marking.addCorrect(2);
            points += 2;
        }
        item.right = all;
        marking.note(item);
    }
    return points == kTasks;
}

bool EquationPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            const auto at = std::find(m_fields.cbegin(), m_fields.cend(), watched);
            if (at != m_fields.cend()) {
                const int from = static_cast<int>(at - m_fields.cbegin());
                m_fields[nextField(from, hiddenFields())]->setFocus(Qt::OtherFocusReason);
            }
        }
    }
    return TaskPage::eventFilter(watched, event);
}

QList<QWidget*> EquationPage::taskWidgets(int row) const {
    if (row < 0 || row >= kRows)
        return {};
    // The row's own widget holds fields, formulas and corrections; hiding it
    // leaves the fields' own hidden state, which judging reads, alone.
    return {m_fields[4 * row], m_numbers[row], m_rows[row]};
}
