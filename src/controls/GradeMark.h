#pragma once

#include <QString>
#include <QWidget>

// The running grade as a round badge ("1+" ... "6"), tinted from green for
// the best grades to red for the worst.
class GradeMark final : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
public:
    explicit GradeMark(QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    QSize sizeHint() const override { return {36, 36}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
