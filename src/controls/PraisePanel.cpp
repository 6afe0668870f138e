#include "controls/PraisePanel.h"

#include <QMouseEvent>

PraisePanel::PraisePanel(QWidget* parent) : BoxLabel(QStringLiteral("Wow!"), parent) {
    setObjectName(QStringLiteral("lab_Correct"));
    setBox({QColor(0xff, 0xf5, 0x9d), Look::amber(), 3, 12});
    Look::setText(this, 34, QFont::ExtraBold, Look::accentDark());
    setContentsMargins(26, 10, 26, 10);
    setAlignment(Qt::AlignCenter);
    setCursor(Qt::PointingHandCursor);
    setToolTip(QStringLiteral("Alles richtig! Zum Schließen anklicken."));
    // Sized when it is shown: measuring now would load its big font at start.
    hide();
}

void PraisePanel::mousePressEvent(QMouseEvent* event) {
    hide();
    event->accept();
}
