#pragma once

#include "session/TestRecord.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <array>

// What one run of the test remembers between pages. A new test is a new
// process, so nothing here is ever reset by the pages.
struct SessionState {
    static constexpr int kAnswerSlots = 31;

    int TasksSoFar = 0;
    int CorrectSoFar = 0;
    QString RunningGrade = QStringLiteral("6");
    int ExpertLevel = 0; // index of the chosen level option; anything but 0 is expert
    QString CandidateName;
    QString TestDate; // mm-dd-yyyy
    QString StartTime;
    QString EndTime;
    // The same moments for the result file, with their dates.
    QDateTime StartedAt;
    QDateTime FinishedAt;
    // Every checked page with its tasks, in the order of the test.
    QList<PageRecord> Pages;
    // Expected answers of the page on show; each page overwrites its slots.
    std::array<QString, kAnswerSlots> DrawnAnswers;
    int PreviousPage = 0;

    bool isExpert() const { return ExpertLevel != 0; }
};
