#pragma once

#include <QWidget>

// frm_AppSplash: shown while the main window loads.
class AppSplash final : public QWidget {
    Q_OBJECT
public:
    AppSplash();

    // The line under the program's name.
    static QString subline();

protected:
    void paintEvent(QPaintEvent* event) override;
};
