#pragma once

#include "overview/ClassSummary.h"
#include "overview/ResultFolder.h"

#include <QDate>
#include <QElapsedTimer>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

class NamesFile;
class QChartView;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QThread;
class QTreeView;
class ClassTableModel;
class QTreeWidget;
class QTreeWidgetItem;

// "Ergebnisse auswerten": the teacher's window over a results folder. It
// reads every result file in a thread of its own (the window answers
// meanwhile and shows its progress when that takes longer than half a
// second) and shows the class table with each name's attempts and trend,
// each page's share of right answers and the spread of grades as charts,
// the tasks answered wrong most often, and every task of one test on a
// double click. It saves the table as CSV and prints a class report.
class OverviewWindow final : public QWidget {
    Q_OBJECT
public:
    // resultsFolder: the results folder in use. remembered: the personal
    // names.ini that keeps a folder the teacher chose; may be null.
    OverviewWindow(QString resultsFolder, NamesFile* remembered, QWidget* parent = nullptr);
    ~OverviewWindow() override;

    void setRememberedIn(NamesFile* remembered) { m_remembered = remembered; }

    // Reads this folder (in the background); the chosen folder is remembered
    // when it is not the results folder in use.
    void openFolder(const QString& folder, bool remember = false);
    // The folder shown at first: the remembered one, else the results
    // folder in use.
    QString startFolder() const;
    // Restricts the dates before the first reading ends (from the command line).
    void presetDates(const QDate& from, const QDate& to);

    QString folder() const { return m_folder; }
    bool isReading() const { return m_thread != nullptr; }
    const ResultFolder::Reading& reading() const { return m_reading; }
    const ClassSummary& summary() const { return m_summary; }
    TestFilter filter() const;

    // How files and folders are chosen; tests replace the dialogs.
    using SaveChooser = std::function<QString(const QString& suggestion)>;
    void setCsvChooser(SaveChooser chooser) { m_csvChooser = std::move(chooser); }
    void setFolderChooser(std::function<QString(const QString& start)> chooser) {
        m_folderChooser = std::move(chooser);
    }

    // The buttons' work. The report goes into the PDF file LABQUIZ_PRINT_TO
    // names, else through the print dialog (printer or PDF), else, with no
    // printer installed, into a PDF file the teacher chooses.
    void chooseFolder();
    void reread();
    bool saveTable();
    bool printReport();
    // The record indices in the order the class table shows them.
    QList<int> shownTests() const;
    // Einzelansicht of one record (an index into reading().records).
    void showTest(int record);

Q_SIGNALS:
    void readingFinished();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildTop();
    void buildTabs();
    void startReading();
    void pollProgress();
    void takeReading();
    // Works the summary out for the filter and fills every view from it.
    void refresh();
    void showSummary(ClassSummary summary);
    void fillClassTable();
    void fillCharts();
    void fillHardTasks();
    void fillNotices();
    void stopReading();
    QString selectionText() const;

    QString m_resultsFolder;
    NamesFile* m_remembered;
    QString m_folder;
    QDate m_presetFrom, m_presetTo;

    ResultFolder::Reading m_reading;
    ClassSummary m_summary;

    QThread* m_thread = nullptr;
    std::shared_ptr<ResultFolder::Progress> m_progress;
    std::shared_ptr<ResultFolder::Reading> m_incoming;
    // The summary the reading thread worked out, and for which filter.
    std::shared_ptr<ClassSummary> m_incomingSummary;
    TestFilter m_incomingFilter;
    QElapsedTimer m_readingClock;
    QTimer m_progressTimer;
    QTimer m_filterTimer;
    int m_generation = 0; // a reading's end is taken only by the reading it belongs to
    bool m_firstReading = true;

    QLabel* m_folderLabel = nullptr;
    QLabel* m_problem = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_progressBar = nullptr;
    QLineEdit* m_name = nullptr;
    QDateEdit* m_from = nullptr;
    QDateEdit* m_to = nullptr;
    QComboBox* m_level = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_print = nullptr;
    QTabWidget* m_tabs = nullptr;
    QTreeView* m_classTable = nullptr;
    ClassTableModel* m_classModel = nullptr;
    QChartView* m_pageChart = nullptr;
    QChartView* m_gradeChart = nullptr;
    QTreeWidget* m_hardTasks = nullptr;
    QTreeWidget* m_notices = nullptr;

    SaveChooser m_csvChooser;
    std::function<QString(const QString&)> m_folderChooser;
};
