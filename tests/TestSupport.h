#pragma once

// Small helpers shared by the tests: answering modal notices, writing task
// banks, and finding named controls.

#include "chem/LegacyText.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <functional>

// Answers the next modal dialog by clicking the button with this caption,
// and remembers what the dialog said.
class ModalAnswer : public QObject {
public:
    explicit ModalAnswer(QString button) : m_button(std::move(button)) {
        m_timer.setInterval(10);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { poll(); });
        m_timer.start();
    }
    bool seen() const { return m_seen; }
    QString text() const { return m_text; }
    QString title() const { return m_title; }
    QStringList buttons() const { return m_buttons; }

private:
    void poll() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal)
            return;
        auto* dialog = qobject_cast<QDialog*>(modal);
        if (!dialog)
            return;
        m_seen = true;
        m_title = dialog->windowTitle();
        if (auto* label = dialog->findChild<QLabel*>(QStringLiteral("NoticeText")))
            m_text = label->text();
        m_buttons.clear();
        QAbstractButton* target = nullptr;
        for (QAbstractButton* b : dialog->findChildren<QAbstractButton*>()) {
            m_buttons << b->text();
            if (b->text() == m_button)
                target = b;
        }
        m_timer.stop();
        if (target)
            target->click();
        else
            dialog->reject();
    }

    QString m_button;
    QTimer m_timer;
    bool m_seen = false;
    QString m_text;
    QString m_title;
    QStringList m_buttons;
};

// Joins lines with CR LF and encodes them in Windows-1252, as a teacher's
// file would be.
inline QByteArray cp1252Lines(const QStringList& lines) {
    return LegacyText::encodeWindows1252(lines.join(QStringLiteral("\r\n")) +
                                         QStringLiteral("\r\n"));
}

inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    return f.write(bytes) == bytes.size();
}

// A bank whose every section has `basic` records before its level mark and
// `extra` after it, with predictable content ("Element1", "E1", ...).
inline QStringList syntheticBank(int basic, int extra) {
    QStringList out;
    const int total = basic + extra;
    auto header = [&](const QString& title) { out << title << QStringLiteral("#"); };
    auto section = [&](const QString& title, const std::function<QStringList(int)>& record) {
        header(title);
        for (int i = 1; i <= total; ++i) {
            if (i == basic + 1)
                out << QStringLiteral(u"\u00E6\u00E6");
            out << record(i);
        }
        if (total == basic)
            out << QStringLiteral(u"\u00E6\u00E6");
        out << QStringLiteral("@");
    };
    section(QStringLiteral("Elemente"), [](int i) {
        return QStringList{QStringLiteral("Element%1*Elem%1").arg(i), QStringLiteral("E%1").arg(i)};
    });
    section(QStringLiteral("Zahlsilben"), [](int i) {
        return QStringList{QString::number(i), QStringLiteral("silbe%1").arg(i)};
    });
    section(QStringLiteral("Molare Massen"), [](int i) {
        return QStringList{QStringLiteral("Stoff %1").arg(i), QStringLiteral("%1.5").arg(i),
                           QStringLiteral("X%1").arg(i)};
    });
    section(QStringLiteral("Definitionen"), [](int i) {
        return QStringList{QStringLiteral("Begriff %1").arg(i),
                           QStringLiteral("Definition %1").arg(i)};
    });
    section(QStringLiteral("Ionen"), [](int i) {
        return QStringList{QStringLiteral("Ion %1").arg(i), QString::number(i % 7 - 3)};
    });
    section(QStringLiteral("Aussagen"), [](int i) {
        return QStringList{QStringLiteral("Aussage %1").arg(i),
                           i % 2 ? QStringLiteral("J") : QStringLiteral("N")};
    });
    section(QStringLiteral("Gleichungen"),
            [](int i) { return QStringList{QStringLiteral("@%1A+@1B=@1C%1").arg(i)}; });
    section(QStringLiteral("Stoffe"), [](int i) {
        return QStringList{QStringLiteral("F%1").arg(i), QStringLiteral("F^+*X^-"),
                           QStringLiteral("Name %1").arg(i)};
    });
    section(QStringLiteral("Stoffmengen"), [](int i) {
        return QStringList{QStringLiteral("Frage %1").arg(i), QStringLiteral("0.%1").arg(i)};
    });
    return out;
}
