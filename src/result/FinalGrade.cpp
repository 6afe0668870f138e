#include "result/FinalGrade.h"

#include "session/Grades.h"
#include "session/SessionState.h"
#include "session/TextRules.h"

#include <array>

namespace {

struct Step {
    const char* word;
    int expression;
};

// One row per step of Grades::step(): the word and the mascot's face.
const std::array<Step, Grades::kSteps> kSteps = {{{"ungenügend", 3},
                                                  {"mangelhaft minus", 3},
                                                  {"mangelhaft", 3},
                                                  {"mangelhaft plus", 3},
                                                  {"ausreichend minus", 6},
                                                  {"ausreichend", 6},
                                                  {"ausreichend plus", 6},
                                                  {"befriedigend minus", 5},
                                                  {"befriedigend", 5},
                                                  {"befriedigend plus", 5},
                                                  {"gut minus", 1},
                                                  {"gut", 1},
                                                  {"gut plus", 1},
                                                  {"sehr gut minus", 2},
                                                  {"sehr gut", 2},
                                                  {"sehr gut plus", 2}}};

// "sehr gut minus" is the first step that earns the title and the melody.
constexpr int kFirstHonoursStep = 13;

const std::array<const char*, 18> kMarks = {"6-", "6", "6+", "5-", "5", "5+", "4-", "4", "4+",
                                            "3-", "3", "3+", "2-", "2", "2+", "1-", "1", "1+"};

} // namespace

QString FinalGrade::gradeWord(float ratio) {
    return QString::fromUtf8(kSteps[static_cast<std::size_t>(Grades::step(ratio))].word);
}

QString FinalGrade::gradeWord(int correct, int tasks) {
    return gradeWord(Grades::ratio(correct, tasks));
}

QStringList FinalGrade::gradeWords() {
    QStringList words;
    for (const Step& s : kSteps)
        words << QString::fromUtf8(s.word);
    return words;
}

int FinalGrade::stepOf(const QString& gradeWord) {
    const QString lower = gradeWord.toLower();
    for (std::size_t i = 0; i < kSteps.size(); ++i) {
        if (lower == QString::fromUtf8(kSteps[i].word))
            return int(i);
    }
    return -1;
}

int FinalGrade::expressionOf(const QString& gradeWord) {
    const int step = stepOf(gradeWord);
    return step < 0 ? kNoExpression : kSteps[std::size_t(step)].expression;
}

int FinalGrade::gradeNumber(const QString& mark) {
    for (std::size_t i = 0; i < kMarks.size(); ++i) {
        if (mark == QLatin1String(kMarks[i]))
            return i < 3 ? 0 : static_cast<int>(i) - 2;
    }
    return 0;
}

bool FinalGrade::earnsHonours(float ratio) {
    return Grades::step(ratio) >= kFirstHonoursStep;
}

QString FinalGrade::countSentence(int tasks, int correct) {
    return QStringLiteral(" Von ") + NumberWithSignSpace(tasks) +
           QStringLiteral(" Aufgaben wurden ") + NumberWithSignSpace(correct) +
           QStringLiteral(" richtig gelöst!");
}

QString FinalGrade::germanDate(const QString& testDate) {
    return testDate.mid(3, 2) + u'.' + testDate.mid(0, 2) + u'.' + testDate.mid(6);
}

QString FinalGrade::dateSentence(const QString& testDate, const QString& startTime,
                                 const QString& endTime) {
    return QStringLiteral(" Bearbeitung am: ") + germanDate(testDate) + QStringLiteral(" von:") +
           startTime + QStringLiteral(" bis:") + endTime + QStringLiteral(" Uhr.");
}

QString FinalGrade::levelSentence(int expertLevel) {
    return expertLevel == 0 ? QStringLiteral("Schwierigkeitsgrad: normal ")
                            : QStringLiteral("Schwierigkeitsgrad: Hohe Stufe ");
}

QString FinalGrade::historyLine(const SessionState& state, const QString& gradeWord,
                                int gradeNumber) {
    const QString summary =
        QStringLiteral("%1 Aufgaben, %2 richtig, %3 falsch, Stufe %4, %5 %6-%7, %8 Notenpunkte")
            .arg(state.TasksSoFar)
            .arg(state.CorrectSoFar)
            .arg(state.TasksSoFar - state.CorrectSoFar)
            .arg(state.isExpert() ? QStringLiteral("hoch") : QStringLiteral("normal"),
                 germanDate(state.TestDate), state.StartTime, state.EndTime)
            .arg(gradeNumber);
    QString line = QStringLiteral("<-  ") + state.CandidateName + QStringLiteral("  ") + summary +
                   QStringLiteral(" - Note: ") + gradeWord;
    // One test, one line of the log, whatever the name holds.
    for (QChar& c : line) {
        if (c == u'\r' || c == u'\n')
            c = u' ';
    }
    return line;
}

FinalResult FinalGrade::prepare(const SessionState& state) {
    FinalResult r;
    const float ratio = Grades::ratio(state.CorrectSoFar, state.TasksSoFar);
    r.gradeWord = gradeWord(ratio);
    r.tasks = state.TasksSoFar;
    r.correct = state.CorrectSoFar;
    r.wrong = state.TasksSoFar - state.CorrectSoFar;
    r.level = state.ExpertLevel;
    // The running mark of these counters, as the score line shows it.
    r.gradeNumber = gradeNumber(Grades::runningGrade(ratio));
    r.historyLine = historyLine(state, r.gradeWord, r.gradeNumber);
    return r;
}
