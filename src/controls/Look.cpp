#include "controls/Look.h"

#include <QWidget>
#include <array>

QColor Look::paletteColour(int index) {
    static const std::array<QColor, 16> colours = {
        QColor(0, 0, 0),       QColor(0, 0, 128),   QColor(0, 128, 0),   QColor(0, 128, 128),
        QColor(128, 0, 0),     QColor(128, 0, 128), QColor(128, 128, 0), QColor(192, 192, 192),
        QColor(128, 128, 128), QColor(0, 0, 255),   QColor(0, 255, 0),   QColor(0, 255, 255),
        QColor(255, 0, 0),     QColor(255, 0, 255), QColor(255, 255, 0), QColor(255, 255, 255)};
    return colours.at(static_cast<std::size_t>(index & 15));
}

QString Look::styleSheet() {
    return QStringLiteral(R"(
QMainWindow#frm_AppMain { background: #263238; }
QWidget#bar_Holder { background: #ffffff; border-bottom-left-radius: 0px; }
QWidget[taskPage="true"] { background: #ffffff; }
QLabel { color: #263238; }
QLabel[role="pageTitle"] { background: #1b7f8c; color: #ffffff; font-size: 17px; font-weight: 600;
    padding: 8px 14px; }
QLabel[role="groupTitle"] { color: #125c66; font-size: 15px; font-weight: 600; }
QLabel[role="hint"] { color: #607d8b; font-size: 12px; font-style: italic; }
QLabel[role="prompt"] { font-size: 15px; }
QLabel[role="formula"] { font-size: 16px; color: #263238; }
QLabel[role="notice"] { color: #8a1c1c; background: #fff4e5; border: 1px solid #f0c27b;
    border-radius: 6px; padding: 12px; font-size: 14px; }
QLineEdit { border: 1px solid #b0bec5; border-radius: 4px; padding: 4px 6px; font-size: 15px;
    background: #ffffff; selection-background-color: #1b7f8c; }
QLineEdit:focus { border: 2px solid #1b7f8c; padding: 3px 5px; }
QPushButton { background: #1b7f8c; color: #ffffff; border: none; border-radius: 5px;
    padding: 7px 18px; font-size: 14px; font-weight: 600; min-width: 80px; }
QPushButton:hover { background: #21939f; }
QPushButton:focus { outline: none; border: 2px solid #f9a825; padding: 5px 16px; }
QPushButton:disabled { background: #b0bec5; }
QWidget#bar_Sep { background: transparent; }
QWidget#bar_Sep QLabel { color: #eceff1; font-size: 13px; }
QWidget#bar_Sep QLabel[role="counter"] { color: #ffffff; font-weight: 700; font-size: 14px; }
QWidget#bar_Splash QLabel { color: #ffffff; }
QWidget#bar_Splash QLabel[role="appName"] { font-size: 22px; font-weight: 700; }
QWidget#bar_Splash QLabel[role="appSub"] { color: #b0bec5; font-size: 13px; }
QLabel#lab_Correct { background: #fff59d; color: #125c66; border: 3px solid #f9a825;
    border-radius: 12px; font-size: 34px; font-weight: 800; padding: 10px 26px; }
QLabel#Streberstufe { background: #f9a825; color: #263238; border-radius: 4px; padding: 2px 8px;
    font-weight: 700; }
QMenuBar { background: #1f292e; color: #eceff1; }
QMenuBar::item:selected { background: #1b7f8c; }
QMenu { background: #ffffff; color: #263238; border: 1px solid #cfd8dc; }
QMenu::item:selected { background: #1b7f8c; color: #ffffff; }
QDialog { background: #ffffff; }
)");
}

namespace {

// Sets (or with an empty value removes) one rule of a widget's own sheet,
// keeping its other rules.
void setRule(QWidget* field, QLatin1String key, const QString& value) {
    QString kept;
    for (const QString& part : field->styleSheet().split(u';', Qt::SkipEmptyParts)) {
        const QString rule = part.trimmed();
        if (!rule.startsWith(key + u':') && !rule.startsWith(key + u' '))
            kept += rule + u';';
    }
    if (!value.isEmpty())
        kept += key + QLatin1String(": ") + value + u';';
    field->setStyleSheet(kept);
}

} // namespace

void Look::setBackground(QWidget* field, const QColor& colour) {
    if (!field)
        return;
    setRule(field, QLatin1String("background-color"), colour.name());
    field->setProperty("markColour", colour);
}

void Look::setTextColour(QWidget* field, const QColor& colour) {
    if (!field)
        return;
    setRule(field, QLatin1String("color"), colour.name());
    field->setProperty("markTextColour", colour);
}

void Look::clearMarks(QWidget* field) {
    if (!field)
        return;
    setRule(field, QLatin1String("background-color"), QString());
    setRule(field, QLatin1String("color"), QString());
    field->setProperty("markColour", QVariant());
    field->setProperty("markTextColour", QVariant());
}
