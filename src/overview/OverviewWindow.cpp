#include "overview/OverviewWindow.h"

#include "overview/ClassTableModel.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"
#include "controls/NoticeBox.h"
#include "overview/ClassCsv.h"
#include "overview/ClassReport.h"
#include "overview/OverviewCharts.h"
#include "overview/TestDetailDialog.h"
#include "result/CertificatePrinter.h"
#include "result/FinalGrade.h"
#include "session/NamesFile.h"

#include <QChart>
#include <QChartView>
#include <QCloseEvent>
#include <QCollator>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QTabWidget>
#include <QThread>
#include <QTreeView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum HardColumn { HPage, HPrompt, HExpected, HAsked, HWrong, HShare, HAnswers, HCount };

constexpr int kSortRole = Qt::UserRole + 1; // what a column sorts by
constexpr int kProgressAfterMs = 500;       // below this a reading shows no progress bar

QString sameFolder(const QString& folder) {
    return QDir::cleanPath(QDir(folder).absolutePath());
}

// Sorts by the value kept for the column: numbers as numbers, texts as a
// German reader orders names.
class SortItem final : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    bool operator<(const QTreeWidgetItem& other) const override {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const QVariant a = data(column, kSortRole), b = other.data(column, kSortRole);
        if (!a.isValid() || !b.isValid())
            return QTreeWidgetItem::operator<(other);
        if (a.typeId() == QMetaType::QString || b.typeId() == QMetaType::QString) {
            static const QCollator collator(QLocale(QLocale::German, QLocale::Germany));
            return collator.compare(a.toString(), b.toString()) < 0;
        }
        return a.toDouble() < b.toDouble();
    }
};

void setCell(QTreeWidgetItem* item, int column, const QString& text, const QVariant& key,
             Qt::Alignment align = Qt::AlignLeft) {
    item->setText(column, text);
    item->setData(column, kSortRole, key);
    item->setTextAlignment(column, align | Qt::AlignVCenter);
}

QPushButton* button(const QString& caption, const QString& name, QWidget* parent,
                    const QString& help) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setToolTip(help);
    b->setAccessibleDescription(help);
    return b;
}

QTreeWidget* table(const QString& name, const QString& accessible, const QStringList& headers,
                   QWidget* parent) {
    auto* t = new QTreeWidget(parent);
    t->setObjectName(name);
    t->setAccessibleName(accessible);
    t->setColumnCount(int(headers.size()));
    t->setHeaderLabels(headers);
    t->setAlternatingRowColors(true);
    t->setUniformRowHeights(true);
    t->setRootIsDecorated(false);
    t->header()->setSortIndicatorShown(true);
    return t;
}

} // namespace

OverviewWindow::OverviewWindow(QString resultsFolder, NamesFile* remembered, QWidget* parent)
    : QWidget(parent, Qt::Window), m_resultsFolder(std::move(resultsFolder)),
      m_remembered(remembered) {
    setObjectName(QStringLiteral("frm_Overview"));
    setWindowTitle(QStringLiteral("Ergebnisse auswerten – Laborix Test"));
    Look::setText(this, 14, QFont::Normal, Look::ink());
    buildTop();
    buildTabs();

    m_progressTimer.setInterval(100);
    connect(&m_progressTimer, &QTimer::timeout, this, &OverviewWindow::pollProgress);
    // Typing a name filters once the typing pauses, not at every key.
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(150);
    connect(&m_filterTimer, &QTimer::timeout, this, &OverviewWindow::refresh);

    // The class table's nine columns want about 1300 pixels.
    QSize wanted(1340, 720);
    if (const QScreen* s = screen())
        wanted = wanted.boundedTo(s->availableGeometry().size() - QSize(0, 32));
    resize(wanted);
}

OverviewWindow::~OverviewWindow() {
    stopReading();
    // The records go with this object's members, before QWidget's own
    // destructor hides the table, which then lays its rows out once more.
    m_classModel->setTests(nullptr, {});
}

