#include "pages/ChoiceRules.h"

#include "session/TextRules.h"

#include <QListWidget>
#include <algorithm>

bool ChoiceRules::sameChoice(QStringView expected, QStringView chosen) {
    return CanonicalText(expected) == CanonicalText(chosen);
}

int ChoiceRules::findListItem(const QStringList& items, QStringView text) {
    const QString wanted = CanonicalText(text);
    for (int i = 0; i < items.size(); ++i)
        if (CanonicalText(items.at(i)) == wanted)
            return i;
    return -1;
}

int ChoiceRules::SelectListItem(QListWidget* list, QStringView text) {
    if (!list || list->count() == 0)
        return -1;
    QStringList items;
    for (int i = 0; i < list->count(); ++i)
        items << list->item(i)->text();
    const int found = findListItem(items, text);
    list->setCurrentRow(found < 0 ? 0 : found, QItemSelectionModel::ClearAndSelect);
    list->scrollToItem(list->currentItem());
    return found;
}

int ChoiceRules::arrowPosition(const QStringList& items, const QString& chosen) {
    const int last = std::min<int>(kMarkedItems, items.size());
    for (int j = 0; j < last; ++j)
        if (items.at(j) == chosen)
            return j;
    return -1;
}

QString ChoiceRules::sortKey(QStringView text) {
    QString key;
    key.reserve(text.size());
    for (QChar c : TrimBlanks(text)) {
        switch (c.toLower().unicode()) {
        case u'\u00E4':
            key += u'a';
            break;
        case u'\u00F6':
            key += u'o';
            break;
        case u'\u00FC':
            key += u'u';
            break;
        case u'\u00DF':
            key += QStringLiteral("ss");
            break;
        default:
            key += c.toLower();
        }
    }
    return key;
}

QStringList ChoiceRules::displayOrder(QStringList items) {
    std::stable_sort(items.begin(), items.end(), [](const QString& a, const QString& b) {
        const QString ka = sortKey(a);
        const QString kb = sortKey(b);
        return ka != kb ? ka < kb : a < b;
    });
    return items;
}
