#include "app/AppMain.h"

#include "aids/CalculatorDialog.h"
#include "aids/ExpertLimits.h"
#include "aids/PeriodicTablePanel.h"
#include "app/AppInfo.h"
#include "app/AppSplash.h"
#include "controls/BoxLabel.h"
#include "controls/FadeBar.h"
#include "controls/GradeMark.h"
#include "controls/Look.h"
#include "controls/Mascot.h"
#include "controls/NoticeBox.h"
#include "controls/PeriodicTableView.h"
#include "controls/PraisePanel.h"
#include "overview/OverviewWindow.h"
#include "pages/ComprehensionPage.h"
#include "pages/PageSet.h"
#include "pages/PracticeRound.h"
#include "pages/StartPage.h"
#include "result/AppResult.h"
#include "session/TestFlow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProcess>
#include <QResizeEvent>
#include <QScreen>
#include <QTimer>

AppMain::AppMain(AppInfo& info) : QMainWindow(nullptr), m_info(info) {
    setObjectName(QStringLiteral("frm_AppMain"));
    Look::setFill(this, Look::slate());
    setWindowTitle(QLatin1String(AppInfo::kProductName));
    m_launcher = [](const QString& program, const QStringList& arguments) {
        return QProcess::startDetached(program, arguments);
    };
    // Ends the program at once: every event loop stops, and no window's
    // closing handler runs. Quitting from the menu unloads the forms first.
    m_exiter = [] { QCoreApplication::exit(0); };
    buildBars();
    buildMenus();
    m_flow->setRecords(&m_info);
    connect(m_flow, &TestFlow::testFinished, this, &AppMain::showResult);
    const int cardStack = kHolderHeight + kHeaderHeight + kFooterHeight;
    setMinimumSize(smallestSize().toSize() - QSize(0, kTitleBar));
    // Some room around the card where the screen has it; on a school laptop
    // with a taskbar (1366×700 usable) the window takes what is there.
    QSize wanted(kHolderWidth + 120, cardStack + 90);
    if (const QScreen* s = screen()) {
        const QRect area = s->availableGeometry();
        wanted = wanted.boundedTo(area.size() - QSize(0, kTitleBar)).expandedTo(minimumSize());
        move(area.left() + (area.width() - wanted.width()) / 2,
             area.top() + qMax(0, (area.height() - wanted.height() - kTitleBar) / 2));
    }
    resize(wanted.expandedTo(minimumSize()));
}

AppMain::~AppMain() = default;

QSizeF AppMain::smallestSize() {
    const int cardStack = kHolderHeight + kHeaderHeight + kFooterHeight;
    return QSizeF(kHolderWidth + 16, cardStack + 24 + kTitleBar);
}