void OverviewWindow::buildTop() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->setSpacing(8);

    auto* folderRow = new QHBoxLayout;
    auto* folderCaption = new QLabel(QStringLiteral("Ergebnisordner:"), this);
    m_folderLabel = new QLabel(this);
    m_folderLabel->setObjectName(QStringLiteral("Ordner"));
    m_folderLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_folderLabel->setTextFormat(Qt::PlainText);
    Look::setText(m_folderLabel, 14, QFont::Bold, Look::ink());
    folderCaption->setBuddy(m_folderLabel);
    folderRow->addWidget(folderCaption);
    folderRow->addWidget(m_folderLabel, 1);
    QPushButton* choose =
        button(QStringLiteral("&Ordner wählen …"), QStringLiteral("OrdnerWaehlen"), this,
               QStringLiteral("Einen anderen Ordner mit Ergebnisdateien "
                              "auswerten; er wird gemerkt."));
    choose->setShortcut(QKeySequence::Open);
    connect(choose, &QPushButton::clicked, this, &OverviewWindow::chooseFolder);
    QPushButton* standard = button(
        QStringLiteral("&Ergebnisordner des Programms"), QStringLiteral("Standardordner"), this,
        QStringLiteral("Den Ergebnisordner auswerten, in den dieses Programm die Tests schreibt."));
    connect(standard, &QPushButton::clicked, this, [this] { openFolder(m_resultsFolder, true); });
    QPushButton* again = button(QStringLiteral("Neu ein&lesen"), QStringLiteral("NeuEinlesen"),
                                this, QStringLiteral("Den Ordner noch einmal lesen (F5)."));
    again->setShortcut(QKeySequence::Refresh);
    connect(again, &QPushButton::clicked, this, &OverviewWindow::reread);
    folderRow->addWidget(choose);
    folderRow->addWidget(standard);
    folderRow->addWidget(again);
    layout->addLayout(folderRow);

    auto* filterRow = new QHBoxLayout;
    filterRow->setSpacing(6);
    auto caption = [&](const QString& text, QWidget* buddy) {
        auto* l = new QLabel(text, this);
        l->setBuddy(buddy);
        filterRow->addWidget(l);
        filterRow->addWidget(buddy);
    };
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("FilterName"));
    m_name->setPlaceholderText(QStringLiteral("Teil des Namens"));
    m_name->setAccessibleName(QStringLiteral("Nach Namen filtern"));
    m_name->setClearButtonEnabled(true);
    m_name->setMinimumWidth(180);
    connect(m_name, &QLineEdit::textChanged, this, [this] { m_filterTimer.start(); });
    caption(QStringLiteral("&Name:"), m_name);
    auto dateEdit = [&](const QString& name, const QString& accessible) {
        auto* d = new QDateEdit(this);
        d->setObjectName(name);
        d->setAccessibleName(accessible);
        d->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
        d->setCalendarPopup(true);
        d->setEnabled(false);
        connect(d, &QDateEdit::dateChanged, this, [this] { m_filterTimer.start(); });
        return d;
    };
    m_from = dateEdit(QStringLiteral("FilterVon"), QStringLiteral("Tests ab diesem Tag"));
    m_to = dateEdit(QStringLiteral("FilterBis"), QStringLiteral("Tests bis zu diesem Tag"));
    caption(QStringLiteral("&von"), m_from);
    caption(QStringLiteral("&bis"), m_to);
    m_level = new QComboBox(this);
    m_level->setObjectName(QStringLiteral("FilterStufe"));
    m_level->setAccessibleName(QStringLiteral("Nach Stufe filtern"));
    m_level->addItems(
        {QStringLiteral("alle Stufen"), QStringLiteral("normal"), QStringLiteral("Strebermodus")});
    connect(m_level, &QComboBox::currentIndexChanged, this, &OverviewWindow::refresh);
    caption(QStringLiteral("St&ufe:"), m_level);
    QPushButton* all = button(QStringLiteral("&Alle zeigen"), QStringLiteral("FilterAus"), this,
                              QStringLiteral("Namensfilter, Zeitraum und Stufe zurücksetzen."));
    connect(all, &QPushButton::clicked, this, [this] {
        m_name->clear();
        m_level->setCurrentIndex(0);
        m_from->setDate(m_from->minimumDate());
        m_to->setDate(m_to->maximumDate());
        refresh();
    });
    filterRow->addWidget(all);
    filterRow->addStretch(1);
    m_save = button(QStringLiteral("Als &Tabelle speichern"), QStringLiteral("AlsTabelle"), this,
                    QStringLiteral("Die Tests, wie die Klassentabelle sie zeigt, als CSV-Datei "
                                   "für Tabellenkalkulationen speichern (Strg+S)."));
    m_save->setShortcut(QKeySequence::Save);
    connect(m_save, &QPushButton::clicked, this, &OverviewWindow::saveTable);
    m_print = button(QStringLiteral("Bericht &drucken"), QStringLiteral("BerichtDrucken"), this,
                     QStringLiteral("Klassenbericht mit Tabelle, Diagrammen und den "
                                    "schwierigsten Aufgaben drucken oder als PDF speichern "
                                    "(Strg+P)."));
    m_print->setShortcut(QKeySequence::Print);
    connect(m_print, &QPushButton::clicked, this, &OverviewWindow::printReport);
    filterRow->addWidget(m_save);
    filterRow->addWidget(m_print);
    layout->addLayout(filterRow);

    auto* statusRow = new QHBoxLayout;
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("Stand"));
    m_status->setTextFormat(Qt::PlainText);
    Look::setText(m_status, 13, QFont::Normal, Look::softInk());
    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("Lesefortschritt"));
    m_progressBar->setAccessibleName(QStringLiteral("Fortschritt beim Lesen der Dateien"));
    m_progressBar->setMaximumWidth(260);
    m_progressBar->hide();
    statusRow->addWidget(m_status, 1);
    statusRow->addWidget(m_progressBar);
    layout->addLayout(statusRow);

    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("Ordnerproblem"));
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setMargin(10);
    m_problem->setAutoFillBackground(true);
    QPalette alarm = m_problem->palette();
    alarm.setColor(QPalette::Window, QColor(0xfd, 0xec, 0xea));
    alarm.setColor(QPalette::WindowText, Look::alarm());
    m_problem->setPalette(alarm);
    Look::setText(m_problem, 15, QFont::Bold, Look::alarm());
    m_problem->hide();
    layout->addWidget(m_problem);
}

