#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

class QListWidget;

// How a choice list is judged and marked, apart from the widgets: which item
// a text stands for, where a wrong choice gets its arrow, and the order in
// which a list shows its items.
class ChoiceRules final {
public:
    // A list is searched for the candidate's choice only this far.
    static constexpr int kMarkedItems = 7;

    // The choice is right when both texts agree after upper-casing and
    // cutting the outer blanks (the bank's padding does not count).
    static bool sameChoice(QStringView expected, QStringView chosen);

    // The first item that equals text once both are upper-cased and cut of
    // their outer blanks; -1 when none does.
    static int findListItem(const QStringList& items, QStringView text);
    // Selects in list the first item that findListItem finds, trying the
    // rows in order, and returns its row; when none matches, row 0 is
    // selected and -1 returned.
    static int SelectListItem(QListWidget* list, QStringView text);

    // The row of a wrong choice: the first of the first seven items whose
    // text equals chosen exactly; -1 when none does (nothing chosen).
    static int arrowPosition(const QStringList& items, const QString& chosen);
    static QString arrowed(const QString& chosen) { return QStringLiteral("-> ") + chosen; }

    // The items in the order a list shows them: alphabetical as a German
    // dictionary sorts (case and umlaut dots ignored), so that the right
    // definition, which is added first, does not give itself away.
    static QStringList displayOrder(QStringList items);
    static QString sortKey(QStringView text);
};