void AppMain::buildBars() {
    m_central = new QWidget(this);
    m_central->setObjectName(QStringLiteral("MainArea"));
    setCentralWidget(m_central);
    m_central->installEventFilter(this);

    m_header = new FadeBar(FadeBar::Kind::Header, m_central);
    m_header->setObjectName(QStringLiteral("bar_Splash"));
    m_header->setFixedSize(kHolderWidth, kHeaderHeight);
    QPalette onHeader = m_header->palette();
    onHeader.setColor(QPalette::WindowText, Qt::white);
    m_header->setPalette(onHeader);
    auto* headerRow = new QHBoxLayout(m_header);
    headerRow->setContentsMargins(16, 4, 18, 4);
    auto* mascot = new Mascot(m_header);
    mascot->setFixedSize(34, 40);
    headerRow->addWidget(mascot);
    auto* nameBox = new QWidget(m_header);
    auto* nameCol = new QVBoxLayout(nameBox);
    nameCol->setContentsMargins(6, 0, 0, 0);
    nameCol->setSpacing(0);
    auto* appName = new QLabel(QLatin1String(AppInfo::kProductName), nameBox);
    Look::setRole(appName, QStringLiteral("appName"));
    auto* appSub = new QLabel(QStringLiteral("Selbsttest Chemie"), nameBox);
    Look::setRole(appSub, QStringLiteral("appSub"));
    nameCol->addWidget(appName);
    nameCol->addWidget(appSub);
    headerRow->addWidget(nameBox);
    headerRow->addStretch(1);
    auto* streber = new BoxLabel(QStringLiteral("Strebermodus"), m_header);
    streber->setObjectName(QStringLiteral("Streberstufe"));
    streber->setBox({Look::amber(), QColor(), 0, 4});
    Look::setText(streber, 13, QFont::Bold, Look::ink());
    streber->setContentsMargins(8, 2, 8, 2);
    m_streber = streber;
    m_streber->hide();
    headerRow->addWidget(m_streber);

    m_holder = new QWidget(m_central);
    m_holder->setObjectName(QStringLiteral("bar_Holder"));
    Look::setFill(m_holder, Qt::white);
    m_holder->setFixedSize(kHolderWidth, kHolderHeight);

    m_footer = new FadeBar(FadeBar::Kind::Footer, m_central);
    m_footer->setObjectName(QStringLiteral("bar_Sep"));
    m_footer->setFixedSize(kHolderWidth, kFooterHeight);
    Look::setText(m_footer, 13, QFont::Normal, QColor(0xec, 0xef, 0xf1));
    auto* footerRow = new QHBoxLayout(m_footer);
    footerRow->setContentsMargins(18, 4, 18, 4);
    footerRow->setSpacing(8);
    auto addCounter = [&](const QString& caption, const QString& name) {
        footerRow->addWidget(new QLabel(caption, m_footer));
        auto* value = new QLabel(QStringLiteral(" 0"), m_footer);
        value->setObjectName(name);
        Look::setRole(value, QStringLiteral("counter"));
        value->setMinimumWidth(36);
        footerRow->addWidget(value);
        footerRow->addSpacing(18);
        return value;
    };
    QLabel* tasks = addCounter(QStringLiteral("Aufgaben bisher:"), QStringLiteral("Aufgabenanz"));
    QLabel* correct = addCounter(QStringLiteral("davon richtig:"), QStringLiteral("RichtigAnz"));
    footerRow->addStretch(1);
    footerRow->addWidget(new QLabel(QStringLiteral("Aktueller Notenstand:"), m_footer));
    auto* mark = new GradeMark(m_footer);
    footerRow->addWidget(mark);

    m_flow = new TestFlow(m_holder, this);
    m_flow->setScoreBoard(tasks, correct, mark);
    auto* praise = new PraisePanel(m_holder);
    m_flow->setPraisePanel(praise);
}

void AppMain::buildMenus() {
    QPalette bar = menuBar()->palette();
    bar.setColor(QPalette::Window, QColor(0x1f, 0x29, 0x2e));
    bar.setColor(QPalette::WindowText, QColor(0xec, 0xef, 0xf1));
    bar.setColor(QPalette::ButtonText, QColor(0xec, 0xef, 0xf1));
    menuBar()->setPalette(bar);
    QMenu* program = menuBar()->addMenu(QStringLiteral("&Programm"));
    program->setObjectName(QStringLiteral("mnu_File"));
    QAction* fileNew = program->addAction(QStringLiteral("&Neuer Test"));
    fileNew->setObjectName(QStringLiteral("mnu_FileNew"));
    connect(fileNew, &QAction::triggered, this, &AppMain::mnu_FileNew_Click);
    QAction* overview = program->addAction(QStringLiteral("&Ergebnisse auswerten …"));
    overview->setObjectName(QStringLiteral("mnu_FileOverview"));
    connect(overview, &QAction::triggered, this, &AppMain::mnu_FileOverview_Click);
    program->addSeparator();
    QAction* quit = program->addAction(QStringLiteral("&Beenden"));
    quit->setObjectName(QStringLiteral("M_P_ENDE"));
    connect(quit, &QAction::triggered, this, &AppMain::M_P_ENDE_Click);

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Hilfe"));
    help->setObjectName(QStringLiteral("mnu_Help"));
    QAction* table = help->addAction(QStringLiteral("Perioden&system"));
    table->setObjectName(QStringLiteral("M_H_P2"));
    table->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F1));
    connect(table, &QAction::triggered, this, &AppMain::M_H_P2_Click);
    QAction* calc = help->addAction(QStringLiteral("&Taschenrechner"));
    calc->setObjectName(QStringLiteral("mnu_HelpCalc"));
    calc->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F2));
    connect(calc, &QAction::triggered, this, &AppMain::mnu_HelpCalc_Click);
    QAction* about = help->addAction(QStringLiteral("&Info"));
    about->setObjectName(QStringLiteral("M_H_INFO"));
    about->setShortcut(QKeySequence(Qt::Key_F1));
    connect(about, &QAction::triggered, this, &AppMain::M_H_INFO_Click);
}

