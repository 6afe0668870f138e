#include "aids/CalcExpression.h"

#include <charconv>
#include <cmath>
#include <string>

namespace {

using Error = CalcExpression::Error;

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\u00A0' || c == u'\u202F';
}
bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}
bool isMinus(QChar c) {
    return c == u'-' || c == u'\u2212' || c == u'\u2013';
}
bool isTimes(QChar c) {
    return c == u'*' || c == u'\u00D7' || c == u'\u00B7';
}
bool isDivide(QChar c) {
    return c == u'/' || c == u'\u00F7' || c == u':';
}

// Recursive descent over the text: sum := product {(+|-) product},
// product := signed {(*|/) signed}, signed := {+|-} primary,
// primary := number | "(" sum ")". Only brackets recurse, and they are
// counted, so a line of 5000 "(" ends in a message, not a crash.
class Parser {
public:
    explicit Parser(QStringView text) : m_text(text) {}

    CalcExpression::Result run() {
        CalcExpression::Result r;
        skipBlanks();
        if (m_pos >= m_text.size()) {
            r.error = Error::Empty;
            return r;
        }
        const double v = sum();
        if (m_error == Error::None) {
            skipBlanks();
            if (m_pos < m_text.size()) {
                const QChar c = m_text.at(m_pos);
                if (c == u')')
                    m_error = Error::ExtraClose;
                else if (isDigit(c) || c == u',' || c == u'.' || c == u'(')
                    m_error = Error::OperatorMissing;
                else
                    failUnknown();
            }
        }
        r.error = m_error;
        r.unknown = m_unknown;
        r.value = m_error == Error::None ? v : 0.0;
        return r;
    }

private:
    void skipBlanks() {
        while (m_pos < m_text.size() && isBlank(m_text.at(m_pos)))
            ++m_pos;
    }
    bool atEnd() {
        skipBlanks();
        return m_pos >= m_text.size();
    }
    QChar peek() { return atEnd() ? QChar() : m_text.at(m_pos); }
    void fail(Error e) {
        if (m_error == Error::None)
            m_error = e;
    }
    // The sign at the current place, whole even when it is an emoji.
    void failUnknown() {
        if (m_error != Error::None)
            return;
        m_error = Error::UnknownSign;
        const qsizetype length =
            m_text.at(m_pos).isHighSurrogate() && m_pos + 1 < m_text.size() ? 2 : 1;
        m_unknown = m_text.mid(m_pos, length).toString();
    }
    double checked(double v) {
        if (!std::isfinite(v))
            fail(Error::TooLarge);
        return v;
    }

    double sum() {
        double v = product();
        while (m_error == Error::None && !atEnd()) {
            const QChar c = peek();
            if (c == u'+') {
                ++m_pos;
                v = checked(v + product());
            } else if (isMinus(c)) {
                ++m_pos;
                v = checked(v - product());
            } else {
                break;
            }
        }
        return v;
    }

    double product() {
        double v = signedPrimary();
        while (m_error == Error::None && !atEnd()) {
            const QChar c = peek();
            if (isTimes(c)) {
                ++m_pos;
                v = checked(v * signedPrimary());
            } else if (isDivide(c)) {
                ++m_pos;
                const double d = signedPrimary();
                if (m_error != Error::None)
                    break;
                if (d == 0.0) {
                    fail(Error::DivisionByZero);
                    break;
                }
                v = checked(v / d);
            } else {
                break;
            }
        }
        return v;
    }

    double signedPrimary() {
        bool negative = false;
        while (!atEnd()) {
            const QChar c = peek();
            if (c == u'+')
                ++m_pos;
            else if (isMinus(c)) {
                negative = !negative;
                ++m_pos;
            } else
                break;
        }
        const double v = primary();
        return negative ? -v : v;
    }

