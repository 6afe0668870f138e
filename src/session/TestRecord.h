#pragma once

#include <QList>
#include <QString>

// What a test leaves behind besides its two counters: every task as the
// student met it, page by page in the order of the test. The pages fill it
// while they judge; the result file and the review of mistakes read it.
struct AnswerItem {
    AnswerItem() = default;
    AnswerItem(QString prompt_, QString expected_, QString given_, bool right_ = false)
        : prompt(std::move(prompt_)), expected(std::move(expected_)), given(std::move(given_)),
          right(right_) {}

    QString prompt;   // what the student saw, as plain text (formulas as the bank writes them)
    QString expected; // the right answer as the page shows it in its correction
    QString given;    // what the student typed or chose; empty for none
    bool right = false;
    QString hint; // why the answer is wrong, when that is certain; empty otherwise
};

struct PageRecord {
    int page = 0; // the container number (Seite(n))
    QString title;
    int tasks = 0;   // as counted into TasksSoFar
    int correct = 0; // as counted into CorrectSoFar
    QList<AnswerItem> items;
    // Every number the page drew, in the order drawn. Drawing them again sets
    // the same tasks, which is how a practice round shows them once more;
    // the result file does not keep them.
    QList<int> draws;
};

// The page's subject as the record names it; the headings on screen keep
// their own wording.
inline QString pageTitle(int page) {
    switch (page) {
    case 1:
        return QStringLiteral("Elemente: Namen und Symbole");
    case 2:
        return QStringLiteral("Zahlsilben");
    case 3:
        return QStringLiteral("Definitionen");
    case 4:
        return QStringLiteral("Chemische Begriffe");
    case 5:
        return QStringLiteral("Ionenladungen");
    case 6:
        return QStringLiteral("Verständnisfragen");
    case 8:
        return QStringLiteral("Molare Massen");
    case 9:
        return QStringLiteral("Gleichungen einrichten");
    case 11:
        return QStringLiteral("Formeln und Namen von Stoffen");
    case 12:
        return QStringLiteral("Stoffmengen");
    default:
        return QStringLiteral("Seite %1").arg(page);
    }
}