bool AppMain::formLoad(AppSplash* splash) {
    // 1. The element table is read now, so that a damaged file is reported
    // at the start; its panel is built when it is first opened.
    QString notice;
    m_elements =
        ElementTable::load(m_info.taskFileOrBuiltIn(QStringLiteral("elements.dat"), &notice));
    if (m_elements.count() == 0 && m_info.folders().separateTasks() && notice.isEmpty()) {
        // There, but not an element table: the teacher's folder cannot give
        // one, the program can.
        notice =
            m_elements.readProblem() + QStringLiteral(" Es gilt die eingebaute Elementtabelle.");
        m_elements = ElementTable::load(QStringLiteral(":/data/elements.dat"));
    }
    if (!notice.isEmpty())
        m_loadNotices << notice;
    m_flow->setElements(&m_elements);
    // 2. Pages, each with its button pair.
    m_startPage = new StartPage(*m_flow, m_info, m_holder, m_streber);
    m_flow->setStartPage(m_startPage, [this] { m_startPage->generate(); });
    // The task pages are built when the flow first needs them or after the
    // start page is on screen: the start does not wait for nine pages.
    PageSet::createTaskPages(*m_flow, m_holder);
    m_startPage->setGeometry(0, 0, kHolderWidth, kHolderHeight);
    m_startPage->show();

    auto endLoading = [splash] {
        if (splash)
            splash->close();
        while (QApplication::overrideCursor())
            QApplication::restoreOverrideCursor();
    };
    // 3. One instance per data folder, unless this one was started as a new test.
    if (!m_info.claimInstance() && !m_info.commandLine().hasNewSwitch()) {
        endLoading();
        m_info.message(nullptr,
                       QStringLiteral("Der Laborixtest läuft bereits oder wird noch geladen."));
        return false;
    }
    // 4. The developer folder becomes the working folder.
    if (m_info.commandLine().hasDevSwitch())
        QDir::setCurrent(m_info.dataFolder());
    // 5. The task bank.
    notice.clear();
    QString bankPath = m_info.taskFileOrBuiltIn(QStringLiteral("labquiz.dat"), &notice);
    TaskBank bank = TaskBank::LoadTaskBank(bankPath);
    if (!bank.fileRead && m_info.folders().separateTasks() && notice.isEmpty()) {
        notice = bank.readProblem + QStringLiteral(" Es gilt die eingebaute Aufgabendatei.");
        bankPath = QStringLiteral(":/data/labquiz.dat");
        bank = TaskBank::LoadTaskBank(bankPath);
    }
    if (!notice.isEmpty())
        m_loadNotices << notice;
    m_flow->setBank(std::move(bank), bankPath);
    // 6. The remembered level.
    if (m_info.difficulty() >= 0)
        m_startPage->presetLevel(m_info.difficulty());
    m_startPage->fillNames();
    // 7.
    endLoading();
    return true;
}

QString AppMain::successorCommand() const {
    const QFileInfo exe(QCoreApplication::applicationFilePath());
    return CommandLine::successorCommand(QDir::toNativeSeparators(exe.absolutePath()),
                                         exe.completeBaseName(), m_info.commandLine().text());
}

void AppMain::startNewTest() {
    const auto launch =
        CommandLine::launchFor(successorCommand(), QCoreApplication::applicationFilePath());
    m_info.log(QStringLiteral("Neuer Test: ") + launch.program + u' ' +
               launch.arguments.join(u' '));
    m_info.endSession();
    if (!m_launcher(launch.program, launch.arguments))
        m_info.message(this, QStringLiteral("Der neue Test konnte nicht gestartet werden."));
    m_quitting = true;
    m_exiter();
}

void AppMain::mnu_FileNew_Click() {
    if (NoticeBox::ask(this, QStringLiteral("Wirklich einen neuen Test beginnen?"),
                       QStringLiteral("Neu?")))
        startNewTest();
}

