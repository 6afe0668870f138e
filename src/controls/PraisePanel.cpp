#include "controls/PraisePanel.h"

#include <QMouseEvent>

PraisePanel::PraisePanel(QWidget* parent) : QLabel(QStringLiteral("Wow!"), parent) {
    setObjectName(QStringLiteral("lab_Correct"));
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
