#include "controls/LabStyle.h"

#include "controls/Look.h"

#include <QAbstractButton>
#include <QIconEngine>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int kButtonPadX = 18;
constexpr int kButtonPadY = 7;
constexpr int kButtonMinText = 80;
constexpr qreal kButtonRadius = 5;
constexpr int kEditPadX = 7; // border and padding
constexpr int kEditPadY = 5;
constexpr qreal kEditRadius = 4;
constexpr int kBarExtent = 10;
constexpr int kBarMargin = 2;
constexpr int kHandleMin = 24;

bool isFramedEdit(const QStyleOption* option, const QWidget* widget) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    return frame && frame->lineWidth > 0 && qobject_cast<const QLineEdit*>(widget);
}

// Padding of an option button: its contents margins, which Qt itself leaves
// unused for buttons.
QMargins padding(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) ? widget->contentsMargins() : QMargins();
}

void paintButton(const QStyleOptionButton& button, QPainter* painter) {
    const QPalette& pal = button.palette;
    const bool enabled = button.state & QStyle::State_Enabled;
    QColor fill = pal.color(QPalette::Button);
    if (enabled && (button.state & QStyle::State_Sunken))
        fill = fill.darker(112);
    else if (enabled && (button.state & QStyle::State_MouseOver))
        fill = pal.color(QPalette::Light);
    const bool focus = enabled && (button.state & QStyle::State_HasFocus);
    const QColor border = focus ? Look::amber() : pal.color(QPalette::Mid);
    const qreal width = focus ? 2 : (border == pal.color(QPalette::Button) ? 0 : 1);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal half = width / 2;
    painter->setPen(width > 0 ? QPen(border, width) : QPen(Qt::NoPen));
    painter->setBrush(fill);
    painter->drawRoundedRect(QRectF(button.rect).adjusted(half, half, -half, -half),
                             kButtonRadius - half, kButtonRadius - half);
    painter->restore();
}

// The "more" chevrons of a menu bar too narrow for its entries, drawn when
// they are shown. Fusion's own comes from an image file, and reading it would
// load the image plugins while the window is being built.
class ChevronIcon final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(mode == QIcon::Disabled ? Look::fieldBorder() : Look::ink(), 1.5));
        const QRectF r = QRectF(rect).adjusted(rect.width() * 0.25, rect.height() * 0.3,
                                               -rect.width() * 0.25, -rect.height() * 0.3);
        for (const qreal x : {r.left(), r.center().x()}) {
            const qreal w = r.width() / 2;
            painter->drawPolyline(
                QPolygonF({QPointF(x, r.top()), QPointF(x + w * 0.8, r.center().y()),
                           QPointF(x, r.bottom())}));
        }
        painter->restore();
    }
    QIconEngine* clone() const override { return new ChevronIcon; }
};

} // namespace

