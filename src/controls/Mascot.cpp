#include "controls/Mascot.h"

#include <QPainter>
#include <QPainterPath>

namespace {

const QColor kInk(0x26, 0x32, 0x38);

// The liquid shows the mood too: bright when things went well, murky when not.
QColor liquidFor(int expression) {
    switch (expression) {
    case 2:
        return {0x66, 0xd1, 0x7a};
    case 1:
        return {0x4d, 0xd0, 0xe1};
    case 5:
        return {0x64, 0xb5, 0xf6};
    case 6:
        return {0xff, 0xb7, 0x4d};
    case 3:
        return {0xa1, 0x9e, 0x7e};
    default:
        return {0x4d, 0xd0, 0xe1};
    }
}

void drawStar(QPainter& p, QPointF c, qreal r) {
    QPainterPath star;
    star.moveTo(c.x(), c.y() - r);
    star.quadTo(c.x(), c.y(), c.x() + r, c.y());
    star.quadTo(c.x(), c.y(), c.x(), c.y() + r);
    star.quadTo(c.x(), c.y(), c.x() - r, c.y());
    star.quadTo(c.x(), c.y(), c.x(), c.y() - r);
    p.drawPath(star);
}

void drawEyes(QPainter& p, int expression) {
    const QPointF left(22, 47.5);
    const QPointF right(34, 47.5);
    const QPen line(kInk, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    switch (expression) {
    case 2: { // closed with joy: two arcs
        p.setPen(line);
        p.setBrush(Qt::NoBrush);
        for (QPointF e : {left, right}) {
            QPainterPath arc;
            arc.moveTo(e.x() - 3, e.y() + 1);
            arc.quadTo(e.x(), e.y() - 4, e.x() + 3, e.y() + 1);
            p.drawPath(arc);
        }
        return;
    }
    case 6: // half-lidded: a lid line cuts the upper half
        p.setPen(Qt::NoPen);
        p.setBrush(kInk);
        for (QPointF e : {left, right})
            p.drawChord(QRectF(e.x() - 2.4, e.y() - 2.4, 4.8, 4.8), 180 * 16, 180 * 16);
        p.setPen(line);
        p.drawLine(QPointF(left.x() - 3, left.y()), QPointF(left.x() + 3, left.y()));
        p.drawLine(QPointF(right.x() - 3, right.y()), QPointF(right.x() + 3, right.y()));
        return;
    case 3: // worried: round eyes under brows that rise towards the middle
        p.setPen(Qt::NoPen);
        p.setBrush(kInk);
        p.drawEllipse(left, 2.2, 2.6);
        p.drawEllipse(right, 2.2, 2.6);
        p.setPen(line);
        p.drawLine(QPointF(18.5, 43.5), QPointF(24.5, 41.5));
        p.drawLine(QPointF(37.5, 43.5), QPointF(31.5, 41.5));
        return;
    default:
        break;
    }
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    const qreal r = expression == 1 ? 2.6 : 2.2;
    p.drawEllipse(left, r, r);
    p.drawEllipse(right, r, r);
    if (expression == 1) { // bright eyes: a highlight in each
        p.setBrush(Qt::white);
        p.drawEllipse(left + QPointF(0.8, -0.8), 0.8, 0.8);
        p.drawEllipse(right + QPointF(0.8, -0.8), 0.8, 0.8);
    }
    if (expression == 5) { // level brows: content, not thrilled
        p.setPen(line);
        p.drawLine(QPointF(19.5, 43), QPointF(24.5, 43));
        p.drawLine(QPointF(31.5, 43), QPointF(36.5, 43));
    }
}

void drawMouth(QPainter& p, int expression) {
    p.setPen(QPen(kInk, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    QPainterPath mouth;
    switch (expression) {
    case 2: { // wide open laugh with a tongue
        mouth.moveTo(20.5, 52.5);
        mouth.quadTo(28, 52, 35.5, 52.5);
        mouth.quadTo(35, 60.5, 28, 60.5);
        mouth.quadTo(21, 60.5, 20.5, 52.5);
        p.setBrush(kInk);
        p.drawPath(mouth);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xef, 0x53, 0x50));
        p.drawEllipse(QPointF(28, 58.3), 3.6, 1.8);
        return;
    }
    case 1:
        mouth.moveTo(22, 53.5);
        mouth.quadTo(28, 59, 34, 53.5);
        break;
    case 5:
        mouth.moveTo(23, 55);
        mouth.quadTo(28, 57, 33, 55);
        break;
    case 6: // a doubtful wave
        mouth.moveTo(22.5, 56);
        mouth.quadTo(25.5, 54, 28, 56);
        mouth.quadTo(30.5, 58, 33.5, 55.5);
        break;
    case 3:
        mouth.moveTo(22.5, 58);
        mouth.quadTo(28, 52, 33.5, 58);
        break;
    default:
        mouth.moveTo(23, 54.5);
        mouth.quadTo(28, 57, 33, 54.5);
        break;
    }
    p.drawPath(mouth);
}

void drawExtras(QPainter& p, int expression, const QColor& outline) {
    if (expression == 1 || expression == 2) { // rosy cheeks
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xff, 0x80, 0xab, 150));
        p.drawEllipse(QPointF(16.5, 52.5), 2.8, 1.8);
        p.drawEllipse(QPointF(39.5, 52.5), 2.8, 1.8);
    }
    if (expression == 2) { // sparkles around the neck
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xff, 0xc1, 0x07));
        drawStar(p, QPointF(11, 14), 5);
        drawStar(p, QPointF(46, 24), 4);
        drawStar(p, QPointF(8, 30), 3);
    }
    if (expression == 3) { // a drop of sweat on the glass
        QPainterPath drop;
        drop.moveTo(44, 30);
        drop.quadTo(48.5, 37, 44, 38.5);
        drop.quadTo(39.5, 37, 44, 30);
        p.setPen(QPen(QColor(0x1e, 0x88, 0xe5), 1));
        p.setBrush(QColor(0x90, 0xca, 0xf9));
        p.drawPath(drop);
    }
    // Bubbles rise while the mood is fine; a poor result leaves the flask still.
    if (expression != 3) {
        p.setPen(QPen(outline, 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QPointF(40, 10), 3, 3);
        p.drawEllipse(QPointF(46, 3), 2, 2);
    }
}

} // namespace

