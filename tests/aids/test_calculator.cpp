#include "TestSupport.h"
#include "aids/CalcExpression.h"
#include "aids/CalculatorDialog.h"
#include "pages/NumberAnswer.h"

using Error = CalcExpression::Error;
Q_DECLARE_METATYPE(CalcExpression::Error)

class TestCalculator : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void worksOutExpressions_data();
    void worksOutExpressions();
    void namesWhatIsWrong_data();
    void namesWhatIsWrong();
    void writesAsTheLocaleDoes_data();
    void writesAsTheLocaleDoes();
    void keyboardAloneWorksItOutAndHandsItBack();
    void mouseKeysBuildTheExpression();
};

void TestCalculator::worksOutExpressions_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<double>("value");
    dataRow("amount", "5,844/58,44", 0.1);
    dataRow("comma and point mixed", "1.5+1,5", 3.0);
    dataRow("brackets first", "(2+3)*4", 20.0);
    dataRow("minus from the left", "10-4-3", 3.0);
    dataRow("leading minus", "-3+5", 2.0);
    dataRow("minus after times", "2*-3", -6.0);
    dataRow("minus before bracket", "-(2-5)", 3.0);
    dataRow("calculator signs", "7\u00F72\u22121\u00D72", 1.5);
    dataRow("exponent as shown", "1e+20/1e20", 1.0);
    dataRow("nested brackets", "((((1,5))))", 1.5);
    dataRow("zero", "3-3", 0.0);
}

void TestCalculator::worksOutExpressions() {
    QFETCH(QString, expression);
    QFETCH(double, value);
    const CalcExpression::Result r = CalcExpression::evaluate(expression);
    QVERIFY2(r.ok(), qPrintable(CalcExpression::message(r)));
    QCOMPARE(r.value + 1.0, value + 1.0); // fuzzy compare that also copes with 0
}

void TestCalculator::namesWhatIsWrong_data() {
    QTest::addColumn<QString>("expression");
    QTest::addColumn<Error>("error");
    QTest::addColumn<QString>("message");
    dataRow("nothing", "   ", Error::Empty, "");
    dataRow("two times signs", "2**", Error::NumberExpected, "Fehler: Da fehlt eine Zahl");
    dataRow("empty brackets", "()", Error::NumberExpected, "Fehler: Da fehlt eine Zahl");
    dataRow("division by zero", "1/0", Error::DivisionByZero, "Fehler: Division durch 0");
    dataRow("bracket left open", "(2+3", Error::MissingClose, "Fehler: Klammer zu fehlt");
    dataRow("bracket too many", "2+3)", Error::ExtraClose, "Fehler: Klammer auf fehlt");
    dataRow("number before bracket", "2(3)", Error::OperatorMissing, "Fehler: Rechenzeichen fehlt");
    dataRow("two numbers", "2 3", Error::OperatorMissing, "Fehler: Rechenzeichen fehlt");
    dataRow("two decimal marks", "1.000,5", Error::BadNumber, "Fehler: Zahl nicht lesbar");
    dataRow("exponent without digits", "2e", Error::BadNumber, "Fehler: Zahl nicht lesbar");
    dataRow("letter", "2x3", Error::UnknownSign, "Fehler: Zeichen „x“ unbekannt");
    dataRow("unit", "58,4 g", Error::UnknownSign, "Fehler: Zeichen „g“ unbekannt");
    dataRow("emoji", "2+\U0001F9EA", Error::UnknownSign, "Fehler: Zeichen „\U0001F9EA“ unbekannt");
    dataRow("too large", "1e400", Error::TooLarge, "Fehler: Zahl zu groß");
    dataRow("5000 brackets", QString(5000, u'(') + u'1', Error::TooDeep,
            "Fehler: Zu viele Klammern");
}

void TestCalculator::namesWhatIsWrong() {
    QFETCH(QString, expression);
    QFETCH(Error, error);
    QFETCH(QString, message);
    const CalcExpression::Result r = CalcExpression::evaluate(expression);
    QCOMPARE(r.error, error);
    QCOMPARE(r.value, 0.0);
    QCOMPARE(CalcExpression::message(r), message);
}

void TestCalculator::writesAsTheLocaleDoes_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("english");
    dataRow("molar mass", 58.44, "58,44", "58.44");
    dataRow("no thousands separator", 1234.5, "1234,5", "1234.5");
    dataRow("binary noise cut", 0.1 + 0.2, "0,3", "0.3");
    dataRow("fifteen digits", 1.0 / 3.0, "0,333333333333333", "0.333333333333333");
    dataRow("large", 1.23456789012345678e17, "1,23456789012346E+17", "1.23456789012346e+17");
}

