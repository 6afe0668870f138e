#include "controls/BoxLabel.h"

#include <QPainter>

BoxLabel::BoxLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {}

void BoxLabel::setBox(const Look::Box& box) {
    m_box = box;
    update();
}

void BoxLabel::setMark(const QColor& colour) {
    m_mark = colour;
    update();
}

void BoxLabel::paintBox(QPainter& painter) const {
    if (m_mark.isValid() && !Look::isRight(m_mark)) {
        // A wrong mark has a heavy dark border besides its colour.
        Look::Box heavy = m_box;
        heavy.border = Qt::black;
        heavy.borderWidth = 3;
        heavy.stripe = 0;
        heavy.paint(painter, rect(), m_mark);
        return;
    }
    if (m_mark.isValid() || m_box.fill.isValid() || m_box.borderWidth > 0)
        m_box.paint(painter, rect(), m_mark);
}

void BoxLabel::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        paintBox(painter);
    }
    QLabel::paintEvent(event);
}
