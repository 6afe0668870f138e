#pragma once

#include "controls/RoundPanel.h"

#include <QPoint>
#include <QPointer>

class QLabel;
class QToolButton;
class PeriodicTableView;

// frm_PSE: the periodic table as a panel floating over the pages. It is
// dragged by its title bar (never quite out of reach), put away by its
// button, and put away and remembered at every page change. Opened, it
// takes the keyboard focus for its table; Escape puts it away and gives the
// focus back to the field it came from.
class PeriodicTablePanel final : public RoundPanel {
    Q_OBJECT
public:
    explicit PeriodicTablePanel(QWidget* parent);

    PeriodicTableView* view() const { return m_view; }
    QWidget* titleBar() const { return m_title; }

    void ShowPeriodicTable();
    void HidePeriodicTable();
    QPoint panelHome() const { return m_home; }
    void setPanelHome(QPoint home) {
        m_home = home;
        m_homeSet = true;
    }

    // One drag step as the title bar's mouse handling does it; global
    // positions in pixels.
    void beginDrag(QPoint globalPointer);
    void dragTo(QPoint globalPointer);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* m_title;
    QToolButton* m_close;
    PeriodicTableView* m_view;
    QPoint m_home;
    bool m_homeSet = false;
    QPoint m_dragPanel;
    QPoint m_dragPointer;
    bool m_dragBusy = false;
    bool m_dragging = false;
    QPointer<QWidget> m_focusBefore;
    void putAway();
};
