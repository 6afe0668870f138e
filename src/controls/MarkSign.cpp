#include "controls/MarkSign.h"

#include "controls/Look.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int kSize = 20;
constexpr int kInset = 3;
} // namespace

MarkSign::MarkSign(QWidget* field, bool right, bool top)
    : QWidget(field), m_right(right), m_top(top) {
    setObjectName(QStringLiteral("MarkSign"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(kSize, kSize);
    setAccessibleName(right ? QStringLiteral("richtig") : QStringLiteral("falsch"));
    field->installEventFilter(this);
    place();
    show();
    raise();
}

MarkSign* MarkSign::of(const QWidget* field) {
    return field
               ? field->findChild<MarkSign*>(QStringLiteral("MarkSign"), Qt::FindDirectChildrenOnly)
               : nullptr;
}

MarkSign* MarkSign::attach(QWidget* field, bool right, bool top) {
    if (!field)
        return nullptr;
    detach(field);
    return new MarkSign(field, right, top);
}

void MarkSign::detach(QWidget* field) {
    if (MarkSign* sign = of(field)) {
        field->removeEventFilter(sign);
        // Gone at once, so that a new mark in the same turn finds no old one.
        sign->setParent(nullptr);
        sign->deleteLater();
    }
}

void MarkSign::place() {
    const QWidget* field = parentWidget();
    int x = field->width() - kSize - kInset;
    // A list's strip lies between its items and its scroll bar.
    if (const auto* area = qobject_cast<const QAbstractScrollArea*>(field))
        x = area->viewport()->geometry().right() + 1 + (kRoom - kSize) / 2;
    const int y = m_top ? kInset : (field->height() - kSize) / 2;
    move(qMax(0, x), qMax(0, y));
}

bool MarkSign::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void MarkSign::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    // White disc with a black ring and a black sign: it reads on both fill
    // colours and in greyscale, where the fills are two similar greys.
    const QRectF disc = QRectF(rect()).adjusted(1, 1, -1, -1);
    p.setPen(QPen(Qt::black, 1.5));
    p.setBrush(Qt::white);
    p.drawEllipse(disc);
    p.setPen(QPen(Qt::black, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    const qreal s = disc.width();
    const QPointF o = disc.topLeft();
    if (m_right) {
        p.drawPolyline(QPolygonF({o + QPointF(0.26 * s, 0.52 * s), o + QPointF(0.43 * s, 0.70 * s),
                                  o + QPointF(0.75 * s, 0.32 * s)}));
    } else {
        p.drawLine(o + QPointF(0.32 * s, 0.32 * s), o + QPointF(0.68 * s, 0.68 * s));
        p.drawLine(o + QPointF(0.68 * s, 0.32 * s), o + QPointF(0.32 * s, 0.68 * s));
    }
}
