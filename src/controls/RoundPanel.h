#pragma once

#include "controls/Look.h"

#include <QFrame>

// A frame drawn as a rounded box, for panels that hold other widgets (a
// certificate, a group of buttons, a floating table).
class RoundPanel : public QFrame {
    Q_OBJECT
public:
    explicit RoundPanel(QWidget* parent = nullptr);
    explicit RoundPanel(const Look::Box& box, QWidget* parent = nullptr);

    void setBox(const Look::Box& box);
    const Look::Box& box() const { return m_box; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Look::Box m_box;
};
