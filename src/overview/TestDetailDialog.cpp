#include "overview/TestDetailDialog.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"
#include "overview/ClassSummary.h"
#include "result/ResultRecord.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum Column { Task, Given, Expected, Verdict, Hint, ColumnCount };

} // namespace

TestDetailDialog::TestDetailDialog(const ResultRecord& record, const QString& file, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("Einzelansicht"));
    setWindowTitle(
        QStringLiteral("Einzelansicht: %1, %2")
            .arg(record.candidate, record.finished.toString(QStringLiteral("dd.MM.yyyy HH:mm"))));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    resize(980, 640);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 14, 18, 12);
    auto* head = new QLabel(this);
    head->setObjectName(QStringLiteral("EinzelKopf"));
    head->setTextFormat(Qt::PlainText);
    head->setWordWrap(true);
    head->setText(
        QStringLiteral("%1 – %2, %3 bis %4 Uhr, Stufe %5\n%6 von %7 Aufgaben richtig (%8), Note: "
                       "%9, %10 Punkte. Rechner %11, Datei %12")
            .arg(record.candidate, record.started.toString(QStringLiteral("dd.MM.yyyy")),
                 record.started.toString(QStringLiteral("HH:mm:ss")),
                 record.finished.toString(QStringLiteral("HH:mm:ss")),
                 record.expert ? QStringLiteral("Strebermodus") : QStringLiteral("normal"))
            .arg(record.correct)
            .arg(record.tasks)
            .arg(ClassSummary::percentText(record.share()), record.grade)
            .arg(record.points)
            .arg(record.machine, file));
    Look::setText(head, 14, QFont::Normal, Look::ink());
    layout->addWidget(head);

    m_tasks = new QTreeWidget(this);
    m_tasks->setObjectName(QStringLiteral("EinzelAufgaben"));
    m_tasks->setAccessibleName(QStringLiteral("Aufgaben des Tests mit Antwort und Bewertung"));
    m_tasks->setColumnCount(ColumnCount);
    m_tasks->setHeaderLabels({QStringLiteral("Aufgabe"), QStringLiteral("Antwort"),
                              QStringLiteral("Richtig wäre"), QStringLiteral("Bewertung"),
                              QStringLiteral("Hinweis")});
    m_tasks->setAlternatingRowColors(true);
    m_tasks->setUniformRowHeights(true);
    bool anyHint = false;
    for (const PageRecord& page : record.pages) {
        auto* pageItem = new QTreeWidgetItem(m_tasks);
        pageItem->setText(Task, page.title.isEmpty() ? pageTitle(page.page) : page.title);
        pageItem->setText(Verdict,
                          QStringLiteral("%1 von %2 richtig").arg(page.correct).arg(page.tasks));
        QFont bold = pageItem->font(Task);
        bold.setBold(true);
        pageItem->setFont(Task, bold);
        for (const AnswerItem& item : page.items) {
            auto* row = new QTreeWidgetItem(pageItem);
            // Formulas with real subscripts, as the pages show them.
            row->setText(Task, FormulaText::textToPlain(item.prompt));
            row->setText(Given, item.given.isEmpty() ? QStringLiteral("(keine Antwort)")
                                                     : FormulaText::textToPlain(item.given));
            row->setText(Expected, FormulaText::textToPlain(item.expected));
            row->setText(Verdict,
                         item.right ? QStringLiteral("✓ richtig") : QStringLiteral("✗ falsch"));
            // Black reads well on both the green and the red.
            row->setBackground(Verdict, item.right ? Look::right() : Look::wrong());
            row->setForeground(Verdict, QColor(Qt::black));
            row->setText(Hint, item.hint);
            anyHint = anyHint || !item.hint.isEmpty();
            row->setToolTip(Task, row->text(Task));
        }
    }
    m_tasks->expandAll();
    m_tasks->setColumnHidden(Hint, !anyHint);
    m_tasks->header()->setSectionResizeMode(Task, QHeaderView::Stretch);
    for (int c = Given; c < ColumnCount; ++c)
        m_tasks->header()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    m_tasks->header()->setStretchLastSection(false);
    layout->addWidget(m_tasks, 1);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* close =
        buttons->addButton(QStringLiteral("Schließen"), QDialogButtonBox::AcceptRole);
    close->setObjectName(QStringLiteral("Schliessen"));
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}
