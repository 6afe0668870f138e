#include "TestSupport.h"
#include "chem/ChemicalFormula.h"
#include "chem/Equation.h"

namespace {

// "Ca:1 H:2 O:2" from the counts, in the map's (alphabetical) order.
QString atomsText(const ChemicalFormula& f) {
    QStringList out;
    for (auto it = f.counts().cbegin(); it != f.counts().cend(); ++it)
        out << QStringLiteral("%1:%2").arg(it.key()).arg(it.value());
    return out.join(u' ');
}

} // namespace

class TestChemicalFormula : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void countsAtoms_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("atoms");
        QTest::addColumn<int>("charge");
        QTest::addColumn<bool>("charged");
        dataRow("water", "H2O", "H:2 O:1", 0, false);
        dataRow("same element twice", "CH3COOH", "C:2 H:4 O:2", 0, false);
        dataRow("group", "Ca(OH)2", "Ca:1 H:2 O:2", 0, false);
        dataRow("group and counts", "Ca3(PO4)2", "Ca:3 O:8 P:2", 0, false);
        dataRow("group first", "(NH4)2SO4", "H:8 N:2 O:4 S:1", 0, false);
        dataRow("nested", "((CH3)3C)2O", "C:8 H:18 O:1", 0, false);
        dataRow("hydrate", "CuSO4·5H2O", "Cu:1 H:10 O:9 S:1", 0, false);
        dataRow("hydrate without multiplier", "CaSO4·H2O", "Ca:1 H:2 O:5 S:1", 0, false);
        dataRow("anion", "SO4^2-", "O:4 S:1", -2, true);
        dataRow("single charge", "Na^+", "Na:1", 1, true);
        dataRow("single negative", "OH^-", "H:1 O:1", -1, true);
        dataRow("written 1", "Cl^1-", "Cl:1", -1, true);
        dataRow("ion with group", "Cu(NH3)4^2+", "Cu:1 H:12 N:4", 2, true);
        dataRow("three letters", "Uue", "Uue:1", 0, false);
        dataRow("big count", "C60", "C:60", 0, false);
    }
    void countsAtoms() {
        QFETCH(QString, formula);
        QFETCH(QString, atoms);
        QFETCH(int, charge);
        QFETCH(bool, charged);
        const ChemicalFormula f = ChemicalFormula::parse(formula);
        QVERIFY2(f.isValid(), qPrintable(f.error()));
        QVERIFY(f.error().isEmpty());
        QCOMPARE(atomsText(f), atoms);
        QCOMPARE(f.charge(), charge);
        QCOMPARE(f.hasCharge(), charged);
        QCOMPARE(f.text(), formula);
        // The pieces, which the hints walk, spell the formula (a charge without its "^").
        QString pieces;
        for (const ChemicalFormula::Piece& p : f.pieces())
            pieces += p.text;
        QCOMPARE(pieces, QString(formula).remove(u'^'));
    }
    void refusesBrokenFormulas_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("position");
        dataRow("empty", "", 0);
        dataRow("lower case start", "h2o", 0);
        dataRow("leading coefficient", "2H2O", 0);
        dataRow("count zero", "H0", 1);
        dataRow("leading zero", "H02", 1);
        dataRow("unclosed", "Ca(OH2", 2);
        dataRow("stray close", "CaOH)2", 4);
        dataRow("empty group", "Ca()2", 3);
        dataRow("blank", "H2 O", 2);
        dataRow("charge without sign", "SO4^2", 5);
        dataRow("zero charge", "Na^0+", 3);
        dataRow("text after charge", "Fe^3+Cl", 5);
        dataRow("charge inside group", "Ca(OH^-)2", 2);
        dataRow("dot at the end", "CuSO4·", 6);
        dataRow("dot zero", "CuSO4·0H2O", 6);
        dataRow("dot in group", "Ca(OH·H2O)", 2);
        dataRow("long symbol", "Abcd", 0);
        dataRow("huge count", "H99999999999999999999", 1);
        dataRow("counts multiply past the limit", "((H1000)1000)", 7);
        dataRow("plus inside", "H2+O2", 2);
    }
    void refusesBrokenFormulas() {
        QFETCH(QString, formula);
        QFETCH(int, position);
        const ChemicalFormula f = ChemicalFormula::parse(formula);
        QVERIFY(!f.isValid());
        QVERIFY(!f.error().isEmpty());
        QCOMPARE(f.errorPosition(), qsizetype(position));
        // A refused formula must not leave half a result behind.
        QVERIFY(f.counts().isEmpty());
        QCOMPARE(f.charge(), 0);
    }
    void survivesHostileInput() {
        // Deep nesting must be refused, not recursed into; long lines must stay fast.
        const QString deep = QString(100000, u'(') + QStringLiteral("H") + QString(100000, u')');
        const ChemicalFormula d = ChemicalFormula::parse(deep);
        QVERIFY(!d.isValid());
        QCOMPARE(d.errorPosition(), qsizetype(ChemicalFormula::kMaxDepth));

        QString allowed;
        for (int i = 0; i < ChemicalFormula::kMaxDepth; ++i)
            allowed += u'(';
        allowed += QStringLiteral("H2");
        for (int i = 0; i < ChemicalFormula::kMaxDepth; ++i)
            allowed += QStringLiteral(")2");
        // 2^17 atoms exceed the limit, 2^16 would not.
        QVERIFY(!ChemicalFormula::parse(allowed).isValid());
        allowed.chop(1);
        const ChemicalFormula ok = ChemicalFormula::parse(allowed);
        QVERIFY2(ok.isValid(), qPrintable(ok.error()));
        QCOMPARE(ok.count(QStringLiteral("H")), 1 << 16);

        QString longChain;
        for (int i = 0; i < 20000; ++i)
            longChain += QStringLiteral("CH2");
        const ChemicalFormula chain = ChemicalFormula::parse(longChain);
        QVERIFY(chain.isValid());
        QCOMPARE(chain.count(QStringLiteral("C")), 20000);
        QCOMPARE(chain.symbols().size(), 2);
    }

    // The balancing page's walk over an equation line; the strict reading and
    // the balance are tested through the bank check's rows.
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

QTEST_APPLESS_MAIN(TestChemicalFormula)
#include "test_chemical_formula.moc"
