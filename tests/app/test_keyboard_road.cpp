#include "TestSupport.h"
#include "aids/PeriodicTablePanel.h"
#include "controls/PeriodicTableView.h"
#include "pages/TaskPage.h"

#include <QListWidget>
#include <QRadioButton>

// A whole test without the mouse, in the real main window: keys only, sent
// to whichever control has the focus, from the start page through every
// page (lists by typing, ion rows and yes/no pairs by arrow keys, the
// calculator, the periodic table) to "Nein" on the result form. Every
// answer is given right, so the counters prove each key reached its field.
class TestKeyboardRoad : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void wholeTestByKeyboard();

private:
    AppMain* m_main = nullptr;
    QStringList m_lostFocus;

    QWidget* focus() {
        QWidget* w = QApplication::focusWidget();
        // The focus must always sit on a control one can see.
        if (!w || !w->isVisible())
            m_lostFocus << (w ? w->objectName() : QStringLiteral("(keine)"));
        return w;
    }
    void key(Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QWidget* w = focus();
        QTest::keyClick(w ? w : m_main, k, mods);
        QCoreApplication::processEvents();
    }
    // Key by key, as typed; also letters beyond ASCII (ä, ·).
    void type(const QString& text) {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, focus(), Qt::Key_unknown, QString(c), Qt::NoModifier);
        QCoreApplication::processEvents();
    }
    TaskPage* page(int n) { return m_main->flow().taskPage(n); }
    // Runs act once a modal window is up and holds the focus.
    void whenModal(std::function<void()> act) {
        auto* poll = new QTimer(this);
        poll->setInterval(10);
        connect(poll, &QTimer::timeout, this, [this, poll, act] {
            QWidget* modal = QApplication::activeModalWidget();
            QWidget* w = QApplication::focusWidget();
            if (!modal || !w || w->window() != modal)
                return;
            poll->stop();
            poll->deleteLater();
            act();
        });
        poll->start();
    }
    const QString& drawn(int i) { return m_main->flow().state().DrawnAnswers[i]; }
    int index(const QWidget* w) {
        const QString name = w->objectName();
        return name.mid(name.indexOf(u'(') + 1).chopped(1).toInt();
    }
    // Types an answer into every text field that the Tab key reaches, until
    // it reaches the page's "&OK".
    void fillByTab(int n, const std::function<QString(QLineEdit*)>& answer) {
        for (int guard = 0; guard < 60 && focus() != page(n)->okButton(); ++guard) {
            if (auto* edit = qobject_cast<QLineEdit*>(focus()); edit && edit->text().isEmpty())
                type(answer(edit));
            key(Qt::Key_Tab);
        }
        QCOMPARE(focus(), page(n)->okButton());
    }
    // Enter on the focused "&OK" checks, and the focus moves to "&Weiter".
    void checkAndGoOn(int n) {
        QCOMPARE(focus(), page(n)->okButton());
        key(Qt::Key_Return);
        QVERIFY2(page(n)->isChecked(), qPrintable(QStringLiteral("Seite %1").arg(n)));
        QCOMPARE(focus(), page(n)->nextButton());
        QCOMPARE(m_main->flow().state().CorrectSoFar, m_main->flow().state().TasksSoFar);
    }
};

