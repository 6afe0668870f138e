#pragma once

#include <QLocale>
#include <QString>
#include <QStringView>

// The arithmetic of the pocket calculator: one typed expression such as
// "2*1,01+16" or "(23+35,45)*2" is worked out with the usual precedence.
// Decimal comma and point are both taken, and the signs a person finds on a
// keyboard or a calculator (* × · / ÷ : - −) all work. Nothing here knows
// about widgets.
class CalcExpression final {
public:
    enum class Error {
        None,
        Empty,          // nothing typed
        NumberExpected, // "2*", "2**3", "()"
        OperatorMissing,
        MissingClose, // "(2+3"
        ExtraClose,   // "2+3)"
        BadNumber,    // "1,2,3", "2e"
        UnknownSign,
        DivisionByZero,
        TooLarge,
        TooDeep // brackets nested beyond reason
    };

    struct Result {
        Error error = Error::Empty;
        double value = 0.0;
        QString unknown; // the sign that was not understood
        bool ok() const { return error == Error::None; }
    };

    static constexpr int kMaxNesting = 100;

    static Result evaluate(QStringView expression);

    // A short German message for the display, e.g. "Fehler: Division durch 0".
    static QString message(const Result& result);

    // The value as the locale writes it: its decimal mark, up to 15
    // significant digits, no thousands separators, no leading blank.
    static QString localeText(double value, const QLocale& locale = QLocale());
};
