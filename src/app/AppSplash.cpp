#include "app/AppSplash.h"

#include "app/AppInfo.h"
#include "controls/Look.h"
#include "controls/Mascot.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

AppSplash::AppSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("frm_AppSplash"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedSize(420, 220);
    // The texts are painted, not laid out in labels: a layout would ask for
    // their fonts at once, and loading fonts is most of what a start costs.
    auto* mascot = new Mascot(this);
    mascot->setExpression(2);
    mascot->setGeometry((width() - 56) / 2, 24, 56, 64);
    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

QString AppSplash::subline() {
    return QStringLiteral("Version %1 – wird geladen …").arg(QLatin1String(AppInfo::kVersion));
}

void AppSplash::paintEvent(QPaintEvent*) {
    QPainter p(this);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, Look::accent());
    g.setColorAt(1, Look::slate());
    p.fillRect(rect(), g);
    QFont name = font();
    name.setPixelSize(22);
    name.setWeight(QFont::Bold);
    p.setFont(name);
    p.setPen(Qt::white);
    p.drawText(QRect(0, 98, width(), 40), Qt::AlignHCenter | Qt::AlignVCenter,
               QLatin1String(AppInfo::kProductName));
    QFont sub = font();
    sub.setPixelSize(13);
    p.setFont(sub);
    p.setPen(Look::fieldBorder());
    p.drawText(QRect(0, 142, width(), 24), Qt::AlignHCenter | Qt::AlignVCenter, subline());
}
