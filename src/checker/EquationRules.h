#pragma once

#include <QStringView>

class CheckContext;

// An equation line reads strictly, is shown by the balancing page as meant,
// is balanced, and uses the smallest whole coefficients.
class EquationRules final {
public:
    static void checkEquation(CheckContext& ctx, int line, QStringView text);
};
