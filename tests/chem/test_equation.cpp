#include "TestSupport.h"
#include "chem/Equation.h"

// The balancing page's walk over an equation line; the strict reading and
// the balance are tested through the bank check's rows.
class TestEquation final : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pageWalkFillsSlots_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("coefficients");
        QTest::addColumn<QStringList>("formulas");
        dataRow("two left, one right", "@2H2+@1O2=@2H2O", QStringList{"2", "1", "2", ""},
                QStringList{"H2", "O2", "H2O", ""});
        dataRow("one species a side goes to slot 2", "@1Fe=@1Fe", QStringList{"1", "", "1", ""},
                QStringList{"Fe", "", "Fe", ""});
        dataRow("digits after the formula start are counts", "@1CH4+@2O2=@1CO2+@2H2O",
                QStringList{"1", "2", "1", "2"}, QStringList{"CH4", "O2", "CO2", "H2O"});
        dataRow("points belong to the coefficient", "@1.5O2=@1O3", QStringList{"1.5", "", "1", ""},
                QStringList{"O2", "", "O3", ""});
        dataRow("no leading @ puts text in slot 0", "H2=@1H2", QStringList{"", "", "1", ""},
                QStringList{"H2", "", "H2", ""});
        // A third species on a side would run past the four slots; it is dropped.
        dataRow("three on the right", "@1A=@1B+@1C+@1D", QStringList{"1", "", "1", "1"},
                QStringList{"A", "", "B", "C"});
    }
    void pageWalkFillsSlots() {
        QFETCH(QString, line);
        QFETCH(QStringList, coefficients);
        QFETCH(QStringList, formulas);
        const Equation::Slots s = Equation::pageSlots(line);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(s.coefficient[i], coefficients[i]);
            QCOMPARE(s.formula[i], formulas[i]);
        }
    }
};

QTEST_GUILESS_MAIN(TestEquation)
#include "test_equation.moc"
