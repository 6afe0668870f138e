#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>

class QPainter;
class QRectF;
class QWidget;

// The program's small palette and how it is applied. Right and wrong keep
// the classic text-screen colours 10 and 12; everything else is calm greys
// and one accent. The look lives in palettes and fonts given to a widget when
// it is made, plus LabStyle for what a palette cannot say (rounded buttons
// and fields); no style sheet is involved, so showing a widget costs no more
// than Qt's own style does.
class Look final {
public:
    static QColor paletteColour(int index); // the 16 classic colours
    static QColor right() { return paletteColour(10); }
    static QColor wrong() { return paletteColour(12); }
    // Whether a mark colour says right (anything else marked says wrong).
    static bool isRight(const QColor& mark) { return mark == right(); }

    // The contrast ratio of two colours after WCAG 2.1 (1 to 21); text
    // needs at least 4.5 against what it stands on.
    static double contrastRatio(const QColor& a, const QColor& b);
    static double relativeLuminance(const QColor& colour);
    // Black or white, whichever stands out more on fill.
    static QColor inkOn(const QColor& fill);

    static QColor slate() { return QColor(0x26, 0x32, 0x38); }
    static QColor accent() { return QColor(0x1b, 0x7f, 0x8c); }
    static QColor accentHover() { return QColor(0x21, 0x93, 0x9f); }
    static QColor accentDark() { return QColor(0x12, 0x5c, 0x66); }
    static QColor amber() { return QColor(0xf9, 0xa8, 0x25); }
    static QColor ink() { return QColor(0x26, 0x32, 0x38); }
    // Dark enough for 4.5:1 on white, also in the small hint size.
    static QColor softInk() { return QColor(0x54, 0x6e, 0x7a); }
    static QColor line() { return QColor(0xcf, 0xd8, 0xdc); }
    static QColor fieldBorder() { return QColor(0xb0, 0xbe, 0xc5); }
    static QColor alarm() { return QColor(0x8a, 0x1c, 0x1c); }

    // A rounded box: fill, border and, optionally, a stripe of the border
    // colour down the left edge instead of a border all round.
    struct Box {
        QColor fill;
        QColor border;
        qreal borderWidth = 0;
        qreal radius = 0;
        qreal stripe = 0;
        bool topCornersOnly = false;
        void paint(QPainter& painter, const QRectF& rect, const QColor& fillInstead = {}) const;
    };

    // The palette, widget style and per-class fonts for the whole program.
    static QPalette palette();
    static void install();

    // A text look by name: "pageTitle", "groupTitle", "hint", "prompt",
    // "formula", "notice", "counter", "appName", "appSub", "correction" and
    // the certificate's "certCaption", "certLine", "certSmall", "certGrade",
    // "certTitle". The name stays in the property "role"; an unknown name
    // changes nothing else.
    static void setRole(QWidget* widget, const QString& role);
    // Gives a widget its own font size (in logical pixels), weight and, when
    // valid, text colour; its children inherit both.
    static void setText(QWidget* widget, int pixelSize, QFont::Weight weight = QFont::Normal,
                        const QColor& colour = {}, bool italic = false);
    // Fills a widget's background with one colour.
    static void setFill(QWidget* widget, const QColor& colour);
    // Colours of a push button: fill, text, fill under the mouse and an
    // optional border.
    static void setButtonColours(QWidget* button, const QColor& fill, const QColor& text,
                                 const QColor& hover, const QColor& border = {});

    // Colours a field's background (an input, label or option button) or its
    // text; the colour is kept in "markColour" / "markTextColour".
    // A right or wrong background also puts a tick or cross badge at the
    // field's right edge (MarkSign), with room kept free for it; text on a
    // mark turns black, which reads on both mark colours.
    // clearMarks gives the field back the look it had before.
    static void setBackground(QWidget* field, const QColor& colour);
    static void setTextColour(QWidget* field, const QColor& colour);
    // A wrong choice among option buttons: its text in the wrong colour on a
    // black chip (red on white would fall short of 4.5:1), with a cross.
    static void markWrongChoice(QWidget* button);
    static void clearMarks(QWidget* field);
};
