#include "app/AppSplash.h"

#include "app/AppInfo.h"
#include "controls/Look.h"
#include "controls/Mascot.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

AppSplash::AppSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("frm_AppSplash"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedSize(420, 220);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 24, 28, 20);
    auto* mascot = new Mascot(this);
    mascot->setExpression(2);
    mascot->setFixedSize(56, 64);
    layout->addWidget(mascot, 0, Qt::AlignHCenter);
    auto* name = new QLabel(QLatin1String(AppInfo::kProductName), this);
    Look::setText(name, 26, QFont::Bold, Qt::white);
    layout->addWidget(name, 0, Qt::AlignHCenter);
    auto* sub = new QLabel(
        QStringLiteral("Version %1 – wird geladen …").arg(QLatin1String(AppInfo::kVersion)), this);
    Look::setText(sub, 13, QFont::Normal, Look::fieldBorder());
    layout->addWidget(sub, 0, Qt::AlignHCenter);
    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void AppSplash::paintEvent(QPaintEvent*) {
    QPainter p(this);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, Look::accent());
    g.setColorAt(1, Look::slate());
    p.fillRect(rect(), g);
}
