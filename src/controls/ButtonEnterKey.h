#pragma once

#include <QObject>

class QCoreApplication;

// Enter (or the keypad's Enter) on a focused push button presses it, as
// students know it from Windows; Qt's own buttons outside dialogs answer
// only Space. Installed once on the application, so every page and every
// window gets it, also pages added later. Toggle buttons (radio buttons,
// check boxes) are left alone: Enter should not change a choice, and answer
// fields keep their own Enter handling because they are no buttons.
class ButtonEnterKey final : public QObject {
    Q_OBJECT
public:
    // Once per application; later calls do nothing.
    static void install(QCoreApplication* application);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ButtonEnterKey(QObject* parent) : QObject(parent) {}
};
