#include "pages/DefinitionPage.h"

#include "checker/BankChecker.h"
#include "controls/ChoiceList.h"
#include "controls/Look.h"
#include "pages/ChoiceRules.h"
#include "pages/Marking.h"
#include "pages/TaskNames.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
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
    // A narrow column for the terms leaves the lists wide enough that most
    // definitions take one line, so all seven of each list show at once.
    g->setColumnMinimumWidth(0, 150);
    g->setVerticalSpacing(6);
    g->setColumnStretch(1, 1);
    QList<QWidget*> lists;
    for (int i = 0; i < kQuestions; ++i) {
        m_terms[i] = makeNamed(QStringLiteral("AnzS3(%1)").arg(i), "prompt");
        m_terms[i]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        m_terms[i]->setWordWrap(true);
        m_terms[i]->setContentsMargins(0, 6, 0, 0);
        m_terms[i]->setMaximumWidth(160);
        m_lists[i] = new ChoiceList(this);
        m_lists[i]->setObjectName(QStringLiteral("Auswahl(%1)").arg(i));
        m_lists[i]->setRowPadding(2);
        m_lists[i]->installEventFilter(this);
        g->addWidget(m_terms[i], i, 0);
        g->addWidget(m_lists[i], i, 1);
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
    open(0);
    // Once the page is laid out, the room below the lists is known.
    QTimer::singleShot(0, this, [this] { open(m_open); });
}

void DefinitionPage::open(int list) {
    m_open = list;
    // The room from the first list down to the buttons.
    const int top = m_lists[0]->mapTo(this, QPoint()).y();
    const int room = okButton()->mapTo(this, QPoint()).y() - 14 - top;
    const int spacing = grid()->verticalSpacing();
    int allOpen = (kQuestions - 1) * spacing;
    for (ChoiceList* l : m_lists)
        allOpen += l->allRowsHeight();
    const bool fitsOpen = room > 0 && allOpen <= room;
    // Folded lists share what the open one leaves, two rows at least.
    const int folded = room > 0
                           ? (room - m_lists[list]->allRowsHeight() - (kQuestions - 1) * spacing) /
                                 (kQuestions - 1)
                           : 0;
    for (int i = 0; i < kQuestions; ++i) {
        ChoiceList* l = m_lists[i];
        l->setShowAll(fitsOpen || i == list);
        if (fitsOpen || i == list)
            continue;
        const int rows = std::min(2, l->count());
        int height = 2 * l->frameWidth();
        for (int row = 0; row < rows; ++row)
            height += l->sizeHintForRow(row);
        l->setFixedHeight(std::min(l->allRowsHeight(), std::max({height, folded, 40})));
        const QList<QListWidgetItem*> chosen = l->selectedItems();
        if (!chosen.isEmpty())
            l->scrollToItem(chosen.first(), QAbstractItemView::PositionAtTop);
        else
            l->scrollToTop();
    }
}

bool DefinitionPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        for (int i = 0; i < kQuestions; ++i)
            if (watched == m_lists[i] && i != m_open)
                open(i);
    }
    return TaskPage::eventFilter(watched, event);
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
    return marking.rightOnPage() == kQuestions;
}

QList<QWidget*> DefinitionPage::taskWidgets(int item) const {
    if (item < 0 || item >= kQuestions)
        return {};
    return {m_lists[item], m_terms[item]};
}
