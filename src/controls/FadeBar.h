#pragma once

#include <QWidget>

// A strip that fades from a soft light into the background: the header
// above the page card (bar_Splash) and the status strip below it (bar_Sep).
class FadeBar final : public QWidget {
    Q_OBJECT
public:
    enum class Kind { Header, Footer };
    FadeBar(Kind kind, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Kind m_kind;
};
