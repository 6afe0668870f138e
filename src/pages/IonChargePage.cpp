#include "pages/IonChargePage.h"

#include "controls/BoxLabel.h"
#include "controls/Look.h"
#include "controls/MarkSign.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QStringList>
#include <cmath>
#include <cstdint>

IonChargePage::IonChargePage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 5, 5, parent) {
    setHeading(QStringLiteral(" 4 Bevorzugte Ladungszahl der Ionen"),
               QStringLiteral("Entsprechendes Periodensystem mit [Strg]+F1] oder [Strg]+F2]"));
    QGridLayout* g = grid();
    g->setColumnMinimumWidth(0, 190);
    g->setColumnStretch(2, 1);
    g->setVerticalSpacing(30);
    QList<QWidget*> buttons;
    for (int k = 0; k < kIons; ++k) {
        // A wrong answer marks the ion's name on a rounded box.
        auto* name = new BoxLabel(QString(), this);
        name->setObjectName(QStringLiteral("AnzS5(%1)").arg(k));
        name->setTextFormat(Qt::PlainText);
        Look::setRole(name, QStringLiteral("prompt"));
        name->setBox({QColor(), QColor(), 0, 4});
        name->setContentsMargins(10, 6, 10, 6);
        m_names[k] = name;
        // Each row is a panel of its own with its own exclusive group, so
        // that every ion keeps exactly one choice.
        auto* panel = new QWidget(this);
        panel->setObjectName(QStringLiteral("PanelS5(%1)").arg(k));
        auto* row = new QHBoxLayout(panel);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(8);
        m_groups[k] = new QButtonGroup(panel);
        m_groups[k]->setExclusive(true);
        for (int c = 0; c < kCharges; ++c) {
            const int i = kCharges * k + c;
            auto* b = new QRadioButton(caption(c), panel);
            b->setObjectName(QStringLiteral("ChooseS5_1(%1)").arg(i));
            // Wide enough for a tick or cross beside the charge, so a mark
            // does not shift the row.
            b->setMinimumWidth(62 + MarkSign::kRoom);
            Look::setText(b, 15);
            // Padding around the button, so that a mark reads as a box.
            b->setContentsMargins(8, 5, 8, 5);
            m_groups[k]->addButton(b, i);
            row->addWidget(b);
            m_buttons[i] = b;
            buttons << b;
        }
        g->addWidget(m_names[k], k, 0);
        g->addWidget(panel, k, 1);
    }
    chainEnter(buttons, [](int i) { return enterTarget(i); });
}

QString IonChargePage::caption(int column) {
    const int charge = column + kLowestCharge;
    return charge > 0 ? QStringLiteral("+%1").arg(charge) : QString::number(charge);
}

int IonChargePage::answerButton(int row, int charge) {
    return static_cast<std::int16_t>(kCharges * row + charge - kLowestCharge);
}

int IonChargePage::enterTarget(int button) {
    if (button < 0 || button >= kButtons)
        return -1;
    if (button == 15)
        return -1; // kept as it always was: Enter on the "-2" of row three stays
    const int row = button / kCharges;
    return kCharges * ((row + 1) % kIons);
}

QList<TaskPage::Need> IonChargePage::needs() const {
    return {{TaskBank::IonChargesSection, kIons}};
}

QString IonChargePage::extraBankProblem() const {
    // A charge beyond -3..+3 would point into another row or past the last
    // button.
    const BankTable<IonChargeRecord>& table = bank().IonCharges;
    const int usable = bank().usableCount(TaskBank::IonChargesSection, expert());
    QStringList wrong;
    for (int r = 1; r <= usable; ++r)
        if (!chargeFits(table[r].Charge))
            wrong << QStringLiteral("„%1“ (%2)")
                         .arg(TrimBlanks(table[r].Name).toString())
                         .arg(table[r].Charge);
    if (wrong.isEmpty())
        return {};
    return QStringLiteral("Im Abschnitt %1 „%2“ (%3) der Datei labquiz.dat liegt die Ladung von %4 "
                          "nicht zwischen -3 und +3; diese Seite bietet nur die Ladungen -3 bis "
                          "+3 an.")
        .arg(int(TaskBank::IonChargesSection) + 1)
        .arg(TaskBank::sectionTitle(TaskBank::IonChargesSection),
             TaskBank::sectionName(TaskBank::IonChargesSection), wrong.join(QStringLiteral(", ")));
}

IonChargePage::Draw IonChargePage::drawFor(const TaskBank& bank, const QList<int>& records) {
    Draw d;
    for (int k = 0; k < kIons && k < records.size(); ++k) {
        const IonChargeRecord& r = bank.IonCharges[records[k]];
        d.names[k] = r.Name;
        d.answers[k] = QString::number(answerButton(k, r.Charge));
    }
    return d;
}

void IonChargePage::reset() {
    for (int k = 0; k < kIons; ++k) {
        m_names[k]->clear();
        Look::clearMarks(m_names[k]);
    }
    for (QRadioButton* b : m_buttons)
        Look::clearMarks(b);
    // Every row starts at "-3": an untouched row answers -3.
    for (int k = 0; k < kIons; ++k)
        m_buttons[kCharges * k]->setChecked(true);
}

void IonChargePage::draw() {
    const Draw d = drawFor(bank(), drawDistinct(TaskBank::IonChargesSection, kIons));
    for (int k = 0; k < kIons; ++k) {
        m_names[k]->setText(d.names[k]);
        // The row is the option group; each choice says its charge and ion.
        const QString task = TaskNames::chargeOf(d.names[k]);
        m_buttons[kCharges * k]->parentWidget()->setAccessibleName(task);
        for (int c = 0; c < kCharges; ++c)
            m_buttons[kCharges * k + c]->setAccessibleName(caption(c) + QStringLiteral(", ") +
                                                           task);
        state().DrawnAnswers[k] = d.answers[k];
    }
    m_buttons[0]->setFocus();
}

bool IonChargePage::judge(Marking& marking) {
    for (int k = 0; k < kIons; ++k) {
        const int first = kCharges * k;
        const long e = std::lround(LeadingValue(state().DrawnAnswers[k]));
        // Only a button of the ion's own row can be its answer.
        QRadioButton* right =
            (e >= first && e < first + kCharges) ? m_buttons[static_cast<int>(e)] : nullptr;
        QString given;
        for (int i = first; i < first + kCharges; ++i) {
            if (m_buttons[i]->isChecked())
                given = m_buttons[i]->text();
        }
        const AnswerItem item{m_names[k]->text().trimmed(), right ? right->text() : QString(),
                              given};
        const bool ok = right && right->isChecked();
        for (int i = first; i < first + kCharges; ++i)
            m_buttons[i]->setAccessibleDescription(TaskNames::verdict(ok, item.expected));
        if (ok) {
            marking.right(right, item);
            continue;
        }
        for (int i = first; i < first + kCharges; ++i) {
            if (m_buttons[i]->isChecked()) {
                Look::markWrongChoice(m_buttons[i]);
                break;
            }
        }
        if (right)
            right->setChecked(true);
        marking.wrong(m_names[k], item);
    }
    return marking.rightOnPage() == kIons;
}

QList<QWidget*> IonChargePage::taskWidgets(int item) const {
    if (item < 0 || item >= kIons)
        return {};
    QRadioButton* first = m_buttons[kCharges * item];
    return {first, m_names[item], first->parentWidget()};
}
