#include "aids/CalculatorButton.h"

#include "aids/CalcExpression.h"
#include "aids/CalculatorDialog.h"
#include "aids/ExpertLimits.h"
#include "controls/Look.h"
#include "session/SessionState.h"

#include <QLineEdit>
#include <QPainter>

namespace {

// A tiny pocket calculator: body, display strip and three rows of keys.
QIcon calculatorIcon() {
    const qreal scale = 2.0;
    QPixmap pm(QSize(18, 20) * scale);
    pm.setDevicePixelRatio(scale);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink(0x12, 0x5c, 0x66);
    p.setPen(QPen(ink, 1.4));
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(2, 1, 14, 18), 2.5, 2.5);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x1b, 0x7f, 0x8c));
    p.drawRect(QRectF(4.5, 3.5, 9, 3.5));
    p.setBrush(ink);
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            p.drawRect(QRectF(4.5 + col * 3.3, 9 + row * 3.1, 2.2, 2));
    return QIcon(pm);
}

} // namespace

CalculatorButton::CalculatorButton(int index, QLineEdit* target, const SessionState& state,
                                   QWidget* parent)
    : QPushButton(parent), m_target(target), m_state(state) {
    setObjectName(QStringLiteral("but_Calc(%1)").arg(index));
    setIcon(calculatorIcon());
    setIconSize(QSize(18, 20));
    setToolTip(QStringLiteral("Taschenrechner: das Ergebnis kommt in das Feld daneben"));
    setAccessibleName(QStringLiteral("Taschenrechner"));
    setAutoDefault(false);
    setFixedSize(36, 32);
    Look::setButtonColours(this, Qt::white, Look::accentDark(), QColor(0xe3, 0xf2, 0xf3),
                           QColor(0x9f, 0xd0, 0xd5));
    connect(this, &QPushButton::clicked, this, &CalculatorButton::press);
}

void CalculatorButton::press() {
    if (!ExpertLimits::mayUse(ExpertLimits::Aid::CalculatorButton, m_state.ExpertLevel, window()))
        return;
    const double value = CalculatorDialog::run(window());
    // A result of exactly 0 is what a cancelled calculation gives too, so it
    // is never taken over.
    if (value == 0.0 || !m_target)
        return;
    m_target->setText(CalcExpression::localeText(value));
    m_target->setFocus(Qt::OtherFocusReason);
}
