#pragma once

#include "controls/BoxLabel.h"

// The "Wow!" panel that pops up over a page answered without a mistake.
// A click puts it away.
class PraisePanel final : public BoxLabel {
    Q_OBJECT
public:
    explicit PraisePanel(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
