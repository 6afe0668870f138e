#pragma once

#include <QString>

// The German school scale as the test uses it: sixteen steps from "6" to
// "1+", passed by comparing the share of right answers, as a 32-bit float,
// with 32-bit thresholds. A share exactly on a threshold keeps the lower step.
class Grades final {
public:
    static constexpr int kSteps = 16; // 0 = "6" ... 15 = "1+"

    // correct / tasks, computed in double and rounded to float; 0 for no tasks.
    static float ratio(int correct, int tasks);
    // How many thresholds the ratio is strictly greater than (0..15).
    static int step(float ratio);
    // The running mark "6", "5-", ..., "1+".
    static QString runningGrade(float ratio);
    static QString markOfStep(int step);
    // " 12": one blank where a minus sign would stand.
    static QString counterText(int value);
};
