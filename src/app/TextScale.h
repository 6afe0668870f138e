#pragma once

#include <QSizeF>

// The program's sizes are logical pixels, drawn for Qt's default text of
// 12 pixels. A desktop set to larger text (a larger font, or a font at a
// higher dot density) gets the whole window drawn larger by the same
// factor, text, card and controls together, so that nothing is cut; as far
// as the screen leaves room for the window at that size.
namespace TextScale {

// The text size, in pixels, the program's look was drawn for.
constexpr double kDrawnForPx = 12.0;
// Never more than this, whatever the desktop says.
constexpr double kLargest = 2.0;

// The factor for a desktop whose standard text is desktopTextPx high, on a
// screen area of `available` for a window that needs `needed` (frame and
// title bar included). 1 when the desktop's text is not larger, or when the
// screen has no room for a larger window. Two decimals.
double forDesktop(double desktopTextPx, QSizeF available, QSizeF needed);

// Before the application object exists: reads the desktop's text size and
// sets Qt's scale factor for the process. LABQUIZ_TEXT_SCALE chooses the
// factor instead (1 turns the scaling off); a scale factor the user gave Qt
// (QT_SCALE_FACTOR, QT_SCREEN_SCALE_FACTORS, QT_FONT_DPI) is left alone.
// Without a desktop (no XDG_CURRENT_DESKTOP nor QT_QPA_PLATFORMTHEME) or on
// Qt's offscreen platform nothing is read.
// `needed` is the window's smallest size in logical pixels.
void applyBeforeStart(int argc, char* argv[], QSizeF needed);

} // namespace TextScale
