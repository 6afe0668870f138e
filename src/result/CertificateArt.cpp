#include "result/CertificateArt.h"

#include "controls/Look.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QtMath>

namespace {

const QColor kGold(0xc9, 0x9a, 0x2e);
const QColor kGoldLight(0xf3, 0xd9, 0x8b);

void paintOkSign(QPainter& p, const QRectF& r) {
    const qreal d = qMin(r.width(), r.height());
    const QRectF c(r.center().x() - d / 2, r.center().y() - d / 2, d, d);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x43, 0xa0, 0x47));
    p.drawEllipse(c.adjusted(1, 1, -1, -1));
    QPainterPath tick;
    tick.moveTo(c.left() + 0.27 * d, c.top() + 0.52 * d);
    tick.lineTo(c.left() + 0.44 * d, c.top() + 0.68 * d);
    tick.lineTo(c.left() + 0.74 * d, c.top() + 0.34 * d);
    p.setPen(QPen(Qt::white, d * 0.11, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(tick);
}

// A rosette with a ribbon: the stamp of the laboratory.
void paintSeal(QPainter& p, const QRectF& r) {
    const qreal d = qMin(r.width(), r.height() / 1.25);
    const QPointF c(r.center().x(), r.top() + d / 2);
    p.setPen(Qt::NoPen);
    p.setBrush(Look::accentDark());
    for (int side : {-1, 1}) {
        QPolygonF ribbon;
        ribbon << c + QPointF(side * 0.12 * d, 0.2 * d) << c + QPointF(side * 0.38 * d, 0.2 * d)
               << c + QPointF(side * 0.36 * d, 0.74 * d) << c + QPointF(side * 0.25 * d, 0.64 * d)
               << c + QPointF(side * 0.14 * d, 0.74 * d);
        p.drawPolygon(ribbon);
    }
    QPainterPath rosette;
    const int teeth = 24;
    for (int i = 0; i <= 2 * teeth; ++i) {
        const qreal a = M_PI * i / teeth;
        const qreal rad = (i % 2 ? 0.46 : 0.5) * d;
        const QPointF pt(c.x() + rad * std::cos(a), c.y() + rad * std::sin(a));
        if (i == 0)
            rosette.moveTo(pt);
        else
            rosette.lineTo(pt);
    }
    p.setBrush(kGold);
    p.drawPath(rosette);
    p.setBrush(kGoldLight);
    p.drawEllipse(c, 0.38 * d, 0.38 * d);
    p.setPen(QPen(kGold, 0.02 * d));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(c, 0.33 * d, 0.33 * d);
    QFont f;
    f.setBold(true);
    f.setPixelSize(qMax(1, qRound(0.13 * d)));
    p.setFont(f);
    p.setPen(Look::accentDark());
    p.drawText(QRectF(c.x() - 0.4 * d, c.y() - 0.22 * d, 0.8 * d, 0.2 * d), Qt::AlignCenter,
               QStringLiteral("LABORIX"));
    f.setPixelSize(qMax(1, qRound(0.1 * d)));
    f.setBold(false);
    p.setFont(f);
    p.drawText(QRectF(c.x() - 0.4 * d, c.y() + 0.02 * d, 0.8 * d, 0.18 * d), Qt::AlignCenter,
               QStringLiteral("geprüft"));
}

// A line of small ring molecules, the border under the certificate.
void paintMolecules(QPainter& p, const QRectF& r) {
    const qreal h = r.height();
    const qreal ring = h * 0.36;
    p.setPen(QPen(Look::line(), qMax(1.0, h * 0.05)));
    p.drawLine(QPointF(r.left(), r.center().y()), QPointF(r.right(), r.center().y()));
    p.setPen(QPen(Look::accent(), qMax(1.0, h * 0.06), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::white);
    const qreal step = ring * 5;
    for (qreal x = r.left() + step / 2; x < r.right() - ring; x += step) {
        QPolygonF hexagon;
        for (int i = 0; i < 6; ++i) {
            const qreal a = M_PI / 6 + i * M_PI / 3;
            hexagon << QPointF(x + ring * std::cos(a), r.center().y() + ring * std::sin(a));
        }
        p.drawPolygon(hexagon);
        p.drawEllipse(QPointF(x, r.center().y()), ring * 0.45, ring * 0.45);
    }
}

void paintPrinter(QPainter& p, const QRectF& r, const QColor& c) {
    const qreal s = qMin(r.width(), r.height());
    const QPointF o(r.center().x() - s / 2, r.center().y() - s / 2);
    auto at = [&](qreal x, qreal y, qreal w, qreal h) {
        return QRectF(o.x() + x * s, o.y() + y * s, w * s, h * s);
    };
    p.setPen(QPen(c, s * 0.07, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawRect(at(0.28, 0.1, 0.44, 0.26));
    p.setBrush(c);
    p.drawRoundedRect(at(0.1, 0.36, 0.8, 0.34), s * 0.06, s * 0.06);
    p.setBrush(Qt::NoBrush);
    p.drawRect(at(0.28, 0.58, 0.44, 0.3));
}

void paintLoudspeaker(QPainter& p, const QRectF& r, const QColor& c) {
    const qreal s = qMin(r.width(), r.height());
    const QPointF o(r.center().x() - s / 2, r.center().y() - s / 2);
    QPolygonF body;
    body << o + QPointF(0.12 * s, 0.38 * s) << o + QPointF(0.3 * s, 0.38 * s)
         << o + QPointF(0.52 * s, 0.18 * s) << o + QPointF(0.52 * s, 0.82 * s)
         << o + QPointF(0.3 * s, 0.62 * s) << o + QPointF(0.12 * s, 0.62 * s);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPolygon(body);
    p.setPen(QPen(c, s * 0.07, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    for (qreal rad : {0.16, 0.3}) {
        const QRectF arc(o.x() + 0.52 * s - rad * s, o.y() + 0.5 * s - rad * s, 2 * rad * s,
                         2 * rad * s);
        p.drawArc(arc, -50 * 16, 100 * 16);
    }
}

} // namespace

CertificateArt::CertificateArt(Kind kind, QWidget* parent) : QWidget(parent), m_kind(kind) {}

void CertificateArt::paint(QPainter& p, const QRectF& area, Kind kind) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    switch (kind) {
    case Kind::OkSign:
        paintOkSign(p, area);
        break;
    case Kind::Seal:
        paintSeal(p, area);
        break;
    case Kind::Molecules:
        paintMolecules(p, area);
        break;
    case Kind::Printer:
        paintPrinter(p, area, Look::ink());
        break;
    case Kind::Loudspeaker:
        paintLoudspeaker(p, area, Look::ink());
        break;
    }
    p.restore();
}

QIcon CertificateArt::icon(Kind kind, const QColor& colour) {
    QPixmap pixmap(96, 96);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area(0, 0, 96, 96);
    if (kind == Kind::Printer)
        paintPrinter(p, area, colour);
    else if (kind == Kind::Loudspeaker)
        paintLoudspeaker(p, area, colour);
    else
        paint(p, area, kind);
    return QIcon(pixmap);
}

void CertificateArt::paintEvent(QPaintEvent*) {
    QPainter p(this);
    paint(p, rect(), m_kind);
}
