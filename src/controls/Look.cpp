#include "controls/Look.h"

#include "controls/BoxLabel.h"
#include "controls/LabStyle.h"
#include "controls/MarkSign.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QVariantList>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

QColor Look::paletteColour(int index) {
    static const std::array<QColor, 16> colours = {
        QColor(0, 0, 0),       QColor(0, 0, 128),   QColor(0, 128, 0),   QColor(0, 128, 128),
        QColor(128, 0, 0),     QColor(128, 0, 128), QColor(128, 128, 0), QColor(192, 192, 192),
        QColor(128, 128, 128), QColor(0, 0, 255),   QColor(0, 255, 0),   QColor(0, 255, 255),
        QColor(255, 0, 0),     QColor(255, 0, 255), QColor(255, 255, 0), QColor(255, 255, 255)};
    return colours.at(static_cast<std::size_t>(index & 15));
}

double Look::relativeLuminance(const QColor& colour) {
    auto channel = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = colour.toRgb();
    return 0.2126 * channel(rgb.redF()) + 0.7152 * channel(rgb.greenF()) +
           0.0722 * channel(rgb.blueF());
}

double Look::contrastRatio(const QColor& a, const QColor& b) {
    const double la = relativeLuminance(a);
    const double lb = relativeLuminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor Look::inkOn(const QColor& fill) {
    return contrastRatio(Qt::black, fill) >= contrastRatio(Qt::white, fill) ? QColor(Qt::black)
                                                                            : QColor(Qt::white);
}

void Look::Box::paint(QPainter& painter, const QRectF& rect, const QColor& fillInstead) const {
    const QColor shown = fillInstead.isValid() ? fillInstead : fill;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (stripe > 0) {
        if (shown.isValid())
            painter.fillRect(rect, shown);
        painter.fillRect(QRectF(rect.left(), rect.top(), stripe, rect.height()), border);
        painter.restore();
        return;
    }
    const bool framed = borderWidth > 0 && border.isValid();
    // The pen is centred on the path: half the border lies inside.
    const qreal half = framed ? borderWidth / 2 : 0;
    const QRectF r = rect.adjusted(half, half, -half, -half);
    const qreal round = qMax<qreal>(0, radius - half);
    QPainterPath path;
    if (topCornersOnly) {
        path.moveTo(r.left(), r.bottom());
        path.lineTo(r.left(), r.top() + round);
        path.quadTo(r.left(), r.top(), r.left() + round, r.top());
        path.lineTo(r.right() - round, r.top());
        path.quadTo(r.right(), r.top(), r.right(), r.top() + round);
        path.lineTo(r.right(), r.bottom());
        path.closeSubpath();
    } else {
        path.addRoundedRect(r, round, round);
    }
    painter.setPen(framed ? QPen(border, borderWidth) : QPen(Qt::NoPen));
    painter.setBrush(shown.isValid() ? QBrush(shown) : QBrush(Qt::NoBrush));
    painter.drawPath(path);
    painter.restore();
}

QPalette Look::palette() {
    QPalette p(QColor(0xec, 0xef, 0xf1), QColor(Qt::white));
    p.setColor(QPalette::WindowText, ink());
    p.setColor(QPalette::Text, ink());
    p.setColor(QPalette::ButtonText, ink());
    p.setColor(QPalette::Base, Qt::white);
    p.setColor(QPalette::AlternateBase, QColor(0xf5, 0xf7, 0xf8));
    p.setColor(QPalette::Highlight, accent());
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, accentDark());
    p.setColor(QPalette::PlaceholderText, softInk());
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, softInk());
    return p;
}

void Look::install() {
    QApplication::setStyle(new LabStyle);
    const QPalette base = palette();
    QApplication::setPalette(base);

    // Push buttons are accent coloured with white text; LabStyle reads the
    // fill, text, hover and border colours from these roles.
    QPalette button = base;
    button.setColor(QPalette::Button, accent());
    button.setColor(QPalette::ButtonText, Qt::white);
    button.setColor(QPalette::Light, accentHover());
    button.setColor(QPalette::Mid, accent());
    button.setColor(QPalette::Disabled, QPalette::Button, fieldBorder());
    button.setColor(QPalette::Disabled, QPalette::Mid, fieldBorder());
    button.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::white);
    QApplication::setPalette(button, "QPushButton");

    QFont edit = QApplication::font();
    edit.setPixelSize(15);
    QApplication::setFont(edit, "QLineEdit");
    QFont push = QApplication::font();
    push.setPixelSize(14);
    push.setWeight(QFont::Bold);
    QApplication::setFont(push, "QPushButton");
}

