#pragma once

#include <QDialog>
#include <QString>

class QLabel;

// The program's own message box: one text, a title (often empty or very
// short, like "!?"), and either "OK" or "Ja"/"Nein".
class NoticeBox final : public QDialog {
    Q_OBJECT
public:
    enum class Buttons { Ok, YesNo };

    NoticeBox(QWidget* parent, const QString& text, const QString& title, Buttons buttons);

    static void inform(QWidget* parent, const QString& text, const QString& title = QString());
    // True for "Ja".
    static bool ask(QWidget* parent, const QString& text, const QString& title = QString());

    QString text() const;

private:
    QLabel* m_text;
};