Mascot::Mascot(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ctl_DrQuark"));
    setMinimumSize(sizeHint());
}

void Mascot::setExpression(int code) {
    m_expression = code;
    update();
}

void Mascot::setOutline(const QColor& colour) {
    m_outline = colour;
    update();
}

void Mascot::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal w = width();
    const qreal h = height();
    const qreal s = qMin(w / 56.0, h / 64.0);
    p.translate((w - 56 * s) / 2, (h - 64 * s) / 2);
    p.scale(s, s);

    // Erlenmeyer flask with liquid.
    QPainterPath flask;
    flask.moveTo(21, 4);
    flask.lineTo(35, 4);
    flask.lineTo(35, 22);
    flask.lineTo(52, 58);
    flask.quadTo(53, 62, 48, 62);
    flask.lineTo(8, 62);
    flask.quadTo(3, 62, 4, 58);
    flask.lineTo(21, 22);
    flask.closeSubpath();
    p.setPen(QPen(m_outline, 2));
    p.setBrush(QColor(255, 255, 255, 60));
    p.drawPath(flask);
    QPainterPath liquid;
    liquid.moveTo(13.5, 40);
    liquid.lineTo(42.5, 40);
    liquid.lineTo(51, 58);
    liquid.quadTo(52, 61, 48, 61);
    liquid.lineTo(8, 61);
    liquid.quadTo(4, 61, 5, 58);
    liquid.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(liquidFor(m_expression));
    p.drawPath(liquid);

    drawEyes(p, m_expression);
    drawMouth(p, m_expression);
    drawExtras(p, m_expression, m_outline);
}
