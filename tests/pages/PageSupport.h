#pragma once

// What the page tests share besides TestSupport.h: reading answer keys and
// following the keyboard focus.

#include <QApplication>
#include <QRegularExpression>
#include <QString>
#include <QWidget>

// The first answer a key accepts: keys list alternatives with "*" or "|".
inline QString firstAccepted(const QString& key) {
    static const QRegularExpression separator(QStringLiteral("[*|]"));
    return key.split(separator, Qt::SkipEmptyParts).value(0).trimmed();
}

inline QString focusName() {
    const QWidget* focus = QApplication::focusWidget();
    return focus ? focus->objectName() : QStringLiteral("(none)");
}
