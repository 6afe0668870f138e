#include "controls/ButtonEnterKey.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QKeyEvent>

namespace {
const char* const kInstalledName = "ButtonEnterKey";
}

void ButtonEnterKey::install(QCoreApplication* application) {
    if (!application || application->findChild<ButtonEnterKey*>(QLatin1String(kInstalledName),
                                                                Qt::FindDirectChildrenOnly))
        return;
    auto* filter = new ButtonEnterKey(application);
    filter->setObjectName(QLatin1String(kInstalledName));
    application->installEventFilter(filter);
}

bool ButtonEnterKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter)
        return false;
    // Only a plain Enter: Alt+Enter and friends keep whatever meaning they have.
    if ((key->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    auto* button = qobject_cast<QAbstractButton*>(watched);
    if (!button || button->isCheckable() || !button->isEnabled() || !button->isVisible())
        return false;
    // A held key must not run through "OK" and then "Weiter", which takes
    // the focus right after the check.
    if (!key->isAutoRepeat())
        button->click();
    return true;
}
