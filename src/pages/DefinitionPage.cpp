#include "pages/DefinitionPage.h"

#include "checker/BankChecker.h"
#include "controls/ChoiceList.h"
#include "controls/Look.h"
#include "pages/ChoiceRules.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QGridLayout>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QSet>
#include <QTimer>
#include <algorithm>

namespace {
// Drawn entries: three asked, one more kept out of the lists.
constexpr int kDrawn = 4;
} // namespace

DefinitionPage::DefinitionPage(TestFlow& flow, QWidget* parent) : TaskPage(flow, 3, 3, parent) {
    setHeading(QStringLiteral(" 3 Definitionen (Was ist ...?)"),
               QStringLiteral("Definitionen zu den vorgegeben Begriffen anklicken!"));
    QGridLayout* g = grid();
    // Three columns, each term above its list: side by side, the seven
    // wrapped definitions of all three lists fit the card at once.
    g->setVerticalSpacing(4);
    QList<QWidget*> lists;
    for (int i = 0; i < kQuestions; ++i) {
        m_terms[i] = makeNamed(QStringLiteral("AnzS3(%1)").arg(i), "prompt");
        m_terms[i]->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
        m_terms[i]->setWordWrap(true);
        m_lists[i] = new ChoiceList(this);
        m_lists[i]->setObjectName(QStringLiteral("Auswahl(%1)").arg(i));
        m_lists[i]->setRowPadding(2);
        m_terms[i]->setBuddy(m_lists[i]);
        g->addWidget(m_terms[i], 0, i);
        g->addWidget(m_lists[i], 1, i, Qt::AlignTop);
        g->setColumnStretch(i, 1);
        lists << m_lists[i];
    }
    chainEnter(lists, [](int i) { return (i + 1) % kQuestions; });
}

QList<TaskPage::Need> DefinitionPage::needs() const {
    return {{TaskBank::DefinitionsSection, kDrawn}};
}

int DefinitionPage::distinctDefinitions(const BankTable<DefinitionRecord>& table) {
    QSet<QString> texts;
    for (int r = 1; r <= table.count(); ++r)
        texts.insert(table[r].Definition);
    return static_cast<int>(texts.size());
}

QString DefinitionPage::extraBankProblem() const {
    // Ten different texts leave six for every list whichever four entries
    // are drawn; with fewer, some draws could never fill a list.
    const int texts = distinctDefinitions(bank().Definitions);
    if (texts >= BankChecker::kMinimumDefinitionTexts)
        return {};
    return QStringLiteral("Der Abschnitt %1 „%2“ (%3) der Datei labquiz.dat enthält insgesamt nur "
                          "%4 verschiedene Erklärungen; diese Seite braucht mindestens %5 (vier "
                          "gezogene Begriffe und sechs weitere Erklärungen für jede Liste).")
        .arg(int(TaskBank::DefinitionsSection) + 1)
        .arg(TaskBank::sectionTitle(TaskBank::DefinitionsSection),
             TaskBank::sectionName(TaskBank::DefinitionsSection))
        .arg(texts)
        .arg(BankChecker::kMinimumDefinitionTexts);
}

QStringList DefinitionPage::wrongDefinitions(const BankTable<DefinitionRecord>& table,
                                             const QList<int>& drawn,
                                             const std::function<int()>& drawWrong) {
    const int n = table.count();
    // Texts compared as stored: all are padded to the same width, so two
    // are the same exactly when one would be found in a list of the other.
    QSet<QString> used;
    for (int k : drawn)
        if (k >= 1 && k <= n)
            used.insert(table[k].Definition);
    auto admissible = [&](int r) {
        return r >= 1 && r <= n && !drawn.contains(r) && !used.contains(table[r].Definition);
    };
    QSet<QString> pool;
    for (int r = 1; r <= n; ++r)
        if (admissible(r))
            pool.insert(table[r].Definition);
    const int wanted = std::min<int>(kWrongChoices, static_cast<int>(pool.size()));

    // A fair draw finds a fresh entry within a few dozen tries even when
    // only a handful are left; this many misses means the source repeats.
    const int patience = 20 * n + 100;
    QStringList out;
    int misses = 0;
    while (out.size() < wanted) {
        int r = drawWrong();
        if (!admissible(r)) {
            if (++misses < patience)
                continue;
            r = 1;
            while (r <= n && !admissible(r))
                ++r;
        }
        misses = 0;
        used.insert(table[r].Definition);
        out << table[r].Definition;
    }
    return out;
}

