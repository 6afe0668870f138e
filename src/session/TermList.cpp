#include "session/TermList.h"

TermList TermList::Build(QStringView line, QStringView separator) {
    TermList list;
    if (separator.isEmpty()) {
        list.m_items.append(line.toString());
        return list;
    }
    // Empty pieces between two neighbouring separators are kept: they never
    // match a non-empty answer, and keeping them keeps item numbers stable.
    qsizetype start = 0;
    while (true) {
        const qsizetype at = line.indexOf(separator, start);
        if (at < 0) {
            list.m_items.append(line.mid(start).toString());
            break;
        }
        list.m_items.append(line.mid(start, at - start).toString());
        start = at + separator.size();
    }
    return list;
}

QString TermList::Item(int n) const {
    if (n < 1 || n > m_items.size())
        return {};
    return m_items.at(n - 1);
}

QString TermList::Join(QStringView opening, QStringView separator, QStringView closing) const {
    QString out;
    out += opening;
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        if (i > 0)
            out += separator;
        out += m_items.at(i);
    }
    out += closing;
    return out;
}