void OverviewWindow::buildTabs() {
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("Auswertung"));
    layout()->addWidget(m_tabs);

    m_classModel = new ClassTableModel(this);
    m_classTable = new QTreeView(m_tabs);
    m_classTable->setObjectName(QStringLiteral("Klassentabelle"));
    m_classTable->setAccessibleName(
        QStringLiteral("Klassentabelle: ein Test je Zeile, mehrere Versuche eines Namens "
                       "zusammengefasst; Eingabe oder Doppelklick zeigt den Test"));
    m_classTable->setModel(m_classModel);
    m_classTable->setAlternatingRowColors(true);
    m_classTable->setUniformRowHeights(true);
    m_classTable->header()->setSortIndicatorShown(true);
    m_classTable->setToolTip(
        QStringLiteral("Doppelklick oder Eingabetaste auf einen Test: alle seine Aufgaben"));
    m_classTable->setSortingEnabled(true);
    m_classTable->sortByColumn(ClassTableModel::CName, Qt::AscendingOrder);
    m_classTable->header()->setStretchLastSection(false);
    // Column widths come from the first rows; the rest are alike.
    m_classTable->header()->setResizeContentsPrecision(200);
    QFont bold = m_classTable->font();
    bold.setBold(true);
    m_classModel->setBoldFont(bold);
    connect(m_classTable, &QTreeView::activated, this, [this](const QModelIndex& index) {
        const int record = index.data(ClassTableModel::RecordRole).toInt();
        if (record >= 0)
            showTest(record);
    });
    m_tabs->addTab(m_classTable, QStringLiteral("&Klasse"));

    auto* charts = new QWidget(m_tabs);
    charts->setObjectName(QStringLiteral("StaerkenSchwaechen"));
    auto* chartRow = new QHBoxLayout(charts);
    chartRow->setContentsMargins(4, 4, 4, 4);
    auto chartView = [&](const QString& name) {
        auto* v = new QChartView(charts);
        v->setObjectName(name);
        v->setRenderHint(QPainter::Antialiasing);
        v->setFocusPolicy(Qt::StrongFocus);
        chartRow->addWidget(v, 1);
        return v;
    };
    m_pageChart = chartView(QStringLiteral("DiagrammSeiten"));
    m_gradeChart = chartView(QStringLiteral("DiagrammNoten"));
    m_tabs->addTab(charts, QStringLiteral("&Stärken und Schwächen"));

    m_hardTasks =
        table(QStringLiteral("SchwierigsteAufgaben"),
              QStringLiteral("Schwierigste Aufgaben: am häufigsten falsch beantwortet zuerst"),
              {QStringLiteral("Seite"), QStringLiteral("Aufgabe"), QStringLiteral("Richtig wäre"),
               QStringLiteral("gestellt"), QStringLiteral("falsch"),
               QStringLiteral("Anteil falsch"), QStringLiteral("Häufigste falsche Antworten")},
              m_tabs);
    m_hardTasks->setSortingEnabled(true);
    m_hardTasks->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_hardTasks->header()->setSectionResizeMode(HPrompt, QHeaderView::Stretch);
    m_hardTasks->header()->setStretchLastSection(false);
    m_hardTasks->header()->setResizeContentsPrecision(200);
    m_tabs->addTab(m_hardTasks, QStringLiteral("Sch&wierigste Aufgaben"));

    m_notices = table(QStringLiteral("Uebersprungen"),
                      QStringLiteral("Dateien, die nicht gelesen wurden, mit dem Grund"),
                      {QStringLiteral("Datei"), QStringLiteral("Grund")}, m_tabs);
    m_tabs->addTab(m_notices, QStringLiteral("Übersprungene Dateien"));
}