DefinitionPage::Draw DefinitionPage::drawFor(const TaskBank& bank, const QList<int>& drawn,
                                             const std::function<int()>& drawWrong) {
    Draw d;
    const BankTable<DefinitionRecord>& table = bank.Definitions;
    for (int i = 0; i < kQuestions && i < drawn.size(); ++i) {
        const DefinitionRecord& r = table[drawn[i]];
        d.terms[i] = TrimRightBlanks(r.Term).toString();
        d.answers[i] = r.Definition;
        // The used texts start afresh for every list: two lists may share
        // wrong definitions.
        d.choices[i] = QStringList{r.Definition} + wrongDefinitions(table, drawn, drawWrong);
    }
    return d;
}

void DefinitionPage::reset() {
    for (int i = 0; i < kQuestions; ++i) {
        m_terms[i]->clear();
        m_lists[i]->setChoices({});
        m_lists[i]->setEnabled(true);
        m_lists[i]->setMark({});
    }
}

void DefinitionPage::draw() {
    const QList<int> k = drawDistinct(TaskBank::DefinitionsSection, kDrawn);
    // Wrong definitions come from the whole table, at either level.
    const int whole = bank().count(TaskBank::DefinitionsSection);
    const Draw d = drawFor(bank(), k, [&] {
        return flow().RandomBetween(whole, k.value(0), k.value(1), k.value(2), k.value(3));
    });
    for (int i = 0; i < kQuestions; ++i) {
        m_terms[i]->setText(d.terms[i]);
        m_lists[i]->setChoices(ChoiceRules::displayOrder(d.choices[i]));
        m_lists[i]->setAccessibleName(TaskNames::definitionOf(d.terms[i]));
        state().DrawnAnswers[i] = d.answers[i];
    }
    m_lists[0]->setFocus();
    fitLists();
    // Once the page is laid out, the room below the lists is known.
    QTimer::singleShot(0, this, [this] { fitLists(); });
}

void DefinitionPage::fitLists() {
    if (QLayout* l = layout())
        l->activate();
    const int top = m_lists[0]->mapTo(this, QPoint()).y();
    const int room = okButton()->mapTo(this, QPoint()).y() - 14 - top;
    if (room <= 0 || m_lists[0]->width() <= 0)
        return;
    // Measured as the lists will be once checked, with the strip for the
    // tick or cross taken from their width, so checking never makes a list
    // scroll that did not before.
    auto tallestAt = [this](int size) {
        int tallest = 0;
        for (ChoiceList* list : m_lists) {
            QFont f = list->font();
            f.setPixelSize(size);
            list->setFont(f);
            tallest = std::max(tallest, list->markedHeight());
        }
        return tallest;
    };
    // The largest text size at which the tallest list fits, else the smallest.
    int tallest = 0;
    for (int size : kTextSizes)
        if ((tallest = tallestAt(size)) <= room)
            break;
    const bool fits = tallest <= room;
    for (ChoiceList* list : m_lists) {
        // A bank with longer definitions than the card holds scrolls rather
        // than cutting text.
        list->setShowAll(fits);
        if (!fits)
            list->setFixedHeight(room);
    }
}

bool DefinitionPage::judge(Marking& marking) {
    for (int i = 0; i < kQuestions; ++i) {
        ChoiceList* list = m_lists[i];
        list->setEnabled(false);
        const QString chosen = list->chosenText();
        const QString& expected = state().DrawnAnswers[i];
        AnswerItem item{m_terms[i]->text().trimmed(), expected.trimmed(), chosen.trimmed()};
        const bool right = ChoiceRules::sameChoice(expected, chosen);
        list->setAccessibleDescription(TaskNames::verdict(right, expected));
        if (right) {
            list->setMark(Look::right());
            marking.addCorrect();
            item.right = true;
            marking.note(item);
            continue;
        }
        marking.note(item);
        list->setMark(Look::wrong());
        const int j = ChoiceRules::arrowPosition(list->choices(), chosen);
        if (j >= 0)
            list->replaceChoice(j, ChoiceRules::arrowed(chosen));
        const int found = ChoiceRules::SelectListItem(list, expected);
        // Show the marked choice beside the right one where both fit.
        if (j >= 0 && found >= 0) {
            list->scrollToItem(list->item(std::min(j, found)), QAbstractItemView::PositionAtTop);
            list->scrollToItem(list->item(std::max(j, found)));
        }
    }
    // An arrow makes a wrong choice a little longer.
    fitLists();
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> DefinitionPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_lists[item], m_terms[item]};
}