namespace {

struct RoleLook {
    const char* name;
    int pixelSize;
    QFont::Weight weight;
    bool italic;
    QRgb colour; // 0: the inherited text colour
};

// Every size and weight on screen is one more font to load before the start
// page can be drawn, so the scale is small: 12, 13 and 15 px plain, 14, 15,
// 17 and 22 px bold, and no italics (a slanted face is a file of its own).
constexpr RoleLook kRoles[] = {
    {"pageTitle", 17, QFont::Bold, false, 0xffffffff},
    {"groupTitle", 15, QFont::Bold, false, 0xff125c66},
    {"hint", 12, QFont::Normal, false, 0xff546e7a},
    {"prompt", 15, QFont::Normal, false, 0},
    {"formula", 16, QFont::Normal, false, 0xff263238},
    {"notice", 14, QFont::Normal, false, 0xff8a1c1c},
    {"counter", 14, QFont::Bold, false, 0xffffffff},
    {"appName", 22, QFont::Bold, false, 0xffffffff},
    {"appSub", 13, QFont::Normal, false, 0xffb0bec5},
    {"correction", 14, QFont::Bold, false, 0xff125c66},
    {"certCaption", 15, QFont::Normal, false, 0xff546e7a},
    {"certLine", 17, QFont::Normal, false, 0xff263238},
    {"certSmall", 15, QFont::Normal, false, 0xff37474f},
    {"certGrade", 34, QFont::ExtraBold, false, 0xff125c66},
    {"certTitle", 30, QFont::ExtraBold, false, 0xff8a6410},
};

} // namespace

void Look::setRole(QWidget* widget, const QString& role) {
    if (!widget)
        return;
    widget->setProperty("role", role);
    const RoleLook* look = nullptr;
    for (const RoleLook& r : kRoles)
        if (role == QLatin1String(r.name))
            look = &r;
    if (!look)
        return;
    setText(widget, look->pixelSize, look->weight, look->colour ? QColor(look->colour) : QColor(),
            look->italic);
    if (std::strcmp(look->name, "pageTitle") == 0) {
        setFill(widget, accent());
        widget->setContentsMargins(19, 8, 14, 8);
    } else if (std::strcmp(look->name, "notice") == 0) {
        widget->setContentsMargins(12, 12, 12, 12);
        const Box box{QColor(0xff, 0xf4, 0xe5), QColor(0xf0, 0xc2, 0x7b), 1, 6};
        if (auto* label = qobject_cast<BoxLabel*>(widget))
            label->setBox(box);
        else
            setFill(widget, box.fill);
    }
}

void Look::setText(QWidget* widget, int pixelSize, QFont::Weight weight, const QColor& colour,
                   bool italic) {
    if (!widget)
        return;
    QFont font = widget->font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    font.setItalic(italic);
    widget->setFont(font);
    if (colour.isValid()) {
        QPalette p = widget->palette();
        p.setColor(QPalette::WindowText, colour);
        p.setColor(QPalette::Text, colour);
        widget->setPalette(p);
    }
}

void Look::setFill(QWidget* widget, const QColor& colour) {
    if (!widget)
        return;
    QPalette p = widget->palette();
    p.setColor(QPalette::Window, colour);
    widget->setPalette(p);
    widget->setAutoFillBackground(true);
}

void Look::setButtonColours(QWidget* button, const QColor& fill, const QColor& text,
                            const QColor& hover, const QColor& border) {
    if (!button)
        return;
    QPalette p = button->palette();
    p.setColor(QPalette::Button, fill);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Light, hover);
    p.setColor(QPalette::Mid, border.isValid() ? border : fill);
    p.setColor(QPalette::Disabled, QPalette::Button, QColor(0xec, 0xef, 0xf1));
    p.setColor(QPalette::Disabled, QPalette::Mid, line());
    p.setColor(QPalette::Disabled, QPalette::ButtonText, softInk());
    button->setPalette(p);
}