QString OverviewWindow::startFolder() const {
    const QString remembered = m_remembered ? m_remembered->overviewFolder() : QString();
    return remembered.isEmpty() ? m_resultsFolder : remembered;
}

void OverviewWindow::presetDates(const QDate& from, const QDate& to) {
    m_presetFrom = from;
    m_presetTo = to;
}

void OverviewWindow::openFolder(const QString& folder, bool remember) {
    m_folder = folder;
    m_folderLabel->setText(QDir::toNativeSeparators(folder));
    if (remember && m_remembered) {
        // Read again first: another window of the program may have added
        // names since this one read the file.
        m_remembered->load();
        const bool isDefault = sameFolder(folder) == sameFolder(m_resultsFolder);
        m_remembered->setOverviewFolder(isDefault ? QString() : sameFolder(folder));
        QDir().mkpath(QFileInfo(m_remembered->path()).absolutePath());
        m_remembered->save(); // a folder not remembered is no reason to stop
    }
    startReading();
}

void OverviewWindow::chooseFolder() {
    const QString start = m_folder.isEmpty() ? m_resultsFolder : m_folder;
    const QString chosen =
        m_folderChooser ? m_folderChooser(start)
                        : QFileDialog::getExistingDirectory(
                              this, QStringLiteral("Ordner mit Ergebnisdateien wählen"), start);
    if (!chosen.isEmpty())
        openFolder(chosen, true);
}

void OverviewWindow::reread() {
    startReading();
}

void OverviewWindow::stopReading() {
    if (!m_thread)
        return;
    m_progress->cancel = true;
    m_thread->wait();
    delete m_thread;
    m_thread = nullptr;
    ++m_generation;
    m_progressTimer.stop();
    m_progressBar->hide();
}

void OverviewWindow::startReading() {
    stopReading();
    m_progress = std::make_shared<ResultFolder::Progress>();
    m_incoming = std::make_shared<ResultFolder::Reading>();
    m_incomingSummary = std::make_shared<ClassSummary>();
    // The filter the window will have once the reading is in: the date
    // edits then span the whole reading (no restriction) unless the command
    // line gave days for the first one.
    m_incomingFilter = filter();
    m_incomingFilter.from = m_firstReading ? m_presetFrom : QDate();
    m_incomingFilter.to = m_firstReading ? m_presetTo : QDate();
    const QString folder = m_folder;
    auto progress = m_progress;
    auto incoming = m_incoming;
    auto summary = m_incomingSummary;
    const TestFilter selection = m_incomingFilter;
    // The summary is worked out here too, so that the window's own thread
    // only fills its views.
    m_thread = QThread::create([folder, progress, incoming, summary, selection] {
        *incoming = ResultFolder::read(folder, progress.get());
        if (!incoming->cancelled)
            *summary = ClassSummary::of(incoming->records, selection);
    });
    const int generation = ++m_generation;
    connect(m_thread, &QThread::finished, this, [this, generation] {
        if (generation == m_generation)
            takeReading();
    });
    m_status->setText(QStringLiteral("Lese die Ergebnisdateien …"));
    m_save->setEnabled(false);
    m_print->setEnabled(false);
    m_readingClock.start();
    m_progressTimer.start();
    m_thread->start();
}

