#pragma once

#include <QProxyStyle>

// The program's widget style: Fusion, with what a palette alone cannot say.
// Push buttons are rounded and filled (fill, text, hover fill and border
// come from the button's palette roles Button, ButtonText, Light and Mid)
// with an amber ring while they have the focus; line edits are rounded with
// a grey border that turns accent coloured under the focus; scroll bars are
// slim handles without arrows; an option button honours its contents
// margins as padding and shows a right/wrong mark as a rounded fill.
class LabStyle final : public QProxyStyle {
    Q_OBJECT
public:
    LabStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl sub,
                         const QWidget* widget = nullptr) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
};
