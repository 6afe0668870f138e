#pragma once

#include "chem/ElementTable.h"

#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QWidget>

// ctl_PSE: draws the elements of elements.dat as a periodic table, the
// lanthanoids and actinoids in two rows of their own below it. Each tile
// shows number, symbol and atomic mass. A click on an element shows its data
// in the line at the bottom; from the keyboard the arrow keys move a ring
// over the elements and Enter shows the ringed one.
class PeriodicTableView final : public QWidget {
    Q_OBJECT
public:
    static constexpr int kCell = 46;
    static constexpr int kGap = 2;

    explicit PeriodicTableView(QWidget* parent = nullptr);

    // An empty table (an unreadable file) is drawn with a line saying so.
    void setTable(ElementTable table);
    const ElementTable& table() const { return m_table; }

    // Where an element sits: column 0..17, row 0..6 for the periods and
    // 8..9 for the lanthanoids and actinoids. Pure, so it can be checked.
    static QPoint cellOf(const ElementTable::Element& element);
    QRect cellRect(QPoint cell) const;
    int selected() const { return m_selected; }
    void select(int number);
    QString selectionText() const;
    // The element under the keyboard ring.
    int cursor() const { return m_cursor; }

    // A tile's mass as elements.dat gives it, with a decimal comma; "[n]"
    // for an element known by the mass number of its longest-lived isotope.
    static QString massText(const ElementTable::Element& element);
    // The element reached from one by an arrow key (dx, dy one of -1, 0, 1):
    // the nearest one on that line, past gaps; the same element at an edge.
    int neighbour(int number, int dx, int dy) const;

    // The fill colour of a category of elements.dat, and the categories in
    // the order a legend lists them.
    static QColor categoryColour(const QString& category);
    static QStringList categories();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    const ElementTable::Element* elementAt(QPoint pos) const;

    ElementTable m_table;
    int m_selected = 0;
    int m_cursor = 1;
    void moveCursor(int number);
};
