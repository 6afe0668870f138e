#pragma once

#include <QString>
#include <QStringView>
#include <QWidget>

class FormulaLabel;
class QLineEdit;

// An answer field for a chemical formula with a preview beside it: while the
// student types "H2SO4" the preview reads H₂SO₄, so a slip such as "H2So4"
// stands out before checking. The typed text is judged exactly as typed;
// the preview never changes it. The field carries the name the page gives
// it; the preview can be switched off for fields that take names.
class TermInput final : public QWidget {
    Q_OBJECT
public:
    // Longer input is cut in the preview, so a pasted page of text cannot
    // stretch the layout.
    static constexpr int kPreviewChars = 24;

    explicit TermInput(const QString& fieldName, QWidget* parent = nullptr);

    QLineEdit* edit() const { return m_edit; }
    FormulaLabel* preview() const { return m_preview; }
    void setPreviewEnabled(bool on);
    bool previewEnabled() const { return m_previewEnabled; }

    // What the preview shows for a typed text, in the bank's notation.
    static QString previewFormula(QStringView typed);

private:
    void updatePreview();

    QLineEdit* m_edit;
    FormulaLabel* m_preview;
    bool m_previewEnabled = true;
};
