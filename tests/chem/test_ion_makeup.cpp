#include "TestSupport.h"
#include "chem/IonMakeup.h"

// Which ions, how many of each, make up a salt; and the line the formulas
// page shows for it.
class TestIonMakeup final : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void findsTheCounts_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QStringList>("ions");
        QTest::addColumn<QList<int>>("counts"); // empty: no way found
        dataRow("Calciumchlorid", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, QList<int>{1, 2});
        dataRow("Aluminiumsulfat", "Al2(SO4)3", QStringList{"Al^3+", "SO4^2-"}, QList<int>{2, 3});
        dataRow("Ammoniumsulfat", "(NH4)2SO4", QStringList{"NH4^+", "SO4^2-"}, QList<int>{2, 1});
        dataRow("drei Ionensorten", "Fe3O4", QStringList{"Fe^2+", "Fe^3+", "O^2-"},
                QList<int>{1, 2, 4});
        dataRow("Blanks, leeres Stück", " CaCl2 ", QStringList{"", " Ca^2+", "Cl^-"},
                QList<int>{1, 2});
        dataRow("falsches Ion", "NaCl", QStringList{"K^+", "Cl^-"}, QList<int>{});
        dataRow("Ladung bleibt", "CaCl", QStringList{"Ca^2+", "Cl^-"}, QList<int>{});
        dataRow("keine Ionen", "H2O", QStringList{}, QList<int>{});
        dataRow("mehr als neun", "Na10Cl10", QStringList{"Na^+", "Cl^-"}, QList<int>{});
        dataRow("Unsinn", QString(5000, u'x'), QStringList{"\U0001F600"}, QList<int>{});
    }
    void findsTheCounts() {
        QFETCH(QString, formula);
        QFETCH(QStringList, ions);
        QFETCH(QList<int>, counts);
        QList<int> found;
        QStringList foundIons;
        for (const IonMakeup::Share& s : IonMakeup::of(formula, ions)) {
            found << s.count;
            foundIons << s.ion;
        }
        QCOMPARE(found, counts);
        // The ions come back trimmed, in their order, without empty pieces.
        if (!found.isEmpty())
            QCOMPARE(foundIons.join(u' '), ions.join(u' ').simplified());
    }

    void showsWhatThereIs_data() {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QStringList>("ions");
        QTest::addColumn<bool>("twoLines");
        QTest::addColumn<QString>("html");
        const QString minus = QStringLiteral("\u2212");
        const QString calcium = "Ca<sup>2+</sup> + 2 Cl<sup>" + minus + "</sup>";
        dataRow("Ionen mit Anzahl", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, false,
                calcium + " \u2192 CaCl<sub>2</sub>");
        dataRow("zwei Zeilen", "CaCl2", QStringList{"Ca^2+", "Cl^-"}, true,
                calcium + "<br>\u2192 CaCl<sub>2</sub>");
        dataRow("passt nicht", "NaCl", QStringList{"K^+", "Cl^-"}, false,
                "NaCl (Ionen: K<sup>+</sup>, Cl<sup>" + minus + "</sup>)");
        dataRow("nur Formel", "H2O", QStringList{}, true, "H<sub>2</sub>O");
        dataRow("nur Ionen", "", QStringList{"Na^+"}, false, "Na<sup>+</sup>");
        dataRow("Auszeichnung", "<b>", QStringList{""}, false, "&lt;b&gt;");
    }
    void showsWhatThereIs() {
        QFETCH(QString, formula);
        QFETCH(QStringList, ions);
        QFETCH(bool, twoLines);
        QFETCH(QString, html);
        QCOMPARE(IonMakeup::toHtml(formula, ions, twoLines), html);
    }

    void plainTextForMeasuring() {
        QCOMPARE(IonMakeup::toPlain(u"CaCl2", {QStringLiteral("Ca^2+"), QStringLiteral("Cl^-")}),
                 QStringLiteral("Ca\u00B2\u207A + 2 Cl\u207B \u2192 CaCl\u2082"));
    }
};

QTEST_GUILESS_MAIN(TestIonMakeup)
#include "test_ion_makeup.moc"
