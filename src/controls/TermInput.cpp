#include "controls/TermInput.h"

#include "controls/FormulaLabel.h"
#include "controls/Look.h"

#include <QHBoxLayout>
#include <QLineEdit>

TermInput::TermInput(const QString& fieldName, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    m_edit = new QLineEdit(this);
    m_edit->setObjectName(fieldName);
    row->addWidget(m_edit, 1);
    m_preview = new FormulaLabel(this);
    QPalette preview = m_preview->palette();
    preview.setColor(QPalette::WindowText, Look::accentDark());
    m_preview->setPalette(preview);
    m_preview->setToolTip(QStringLiteral("So liest sich deine Formel"));
    m_preview->setFixedWidth(100);
    // Keeps its width while empty, so the field does not jump when the
    // first character is typed.
    QSizePolicy keep = m_preview->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    m_preview->setSizePolicy(keep);
    m_preview->hide();
    row->addWidget(m_preview);
    setFocusProxy(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &TermInput::updatePreview);
}

void TermInput::setPreviewEnabled(bool on) {
    m_previewEnabled = on;
    // Without a preview the field takes the whole width.
    QSizePolicy policy = m_preview->sizePolicy();
    policy.setRetainSizeWhenHidden(on);
    m_preview->setSizePolicy(policy);
    updatePreview();
}

QString TermInput::previewFormula(QStringView typed) {
    const QStringView t = typed.trimmed();
    if (t.size() <= kPreviewChars)
        return t.toString();
    qsizetype cut = kPreviewChars;
    if (t.at(cut - 1).isHighSurrogate())
        --cut; // never half an emoji
    return t.left(cut).toString() + QChar(0x2026);
}

void TermInput::updatePreview() {
    const QString shown = m_previewEnabled ? previewFormula(m_edit->text()) : QString();
    m_preview->setFormula(shown);
    m_preview->setVisible(!shown.isEmpty());
}