void TestCalculator::writesAsTheLocaleDoes() {
    QFETCH(double, value);
    QFETCH(QString, german);
    QFETCH(QString, english);
    QCOMPARE(CalcExpression::localeText(value), german); // the default locale is German here
    QCOMPARE(CalcExpression::localeText(value, QLocale(QLocale::German)), german);
    QCOMPARE(CalcExpression::localeText(value, QLocale::c()), english);
    // The pages read the written text back as the same number.
    QCOMPARE(NumberAnswer::read(german), float(value));
    // And the calculator takes its own result as the start of a new sum.
    const CalcExpression::Result again = CalcExpression::evaluate(german);
    QVERIFY(again.ok());
    QCOMPARE(again.value, QLocale(QLocale::German).toDouble(german));
}

namespace {

// Runs the calculator modally and lets `work` act on it once it is open.
double runWith(const std::function<void(CalculatorDialog*)>& work) {
    QTimer::singleShot(0, [work] {
        auto* dialog = qobject_cast<CalculatorDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        QCOMPARE(dialog->objectName(), QStringLiteral("Taschenrechner"));
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        work(dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
    return CalculatorDialog::run(nullptr);
}

QPushButton* key(CalculatorDialog* d, const QString& caption) {
    return d->findChild<QPushButton*>(QStringLiteral("Taste(%1)").arg(caption));
}

} // namespace

void TestCalculator::keyboardAloneWorksItOutAndHandsItBack() {
    const double v = runWith([](CalculatorDialog* d) {
        QLineEdit* display = d->display();
        QCOMPARE(QApplication::focusWidget(), display);
        QTest::keyClicks(display, QStringLiteral("2*1,01+16"));
        QCOMPARE(display->text(), QStringLiteral("2×1,01+16"));
        QTest::keyClick(display, Qt::Key_Return);
        QVERIFY(d->isVisible()); // Enter works it out, it does not close
        QCOMPARE(display->text(), QStringLiteral("18,02"));
        QCOMPARE(d->findChild<QLabel*>(QStringLiteral("Rechnung"))->text(),
                 QStringLiteral("2×1,01+16 ="));
        // A wrong expression leaves a message; Backspace brings it back to mend.
        QTest::keyClicks(display, QStringLiteral("/0"));
        QTest::keyClick(display, Qt::Key_Return);
        QCOMPARE(display->text(), QStringLiteral("Fehler: Division durch 0"));
        QTest::keyClick(display, Qt::Key_Backspace);
        QCOMPARE(display->text(), QStringLiteral("18,02÷0"));
        QTest::keyClick(display, Qt::Key_Backspace);
        QTest::keyClicks(display, QStringLiteral("2"));
        QTest::keyClick(display, Qt::Key_Enter);
        QCOMPARE(display->text(), QStringLiteral("9,01"));
        // Tab leads to "Übernehmen", Space presses it.
        QTest::keyClick(display, Qt::Key_Tab);
        auto* takeOver = d->findChild<QPushButton*>(QStringLiteral("Übernehmen"));
        QCOMPARE(takeOver->text(), QStringLiteral("Übernehmen"));
        QTest::keyClick(takeOver, Qt::Key_Space);
    });
    QCOMPARE(v, 9.01);
}

void TestCalculator::mouseKeysBuildTheExpression() {
    const double v = runWith([](CalculatorDialog* d) {
        for (const char* k : {"(", "2", "3", "+", "3", "5", ",", "4", "5", ")", "×", "2"})
            QTest::mouseClick(key(d, QString::fromUtf8(k)), Qt::LeftButton);
        QCOMPARE(d->display()->text(), QStringLiteral("(23+35,45)×2"));
        QTest::mouseClick(key(d, QStringLiteral("⌫")), Qt::LeftButton);
        QTest::mouseClick(key(d, QStringLiteral("4")), Qt::LeftButton);
        QTest::mouseClick(key(d, QStringLiteral("=")), Qt::LeftButton);
        QCOMPARE(d->display()->text(), QStringLiteral("233,8"));
        QTest::mouseClick(key(d, QStringLiteral("C")), Qt::LeftButton);
        QVERIFY(d->display()->text().isEmpty());
        for (const char* k : {"7", "÷", "2", "−", "1"})
            QTest::mouseClick(key(d, QString::fromUtf8(k)), Qt::LeftButton);
        // "Übernehmen" takes over what the display says, worked out or not.
        d->findChild<QPushButton*>(QStringLiteral("Übernehmen"))->click();
    });
    QCOMPARE(v, 2.5);
    // Escape and closing the window hand back 0, whatever is shown.
    for (bool escape : {true, false}) {
        const double none = runWith([escape](CalculatorDialog* d) {
            QTest::keyClicks(d->display(), QStringLiteral("58,44"));
            QTest::keyClick(d->display(), Qt::Key_Return);
            if (escape)
                QTest::keyClick(d->display(), Qt::Key_Escape);
            else
                d->close();
            QVERIFY(!d->isVisible());
        });
        QCOMPARE(none, 0.0);
    }
}

QTEST_MAIN(TestCalculator)
#include "test_calculator.moc"
