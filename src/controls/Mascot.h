#pragma once

#include <QColor>
#include <QWidget>

// Dr. Quark, the program's mascot: a small flask with a face. Its
// expression codes are 1 good, 2 very good, 3 poor, 5 satisfactory and
// 6 sufficient; each has its own eyes, mouth and liquid colour so that the
// mood reads at a glance, and anything else shows a neutral face.
class Mascot final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Expression READ expression WRITE setExpression)
public:
    explicit Mascot(QWidget* parent = nullptr);

    int expression() const { return m_expression; }
    void setExpression(int code);
    // The glass is drawn in this colour: light on the dark header (the
    // default), dark on a white card.
    void setOutline(const QColor& colour);
    QSize sizeHint() const override { return {56, 64}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_expression = 0;
    QColor m_outline{0xec, 0xef, 0xf1};
};