void AppMain::showResult() {
    SessionState& state = m_flow->state();
    auto* last = qobject_cast<ComprehensionPage*>(m_flow->flowPage(6));
    const FinalResult result = last ? last->finalResult() : FinalGrade::prepare(state);
    const int melody = m_startPage ? m_startPage->chosenMelody() : 0;
    QPointer<AppResult> form = new AppResult(state, result, melody, this);
    // "Nein" ends the program at once: the lock goes, the log is already
    // written, and no question follows.
    form->setQuitter([this] {
        m_info.endSession();
        m_quitting = true;
        m_exiter();
    });
    if (!PracticeRound::plan(state.Pages).isEmpty()) {
        form->setPractice([this](QWidget* over) {
            SessionState& s = m_flow->state();
            PracticeRound round(s.Pages, m_flow->bank(), m_flow->elements(), s.ExpertLevel, over);
            round.exec();
        });
    }
    if (m_resultHook)
        m_resultHook(form);
    form->exec();
    const bool quit = !form || form->quitRequested();
    delete form.data();
    if (quit || m_quitting)
        return;
    mnu_FileNew_Click();
}

void AppMain::mnu_FileOverview_Click() {
    // One overview at a time; asked again, the open one comes to the front.
    if (!m_overview) {
        m_overview = new OverviewWindow(m_info.resultsFolder(), &m_info.names(), this);
        m_overview->setAttribute(Qt::WA_DeleteOnClose);
        m_overview->openFolder(m_overview->startFolder());
    }
    m_overview->show();
    m_overview->raise();
    m_overview->activateWindow();
}

void AppMain::M_P_ENDE_Click() {
    if (!NoticeBox::ask(this, QStringLiteral("Wollen Sie den Test wirklich verlassen?"),
                        QStringLiteral("Ende?")))
        return;
    m_info.endSession();
    m_quitting = true;
    QApplication::closeAllWindows();
    m_exiter();
}

void AppMain::M_H_INFO_Click() {
    m_info.showInfo(this);
}

PeriodicTablePanel* AppMain::periodicTable() {
    if (!m_periodicTable) {
        m_periodicTable = new PeriodicTablePanel(m_central);
        m_periodicTable->view()->setTable(m_elements);
        connect(m_flow, &TestFlow::hidePeriodicTableRequested, m_periodicTable,
                &PeriodicTablePanel::HidePeriodicTable);
    }
    return m_periodicTable;
}

void AppMain::M_H_P2_Click() {
    if (!ExpertLimits::mayUse(ExpertLimits::Aid::PeriodicTable, m_flow->state().ExpertLevel, this))
        return;
    periodicTable()->ShowPeriodicTable();
}

void AppMain::mnu_HelpCalc_Click() {
    if (!ExpertLimits::mayUse(ExpertLimits::Aid::CalculatorMenu, m_flow->state().ExpertLevel, this))
        return;
    // Opened freely from the menu, the result goes nowhere.
    CalculatorDialog::run(this);
}

void AppMain::closeEvent(QCloseEvent* event) {
    m_info.endSession();
    event->accept();
}

bool AppMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_central && event->type() == QEvent::Resize)
        Form_Resize();
    // The start page is on screen once it has been painted; what it does
    // not show is built after that, while the candidate types a name, so
    // that each page is there when the test reaches it (and for tools that
    // look for its controls).
    if (watched == m_central && event->type() == QEvent::Paint && !m_restScheduled) {
        m_restScheduled = true;
        QTimer::singleShot(0, this, &AppMain::buildRestWhenIdle);
    }
    return QMainWindow::eventFilter(watched, event);
}

void AppMain::buildRestWhenIdle() {
    // One page at a time, so a key pressed meanwhile waits a page at most.
    if (m_flow->buildNextPage()) {
        QTimer::singleShot(0, this, &AppMain::buildRestWhenIdle);
        return;
    }
    periodicTable();
}

void AppMain::Form_Resize() {
    const int w = m_central->width();
    const int h = m_central->height();
    const int left = (w - m_holder->width()) / 2;
    const int top = (h - m_holder->height()) / 2;
    m_holder->move(left, top);
    m_header->move(left, top - m_header->height());
    m_footer->move(left, top + m_holder->height());
}
