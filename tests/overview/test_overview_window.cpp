// The teacher's window "Ergebnisse auswerten" on a small crafted class: what
// each view shows, the filters, a test's tasks on a double click, the saved
// table, the printed report, the remembered folder and a folder it cannot
// read.
#include "TestSupport.h"
#include "overview/ClassCsv.h"
#include "overview/OverviewWindow.h"
#include "overview/ResultSamples.h"
#include "overview/TestDetailDialog.h"
#include "session/NamesFile.h"

#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateEdit>
#include <QHorizontalBarSeries>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTreeWidget>

namespace {

// A row of a table or tree, the way the view shows it.
QStringList texts(const QModelIndex& row) {
    QStringList out;
    for (int c = 0; c < row.model()->columnCount(row.parent()); ++c)
        out << row.siblingAtColumn(c).data().toString();
    return out;
}

QModelIndex classRow(QTreeView* table, int row, int child = -1) {
    const QModelIndex top = table->model()->index(row, 0);
    return child < 0 ? top : table->model()->index(child, 0, top);
}

QList<qreal> barValues(QChartView* view) {
    const auto* series = qobject_cast<QHorizontalBarSeries*>(view->chart()->series().value(0));
    if (!series || series->barSets().isEmpty())
        return {};
    QList<qreal> values;
    for (int i = 0; i < series->barSets()[0]->count(); ++i)
        values << series->barSets()[0]->at(i);
    return values;
}

} // namespace

class TestOverviewWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(m_dir->filePath("Ergebnisse")));
        QVERIFY(writeSampleClass(m_dir->filePath("Ergebnisse")));
    }
    void cleanup() {
        m_window.reset();
        qunsetenv("LABQUIZ_PRINT_TO");
    }
    void showsTheClass() {
        OverviewWindow* w = open(m_dir->filePath("Ergebnisse"));
        QVERIFY(w);
        auto* table = child<QTreeView>(w, "Klassentabelle");
        // Anna's three attempts under one row with the trend, Ben and Cem alone.
        QCOMPARE(table->model()->rowCount(), 3);
        const QModelIndex anna = classRow(table, 0);
        const QStringList annaTexts = texts(anna);
        QCOMPARE(annaTexts[0], QStringLiteral("anna (3 Versuche)"));
        QCOMPARE(table->model()->rowCount(anna), 3);
        QVERIFY(table->isExpanded(anna));
        QCOMPARE(annaTexts[6], QStringLiteral("33,3 % → 50,0 %"));
        QCOMPARE(annaTexts[7], QStringLiteral("zuletzt ") + w->reading().records[4].grade);
        QVERIFY(anna.data(Qt::ToolTipRole)
                    .toString()
                    .contains(
                        ClassSummary::trendText(w->reading().records[0], w->reading().records[4])));
        QCOMPARE(texts(classRow(table, 0, 0)).mid(0, 7),
                 (QStringList{"Anna", "20.11.2026", "10:00", "normal", "3", "1", "33,3 %"}));
        QCOMPARE(texts(classRow(table, 2)).mid(0, 7),
                 (QStringList{"Cem", "22.11.2026", "11:00", "Strebermodus", "4", "2", "50,0 %"}));
        // Sorted by share, the lowest first: Ben (0 %) before Cem and Anna; the
        // current row moves with its test.
        table->setCurrentIndex(classRow(table, 2));
        table->sortByColumn(6, Qt::AscendingOrder);
        QCOMPARE(classRow(table, 0).data().toString(), QStringLiteral("Ben"));
        QCOMPARE(table->currentIndex().data().toString(), QStringLiteral("Cem"));
        QCOMPARE(w->shownTests().first(), 1);
        // Descending, Anna's attempts too: her best (the second, all right) first.
        table->sortByColumn(6, Qt::DescendingOrder);
        const QModelIndexList annaNow = table->model()->match(
            table->model()->index(0, 0), Qt::DisplayRole, "anna (", 1, Qt::MatchStartsWith);
        QCOMPARE(annaNow.size(), 1);
        QCOMPARE(table->model()->index(0, 6, annaNow[0]).data().toString(),
                 QStringLiteral("100,0 %"));

        // Page 1: 4 of 9 right, in whole percents; the bars go bottom up, so
        // page 1 is the last.
        const QList<qreal> pages = barValues(child<QChartView>(w, "DiagrammSeiten"));
        QCOMPARE(pages.size(), 10);
        QCOMPARE(pages.last(), 44.0);
        QCOMPARE(pages[4], 100.0); // page 9, fifth from the bottom
        const QList<qreal> grades = barValues(child<QChartView>(w, "DiagrammNoten"));
        QCOMPARE(grades.size(), 16);
        QCOMPARE(grades[15], 1.0); // "sehr gut plus" at the top
        QVERIFY(child<QChartView>(w, "DiagrammSeiten")
                    ->accessibleDescription()
                    .contains("Elemente: Namen und Symbole: 44,4 %"));

        auto* hard = child<QTreeWidget>(w, "SchwierigsteAufgaben");
        QCOMPARE(hard->topLevelItemCount(), 3);
        QCOMPARE(texts(hard->model()->index(0, 0)),
                 (QStringList{"Formeln und Namen von Stoffen", "Kohlenstoffmonoxid", "CO", "4", "3",
                              "75,0 %", "„Co“ 2×, keine Antwort 1×"}));
        QVERIFY(child<QLabel>(w, "Stand")->text().startsWith("5 Tests von 3 Namen"));
        QVERIFY(!child<QLabel>(w, "Ordnerproblem")->isVisible());
    }
    void filtersNarrowEveryView() {
        OverviewWindow* w = open(m_dir->filePath("Ergebnisse"));
        QVERIFY(w);
        child<QLineEdit>(w, "FilterName")->setText("ben");
        QTRY_COMPARE(w->summary().tests.size(), 1);
        auto* table = child<QTreeView>(w, "Klassentabelle");
        QCOMPARE(table->model()->rowCount(), 1);
        QCOMPARE(child<QTreeWidget>(w, "SchwierigsteAufgaben")->topLevelItemCount(), 3);
        QCOMPARE(barValues(child<QChartView>(w, "DiagrammSeiten")).last(), 0.0);

        child<QLineEdit>(w, "FilterName")->clear();
        child<QComboBox>(w, "FilterStufe")->setCurrentIndex(2); // Strebermodus
        QTRY_COMPARE(w->summary().tests, QList<int>{2});
        child<QComboBox>(w, "FilterStufe")->setCurrentIndex(0);
        child<QDateEdit>(w, "FilterVon")->setDate(QDate(2026, 11, 24));
        QTRY_COMPARE(w->summary().tests, (QList<int>{3, 4}));
        child<QPushButton>(w, "FilterAus")->click();
        QCOMPARE(w->summary().tests.size(), 5);
    }
    void datesFromTheCommandLine() {
        // "--von 2026-11-22": the first reading shows those days, and so do the
        // date fields; "Alle zeigen" opens the whole range.
        m_window = std::make_unique<OverviewWindow>(m_dir->filePath("Ergebnisse"), nullptr);
        m_window->presetDates(QDate(2026, 11, 22), QDate());
        QSignalSpy read(m_window.get(), &OverviewWindow::readingFinished);
        m_window->openFolder(m_dir->filePath("Ergebnisse"));
        QVERIFY(read.wait(20000));
        QCOMPARE(m_window->summary().tests, (QList<int>{2, 3, 4}));
        QCOMPARE(child<QDateEdit>(m_window.get(), "FilterVon")->date(), QDate(2026, 11, 22));
        QCOMPARE(child<QTreeView>(m_window.get(), "Klassentabelle")->model()->rowCount(), 2);
        child<QPushButton>(m_window.get(), "FilterAus")->click();
        QCOMPARE(m_window->summary().tests.size(), 5);
        // Read again, the range is no longer the command line's.
        m_window->reread();
        QVERIFY(read.wait(20000));
        QCOMPARE(m_window->summary().tests.size(), 5);
    }
    void doubleClickShowsEveryTask() {
        OverviewWindow* w = open(m_dir->filePath("Ergebnisse"));
        QVERIFY(w);
        auto* table = child<QTreeView>(w, "Klassentabelle");
        Q_EMIT table->activated(classRow(table, 2));
        auto* detail = w->findChild<TestDetailDialog*>();
        QVERIFY(detail && detail->isVisible());
        QVERIFY(detail->windowTitle().contains("Cem"));
        QTreeWidget* tasks = detail->tasks();
        QCOMPARE(tasks->topLevelItemCount(), 3); // three pages
        const QModelIndex co = tasks->model()->index(0, 0, tasks->model()->index(1, 0));
        QCOMPARE(texts(co).mid(0, 4),
                 (QStringList{"Kohlenstoffmonoxid", "(keine Antwort)", "CO", "✗ falsch"}));
        QCOMPARE(co.siblingAtColumn(3).data(Qt::BackgroundRole).value<QBrush>().color(),
                 QColor(255, 0, 0));
        QCOMPARE(tasks->topLevelItem(2)->child(0)->text(3), QStringLiteral("✓ richtig"));
        QCOMPARE(tasks->topLevelItem(2)->text(3), QStringLiteral("2 von 2 richtig"));
        // A group row opens nothing.
        delete detail;
        Q_EMIT table->activated(classRow(table, 0));
        QVERIFY(!w->findChild<TestDetailDialog*>());
    }
    void savesTheTableAsShownAndPrintsTheReport() {
        OverviewWindow* w = open(m_dir->filePath("Ergebnisse"));
        QVERIFY(w);
        child<QTreeView>(w, "Klassentabelle")->sortByColumn(6, Qt::DescendingOrder);
        const QString path = m_dir->filePath("klasse"); // ".csv" is added
        w->setCsvChooser([&path](const QString& suggestion) {
            return suggestion.endsWith(".csv") ? path : QString();
        });
        QVERIFY(w->saveTable());
        QFile file(path + ".csv");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<int> shown = w->shownTests();
        QCOMPARE(shown.size(), 5);
        QCOMPARE(file.readAll(), ClassCsv::table(w->reading().records, w->reading().files, shown));
        QVERIFY(child<QLabel>(w, "Stand")->text().contains("5 Tests als Tabelle gespeichert"));
        // Cancelled: nothing written.
        w->setCsvChooser([](const QString&) { return QString(); });
        QVERIFY(!w->saveTable());

        const QString pdf = m_dir->filePath("bericht.pdf");
        qputenv("LABQUIZ_PRINT_TO", pdf.toLocal8Bit());
        QVERIFY(w->printReport());
        QFile report(pdf);
        QVERIFY(report.open(QIODevice::ReadOnly));
        QVERIFY(report.readAll().startsWith("%PDF"));
        // Five tests, two charts and three tasks fit on one page or two.
        const QString status = child<QLabel>(w, "Stand")->text();
        QVERIFY2(status.contains(QRegularExpression("Bericht \\((1 Seite|2 Seiten)\\).*als PDF")),
                 qPrintable(status));
    }
    void remembersTheChosenFolder() {
        const QString other = m_dir->filePath("Klasse 9a");
        QVERIFY(QDir().mkpath(other));
        QVERIFY(writeBytes(other + "/x.json", sampleClass()[1].toJson()));
        NamesFile names(m_dir->filePath("names.ini"));
        names.addName("Anna");
        QVERIFY(names.save());
        OverviewWindow* w = open(m_dir->filePath("Ergebnisse"), &names);
        QVERIFY(w);
        QSignalSpy read(w, &OverviewWindow::readingFinished);
        w->setFolderChooser([&other](const QString&) { return other; });
        w->chooseFolder();
        QVERIFY(read.wait(20000));
        QCOMPARE(w->summary().tests.size(), 1);

        // Another window, later: it starts where the teacher left, and the
        // names list is still whole.
        NamesFile again(m_dir->filePath("names.ini"));
        QVERIFY(again.load());
        QCOMPARE(again.names(), QStringList{"Anna"});
        QCOMPARE(QDir(again.overviewFolder()), QDir(other));
        OverviewWindow next(m_dir->filePath("Ergebnisse"), &again);
        QCOMPARE(QDir(next.startFolder()), QDir(other));
        // Back to the program's results folder: nothing is remembered.
        child<QPushButton>(w, "Standardordner")->click();
        QVERIFY(read.wait(20000));
        QVERIFY(again.load());
        QCOMPARE(again.overviewFolder(), QString());
    }
    void saysWhenTheFolderCannotBeRead() {
        OverviewWindow* w = open(m_dir->filePath("fehlt"));
        QVERIFY(w);
        auto* problem = child<QLabel>(w, "Ordnerproblem");
        QVERIFY(problem->isVisible() && problem->text().contains("gibt es nicht"));
        QCOMPARE(child<QTreeView>(w, "Klassentabelle")->model()->rowCount(), 0);
        QVERIFY(!child<QPushButton>(w, "AlsTabelle")->isEnabled());
        QVERIFY(!child<QPushButton>(w, "BerichtDrucken")->isEnabled());
    }
    void mainWindowMenuOpensIt() {
        AppRun run;
        qputenv("LABQUIZ_RESULTS", m_dir->filePath("Ergebnisse").toLocal8Bit());
        AppMain* main = run.start();
        qunsetenv("LABQUIZ_RESULTS");
        QVERIFY(main);
        auto* action = main->findChild<QAction*>("mnu_FileOverview");
        QVERIFY(action);
        action->trigger();
        auto* w = main->findChild<OverviewWindow*>();
        QVERIFY(w && w->isWindow());
        QTRY_VERIFY_WITH_TIMEOUT(!w->isReading(), 20000);
        QCOMPARE(w->summary().tests.size(), 5);
        // Asked again, the same window comes to the front.
        action->trigger();
        QCOMPARE(main->findChildren<OverviewWindow*>().size(), 1);
    }

private:
    OverviewWindow* open(const QString& folder, NamesFile* names = nullptr) {
        m_window = std::make_unique<OverviewWindow>(m_dir->filePath("Ergebnisse"), names);
        QSignalSpy read(m_window.get(), &OverviewWindow::readingFinished);
        m_window->openFolder(folder);
        m_window->show();
        if (!read.wait(20000))
            return nullptr;
        return m_window.get();
    }
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<OverviewWindow> m_window;
};

QTEST_MAIN(TestOverviewWindow)
#include "test_overview_window.moc"
