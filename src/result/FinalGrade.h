#pragma once

#include <QString>
#include <QStringList>

struct SessionState;

// What the end of a test says about it, worked out from the two counters:
// the grade word on the sixteen-step scale, the mascot's face, the grade
// number 0..15, the honours, and the sentences of the certificate. All of it
// is plain data so that the result form only shows it.
struct FinalResult {
    QString gradeWord;
    int tasks = 0;
    int correct = 0;
    int wrong = 0;
    int level = 0;
    int gradeNumber = 0;
    QString historyLine;
};

class FinalGrade final {
public:
    // Mascot expression codes: 3 poor, 6 sufficient, 5 satisfactory, 1 good,
    // 2 very good. The codes are the mascot's own and not in grade order.
    static constexpr int kNoExpression = -1;

    // "ungenügend" ... "sehr gut plus", by the same 32-bit ratio and strictly
    // greater thresholds as the running grade.
    static QString gradeWord(float ratio);
    static QString gradeWord(int correct, int tasks);
    // The sixteen words from "ungenügend" (step 0) to "sehr gut plus" (15).
    static QStringList gradeWords();
    // The step of a grade word, compared in lower case; -1 for none of them.
    static int stepOf(const QString& gradeWord);
    // The expression for a grade word, compared in lower case; kNoExpression
    // when the word is none of the sixteen.
    static int expressionOf(const QString& gradeWord);
    // "6-".."1+" to 0..15; all three marks of grade 6 and unknown texts give 0.
    static int gradeNumber(const QString& mark);
    // Title and praise melody are earned from "sehr gut minus" up.
    static bool earnsHonours(float ratio);

    // " Von  20 Aufgaben wurden  15 richtig gelöst!"
    static QString countSentence(int tasks, int correct);
    // mm-dd-yyyy → dd.mm.yyyy, by character positions as the date is stored.
    static QString germanDate(const QString& testDate);
    // " Bearbeitung am: 24.03.2003 von:10:15:02 bis:10:41:37 Uhr."
    static QString dateSentence(const QString& testDate, const QString& startTime,
                                const QString& endTime);
    static QString levelSentence(int expertLevel);

    // The line a teacher reads in the session log:
    // "<-  " name "  " summary " - Note: " grade word.
    static QString historyLine(const SessionState& state, const QString& gradeWord,
                               int gradeNumber);

    // Everything above for the state at the end of the last page.
    static FinalResult prepare(const SessionState& state);
};
