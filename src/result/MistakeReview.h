#pragma once

#include "session/TestRecord.h"

#include <QDialog>
#include <QList>

class QTextBrowser;

// "Fehler ansehen": every wrong answer of the test, page by page in the
// order of the test, with the task as the student saw it, the answer given,
// the right answer and, where the cause is certain, the chemist's hint.
class MistakeReview final : public QDialog {
    Q_OBJECT
public:
    explicit MistakeReview(const QList<PageRecord>& pages, QWidget* parent = nullptr);

    // The review as rich text; empty pages are left out.
    static QString html(const QList<PageRecord>& pages);
    static int mistakes(const QList<PageRecord>& pages);

private:
    QTextBrowser* m_text;
};
