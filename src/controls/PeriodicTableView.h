#pragma once

#include "chem/ElementTable.h"

#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QWidget>

// ctl_PSE: draws the elements of elements.dat as a periodic table, the
// lanthanoids and actinoids in two rows of their own below it. A click on an
// element shows its data in the line at the bottom.
class PeriodicTableView final : public QWidget {
    Q_OBJECT
public:
    static constexpr int kCell = 38;
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

    // The fill colour of a category of elements.dat, and the categories in
    // the order a legend lists them.
    static QColor categoryColour(const QString& category);
    static QStringList categories();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    const ElementTable::Element* elementAt(QPoint pos) const;

    ElementTable m_table;
    int m_selected = 0;
};
