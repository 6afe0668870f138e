#include "controls/FadeBar.h"

#include "controls/Look.h"

#include <QPainter>
#include <QPainterPath>

FadeBar::FadeBar(Kind kind, QWidget* parent) : QWidget(parent), m_kind(kind) {}

void FadeBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (m_kind == Kind::Header) {
        QPainterPath path;
        const QRectF r = rect();
        const qreal radius = 10;
        path.moveTo(r.left(), r.bottom() + 1);
        path.lineTo(r.left(), r.top() + radius);
        path.quadTo(r.left(), r.top(), r.left() + radius, r.top());
        path.lineTo(r.right() - radius, r.top());
        path.quadTo(r.right(), r.top(), r.right(), r.top() + radius);
        path.lineTo(r.right(), r.bottom() + 1);
        path.closeSubpath();
        QLinearGradient g(0, 0, width(), 0);
        g.setColorAt(0, Look::accentDark());
        g.setColorAt(1, Look::accent());
        p.fillPath(path, g);
        return;
    }
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, QColor(255, 255, 255, 40));
    g.setColorAt(1, QColor(255, 255, 255, 0));
    p.fillRect(rect(), g);
}
