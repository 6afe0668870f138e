#pragma once

#include "controls/BoxLabel.h"

#include <QString>
#include <memory>

class QTextDocument;

// A label for a text of the task bank that may hold formulas ("Wie viel mol
// sind 9 g Wasser (H2O)?"). Its text() is the text exactly as stored, in
// plain format, as every other label's; it draws the formulas set as
// formulas (H₂O, Na⁺). Sizes come from the plain text, which the set
// formulas never exceed in width; a line with a raised or lowered part may
// be taller, so the height is taken from the drawn text where that is so.
class FormulaTextLabel final : public BoxLabel {
    Q_OBJECT
public:
    explicit FormulaTextLabel(QWidget* parent = nullptr);
    ~FormulaTextLabel() override;

    void setStoredText(const QString& text);
    // The text as drawn: rich text with the formulas set, or empty when the
    // text holds none and is drawn as it stands.
    QString drawnHtml() const { return m_html; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The drawn text laid out for a width of the text's area.
    QTextDocument& document(int width) const;
    QRect textArea() const;
    int frameHeight() const;

    QString m_html;
    mutable std::unique_ptr<QTextDocument> m_document;
};
