#pragma once

#include <QWidget>

// Dr. Quark, the program's mascot: a small flask with a face. Its
// expression codes are 1 good, 2 very good, 3 poor, 5 satisfactory and
// 6 sufficient; anything else shows a neutral face.
class Mascot final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Expression READ expression WRITE setExpression)
public:
    explicit Mascot(QWidget* parent = nullptr);

    int expression() const { return m_expression; }
    void setExpression(int code);
    QSize sizeHint() const override { return {56, 64}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_expression = 0;
};
