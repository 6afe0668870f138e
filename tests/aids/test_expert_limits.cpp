// Every row of what the expert level withholds, asked of the one place that
// decides it, and seen through the menus of the main window.
#include "TestSupport.h"
#include "aids/ExpertLimits.h"
#include "aids/PeriodicTablePanel.h"

#include <QAction>

using Aid = ExpertLimits::Aid;
Q_DECLARE_METATYPE(ExpertLimits::Aid)

class TestExpertLimits : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void decidesEachAid_data();
    void decidesEachAid();
    void menusAskTheLevel();
};

void TestExpertLimits::decidesEachAid_data() {
    QTest::addColumn<Aid>("aid");
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<QString>("notice");
    const QString button = QStringLiteral("Tut mir leid! Streber müssen im Kopf rechnen!");
    const QString menu = QStringLiteral("Tut mir leid, Streber müssen selber rechnen!");
    const QString table = QStringLiteral("Leider ist das Periodensystem nichts für Streber...");
    dataRow("button, normal", Aid::CalculatorButton, 0, true, button);
    dataRow("button, expert", Aid::CalculatorButton, 1, false, button);
    dataRow("menu, normal", Aid::CalculatorMenu, 0, true, menu);
    dataRow("menu, expert", Aid::CalculatorMenu, 1, false, menu);
    dataRow("table, normal", Aid::PeriodicTable, 0, true, table);
    dataRow("table, expert", Aid::PeriodicTable, 1, false, table);
    dataRow("formulas, normal", Aid::MolarMassFormulas, 0, true, QString());
    dataRow("formulas, expert", Aid::MolarMassFormulas, 1, false, QString());
    // Only 0 and 1 are ever chosen; the menu has only ever refused exactly
    // 1, everything else refuses anything but 0.
    dataRow("button, odd level", Aid::CalculatorButton, 2, false, button);
    dataRow("menu, odd level", Aid::CalculatorMenu, 2, true, menu);
}

void TestExpertLimits::decidesEachAid() {
    QFETCH(Aid, aid);
    QFETCH(int, level);
    QFETCH(bool, allowed);
    QFETCH(QString, notice);
    QCOMPARE(ExpertLimits::allows(aid, level), allowed);
    QCOMPARE(ExpertLimits::refusal(aid), notice);
    QCOMPARE(ExpertLimits::drawsAllRecords(level), level != 0);
    ModalAnswer answer(QStringLiteral("OK"));
    QWidget parent;
    QCOMPARE(ExpertLimits::mayUse(aid, level, &parent), allowed);
    // A refusal with words is said in a notice with an empty title.
    QCOMPARE(answer.seen(), !allowed && !notice.isEmpty());
    QCOMPARE(answer.text(), answer.seen() ? notice : QString());
    QCOMPARE(answer.title(), QString());
}

void TestExpertLimits::menusAskTheLevel() {
    AppRun app;
    AppMain* main = app.start();
    QVERIFY(main);
    auto* calc = child<QAction>(main, "mnu_HelpCalc");
    auto* table = child<QAction>(main, "M_H_P2");
    // The menus ask for their own aid: the rows above give the words.
    for (int level : {0, 1}) {
        main->flow().state().ExpertLevel = level;
        ModalAnswer calculator(QStringLiteral("OK"), QStringLiteral("2*1,01+16"));
        calc->trigger();
        QCOMPARE(calculator.sawCalculator(), level == 0);
        QCOMPARE(calculator.text(), level ? ExpertLimits::refusal(Aid::CalculatorMenu) : QString());
    }
    ModalAnswer answer(QStringLiteral("OK"));
    table->trigger();
    QCOMPARE(answer.text(), ExpertLimits::refusal(Aid::PeriodicTable));
    QVERIFY(!main->periodicTable()->isVisible());
    main->flow().state().ExpertLevel = 0;
    table->trigger();
    QVERIFY(main->periodicTable()->isVisible());
}

QTEST_MAIN(TestExpertLimits)
#include "test_expert_limits.moc"
