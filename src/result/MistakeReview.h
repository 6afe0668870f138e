#pragma once

#include "session/TestRecord.h"

#include <QDialog>
#include <QList>
#include <functional>

class QPushButton;
class QTextBrowser;

// "Fehler ansehen": every wrong answer of the test, page by page in the
// order of the test, with the task as the student saw it, the answer given,
// the right answer and, where the cause is certain, the chemist's hint.
class MistakeReview final : public QDialog {
    Q_OBJECT
public:
    // practise: starts the practice round over this window and returns
    // when it ends; without it, or without a mistake, there is no "Fehler
    // üben".
    explicit MistakeReview(const QList<PageRecord>& pages, QWidget* parent = nullptr,
                           std::function<void(QWidget*)> practise = {});

    // The review as rich text; empty pages are left out.
    static QString html(const QList<PageRecord>& pages);
    static int mistakes(const QList<PageRecord>& pages);

private:
    QTextBrowser* m_text;
    QPushButton* m_practise = nullptr;
};