void OverviewWindow::pollProgress() {
    if (m_readingClock.elapsed() < kProgressAfterMs || !m_progress)
        return;
    const int total = m_progress->total.load();
    const int done = m_progress->done.load();
    m_progressBar->setMaximum(qMax(total, 1));
    m_progressBar->setValue(done);
    m_progressBar->show();
    m_status->setText(QStringLiteral("Lese die Ergebnisdateien … %1 von %2").arg(done).arg(total));
}

void OverviewWindow::takeReading() {
    m_thread->wait();
    delete m_thread;
    m_thread = nullptr;
    m_progressTimer.stop();
    m_progressBar->hide();
    // The table lets go of the old records before they are replaced.
    m_classModel->setTests(nullptr, {});
    m_reading = std::move(*m_incoming);
    m_incoming.reset();

    m_problem->setText(QStringLiteral("⚠ ") + m_reading.problem);
    m_problem->setVisible(!m_reading.problem.isEmpty());

    // The date range of what was read; a range from the command line once.
    QDate first, last;
    for (const ResultRecord& r : m_reading.records) {
        const QDate day = r.finished.date();
        if (!first.isValid() || day < first)
            first = day;
        if (!last.isValid() || day > last)
            last = day;
    }
    for (QDateEdit* edit : {m_from, m_to}) {
        const QSignalBlocker quiet(edit);
        edit->setEnabled(first.isValid());
        if (first.isValid())
            edit->setDateRange(first, last);
    }
    {
        const QSignalBlocker quietFrom(m_from), quietTo(m_to);
        m_from->setDate(m_firstReading && m_presetFrom.isValid() ? m_presetFrom : first);
        m_to->setDate(m_firstReading && m_presetTo.isValid() ? m_presetTo : last);
    }
    m_firstReading = false;
    fillNotices();
    if (filter() == m_incomingFilter)
        showSummary(std::move(*m_incomingSummary));
    else
        refresh();
    m_incomingSummary.reset();
    Q_EMIT readingFinished();
}

TestFilter OverviewWindow::filter() const {
    TestFilter f;
    f.name = m_name->text();
    if (m_from->isEnabled()) {
        // The ends of the range are no restriction: a test written while
        // the window is open still counts after "Neu einlesen".
        if (m_from->date() > m_from->minimumDate())
            f.from = m_from->date();
        if (m_to->date() < m_to->maximumDate())
            f.to = m_to->date();
    }
    f.level = TestFilter::Level(m_level->currentIndex());
    return f;
}

QString OverviewWindow::selectionText() const {
    const TestFilter f = filter();
    QStringList parts;
    if (!f.name.trimmed().isEmpty())
        parts << QStringLiteral("Namen mit „%1“").arg(f.name.trimmed());
    if (f.from.isValid())
        parts << QStringLiteral("ab %1").arg(f.from.toString(QStringLiteral("dd.MM.yyyy")));
    if (f.to.isValid())
        parts << QStringLiteral("bis %1").arg(f.to.toString(QStringLiteral("dd.MM.yyyy")));
    if (f.level != TestFilter::Level::Any)
        parts << QStringLiteral("Stufe %1").arg(m_level->currentText());
    return parts.isEmpty() ? QStringLiteral("alle Tests")
                           : QStringLiteral("Tests: ") + parts.join(QStringLiteral(", "));
}

void OverviewWindow::refresh() {
    m_filterTimer.stop();
    showSummary(ClassSummary::of(m_reading.records, filter()));
}

