#include "pages/ElementPage.h"

#include "controls/Look.h"
#include "pages/AnswerRules.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace {
const QString kRightIs = QStringLiteral(" - Richtig ist: ");
}

ElementPage::ElementPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 1, 1, parent) {
    setHeading(QStringLiteral("Elemente: Namen und Symbole"),
               QStringLiteral("Schreibe zu jedem Elementnamen das Symbol und zu jedem Symbol den "
                              "Namen des Elements."));
    QGridLayout* g = grid();
    g->setColumnMinimumWidth(0, 230);
    g->setColumnStretch(1, 1);

    auto addGroup = [&](int row, const QString& title) {
        QLabel* heading = makeLabel(title, "groupTitle");
        g->addWidget(heading, row, 0);
        g->addWidget(makeLabel(QStringLiteral("(Groß- / Kleinschreibung!)"), "hint"), row, 1);
    };
    addGroup(0, QStringLiteral(" 3 Elementsymbole"));
    for (int i = 0; i < 3; ++i) {
        m_prompts[i] = makeNamed(QStringLiteral("AnzS1(%1)").arg(i), "prompt");
        m_symbols[i] = makeInput(QStringLiteral("EleSym(%1)").arg(i));
        g->addWidget(m_prompts[i], 1 + i, 0);
        g->addWidget(m_symbols[i], 1 + i, 1);
    }
    g->setRowMinimumHeight(4, 18);
    addGroup(5, QStringLiteral(" 3 Namen der Elemente"));
    for (int i = 0; i < 3; ++i) {
        m_prompts[3 + i] = makeNamed(QStringLiteral("AnzS1(%1)").arg(3 + i), "prompt");
        m_names[i] = makeInput(QStringLiteral("Ele(%1)").arg(i));
        g->addWidget(m_prompts[3 + i], 6 + i, 0);
        g->addWidget(m_names[i], 6 + i, 1);
    }
    // Enter walks EleSym(0..2), then Ele(0..2), and back to EleSym(0).
    chainEnter({m_symbols[0], m_symbols[1], m_symbols[2], m_names[0], m_names[1], m_names[2]},
               [](int i) { return (i + 1) % kQuestions; });
}

QList<TaskPage::Need> ElementPage::needs() const {
    return {{TaskBank::ElementNamesSection, kQuestions}};
}

ElementPage::Draw ElementPage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    for (int i = 0; i < 3 && i < records.size(); ++i) {
        const ElementNameRecord& r = bank.ElementNames[records[i]];
        d.prompts[i] = TrimRightBlanks(r.Name.Item(1)).toString();
        d.answers[i] = TrimRightBlanks(r.Symbol).toString();
    }
    for (int i = 3; i < kQuestions && i < records.size(); ++i) {
        const ElementNameRecord& r = bank.ElementNames[records[i]];
        d.prompts[i] = TrimRightBlanks(r.Symbol).toString();
        d.answers[i] = TrimRightBlanks(r.Name.Join(u"*", u"*", u"*")).toString();
    }
    return d;
}

void ElementPage::reset() {
    for (QLineEdit* e : m_symbols) {
        e->clear();
        Look::clearMarks(e);
    }
    for (QLineEdit* e : m_names) {
        e->clear();
        Look::clearMarks(e);
    }
}

void ElementPage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::ElementNamesSection, kQuestions));
    for (int i = 0; i < kQuestions; ++i) {
        m_prompts[i]->setText(d.prompts[i]);
        state().DrawnAnswers[i] = d.answers[i];
    }
    for (int i = 0; i < 3; ++i) {
        m_symbols[i]->setAccessibleName(TaskNames::symbolFor(d.prompts[i]));
        m_names[i]->setAccessibleName(TaskNames::nameForSymbol(d.prompts[3 + i]));
    }
    m_symbols[0]->setFocus();
}

bool ElementPage::judge(Marking& marking) {
    SessionState& s = state();
    for (int i = 0; i < 3; ++i) {
        QLineEdit* field = m_symbols[i];
        AnswerItem item{m_prompts[i]->text().trimmed(), s.DrawnAnswers[i], field->text()};
        if (AnswerRules::matchesExactly(field->text(), s.DrawnAnswers[i])) {
            marking.right(field, item);
        } else {
            marking.wrong(field, item);
            field->setText(field->text() + kRightIs + s.DrawnAnswers[i]);
        }
    }
    for (int i = 0; i < 3; ++i) {
        QLineEdit* field = m_names[i];
        const QString& key = s.DrawnAnswers[3 + i];
        const QString readable = AnswerRules::readableAlternatives(key);
        AnswerItem item{m_prompts[3 + i]->text().trimmed(), readable, field->text()};
        if (AnswerRules::matchesListItem(field->text(), key)) {
            marking.right(field, item);
        } else {
            marking.wrong(field, item);
            field->setText(field->text() + kRightIs + readable);
        }
        field->setCursorPosition(0);
    }
    for (QLineEdit* e : m_symbols)
        e->setCursorPosition(0);
    // The praise looks at the test-wide count: it reaches 6 here only when
    // this first page was answered without a mistake.
    return s.CorrectSoFar == kQuestions;
}

QList<QWidget*> ElementPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    QLineEdit* field = item < 3 ? m_symbols[item] : m_names[item - 3];
    return {field, m_prompts[item]};
}
