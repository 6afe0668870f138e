#include "session/Grades.h"

#include "session/TextRules.h"

#include <array>

namespace {

constexpr std::array<float, Grades::kSteps - 1> kThresholds = {
    0.1f, 0.2f, 0.3f, 0.4f, 0.45f, 0.5f, 0.55f, 0.6f, 0.65f, 0.7f, 0.75f, 0.8f, 0.85f, 0.9f, 0.95f};

const std::array<const char*, Grades::kSteps> kMarks = {
    "6", "5-", "5", "5+", "4-", "4", "4+", "3-", "3", "3+", "2-", "2", "2+", "1-", "1", "1+"};

} // namespace

float Grades::ratio(int correct, int tasks) {
    if (tasks == 0)
        return 0.0f;
    return static_cast<float>(static_cast<double>(correct) / static_cast<double>(tasks));
}

int Grades::step(float ratio) {
    int passed = 0;
    for (std::size_t i = 0; i < kThresholds.size(); ++i) {
        if (ratio > kThresholds[i])
            passed = static_cast<int>(i) + 1;
    }
    return passed;
}

QString Grades::markOfStep(int step) {
    if (step < 0 || step >= kSteps)
        return QString::fromLatin1(kMarks[0]);
    return QString::fromLatin1(kMarks[static_cast<std::size_t>(step)]);
}

QString Grades::runningGrade(float ratio) {
    return markOfStep(step(ratio));
}

QString Grades::counterText(int value) {
    return NumberWithSignSpace(value);
}
