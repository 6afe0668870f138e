#pragma once

#include <QLabel>

// The "Wow!" panel that pops up over a page answered without a mistake.
// A click puts it away.
class PraisePanel final : public QLabel {
    Q_OBJECT
public:
    explicit PraisePanel(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