    double primary() {
        if (atEnd()) {
            fail(Error::NumberExpected);
            return 0.0;
        }
        const QChar c = peek();
        if (c == u'(') {
            if (++m_depth > CalcExpression::kMaxNesting) {
                fail(Error::TooDeep);
                return 0.0;
            }
            ++m_pos;
            const double v = sum();
            if (m_error != Error::None)
                return 0.0;
            if (peek() != u')') {
                if (atEnd())
                    fail(Error::MissingClose);
                else if (isDigit(peek()) || peek() == u'(')
                    fail(Error::OperatorMissing);
                else
                    failUnknown();
                return 0.0;
            }
            ++m_pos;
            --m_depth;
            return v;
        }
        if (isDigit(c) || c == u',' || c == u'.')
            return number();
        if (c == u')' || c == u'+' || isMinus(c) || isTimes(c) || isDivide(c))
            fail(Error::NumberExpected);
        else
            failUnknown();
        return 0.0;
    }

    // Digits with at most one decimal mark ("," or "."), then an optional
    // exponent ("e" or "E", a sign, digits) as the calculator itself writes
    // very large or small results.
    double number() {
        std::string buf;
        bool digits = false;
        bool mark = false;
        const qsizetype n = m_text.size();
        while (m_pos < n) {
            const QChar c = m_text.at(m_pos);
            if (isDigit(c)) {
                buf.push_back(char(c.unicode()));
                digits = true;
            } else if (c == u',' || c == u'.') {
                if (mark) {
                    fail(Error::BadNumber);
                    return 0.0;
                }
                mark = true;
                buf.push_back('.');
            } else {
                break;
            }
            ++m_pos;
        }
        if (!digits) {
            fail(Error::BadNumber);
            return 0.0;
        }
        if (m_pos < n && (m_text.at(m_pos) == u'e' || m_text.at(m_pos) == u'E')) {
            ++m_pos;
            buf.push_back('e');
            if (m_pos < n && (m_text.at(m_pos) == u'+' || isMinus(m_text.at(m_pos)))) {
                if (m_text.at(m_pos) != u'+')
                    buf.push_back('-');
                ++m_pos;
            }
            bool exponentDigits = false;
            while (m_pos < n && isDigit(m_text.at(m_pos))) {
                buf.push_back(char(m_text.at(m_pos).unicode()));
                exponentDigits = true;
                ++m_pos;
            }
            if (!exponentDigits) {
                fail(Error::BadNumber);
                return 0.0;
            }
        }
        double v = 0.0;
        const auto [end, ec] = std::from_chars(buf.data(), buf.data() + buf.size(), v);
        (void)end;
        if (ec == std::errc::result_out_of_range) {
            // Underflow reads as 0, overflow is too large to work with.
            if (buf.find("e-") != std::string::npos)
                return 0.0;
            fail(Error::TooLarge);
            return 0.0;
        }
        if (ec != std::errc()) {
            fail(Error::BadNumber);
            return 0.0;
        }
        return checked(v);
    }

    QStringView m_text;
    qsizetype m_pos = 0;
    int m_depth = 0;
    Error m_error = Error::None;
    QString m_unknown;
};

} // namespace

CalcExpression::Result CalcExpression::evaluate(QStringView expression) {
    return Parser(expression).run();
}

QString CalcExpression::message(const Result& result) {
    switch (result.error) {
    case Error::None:
    case Error::Empty:
        return {};
    case Error::NumberExpected:
        return QStringLiteral("Fehler: Da fehlt eine Zahl");
    case Error::OperatorMissing:
        return QStringLiteral("Fehler: Rechenzeichen fehlt");
    case Error::MissingClose:
        return QStringLiteral("Fehler: Klammer zu fehlt");
    case Error::ExtraClose:
        return QStringLiteral("Fehler: Klammer auf fehlt");
    case Error::BadNumber:
        return QStringLiteral("Fehler: Zahl nicht lesbar");
    case Error::UnknownSign:
        return QStringLiteral("Fehler: Zeichen „%1“ unbekannt").arg(result.unknown);
    case Error::DivisionByZero:
        return QStringLiteral("Fehler: Division durch 0");
    case Error::TooLarge:
        return QStringLiteral("Fehler: Zahl zu groß");
    case Error::TooDeep:
        return QStringLiteral("Fehler: Zu viele Klammern");
    }
    return {};
}

QString CalcExpression::localeText(double value, const QLocale& locale) {
    // Thousands separators would not survive the pages' number reading
    // ("1.234,5" reads as 1.234), and a person does not type them either.
    QLocale plain(locale);
    plain.setNumberOptions(plain.numberOptions() | QLocale::OmitGroupSeparator);
    return plain.toString(value, 'g', 15);
}
