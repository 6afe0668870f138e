#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QListWidget>
#include <QString>
#include <QStringList>

// A single-choice list for texts up to a sentence long: an item wraps at the
// list's width instead of scrolling sideways, the list scrolls vertically
// only, and formulas in an item show with real sub- and superscripts. Items
// keep their texts exactly as added (blank-padded, as the task bank stores
// them); only the display leaves the padding out.
//
// The answer is the selected item. Qt makes an item current without
// selecting it when the list gets the focus; such an item is no answer, and
// a freshly filled list has nothing selected.
class ChoiceList : public QListWidget {
    Q_OBJECT
public:
    explicit ChoiceList(QWidget* parent = nullptr);

    // Replaces all items; nothing is selected afterwards.
    void setChoices(const QStringList& texts);
    QStringList choices() const;
    // The text of the selected item, empty when none is selected.
    QString chosenText() const;
    // Changes the text of the item in row (for marking a wrong choice).
    void replaceChoice(int row, const QString& text);

    // Vertical padding of each item in pixels (4 unless set).
    void setRowPadding(int pixels);
    // The list takes the height of all its items, so that none needs
    // scrolling; it follows the items and the width.
    void setShowAll(bool all);
    int allRowsHeight() const;
    // The same once the list is marked at its present width (the badge and
    // the border take room): a page can choose a text size beforehand.
    int markedHeight() const;

    // Typing the first letters chooses the first item that begins so. Qt
    // would start after the current item; an item made current only by the
    // focus is no choice, so then the search starts at the top.
    void keyboardSearch(const QString& search) override;

    // Fills the whole list with a right or wrong colour; an invalid colour
    // takes the mark away. The colour is also kept in the property
    // "markColour", as Look keeps it for other fields.
    void setMark(const QColor& colour);
    QColor mark() const { return m_mark; }
    // Room a marked list keeps around its items for the heavy border of a
    // wrong mark (left, top and bottom; the right side holds the badge).
    static constexpr int kMarkInset = 3;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void fitAll();

    QColor m_mark;
    bool m_showAll = false;
    QElapsedTimer m_lastKey;
};
