#include "app/TextScale.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <vector>

namespace TextScale {

double forDesktop(double desktopTextPx, QSizeF available, QSizeF needed) {
    if (!(desktopTextPx > kDrawnForPx) || needed.isEmpty() || available.isEmpty())
        return 1.0;
    const double room =
        std::min(available.width() / needed.width(), available.height() / needed.height());
    const double factor = std::min({desktopTextPx / kDrawnForPx, room, kLargest});
    // Rounded down, so that the window still fits the room it was measured on.
    return std::max(1.0, std::floor(factor * 100.0) / 100.0);
}

void applyBeforeStart(int argc, char* argv[], QSizeF needed) {
    for (const char* own : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"})
        if (qEnvironmentVariableIsSet(own))
            return;
    bool chosen = false;
    const double given = qEnvironmentVariable("LABQUIZ_TEXT_SCALE").toDouble(&chosen);
    double factor = 1.0;
    if (chosen) {
        factor = std::clamp(given, 1.0, kLargest);
    } else {
        // Without a desktop the font is Qt's own, and there is nothing to
        // follow; the probe below costs some 30 ms of the start.
        const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
        if (platform.startsWith("offscreen") || platform.startsWith("minimal") ||
            (!qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP") &&
             !qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME")))
            return;
        // A short-lived application of its own asks the platform for the
        // desktop's font and screen; Qt takes its scale factor only when the
        // application object is made, so the real one comes afterwards. It
        // gets copies of the arguments, which Qt shortens by its own options.
        std::vector<char*> words(argv, argv + argc);
        words.push_back(nullptr);
        int count = argc;
        QGuiApplication probe(count, words.data());
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen)
            return;
        factor = forDesktop(QFontInfo(QGuiApplication::font()).pixelSize(),
                            screen->availableGeometry().size(), needed);
    }
    if (factor > 1.0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(factor, 'f', 2));
}

} // namespace TextScale
