#pragma once

#include <QColor>
#include <QString>

class QWidget;

// The program's small palette and its style sheet. Right and wrong keep the
// classic text-screen colours 10 and 12; everything else is calm greys and
// one accent.
class Look final {
public:
    static QColor paletteColour(int index); // the 16 classic colours
    static QColor right() { return paletteColour(10); }
    static QColor wrong() { return paletteColour(12); }

    static QColor slate() { return QColor(0x26, 0x32, 0x38); }
    static QColor accent() { return QColor(0x1b, 0x7f, 0x8c); }
    static QColor accentDark() { return QColor(0x12, 0x5c, 0x66); }
    static QColor ink() { return QColor(0x26, 0x32, 0x38); }
    static QColor softInk() { return QColor(0x60, 0x7d, 0x8b); }
    static QColor line() { return QColor(0xcf, 0xd8, 0xdc); }

    static QString styleSheet();

    // Colours a field's background (an input, list or label).
    static void setBackground(QWidget* field, const QColor& colour);
    static void setTextColour(QWidget* field, const QColor& colour);
    static void clearMarks(QWidget* field);
};