void OverviewWindow::showSummary(ClassSummary summary) {
    m_summary = std::move(summary);
    fillClassTable();
    fillCharts();
    fillHardTasks();
    const bool any = !m_summary.tests.isEmpty();
    m_save->setEnabled(any);
    m_print->setEnabled(any);
    if (!m_reading.problem.isEmpty()) {
        m_status->setText(QStringLiteral("Keine Ergebnisse: der Ordner ließ sich nicht lesen."));
        return;
    }
    QString status =
        QStringLiteral("%1 Tests von %2 Namen, zusammen %3 richtig · %4 Dateien gelesen")
            .arg(m_summary.tests.size())
            .arg(m_summary.attempts.size())
            .arg(ClassSummary::percentText(m_summary.share()))
            .arg(m_reading.records.size());
    if (!m_reading.skipped.isEmpty())
        status += QStringLiteral(", %1 übersprungen (siehe „Übersprungene Dateien“)")
                      .arg(m_reading.skipped.size());
    if (m_reading.seen == 0)
        status = QStringLiteral("Im Ordner liegen keine Ergebnisdateien.");
    m_status->setText(status);
}

void OverviewWindow::fillClassTable() {
    m_classModel->setTests(&m_reading.records, m_summary.attempts);
    const QHeaderView* header = m_classTable->header();
    m_classModel->sort(header->sortIndicatorSection(), header->sortIndicatorOrder());
    // Only the names with several attempts open: while the reset's layout
    // is still pending that merely notes them, where expandAll would keep a
    // persistent index for every row and make closing the window crawl.
    for (int row = 0; row < m_classModel->rowCount(); ++row) {
        const QModelIndex name = m_classModel->index(row, 0);
        if (m_classModel->rowCount(name) > 0)
            m_classTable->expand(name);
    }
    // Sized once to what the first rows need, not again at every scroll:
    // a header that measures every row would stand still on a school year.
    for (int c = 0; c < ClassTableModel::CCount; ++c)
        m_classTable->resizeColumnToContents(c);
}

QList<int> OverviewWindow::shownTests() const {
    return m_classModel->testsInOrder();
}

void OverviewWindow::fillCharts() {
    auto replace = [](QChartView* view, QChart* chart, const QString& text) {
        QChart* old = view->chart();
        view->setChart(chart);
        delete old;
        view->setAccessibleName(chart->title());
        view->setAccessibleDescription(text);
        view->setToolTip(text);
    };
    replace(m_pageChart, OverviewCharts::pageShares(m_summary),
            OverviewCharts::pageSharesText(m_summary));
    replace(m_gradeChart, OverviewCharts::gradeSpread(m_summary),
            OverviewCharts::gradeSpreadText(m_summary));
}

void OverviewWindow::fillHardTasks() {
    // Sized once all rows are in, and from the first rows only.
    m_hardTasks->setUpdatesEnabled(false);
    m_hardTasks->header()->setSectionResizeMode(QHeaderView::Interactive);
    m_hardTasks->setSortingEnabled(false);
    m_hardTasks->clear();
    QList<QTreeWidgetItem*> rows;
    rows.reserve(m_summary.hardTasks.size());
    for (const ClassSummary::HardTask& t : m_summary.hardTasks) {
        auto* item = new SortItem;
        setCell(item, HPage, pageTitle(t.page), ClassSummary::pageIndex(t.page));
        // Formulas with real subscripts: H₂SO₄, not H2SO4.
        setCell(item, HPrompt, FormulaText::textToPlain(t.prompt), t.prompt);
        setCell(item, HExpected, FormulaText::textToPlain(t.expected), t.expected);
        setCell(item, HAsked, QString::number(t.asked), t.asked, Qt::AlignRight);
        setCell(item, HWrong, QString::number(t.wrong), t.wrong, Qt::AlignRight);
        setCell(item, HShare, ClassSummary::percentText(t.wrongShare()), t.wrongShare(),
                Qt::AlignRight);
        setCell(item, HAnswers,
                FormulaText::textToPlain(ClassSummary::wrongAnswersText(t.wrongAnswers)),
                t.wrongAnswers.value(0).count);
        item->setToolTip(HPrompt, item->text(HPrompt));
        rows << item;
    }
    m_hardTasks->addTopLevelItems(rows);
    // Most often wrong first; among equals the sort is stable and keeps the
    // summary's order (the larger share wrong first).
    m_hardTasks->sortByColumn(HWrong, Qt::DescendingOrder);
    m_hardTasks->setSortingEnabled(true);
    m_hardTasks->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_hardTasks->header()->setSectionResizeMode(HPrompt, QHeaderView::Stretch);
    m_hardTasks->setUpdatesEnabled(true);
}

