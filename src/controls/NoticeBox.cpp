#include "controls/NoticeBox.h"

#include "controls/Look.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

NoticeBox::NoticeBox(QWidget* parent, const QString& text, const QString& title, Buttons buttons)
    : QDialog(parent) {
    setObjectName(QStringLiteral("NoticeBox"));
    setWindowTitle(title);
    setModal(true);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->setSpacing(16);
    m_text = new QLabel(text, this);
    m_text->setObjectName(QStringLiteral("NoticeText"));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setMinimumWidth(320);
    Look::setText(m_text, 15);
    layout->addWidget(m_text);

    auto* row = new QHBoxLayout;
    row->addStretch(1);
    auto addButton = [&](const QString& caption, int result) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(caption);
        connect(b, &QPushButton::clicked, this, [this, result] { done(result); });
        row->addWidget(b);
        return b;
    };
    if (buttons == Buttons::Ok) {
        addButton(QStringLiteral("OK"), QDialog::Accepted)->setDefault(true);
    } else {
        addButton(QStringLiteral("Ja"), QDialog::Accepted)->setDefault(true);
        addButton(QStringLiteral("Nein"), QDialog::Rejected);
    }
    layout->addLayout(row);
}

QString NoticeBox::text() const {
    return m_text->text();
}

void NoticeBox::inform(QWidget* parent, const QString& text, const QString& title) {
    NoticeBox box(parent, text, title, Buttons::Ok);
    box.exec();
}

bool NoticeBox::ask(QWidget* parent, const QString& text, const QString& title) {
    NoticeBox box(parent, text, title, Buttons::YesNo);
    return box.exec() == QDialog::Accepted;
}
