#pragma once

#include "controls/Look.h"

#include <QColor>
#include <QLabel>

class QPainter;

// A label on a rounded box of its own (a notice, a marked prompt, a badge).
// The padding is the label's contents margins. A right/wrong mark fills the
// box in place of its own fill, so the rounded shape stays.
class BoxLabel : public QLabel {
    Q_OBJECT
public:
    explicit BoxLabel(const QString& text = QString(), QWidget* parent = nullptr);

    void setBox(const Look::Box& box);
    const Look::Box& box() const { return m_box; }
    // An invalid colour takes the mark away.
    void setMark(const QColor& colour);
    QColor mark() const { return m_mark; }
    // The colour the box is filled with just now.
    QColor shownFill() const { return m_mark.isValid() ? m_mark : m_box.fill; }

protected:
    void paintEvent(QPaintEvent* event) override;
    // The rounded box alone, for a label that draws its text itself.
    void paintBox(QPainter& painter) const;

private:
    Look::Box m_box;
    QColor m_mark;
};