void TestKeyboardRoad::wholeTestByKeyboard() {
    AppRun run;
    m_main = run.start();
    QVERIFY(m_main);
    m_main->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_main));
    bool ended = false;
    m_main->setExiter([&ended] { ended = true; });

    // Start page: the name field has the focus; Enter starts.
    QCOMPARE(focus()->objectName(), QStringLiteral("BenutzerName"));
    type(QStringLiteral("Tastatur"));
    key(Qt::Key_Return);
    QVERIFY(page(1)->isVisible());

    auto firstName = [](const QString& key) {
        return key.contains(u'*') ? key.section(u'*', 1, 1) : key.section(u'|', 0, 0);
    };
    // Page 1, then Enter on "Weiter" leads on.
    fillByTab(1, [&](QLineEdit* e) {
        const int i = index(e);
        return e->objectName().startsWith(QLatin1String("EleSym")) ? drawn(i)
                                                                   : firstName(drawn(3 + i));
    });
    checkAndGoOn(1);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);
    fillByTab(2, [&](QLineEdit* e) { return firstName(drawn(index(e))); });
    checkAndGoOn(2);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);
    fillByTab(11,
              [&](QLineEdit* e) { return firstName(drawn(e->property("answerSlot").toInt())); });
    checkAndGoOn(11);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);

    // Page 8: the first mass by the calculator, opened from its button with
    // Space, typed, worked out with Enter and taken over from the keyboard.
    QCOMPARE(focus()->objectName(), QStringLiteral("Mol(0)"));
    key(Qt::Key_Tab);
    QCOMPARE(focus()->objectName(), QStringLiteral("but_Calc(0)"));
    bool calculatorSeen = false;
    whenModal([&] {
        QCOMPARE(focus()->objectName(), QStringLiteral("Anzeige"));
        calculatorSeen = true;
        type(drawn(0).trimmed() + QStringLiteral("*2/2"));
        key(Qt::Key_Return);
        key(Qt::Key_Tab);
        QCOMPARE(focus()->objectName(), QStringLiteral("Übernehmen"));
        key(Qt::Key_Space);
    });
    key(Qt::Key_Space);
    QVERIFY(calculatorSeen);
    // Offscreen there is no window manager to hand the activation back to
    // the main window when the dialog closes; a desktop does that.
    if (!QApplication::focusWidget()) {
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main));
    }
    // The value is in the field, and so is the focus.
    QCOMPARE(focus()->objectName(), QStringLiteral("Mol(0)"));
    QVERIFY(!child<QLineEdit>(m_main, QStringLiteral("Mol(0)"))->text().isEmpty());
    fillByTab(8, [&](QLineEdit* e) { return drawn(index(e)).trimmed(); });
    checkAndGoOn(8);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);
    fillByTab(12, [&](QLineEdit* e) { return drawn(index(e)).trimmed(); });
    checkAndGoOn(12);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);
    fillByTab(9, [&](QLineEdit* e) { return drawn(e->property("answerSlot").toInt()).trimmed(); });
    checkAndGoOn(9);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);

    // Pages 3 and 4: a list chooses the item whose beginning is typed.
    for (const int n : {3, 4}) {
        const int lists = n == 3 ? 3 : 4;
        for (int i = 0; i < lists; ++i) {
            auto* list = qobject_cast<QListWidget*>(focus());
            QVERIFY2(list, qPrintable(QStringLiteral("Seite %1, Liste %2").arg(n).arg(i)));
            type(drawn(i).trimmed().left(24));
            QCOMPARE(list->selectedItems().value(0) ? list->selectedItems().value(0)->text()
                                                    : QString(),
                     drawn(i));
            key(Qt::Key_Tab);
        }
        QCOMPARE(focus(), page(n)->okButton());
        checkAndGoOn(n);
        if (QTest::currentTestFailed())
            return;
        key(Qt::Key_Return);
    }

    // Page 5: each row by the arrow keys; Tab goes to the next row.
    for (int k = 0; k < 4; ++k) {
        for (int guard = 0; guard < 10; ++guard) {
            auto* b = qobject_cast<QRadioButton*>(focus());
            if (b && index(b) / 7 == k)
                break;
            key(Qt::Key_Tab);
        }
        const int right = drawn(k).toInt();
        while (index(focus()) < right)
            key(Qt::Key_Right);
        while (index(focus()) > right)
            key(Qt::Key_Left);
        QVERIFY(qobject_cast<QRadioButton*>(focus())->isChecked());
        if (k == 1) {
            // The periodic table: Ctrl+F1 opens it with the focus on the
            // elements, arrows and Enter show one, Escape closes it.
            QWidget* before = focus();
            key(Qt::Key_F1, Qt::ControlModifier);
            auto* view = m_main->findChild<PeriodicTableView*>();
            QCOMPARE(focus(), view);
            key(Qt::Key_Down);
            key(Qt::Key_Right);
            key(Qt::Key_Return);
            QCOMPARE(view->selected(), 4); // from H: down to Li, right to Be
            QVERIFY(view->selectionText().contains(QStringLiteral("Beryllium")));
            key(Qt::Key_Escape);
            QVERIFY(!m_main->findChild<PeriodicTablePanel*>()->isVisible());
            QCOMPARE(focus(), before);
        }
    }
    for (int guard = 0; guard < 10 && focus() != page(5)->okButton(); ++guard)
        key(Qt::Key_Tab);
    checkAndGoOn(5);
    if (QTest::currentTestFailed())
        return;
    key(Qt::Key_Return);

    // Page 6: an arrow key moves within a pair, Space chooses.
    for (int k = 0; k < 6; ++k) {
        for (int guard = 0; guard < 10; ++guard) {
            auto* b = qobject_cast<QRadioButton*>(focus());
            if (b && index(b) / 2 == k)
                break;
            key(Qt::Key_Tab);
        }
        const bool yes = drawn(k).trimmed().toInt() % 2 == 0;
        const bool onYes = index(focus()) % 2 == 0;
        if (yes != onYes)
            key(yes ? Qt::Key_Left : Qt::Key_Right);
        QCOMPARE(index(focus()), drawn(k).trimmed().toInt());
        key(Qt::Key_Space);
        QVERIFY(qobject_cast<QRadioButton*>(focus())->isChecked());
    }
    for (int guard = 0; guard < 10 && focus() != page(6)->okButton(); ++guard)
        key(Qt::Key_Tab);
    checkAndGoOn(6);
    if (QTest::currentTestFailed())
        return;

    // The result form: Tab goes round all its buttons; then "Nein" by Space.
    QStringList round;
    whenModal([&] {
        for (int guard = 0; guard < 20; ++guard) {
            QWidget* w = focus();
            if (!w || round.contains(w->objectName()))
                break;
            round << w->objectName();
            key(Qt::Key_Tab);
        }
        for (int guard = 0; guard < 20 && focus()->objectName() != QLatin1String("CSCmd3"); ++guard)
            key(Qt::Key_Tab);
        key(Qt::Key_Space);
    });
    key(Qt::Key_Return);
    QTRY_VERIFY(ended);
    for (const char* name : {"Druck", "CSCmd1", "CSCmd3"})
        QVERIFY2(round.contains(QLatin1String(name)), qPrintable(round.join(u' ')));
    QVERIFY2(m_lostFocus.isEmpty(), qPrintable(m_lostFocus.join(u' ')));
    QCOMPARE(m_main->flow().state().TasksSoFar, 52);
}

QTEST_MAIN(TestKeyboardRoad)
#include "test_keyboard_road.moc"
