#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QPushButton;

// Taschenrechner: a modal pocket calculator. The student types a whole
// expression into the display (or clicks it together), Enter or "=" works
// it out, and "Übernehmen" hands the shown value back to whoever opened it.
// Escape or closing the window hands back 0.
class CalculatorDialog final : public QDialog {
    Q_OBJECT
public:
    explicit CalculatorDialog(QWidget* parent = nullptr);

    // Opens the calculator modally and returns the value taken over, or 0.
    static double run(QWidget* parent);

    QLineEdit* display() const { return m_display; }
    // The value handed back: set by "Übernehmen", 0 otherwise.
    double value() const { return m_value; }
    bool showsMessage() const { return m_showsMessage; }

    // Enter and "=": replaces the expression by its result, or by a short
    // message saying what is wrong with it.
    void calculate();
    // "Übernehmen".
    void takeOver();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* addKey(const QString& caption, const QString& inserts, const char* kind);
    void insert(const QString& text);
    void backspace();
    void clearAll();
    void tidyTyped();
    void setShowsMessage(bool message);

    QLabel* m_worked;
    QLineEdit* m_display;
    QPushButton* m_takeOver;
    QString m_lastExpression; // what a message replaced; Backspace brings it back
    bool m_showsMessage = false;
    double m_value = 0.0;
};
