#pragma once

#include "chem/ElementTable.h"

#include <QMainWindow>
#include <QPointer>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <functional>

class AppInfo;
class AppResult;
class AppSplash;
class QAction;
class QLabel;
class FadeBar;
class GradeMark;
class OverviewWindow;
class PeriodicTablePanel;
class StartPage;
class TestFlow;

// frm_AppMain: the one main window. It owns the page card with all pages,
// the header and status strips around it, and the menus; the test itself is
// run by its TestFlow.
class AppMain final : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int kHolderWidth = 960;
    static constexpr int kHolderHeight = 520;
    static constexpr int kHeaderHeight = 48;
    static constexpr int kFooterHeight = 44;
    // The window manager's title bar above the window.
    static constexpr int kTitleBar = 32;
    // The smallest window that shows the whole card, title bar included.
    static QSizeF smallestSize();

    explicit AppMain(AppInfo& info);
    ~AppMain() override;

    // The load sequence of the main window. False when this instance must
    // end because another one runs.
    bool formLoad(AppSplash* splash);

    TestFlow& flow() { return *m_flow; }
    StartPage* startPage() const { return m_startPage; }
    // The panel is made when it is first asked for; the start page does
    // not show it, and most candidates never open it.
    PeriodicTablePanel* periodicTable();
    bool hasPeriodicTable() const { return m_periodicTable != nullptr; }
    // elements.dat as read at loading; the panel draws this table.
    const ElementTable& elements() const { return m_elements; }
    // What loading had to tell: a task folder that could not give its files.
    const QStringList& loadNotices() const { return m_loadNotices; }
    AppInfo& info() { return m_info; }

    // How a successor is started and how this instance ends; tests replace both.
    using Launcher = std::function<bool(const QString& program, const QStringList& arguments)>;
    void setLauncher(Launcher launcher) { m_launcher = std::move(launcher); }
    void setExiter(std::function<void()> exiter) { m_exiter = std::move(exiter); }
    QString successorCommand() const;
    // Called with the result form before it is shown; tests use it to set
    // the form's printer, player and documents folder.
    void setResultHook(std::function<void(AppResult*)> hook) { m_resultHook = std::move(hook); }

    // Menu commands.
    void mnu_FileNew_Click();
    // "Ergebnisse auswerten": the teacher's overview of the results folder.
    void mnu_FileOverview_Click();
    void M_P_ENDE_Click();
    void M_H_INFO_Click();
    void M_H_P2_Click();
    void mnu_HelpCalc_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenus();
    void buildBars();
    void Form_Resize();
    void startNewTest();
    // After the first paint: the rest of the window, one piece per turn of
    // the event loop.
    void buildRestWhenIdle();
    // The end of a test: the result form, then the new-test command.
    void showResult();

    AppInfo& m_info;
    TestFlow* m_flow = nullptr;
    QWidget* m_central = nullptr;
    FadeBar* m_header = nullptr;
    QWidget* m_holder = nullptr;
    FadeBar* m_footer = nullptr;
    StartPage* m_startPage = nullptr;
    QLabel* m_streber = nullptr;
    PeriodicTablePanel* m_periodicTable = nullptr;
    QPointer<OverviewWindow> m_overview;
    ElementTable m_elements;
    QStringList m_loadNotices;
    Launcher m_launcher;
    std::function<void()> m_exiter;
    std::function<void(AppResult*)> m_resultHook;
    bool m_quitting = false;
    bool m_restScheduled = false;
};
