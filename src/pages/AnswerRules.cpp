#include "pages/AnswerRules.h"

#include "session/TextRules.h"

#include <QStringList>

bool AnswerRules::matchesExactly(QStringView typed, QStringView expected) {
    return TrimBlanks(typed) == expected;
}

bool AnswerRules::matchesListItem(QStringView typed, QStringView key) {
    const QStringView answer = TrimBlanks(typed);
    if (answer.isEmpty())
        return false;
    const QString haystack = u'*' + key.toString() + u'*';
    const QString needle = u'*' + answer.toString() + u'*';
    return haystack.contains(needle, Qt::CaseSensitive);
}

QString AnswerRules::readableAlternatives(QStringView key) {
    QStringList parts;
    for (QStringView p : key.split(u'*')) {
        const QStringView t = TrimBlanks(p);
        if (!t.isEmpty())
            parts << t.toString();
    }
    return parts.join(QStringLiteral(" oder "));
}
