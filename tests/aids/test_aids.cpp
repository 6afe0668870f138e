// The aids a candidate may call up: the calculator (its arithmetic and its
// window, by keyboard and by mouse), what the expert level withholds, and the
// periodic-table panel of the main window.
#include "TestSupport.h"
#include "aids/CalcExpression.h"
#include "aids/CalculatorDialog.h"
#include "aids/ExpertLimits.h"
#include "aids/PeriodicTablePanel.h"
#include "controls/PeriodicTableView.h"
#include "pages/NumberAnswer.h"

#include <QAction>
#include <QToolButton>
#include <set>

using Error = CalcExpression::Error;
Q_DECLARE_METATYPE(CalcExpression::Error)
using Aid = ExpertLimits::Aid;
Q_DECLARE_METATYPE(ExpertLimits::Aid)

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

class TestAids : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void cleanup() { m_app.reset(); }
    void worksOutExpressions_data() {
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

    void worksOutExpressions() {
        QFETCH(QString, expression);
        QFETCH(double, value);
        const CalcExpression::Result r = CalcExpression::evaluate(expression);
        QVERIFY2(r.ok(), qPrintable(CalcExpression::message(r)));
        QCOMPARE(r.value + 1.0, value + 1.0); // fuzzy compare that also copes with 0
    }

    void namesWhatIsWrong_data() {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<Error>("error");
        QTest::addColumn<QString>("message");
        dataRow("nothing", "   ", Error::Empty, "");
        dataRow("two times signs", "2**", Error::NumberExpected, "Fehler: Da fehlt eine Zahl");
        dataRow("empty brackets", "()", Error::NumberExpected, "Fehler: Da fehlt eine Zahl");
        dataRow("division by zero", "1/0", Error::DivisionByZero, "Fehler: Division durch 0");
        dataRow("bracket left open", "(2+3", Error::MissingClose, "Fehler: Klammer zu fehlt");
        dataRow("bracket too many", "2+3)", Error::ExtraClose, "Fehler: Klammer auf fehlt");
        dataRow("number before bracket", "2(3)", Error::OperatorMissing,
                "Fehler: Rechenzeichen fehlt");
        dataRow("two numbers", "2 3", Error::OperatorMissing, "Fehler: Rechenzeichen fehlt");
        dataRow("two decimal marks", "1.000,5", Error::BadNumber, "Fehler: Zahl nicht lesbar");
        dataRow("exponent without digits", "2e", Error::BadNumber, "Fehler: Zahl nicht lesbar");
        dataRow("letter", "2x3", Error::UnknownSign, "Fehler: Zeichen „x“ unbekannt");
        dataRow("unit", "58,4 g", Error::UnknownSign, "Fehler: Zeichen „g“ unbekannt");
        dataRow("emoji", "2+\U0001F9EA", Error::UnknownSign,
                "Fehler: Zeichen „\U0001F9EA“ unbekannt");
        dataRow("too large", "1e400", Error::TooLarge, "Fehler: Zahl zu groß");
        dataRow("5000 brackets", QString(5000, u'(') + u'1', Error::TooDeep,
                "Fehler: Zu viele Klammern");
    }

    void namesWhatIsWrong() {
        QFETCH(QString, expression);
        QFETCH(Error, error);
        QFETCH(QString, message);
        const CalcExpression::Result r = CalcExpression::evaluate(expression);
        QCOMPARE(r.error, error);
        QCOMPARE(r.value, 0.0);
        QCOMPARE(CalcExpression::message(r), message);
    }

    void writesAsTheLocaleDoes_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("german");
        QTest::addColumn<QString>("english");
        dataRow("molar mass", 58.44, "58,44", "58.44");
        dataRow("no thousands separator", 1234.5, "1234,5", "1234.5");
        dataRow("binary noise cut", 0.1 + 0.2, "0,3", "0.3");
        dataRow("fifteen digits", 1.0 / 3.0, "0,333333333333333", "0.333333333333333");
        dataRow("large", 1.23456789012345678e17, "1,23456789012346E+17", "1.23456789012346e+17");
    }

    void writesAsTheLocaleDoes() {
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

    void keyboardAloneWorksItOutAndHandsItBack() {
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

    void mouseKeysBuildTheExpression() {
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

    void decidesEachAid_data() {
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

    void decidesEachAid() {
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

    void menusAskTheLevel() {
        auto* calc = child<QAction>(mainWindow(), "mnu_HelpCalc");
        auto* table = child<QAction>(mainWindow(), "M_H_P2");
        // The menus ask for their own aid: the rows above give the words.
        for (int level : {0, 1}) {
            mainWindow()->flow().state().ExpertLevel = level;
            ModalAnswer calculator(QStringLiteral("OK"), QStringLiteral("2*1,01+16"));
            calc->trigger();
            QCOMPARE(calculator.sawCalculator(), level == 0);
            QCOMPARE(calculator.text(),
                     level ? ExpertLimits::refusal(Aid::CalculatorMenu) : QString());
        }
        ModalAnswer answer(QStringLiteral("OK"));
        table->trigger();
        QCOMPARE(answer.text(), ExpertLimits::refusal(Aid::PeriodicTable));
        QVERIFY(!mainWindow()->periodicTable()->isVisible());
        mainWindow()->flow().state().ExpertLevel = 0;
        table->trigger();
        QVERIFY(mainWindow()->periodicTable()->isVisible());
    }

    void placesEveryElementInItsOwnCell() {
        PeriodicTableView* view = panel()->view();
        QCOMPARE(view->table().count(), 118);
        std::set<std::pair<int, int>> cells;
        for (const ElementTable::Element& e : view->table().elements()) {
            const QPoint c = PeriodicTableView::cellOf(e);
            QVERIFY2(cells.insert({c.x(), c.y()}).second, qPrintable(e.symbol));
            QVERIFY(c.x() >= 0 && c.x() < 18 && c.y() >= 0 && c.y() <= 9 && c.y() != 7);
        }
        // H, He, Fe, La and Lu (the f-block row), Ac, Og.
        const std::pair<int, QPoint> fixed[] = {{1, {0, 0}},   {2, {17, 0}},  {26, {7, 3}},
                                                {57, {2, 8}},  {71, {16, 8}}, {89, {2, 9}},
                                                {118, {17, 6}}};
        for (const auto& [number, at] : fixed)
            QCOMPARE(PeriodicTableView::cellOf(*view->table().byNumber(number)), at);
        view->select(26);
        QVERIFY(view->selectionText().contains(QStringLiteral("Eisen")));
        QVERIFY(view->selectionText().contains(QStringLiteral("55,85")));
        view->select(43);
        QVERIFY(view->selectionText().contains(QStringLiteral("Massenzahl")));
    }

    void dragStaysWithinReach() {
        mainWindow()->M_H_P2_Click();
        panel()->move(200, 100);
        const QWidget* area = panel()->parentWidget();
        panel()->beginDrag(QPoint(500, 500));
        panel()->dragTo(QPoint(530, 480));
        QCOMPARE(panel()->pos(), QPoint(230, 80));
        panel()->dragTo(QPoint(-5000, 500));
        QCOMPARE(panel()->x(), -(panel()->width() / 2));
        panel()->dragTo(QPoint(500, -5000));
        QCOMPARE(panel()->y(), 0);
        panel()->dragTo(QPoint(9000, 9000));
        QCOMPARE(panel()->pos(), QPoint(area->width() - 50, area->height() - 50));

        // Through real mouse events on the title bar.
        panel()->move(200, 100);
        QWidget* title = panel()->titleBar();
        QTest::mousePress(title, Qt::LeftButton, {}, QPoint(20, 10));
        QMouseEvent move(QEvent::MouseMove, QPointF(60, 30), title->mapToGlobal(QPointF(60, 30)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(title, &move);
        QCOMPARE(panel()->pos(), QPoint(240, 120));
        QTest::mouseRelease(title, Qt::LeftButton, {}, QPoint(60, 30));
    }

    // Opened again while open, it stays where it is; a page change hides it and
    // remembers the place, closing by its own button does not.
    void keepsItsPlace() {
        QVERIFY(!panel()->isVisible());
        mainWindow()->M_H_P2_Click();
        QVERIFY(panel()->isVisible());
        QCOMPARE(panel()->pos(), panel()->panelHome());
        panel()->move(30, 40);
        mainWindow()->M_H_P2_Click();
        QCOMPARE(panel()->pos(), QPoint(30, 40));
        startTest(mainWindow(), QStringLiteral("Anna")); // slides page 1 in
        QVERIFY(!panel()->isVisible());
        QCOMPARE(panel()->panelHome(), QPoint(30, 40));
        mainWindow()->M_H_P2_Click();
        QCOMPARE(panel()->pos(), QPoint(30, 40));
        panel()->move(300, 200);
        panel()->findChild<QToolButton*>(QStringLiteral("but_PSEHide"))->click();
        QVERIFY(!panel()->isVisible());
        mainWindow()->M_H_P2_Click();
        QCOMPARE(panel()->pos(), QPoint(30, 40));
    }

    void legendExplainsEveryColourInUse() {
        PeriodicTableView* view = panel()->view();
        const QStringList legend = PeriodicTableView::categories();
        std::set<QRgb> colours;
        for (const QString& category : legend)
            colours.insert(PeriodicTableView::categoryColour(category).rgb());
        QCOMPARE(int(colours.size()), int(legend.size())); // no two categories look alike
        for (const ElementTable::Element& e : view->table().elements())
            QVERIFY2(legend.contains(e.category), qPrintable(e.symbol + u' ' + e.category));
        // It sits in the empty corner above the transition metals, clear of every element.
        QWidget* key = view->findChild<QWidget*>(QStringLiteral("PSE_Legende"));
        QVERIFY(key);
        for (const ElementTable::Element& e : view->table().elements())
            QVERIFY(!key->geometry().intersects(view->cellRect(PeriodicTableView::cellOf(e))));
    }

    void arrowsWalkTheTable_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("dx");
        QTest::addColumn<int>("dy");
        QTest::addColumn<int>("to");
        dataRow("H nach rechts über die Lücke zu He", 1, 1, 0, 2);
        dataRow("He nach rechts bleibt", 2, 1, 0, 2);
        dataRow("H nach unten zu Li", 1, 0, 1, 3);
        dataRow("B nach oben bleibt (keine Zelle darüber)", 5, 0, -1, 5);
        dataRow("Ba nach rechts zu Hf (f-Block eigene Zeile)", 56, 1, 0, 72);
        dataRow("Cs nach unten zu Fr", 55, 0, 1, 87);
        dataRow("Fr nach unten bleibt am Rand", 87, 0, 1, 87);
        dataRow("La nach unten zu Ac", 57, 0, 1, 89);
        dataRow("Lu nach links zu Yb", 71, -1, 0, 70);
    }

    // The same walk as the arrow keys, and the keys themselves on the shown panel.
    void arrowsWalkTheTable() {
        QFETCH(int, from);
        QFETCH(int, dx);
        QFETCH(int, dy);
        QFETCH(int, to);
        PeriodicTableView* view = panel()->view();
        QCOMPARE(view->neighbour(from, dx, dy), to);

        panel()->ShowPeriodicTable();
        QCOMPARE(QApplication::focusWidget(), view);
        QTest::mouseClick(
            view, Qt::LeftButton, {},
            view->cellRect(PeriodicTableView::cellOf(*view->table().byNumber(from))).center());
        const Qt::Key key = dx > 0   ? Qt::Key_Right
                            : dx < 0 ? Qt::Key_Left
                            : dy > 0 ? Qt::Key_Down
                                     : Qt::Key_Up;
        QTest::keyClick(view, key);
        QCOMPARE(view->cursor(), to);
        QCOMPARE(view->selected(), from); // the line keeps the clicked element
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(view->selected(), to);
        QTest::keyClick(view, Qt::Key_Escape);
        QVERIFY(!panel()->isVisible());
    }

    // Each tile shows its mass as the file writes it, with a decimal comma, and
    // the tile is wide enough for it.
    void tilesShowTheFilesMass() {
        PeriodicTableView* view = panel()->view();
        auto mass = [&](int number) {
            return PeriodicTableView::massText(*view->table().byNumber(number));
        };
        QCOMPARE(mass(1), QStringLiteral("1,01"));
        QCOMPARE(mass(8), QStringLiteral("16,00"));
        QCOMPARE(mass(43), QStringLiteral("[98]"));
        QFont small = view->font();
        small.setPixelSize(10);
        const QFontMetrics metrics(small);
        for (const ElementTable::Element& e : view->table().elements())
            QVERIFY2(metrics.horizontalAdvance(PeriodicTableView::massText(e)) <=
                         PeriodicTableView::kCell - 2,
                     qPrintable(e.symbol));
    }

private:
    // The main window of the periodic-table tests, started on first use.
    std::unique_ptr<AppRun> m_app;
    AppMain* mainWindow() {
        if (!m_app) {
            m_app = std::make_unique<AppRun>();
            m_app->start()->resize(1200, 900);
            QCoreApplication::processEvents();
        }
        return m_app->windows.first();
    }
    PeriodicTablePanel* panel() { return mainWindow()->periodicTable(); }
};

QTEST_MAIN(TestAids)
#include "test_aids.moc"
