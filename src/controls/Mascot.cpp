#include "controls/Mascot.h"

#include <QPainter>
#include <QPainterPath>

Mascot::Mascot(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ctl_DrQuark"));
    setMinimumSize(sizeHint());
}

void Mascot::setExpression(int code) {
    m_expression = code;
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
    p.setPen(QPen(QColor(0xec, 0xef, 0xf1), 2));
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
    p.setBrush(QColor(0x4d, 0xd0, 0xe1));
    p.drawPath(liquid);

    // Face: eyes, and a mouth that follows the expression.
    p.setBrush(QColor(0x26, 0x32, 0x38));
    p.drawEllipse(QPointF(22, 48), 2.2, 2.2);
    p.drawEllipse(QPointF(34, 48), 2.2, 2.2);
    p.setPen(QPen(QColor(0x26, 0x32, 0x38), 2, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    QPainterPath mouth;
    switch (m_expression) {
    case 2: // very good: wide smile
        mouth.moveTo(21, 53);
        mouth.quadTo(28, 60, 35, 53);
        break;
    case 1: // good
        mouth.moveTo(23, 54);
        mouth.quadTo(28, 58, 33, 54);
        break;
    case 5: // satisfactory
        mouth.moveTo(23, 55);
        mouth.quadTo(28, 56.5, 33, 55);
        break;
    case 6: // sufficient: flat
        mouth.moveTo(23, 55.5);
        mouth.lineTo(33, 55.5);
        break;
    case 3: // poor: frown
        mouth.moveTo(23, 57);
        mouth.quadTo(28, 52, 33, 57);
        break;
    default:
        mouth.moveTo(23, 54.5);
        mouth.quadTo(28, 57, 33, 54.5);
        break;
    }
    p.drawPath(mouth);
    // Bubbles.
    p.setPen(QPen(QColor(0xec, 0xef, 0xf1), 1.5));
    p.drawEllipse(QPointF(40, 10), 3, 3);
    p.drawEllipse(QPointF(46, 3), 2, 2);
}
