#pragma once

#include <QDialog>

struct ResultRecord;
class QTreeWidget;

// Einzelansicht: one test as the student met it, page by page, every task
// with the student's answer, the right answer and whether it was right.
// Right and wrong show as a mark ("✓ richtig", "✗ falsch") besides the
// classic green and red, so that nobody needs the colour to read it.
class TestDetailDialog final : public QDialog {
    Q_OBJECT
public:
    TestDetailDialog(const ResultRecord& record, const QString& file, QWidget* parent = nullptr);

    QTreeWidget* tasks() const { return m_tasks; }

private:
    QTreeWidget* m_tasks;
};
