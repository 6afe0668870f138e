#include "controls/GermanQtTexts.h"

#include <cstring>

namespace {

struct Text {
    const char* context;
    const char* english;
    const char* german;
};

constexpr Text kTexts[] = {
    {"QShortcut", "Ctrl", "Strg"},
    {"QShortcut", "Shift", "Umschalt"},
    {"QShortcut", "Backspace", "Rücktaste"},
    {"QShortcut", "Space", "Leertaste"},
    {"QShortcut", "Del", "Entf"},
    {"QShortcut", "Ins", "Einfg"},
    {"QShortcut", "PgUp", "Bild auf"},
    {"QShortcut", "PgDown", "Bild ab"},
    {"QShortcut", "Home", "Pos1"},
    {"QShortcut", "End", "Ende"},
    {"QLineEdit", "&Undo", "&Rückgängig"},
    {"QLineEdit", "&Redo", "Wieder&herstellen"},
    {"QLineEdit", "Cu&t", "&Ausschneiden"},
    {"QLineEdit", "&Copy", "&Kopieren"},
    {"QLineEdit", "&Paste", "Einf&ügen"},
    {"QLineEdit", "Delete", "Löschen"},
    {"QLineEdit", "Select All", "Alles auswählen"},
    {"QScrollBar", "Scroll here", "Hierher scrollen"},
    {"QScrollBar", "Left edge", "Linker Rand"},
    {"QScrollBar", "Top", "Anfang"},
    {"QScrollBar", "Right edge", "Rechter Rand"},
    {"QScrollBar", "Bottom", "Ende"},
    {"QScrollBar", "Page left", "Eine Seite nach links"},
    {"QScrollBar", "Page up", "Eine Seite nach oben"},
    {"QScrollBar", "Page right", "Eine Seite nach rechts"},
    {"QScrollBar", "Page down", "Eine Seite nach unten"},
    {"QScrollBar", "Scroll left", "Nach links scrollen"},
    {"QScrollBar", "Scroll up", "Nach oben scrollen"},
    {"QScrollBar", "Scroll right", "Nach rechts scrollen"},
    {"QScrollBar", "Scroll down", "Nach unten scrollen"},
};

} // namespace

QString GermanQtTexts::translate(const char* context, const char* sourceText, const char*,
                                 int) const {
    if (!context || !sourceText)
        return {};
    for (const Text& t : kTexts) {
        if (std::strcmp(t.context, context) == 0 && std::strcmp(t.english, sourceText) == 0)
            return QString::fromUtf8(t.german);
    }
    return {};
}
