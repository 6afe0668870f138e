#include "pages/NumberSyllablePage.h"

#include "controls/Look.h"
#include "pages/AnswerRules.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/SessionState.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

NumberSyllablePage::NumberSyllablePage(TestFlow& flow, QWidget* parent)
    : TaskPage(flow, 2, 2, parent) {
    setHeading(QStringLiteral("Zahlsilben"),
               QStringLiteral("Schreibe zu jeder Zahlsilbe die Zahl und zu jeder Zahl die "
                              "Zahlsilbe – so wie „di“ in Kohlenstoffdioxid für 2 steht."));
    QGridLayout* g = grid();
    g->setColumnMinimumWidth(0, 230);
    g->setColumnStretch(2, 1);

    auto addGroup = [&](int row, const QString& title, const QString& hint) {
        g->addWidget(makeLabel(title, "groupTitle"), row, 0);
        g->addWidget(makeLabel(hint, "hint"), row, 1, 1, 2);
    };
    auto addRow = [&](int i, int row) {
        m_prompts[i] = makeNamed(QStringLiteral("AnzS2(%1)").arg(i), "prompt");
        m_fields[i] = makeInput(QStringLiteral("Zahl(%1)").arg(i));
        m_fields[i]->setMinimumWidth(380);
        g->addWidget(m_prompts[i], row, 0);
        g->addWidget(m_fields[i], row, 1);
    };
    addGroup(0, QStringLiteral(" 2 Zahlen"), QStringLiteral("(Arabische Ziffern: 1...2...3...)"));
    addRow(0, 1);
    addRow(1, 2);
    g->setRowMinimumHeight(3, 18);
    addGroup(4, QStringLiteral(" 2 Zahlsilben"), QStringLiteral("(Nur Kleinschreibung!)"));
    addRow(2, 5);
    addRow(3, 6);
    chainEnter({m_fields[0], m_fields[1], m_fields[2], m_fields[3]},
               [](int i) { return (i + 1) % kQuestions; });
}

QList<TaskPage::Need> NumberSyllablePage::needs() const {
    return {{TaskBank::NumberSyllablesSection, kQuestions}};
}

NumberSyllablePage::Draw NumberSyllablePage::drawFor(const TaskBank& bank,
                                                     const QList<int>& records) {
    Draw d;
    for (int i = 0; i < kQuestions && i < records.size(); ++i) {
        const NumberSyllableRecord& r = bank.NumberSyllables[records[i]];
        const QString number = QString::number(r.Number);
        if (i < 2) {
            d.prompts[i] = TrimRightBlanks(r.Syllable.Item(1)).toString();
            d.answers[i] = number;
        } else {
            d.prompts[i] = number;
            d.answers[i] = TrimRightBlanks(r.Syllable.Join(u"*", u"*", u"*")).toString();
        }
    }
    return d;
}

bool NumberSyllablePage::numberRight(QStringView typed, QStringView expected) {
    return AnswerRules::matchesExactly(typed, expected);
}

bool NumberSyllablePage::syllableRight(QStringView typed, QStringView key) {
    return AnswerRules::matchesListItem(typed, key);
}

QString NumberSyllablePage::correction(QStringView typed, QStringView expected) {
    return typed.toString() + QStringLiteral(" - richtig ist: ") + expected.toString();
}

void NumberSyllablePage::reset() {
    for (QLineEdit* e : m_fields) {
        e->clear();
        e->setReadOnly(false);
        Look::clearMarks(e);
    }
}

void NumberSyllablePage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::NumberSyllablesSection, kQuestions));
    for (int i = 0; i < kQuestions; ++i) {
        m_prompts[i]->setText(d.prompts[i]);
        state().DrawnAnswers[i] = d.answers[i];
        m_fields[i]->setAccessibleName(i < 2 ? TaskNames::numberForSyllable(d.prompts[i])
                                             : TaskNames::syllableForNumber(d.prompts[i]));
    }
    m_fields[0]->setFocus();
}

bool NumberSyllablePage::judge(Marking& marking) {
    const SessionState& s = state();
    for (int i = 0; i < kQuestions; ++i) {
        QLineEdit* field = m_fields[i];
        const QString& expected = s.DrawnAnswers[i];
        const bool right =
            i < 2 ? numberRight(field->text(), expected) : syllableRight(field->text(), expected);
        const AnswerItem item{m_prompts[i]->text().trimmed(), expected, field->text()};
        if (right) {
            marking.right(field, item);
        } else {
            marking.wrong(field, item);
            field->setText(correction(field->text(), expected));
        }
        field->setReadOnly(true);
        field->setCursorPosition(0);
    }
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> NumberSyllablePage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_fields[item], m_prompts[item]};
}
