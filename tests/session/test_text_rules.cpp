#include "TestSupport.h"
#include "session/TextRules.h"

class TestTextRules : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsLeadingNumbers_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        dataRow("plain", "58.4", 58.4);
        dataRow("comma stops", "58,4", 58.0);
        dataRow("blanks around", "  12  ", 12.0);
        dataRow("blanks inside", "1 000", 1000.0);
        dataRow("sign blank", "- 3", -3.0);
        dataRow("point first", ".5", 0.5);
        dataRow("exponent", "5E-1", 0.5);
        dataRow("exponent without digits", "1E", 1.0);
        dataRow("exponent sign only", "2E+x", 2.0);
        dataRow("fraction stops", "1/2", 1.0);
        dataRow("second point stops", "1.5.3", 1.5);
        dataRow("empty", "", 0.0);
        dataRow("sign only", "-", 0.0);
        dataRow("exponent alone", "E5", 0.0);
        dataRow("tab and newline", "\t3\n", 3.0);
        dataRow("huge", "1e400", HUGE_VAL);
    }
    void readsLeadingNumbers() {
        QFETCH(QString, text);
        QFETCH(double, value);
        QCOMPARE(LeadingValue(text), value);
    }
    void parseDecimalChangesCallersText() {
        // How answers read as numbers is tested through NumberAnswer; here only
        // that the caller's text is changed on the way.
        QString text = QStringLiteral("1,5e3");
        QCOMPARE(ParseDecimal(text), 1500.0f);
        QCOMPARE(text, QStringLiteral("1.5E3"));
        QString unit = QStringLiteral("58,4 g");
        QCOMPARE(ParseDecimal(unit), 58.4f);
        QCOMPARE(unit, QStringLiteral("58.4 g"));
    }
    void canonicalAndStrip() {
        QCOMPARE(CanonicalText(u"  natrium  "), QStringLiteral("NATRIUM"));
        QCOMPARE(CanonicalText(u"\tx "), QStringLiteral("\tX")); // only blanks are cut
        QCOMPARE(
            StripBlanks(QStringLiteral("@2 H2 + @1 O2") + QChar(u'\0') + QStringLiteral("= @2H2O")),
            QStringLiteral("@2H2+@1O2=@2H2O"));
        QCOMPARE(TrimRightBlanks(u"Na   ").toString(), QStringLiteral("Na"));
        QCOMPARE(TrimBlanks(u"   ").toString(), QString());
    }
    void writesNumbersAsTheOldRuntime() {
        QCOMPARE(NumberWithSignSpace(12), QStringLiteral(" 12"));
        QCOMPARE(NumberWithSignSpace(0), QStringLiteral(" 0"));
        QCOMPARE(NumberWithSignSpace(-3), QStringLiteral("-3"));
        QCOMPARE(SingleToText(58.4f), QStringLiteral(" 58.4"));
        QCOMPARE(SingleToText(180.2f), QStringLiteral(" 180.2"));
        QCOMPARE(SingleToText(-0.25f), QStringLiteral("-0.25"));
        QCOMPARE(SingleToText(1234567.0f), QStringLiteral(" 1234567"));
    }
};

QTEST_APPLESS_MAIN(TestTextRules)
#include "test_text_rules.moc"