namespace {

// A field's look before its first mark: whether it had a palette of its
// own, that palette, and whether it filled its background.
const char* const kPlain = "lookPlain";

void keepPlain(QWidget* field) {
    if (field->property(kPlain).isValid())
        return;
    field->setProperty(kPlain,
                       QVariantList{field->testAttribute(Qt::WA_SetPalette),
                                    QVariant(field->palette()), field->autoFillBackground()});
}

void restorePlain(QWidget* field) {
    const QVariantList plain = field->property(kPlain).toList();
    if (plain.size() != 3)
        return;
    field->setPalette(plain[0].toBool() ? plain[1].value<QPalette>() : QPalette());
    field->setAutoFillBackground(plain[2].toBool());
    field->setProperty(kPlain, QVariant());
}

// The badge needs room at the right edge: a line edit keeps it free of
// text, a label or option button as padding.
const char* const kRoomKept = "markRoomKept";

void keepRoom(QWidget* field) {
    if (field->property(kRoomKept).toBool())
        return;
    field->setProperty(kRoomKept, true);
    if (auto* edit = qobject_cast<QLineEdit*>(field)) {
        QMargins m = edit->textMargins();
        m.setRight(m.right() + MarkSign::kRoom);
        edit->setTextMargins(m);
    } else {
        QMargins m = field->contentsMargins();
        m.setRight(m.right() + MarkSign::kRoom);
        field->setContentsMargins(m);
    }
}

void giveRoomBack(QWidget* field) {
    if (!field->property(kRoomKept).toBool())
        return;
    field->setProperty(kRoomKept, QVariant());
    if (auto* edit = qobject_cast<QLineEdit*>(field)) {
        QMargins m = edit->textMargins();
        m.setRight(m.right() - MarkSign::kRoom);
        edit->setTextMargins(m);
    } else {
        QMargins m = field->contentsMargins();
        m.setRight(m.right() - MarkSign::kRoom);
        field->setContentsMargins(m);
    }
}

void showSign(QWidget* field, bool right) {
    keepRoom(field);
    MarkSign::attach(field, right);
}

} // namespace

void Look::setBackground(QWidget* field, const QColor& colour) {
    if (!field)
        return;
    field->setProperty("markColour", colour);
    showSign(field, isRight(colour));
    keepPlain(field);
    QPalette p = field->palette();
    // Black reads best on the bright mark colours (slate ink on the wrong
    // colour would not reach 4.5:1), also in a field the check has disabled.
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        for (QPalette::ColorRole role :
             {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            p.setColor(group, role, Qt::black);
    if (auto* box = qobject_cast<BoxLabel*>(field)) {
        field->setPalette(p);
        box->setMark(colour);
        return;
    }
    if (qobject_cast<QLineEdit*>(field)) {
        p.setColor(QPalette::Base, colour);
    } else {
        p.setColor(QPalette::Window, colour);
        // An option button's mark is painted rounded by LabStyle.
        if (!qobject_cast<QAbstractButton*>(field))
            field->setAutoFillBackground(true);
    }
    field->setPalette(p);
}

void Look::setTextColour(QWidget* field, const QColor& colour) {
    if (!field)
        return;
    field->setProperty("markTextColour", colour);
    keepPlain(field);
    QPalette p = field->palette();
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(role, colour);
    field->setPalette(p);
}

void Look::markWrongChoice(QWidget* button) {
    if (!button)
        return;
    setTextColour(button, wrong());
    showSign(button, false);
    button->update();
}

void Look::clearMarks(QWidget* field) {
    if (!field)
        return;
    if (auto* box = qobject_cast<BoxLabel*>(field))
        box->setMark(QColor());
    MarkSign::detach(field);
    giveRoomBack(field);
    // A field's description is the verdict of its last check.
    field->setAccessibleDescription(QString());
    restorePlain(field);
    field->setProperty("markColour", QVariant());
    field->setProperty("markTextColour", QVariant());
}