void OverviewWindow::fillNotices() {
    m_notices->clear();
    QList<QTreeWidgetItem*> rows;
    for (const ResultFolder::Skipped& s : m_reading.skipped)
        rows << new QTreeWidgetItem(QStringList{s.file, s.why});
    m_notices->addTopLevelItems(rows);
    m_notices->resizeColumnToContents(0);
    const int at = m_tabs->indexOf(m_notices);
    m_tabs->setTabText(at, QStringLiteral("Übersprun&gene Dateien (%1)").arg(rows.size()));
}

void OverviewWindow::showTest(int record) {
    if (record < 0 || record >= m_reading.records.size())
        return;
    // Not modal: a teacher may hold several tests side by side.
    auto* dialog =
        new TestDetailDialog(m_reading.records[record], m_reading.files.value(record), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

bool OverviewWindow::saveTable() {
    const QList<int> rows = shownTests();
    if (rows.isEmpty())
        return false;
    const QString suggestion =
        QDir(CertificatePrinter::documentsFolder())
            .filePath(QStringLiteral("Klassenergebnisse %1.csv")
                          .arg(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"))));
    QString path = m_csvChooser
                       ? m_csvChooser(suggestion)
                       : QFileDialog::getSaveFileName(
                             this, QStringLiteral("Als Tabelle speichern"), suggestion,
                             QStringLiteral("CSV-Tabelle für Tabellenkalkulationen (*.csv)"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".csv");
    const QByteArray bytes = ClassCsv::table(m_reading.records, m_reading.files, rows);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        NoticeBox::inform(this,
                          QStringLiteral("Die Tabelle ließ sich nicht speichern:\n%1\n%2")
                              .arg(QDir::toNativeSeparators(path), file.errorString()),
                          QStringLiteral("!?"));
        return false;
    }
    m_status->setText(QStringLiteral("%1 Tests als Tabelle gespeichert: %2")
                          .arg(rows.size())
                          .arg(QDir::toNativeSeparators(path)));
    return true;
}

bool OverviewWindow::printReport() {
    if (m_summary.tests.isEmpty())
        return false;
    QPrinter printer(QPrinter::HighResolution);
    const QString printTo = qEnvironmentVariable("LABQUIZ_PRINT_TO");
    QString pdf = printTo;
    if (pdf.isEmpty() && !CertificatePrinter::printerInstalled()) {
        pdf = QFileDialog::getSaveFileName(
            this, QStringLiteral("Bericht als PDF speichern"),
            QDir(CertificatePrinter::documentsFolder()).filePath(ClassReport::defaultFileName()),
            QStringLiteral("PDF-Dokument (*.pdf)"));
        if (pdf.isEmpty())
            return false;
    }
    if (!pdf.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
    } else {
        QPrintDialog dialog(&printer, this);
        dialog.setWindowTitle(QStringLiteral("Bericht drucken"));
        if (dialog.exec() != QDialog::Accepted)
            return false;
    }
    ClassReport::Input input;
    input.folder = QDir::toNativeSeparators(m_folder);
    input.selection = selectionText();
    input.records = &m_reading.records;
    input.summary = &m_summary;
    input.skipped = int(m_reading.skipped.size());
    const int pages = ClassReport::print(input, printer);
    if (pages == 0) {
        NoticeBox::inform(this, QStringLiteral("Der Bericht ließ sich nicht drucken."),
                          QStringLiteral("!?"));
        return false;
    }
    const QString pageCount =
        pages == 1 ? QStringLiteral("1 Seite") : QStringLiteral("%1 Seiten").arg(pages);
    m_status->setText(printer.outputFormat() == QPrinter::PdfFormat
                          ? QStringLiteral("Bericht (%1) als PDF gespeichert: %2")
                                .arg(pageCount, QDir::toNativeSeparators(printer.outputFileName()))
                          : QStringLiteral("Bericht (%1) gedruckt.").arg(pageCount));
    return true;
}

void OverviewWindow::closeEvent(QCloseEvent* event) {
    stopReading();
    QWidget::closeEvent(event);
}
