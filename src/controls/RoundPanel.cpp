#include "controls/RoundPanel.h"

#include <QPainter>

RoundPanel::RoundPanel(QWidget* parent) : QFrame(parent) {
    setFrameShape(QFrame::NoFrame);
}

RoundPanel::RoundPanel(const Look::Box& box, QWidget* parent) : RoundPanel(parent) {
    m_box = box;
}

void RoundPanel::setBox(const Look::Box& box) {
    m_box = box;
    update();
}

void RoundPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_box.paint(painter, rect());
}
