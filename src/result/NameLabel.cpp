#include "result/NameLabel.h"

#include <QFontMetrics>
#include <QPainter>

namespace {
constexpr int kSmallestPixelSize = 10;
}

NameLabel::NameLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

int NameLabel::fit(int* flags) const {
    const QRect area = contentsRect();
    QFont f = font();
    const int largest = f.pixelSize() > 0 ? f.pixelSize() : qRound(f.pointSizeF() * 96 / 72);
    for (int size = largest; size >= kSmallestPixelSize; --size) {
        f.setPixelSize(size);
        const QFontMetrics fm(f);
        for (int wrap : {int(Qt::TextWordWrap), int(Qt::TextWrapAnywhere)}) {
            const QRect need = fm.boundingRect(area, int(alignment()) | wrap, text());
            if (need.width() <= area.width() && need.height() <= area.height()) {
                *flags = wrap;
                return size;
            }
        }
    }
    *flags = Qt::TextWrapAnywhere;
    return kSmallestPixelSize;
}

int NameLabel::fittedPixelSize() const {
    int flags = 0;
    return fit(&flags);
}

void NameLabel::paintEvent(QPaintEvent*) {
    QPainter p(this);
    int flags = 0;
    QFont f = font();
    f.setPixelSize(fit(&flags));
    p.setFont(f);
    p.setPen(palette().color(foregroundRole()));
    p.setClipRect(contentsRect());
    p.drawText(contentsRect(), int(alignment()) | flags, text());
}
