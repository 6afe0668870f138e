#include "controls/GradeMark.h"

#include "controls/Look.h"

#include <QPainter>

GradeMark::GradeMark(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ctl_Mark"));
    setFixedSize(sizeHint());
    setAccessibleName(QStringLiteral("Aktueller Notenstand"));
}

void GradeMark::setText(const QString& text) {
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(QStringLiteral("Aktueller Notenstand: ") + text);
    update();
}

void GradeMark::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QColor fill(0x90, 0xa4, 0xae);
    const QChar grade = m_text.isEmpty() ? QChar(u' ') : m_text.at(0);
    switch (grade.unicode()) {
    case u'1':
        fill = QColor(0x2e, 0x9d, 0x4f);
        break;
    case u'2':
        fill = QColor(0x7c, 0xb3, 0x42);
        break;
    case u'3':
        fill = QColor(0xf9, 0xa8, 0x25);
        break;
    case u'4':
        fill = QColor(0xef, 0x6c, 0x00);
        break;
    case u'5':
    case u'6':
        fill = QColor(0xc6, 0x28, 0x28);
        break;
    default:
        break;
    }
    const QRectF r = QRectF(rect()).adjusted(2, 2, -2, -2);
    p.setPen(QPen(QColor(255, 255, 255), 2));
    p.setBrush(fill);
    p.drawEllipse(r);
    QFont f = font();
    f.setPixelSize(m_text.size() > 1 ? 15 : 17);
    f.setBold(true);
    p.setFont(f);
    // Whichever of black and white reads better on the grade's tint.
    p.setPen(Look::inkOn(fill));
    p.drawText(r, Qt::AlignCenter, m_text);
}
