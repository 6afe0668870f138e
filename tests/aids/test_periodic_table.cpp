#include "TestSupport.h"
#include "aids/PeriodicTablePanel.h"
#include "controls/PeriodicTableView.h"

#include <QToolButton>
#include <set>

class TestPeriodicTable : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void placesEveryElementInItsOwnCell();
    void opensOnlyAtTheNormalLevelAndNeverMovesWhenOpen();
    void dragStaysWithinReach();
    void pageChangeRemembersWhereItWas();
    void legendExplainsEveryColourInUse();
    void arrowsWalkTheTable_data();
    void arrowsWalkTheTable();
    void tilesShowTheFilesMass();

private:
    std::unique_ptr<AppRun> m_app;
    AppMain* m_main = nullptr;
    PeriodicTablePanel* panel() const { return m_main->periodicTable(); }
};

void TestPeriodicTable::init() {
    m_app = std::make_unique<AppRun>();
    QVERIFY((m_main = m_app->start()));
    m_main->resize(1200, 900);
    QCoreApplication::processEvents();
}

void TestPeriodicTable::cleanup() {
    m_app.reset();
}

void TestPeriodicTable::placesEveryElementInItsOwnCell() {
    PeriodicTableView* view = panel()->view();
    QCOMPARE(view->table().count(), 118);
    std::set<std::pair<int, int>> cells;
    for (const ElementTable::Element& e : view->table().elements()) {
        const QPoint c = PeriodicTableView::cellOf(e);
        QVERIFY2(cells.insert({c.x(), c.y()}).second, qPrintable(e.symbol));
        QVERIFY(c.x() >= 0 && c.x() < 18 && c.y() >= 0 && c.y() <= 9 && c.y() != 7);
    }
    auto cell = [&](int number) {
        return PeriodicTableView::cellOf(*view->table().byNumber(number));
    };
    QCOMPARE(cell(1), QPoint(0, 0));
    QCOMPARE(cell(2), QPoint(17, 0));
    QCOMPARE(cell(26), QPoint(7, 3));
    QCOMPARE(cell(57), QPoint(2, 8));
    QCOMPARE(cell(71), QPoint(16, 8));
    QCOMPARE(cell(89), QPoint(2, 9));
    QCOMPARE(cell(118), QPoint(17, 6));
    view->select(26);
    QVERIFY(view->selectionText().contains(QStringLiteral("Eisen")));
    QVERIFY(view->selectionText().contains(QStringLiteral("55,85")));
    view->select(43);
    QVERIFY(view->selectionText().contains(QStringLiteral("Massenzahl")));
}

void TestPeriodicTable::opensOnlyAtTheNormalLevelAndNeverMovesWhenOpen() {
    QVERIFY(!panel()->isVisible());
    m_main->M_H_P2_Click();
    QVERIFY(panel()->isVisible());
    QCOMPARE(panel()->pos(), panel()->panelHome());
    panel()->move(100, 120);
    m_main->M_H_P2_Click();
    QCOMPARE(panel()->pos(), QPoint(100, 120));
}

void TestPeriodicTable::dragStaysWithinReach() {
    m_main->M_H_P2_Click();
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

void TestPeriodicTable::pageChangeRemembersWhereItWas() {
    m_main->M_H_P2_Click();
    panel()->move(30, 40);
    startTest(m_main, QStringLiteral("Anna")); // slides page 1 in
    QVERIFY(!panel()->isVisible());
    QCOMPARE(panel()->panelHome(), QPoint(30, 40));
    m_main->M_H_P2_Click();
    QCOMPARE(panel()->pos(), QPoint(30, 40));
    // Closing by its button does not remember the place.
    panel()->move(300, 200);
    panel()->findChild<QToolButton*>(QStringLiteral("but_PSEHide"))->click();
    QVERIFY(!panel()->isVisible());
    m_main->M_H_P2_Click();
    QCOMPARE(panel()->pos(), QPoint(30, 40));
}

void TestPeriodicTable::legendExplainsEveryColourInUse() {
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

void TestPeriodicTable::arrowsWalkTheTable_data() {
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
void TestPeriodicTable::arrowsWalkTheTable() {
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
void TestPeriodicTable::tilesShowTheFilesMass() {
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

QTEST_MAIN(TestPeriodicTable)
#include "test_periodic_table.moc"
