#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

// An ordered set of accepted alternatives read from one task-bank line,
// e.g. "Iod*Jod". Item 1 is the form a page shows as its prompt; the joined
// form is the answer key the pages search in.
class TermList final {
public:
    TermList() = default;

    static TermList Build(QStringView line, QStringView separator);

    int count() const { return static_cast<int>(m_items.size()); }
    bool isEmpty() const { return m_items.isEmpty(); }

    // n counts from 1; an index outside the list gives an empty text.
    QString Item(int n) const;

    QString Join(QStringView opening, QStringView separator, QStringView closing) const;

    const QStringList& items() const { return m_items; }

private:
    QStringList m_items;
};
