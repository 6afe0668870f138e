#include "aids/ExpertLimits.h"

#include "controls/NoticeBox.h"

bool ExpertLimits::allows(Aid aid, int expertLevel) {
    switch (aid) {
    case Aid::CalculatorMenu:
        // The menu has always refused exactly the expert level; every other
        // aid refuses anything but the normal level. Only 0 and 1 are ever
        // chosen, so the two agree in practice.
        return expertLevel != 1;
    case Aid::CalculatorButton:
    case Aid::PeriodicTable:
    case Aid::MolarMassFormulas:
        break;
    }
    return expertLevel == 0;
}

QString ExpertLimits::refusal(Aid aid) {
    switch (aid) {
    case Aid::CalculatorButton:
        return QStringLiteral("Tut mir leid! Streber müssen im Kopf rechnen!");
    case Aid::CalculatorMenu:
        return QStringLiteral("Tut mir leid, Streber müssen selber rechnen!");
    case Aid::PeriodicTable:
        return QStringLiteral("Leider ist das Periodensystem nichts für Streber...");
    case Aid::MolarMassFormulas:
        break;
    }
    return {};
}

bool ExpertLimits::mayUse(Aid aid, int expertLevel, QWidget* parent) {
    if (allows(aid, expertLevel))
        return true;
    const QString notice = refusal(aid);
    if (!notice.isEmpty())
        NoticeBox::inform(parent, notice, QString());
    return false;
}