LabStyle::LabStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void LabStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                             QPainter* painter, const QWidget* widget) const {
    if (element == PE_PanelLineEdit && isFramedEdit(option, widget)) {
        const bool focus = option->state & State_HasFocus;
        // A wrong answer also has a heavy dark border: a cue that needs no
        // colour vision.
        const QVariant mark = widget->property("markColour");
        const bool wrong = mark.isValid() && !Look::isRight(mark.value<QColor>());
        const qreal width = wrong ? 3 : focus ? 2 : 1;
        const qreal half = width / 2;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(focus   ? Look::accent()
                             : wrong ? QColor(Qt::black)
                                     : Look::fieldBorder(),
                             width));
        painter->setBrush(option->palette.base());
        painter->drawRoundedRect(QRectF(option->rect).adjusted(half, half, -half, -half),
                                 kEditRadius - half, kEditRadius - half);
        painter->restore();
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void LabStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                           const QWidget* widget) const {
    if (element == CE_PushButton) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (button && !(button->features & QStyleOptionButton::Flat)) {
            paintButton(*button, painter);
            QProxyStyle::drawControl(CE_PushButtonLabel, button, painter, widget);
            return;
        }
    }
    if (element == CE_RadioButton || element == CE_CheckBox) {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (button && widget) {
            const QVariant markText = widget->property("markTextColour");
            if (widget->property("markColour").isValid()) {
                painter->save();
                painter->setRenderHint(QPainter::Antialiasing);
                painter->setPen(Qt::NoPen);
                painter->setBrush(button->palette.window());
                painter->drawRoundedRect(QRectF(button->rect), 4, 4);
                painter->restore();
            } else if (markText.isValid() && markText.value<QColor>() == Look::wrong()) {
                // The wrong colour as text needs a dark ground for 4.5:1.
                painter->save();
                painter->setRenderHint(QPainter::Antialiasing);
                painter->setPen(Qt::NoPen);
                painter->setBrush(Qt::black);
                painter->drawRoundedRect(QRectF(button->rect), 4, 4);
                painter->restore();
            }
            QStyleOptionButton inner = *button;
            inner.rect = button->rect.marginsRemoved(padding(widget));
            QProxyStyle::drawControl(element, &inner, painter, widget);
            if (button->state & State_HasFocus) {
                // A ring that shows on light cards and dark panels alike:
                // amber outside, black inside.
                painter->save();
                painter->setRenderHint(QPainter::Antialiasing);
                painter->setBrush(Qt::NoBrush);
                painter->setPen(QPen(Look::amber(), 3));
                painter->drawRoundedRect(QRectF(button->rect).adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);
                painter->setPen(QPen(Qt::black, 1.5));
                painter->drawRoundedRect(QRectF(button->rect).adjusted(3.5, 3.5, -3.5, -3.5), 3, 3);
                painter->restore();
            }
            return;
        }
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void LabStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                  QPainter* painter, const QWidget* widget) const {
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            if (bar->maximum <= bar->minimum)
                return;
            QColor handle(0x90, 0xa4, 0xae);
            if (bar->state & State_Sunken)
                handle = handle.darker(115);
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(handle);
            painter->drawRoundedRect(
                QRectF(subControlRect(control, bar, SC_ScrollBarSlider, widget)), 3, 3);
            painter->restore();
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QIcon LabStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                             const QWidget* widget) const {
    if (icon == SP_ToolBarHorizontalExtensionButton)
        return QIcon(new ChevronIcon);
    return QProxyStyle::standardIcon(icon, option, widget);
}

QRect LabStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                               SubControl sub, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !bar)
        return QProxyStyle::subControlRect(control, option, sub, widget);
    // No arrow buttons: the groove is the whole bar less a small margin.
    const QRect groove = bar->rect.adjusted(kBarMargin, kBarMargin, -kBarMargin, -kBarMargin);
    const bool vertical = bar->orientation == Qt::Vertical;
    const int length = vertical ? groove.height() : groove.width();
    const qint64 range = qint64(bar->maximum) - bar->minimum;
    int handle = length;
    if (range > 0 && bar->pageStep > 0)
        handle = int(qint64(length) * bar->pageStep / (range + bar->pageStep));
    handle = qBound(qMin(kHandleMin, length), handle, length);
    const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                              length - handle, bar->upsideDown);
    auto span = [&](int from, int size) {
        return vertical ? QRect(groove.left(), groove.top() + from, groove.width(), size)
                        : QRect(groove.left() + from, groove.top(), size, groove.height());
    };
    switch (sub) {
    case SC_ScrollBarGroove:
        return groove;
    case SC_ScrollBarSlider:
        return span(start, handle);
    case SC_ScrollBarSubPage:
        return span(0, start);
    case SC_ScrollBarAddPage:
        return span(start + handle, length - start - handle);
    default:
        return QRect();
    }
}

QRect LabStyle::subElementRect(SubElement element, const QStyleOption* option,
                               const QWidget* widget) const {
    if (element == SE_LineEditContents && isFramedEdit(option, widget))
        return option->rect.adjusted(kEditPadX, kEditPadY, -kEditPadX, -kEditPadY);
    // A padded option button answers clicks on its padding too.
    if ((element == SE_RadioButtonClickRect || element == SE_CheckBoxClickRect) &&
        !padding(widget).isNull())
        return option->rect;
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize LabStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                 const QWidget* widget) const {
    switch (type) {
    case CT_PushButton:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
            button && !(button->features & QStyleOptionButton::Flat))
            return QSize(qMax(size.width(), kButtonMinText) + 2 * kButtonPadX,
                         size.height() + 2 * kButtonPadY);
        break;
    case CT_LineEdit:
        if (isFramedEdit(option, widget))
            return size + QSize(2 * kEditPadX, 2 * kEditPadY);
        break;
    case CT_RadioButton:
    case CT_CheckBox: {
        const QMargins pad = padding(widget);
        return QProxyStyle::sizeFromContents(type, option, size, widget) +
               QSize(pad.left() + pad.right(), pad.top() + pad.bottom());
    }
    case CT_ScrollBar:
        return size;
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int LabStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                          const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return kBarExtent;
    case PM_ScrollBarSliderMin:
        return kHandleMin;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}
