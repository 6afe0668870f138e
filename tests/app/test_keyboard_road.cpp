#include "TestSupport.h"
#include "aids/PeriodicTablePanel.h"
#include "controls/PeriodicTableView.h"
#include "pages/TaskPage.h"
#include "result/ResultRecord.h"

#include <QListWidget>
#include <QRadioButton>

// A whole test without the mouse, in the real main window: keys only, sent
// to whichever control has the focus, from the start page through every
// page in the order of a test (lists by typing, ion rows and yes/no pairs by
// arrow keys, the calculator, the periodic table) to "Nein" on the result
// form. Every answer is given right, so the counters prove each key reached
// its field, and the handed-in result file must say the same.
class TestKeyboardRoad : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void wholeTestByKeyboard() {
        AppRun run;
        m_main = run.start();
        QVERIFY(m_main);
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main));
        bool ended = false;
        m_main->setExiter([&ended] { ended = true; });
        QList<int> shown;
        connect(&m_main->flow(), &TestFlow::pageShown, this, [&](int p) { shown << p; });

        // Start page: the name field has the focus; Enter starts.
        QCOMPARE(focus()->objectName(), QStringLiteral("BenutzerName"));
        type(QStringLiteral("Tastatur"));
        key(Qt::Key_Return);
        const QString firstAnswer = drawn(0);

        const QList<int> order{1, 2, 11, 8, 12, 9, 3, 4, 5, 6};
        for (const int n : order) {
            // Exactly one task page is on show, slid fully in.
            for (const int m : order)
                QCOMPARE(page(m)->isVisible(), m == n);
            QCOMPARE(page(n)->pos(), QPoint(0, 0));
            if (n == 8)
                useCalculator();
            else if (n == 3 || n == 4)
                chooseInLists(n);
            else if (n == 5)
                setIonRows();
            else if (n == 6)
                answerYesNo();
            if (QTest::currentTestFailed())
                return;
            fillByTab(n);
            // Enter on "&OK" checks; all right, the page praises, and the focus
            // moves to "&Weiter", laid out where "&OK" stood.
            key(Qt::Key_Return);
            QVERIFY2(page(n)->isChecked(), qPrintable(QStringLiteral("Seite %1").arg(n)));
            QCOMPARE(focus(), page(n)->nextButton());
            QCOMPARE(page(n)->nextButton()->geometry().bottomRight(),
                     page(n)->okButton()->geometry().bottomRight());
            QCOMPARE(m_main->flow().state().CorrectSoFar, m_main->flow().state().TasksSoFar);
            QVERIFY(m_main->flow().praisePanel()->isVisible());
            if (QTest::currentTestFailed() || n == 6)
                break;
            // Enter on "&Weiter" leads on and puts the praise away.
            key(Qt::Key_Return);
            QCOMPARE(m_main->flow().PreviousPage(), n);
            QVERIFY(!m_main->flow().praisePanel()->isVisible());
        }
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(shown, order);
        // Each page counted its tasks once; the board shows the counts.
        QCOMPARE(m_main->flow().state().TasksSoFar, 6 + 4 + 6 + 4 + 5 + 10 + 3 + 4 + 4 + 6);
        QCOMPARE(child<QLabel>(m_main, QStringLiteral("Aufgabenanz"))->text(),
                 QStringLiteral(" 52"));
        QCOMPARE(child<QLabel>(m_main, QStringLiteral("RichtigAnz"))->text(),
                 QStringLiteral(" 52"));

        // The result form: Tab goes round all its buttons; then "Nein" by Space.
        QStringList round;
        QString title;
        std::unique_ptr<ModalAnswer> question;
        whenModal({}, [&](QDialog*) {
            title = QApplication::activeModalWidget()->windowTitle();
            for (int guard = 0; guard < 20; ++guard) {
                QWidget* w = focus();
                if (!w || round.contains(w->objectName()))
                    break;
                round << w->objectName();
                key(Qt::Key_Tab);
            }
            for (int guard = 0; guard < 20 && focus()->objectName() != QLatin1String("CSCmd3");
                 ++guard)
                key(Qt::Key_Tab);
            key(Qt::Key_Space);
            // "Nein" ends the program at once: no new-test question.
            question = std::make_unique<ModalAnswer>(QStringLiteral("Ja"));
        });
        key(Qt::Key_Return);
        QTRY_VERIFY(ended);
        QTest::qWait(50);
        QVERIFY(question && !question->seen());
        // It let go of the folder: a plain start works again.
        QVERIFY(run.start());
        QCOMPARE(title, QStringLiteral("Laborix-Test - Ergebnis"));
        for (const char* name : {"Druck", "CSCmd1", "CSCmd3"})
            QVERIFY2(round.contains(QLatin1String(name)), qPrintable(round.join(u' ')));
        QVERIFY2(m_lostFocus.isEmpty(), qPrintable(m_lostFocus.join(u' ')));
        // The start page is never slid away; the task pages slide over it.
        QVERIFY(child<QWidget>(m_main, QStringLiteral("Seite(0)"))->isVisible());

        // The test was handed in as one result file that says the same, page by
        // page in that order; equations are one item each, worth two tasks.
        const QDir results(run.file(QStringLiteral("Ergebnisse")));
        const QStringList files = results.entryList(QDir::Files | QDir::Hidden);
        QCOMPARE(files.size(), 1);
        QVERIFY2(files.first().contains(QStringLiteral("_Tastatur_")), qPrintable(files.first()));
        QFile file(results.filePath(files.first()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString why;
        const std::optional<ResultRecord> record = ResultRecord::fromJson(file.readAll(), &why);
        QVERIFY2(record, qPrintable(why));
        QCOMPARE(record->candidate, QStringLiteral("Tastatur"));
        QCOMPARE(record->tasks, 52);
        QCOMPARE(record->correct, 52);
        QCOMPARE(record->bankSha256.size(), 64);
        QList<int> pages;
        QList<int> items;
        for (const PageRecord& p : record->pages) {
            pages << p.page;
            items << int(p.items.size());
        }
        QCOMPARE(pages, order);
        QCOMPARE(items, (QList<int>{6, 4, 6, 4, 5, 5, 3, 4, 4, 6}));
        QCOMPARE(record->pages.first().items.first().given, firstAnswer);
    }

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
    const QString& drawn(int i) { return m_main->flow().state().DrawnAnswers[i]; }
    static int index(const QWidget* w) {
        const QString name = w->objectName();
        return name.mid(name.indexOf(u'(') + 1).chopped(1).toInt();
    }
    // The right text for an answer field of page n.
    QString answerFor(int n, QLineEdit* e) {
        const auto firstName = [](const QString& key) {
            return key.contains(u'*') ? key.section(u'*', 1, 1) : key.section(u'|', 0, 0);
        };
        const int i = index(e);
        const int slot = e->property("answerSlot").toInt();
        switch (n) {
        case 1:
            return e->objectName().startsWith(QLatin1String("EleSym")) ? drawn(i)
                                                                       : firstName(drawn(3 + i));
        case 2:
            return firstName(drawn(i));
        case 11:
            return firstName(drawn(slot));
        case 9:
            return drawn(slot).trimmed();
        default:
            return drawn(i).trimmed();
        }
    }
    // Types the answer into every empty text field that the Tab key reaches,
    // until it reaches the page's "&OK".
    void fillByTab(int n) {
        for (int guard = 0; guard < 60 && focus() != page(n)->okButton(); ++guard) {
            if (auto* edit = qobject_cast<QLineEdit*>(focus()); edit && edit->text().isEmpty())
                type(answerFor(n, edit));
            key(Qt::Key_Tab);
        }
        QCOMPARE(focus(), page(n)->okButton());
    }
    // Tab until a radio button of row k (rowSize buttons a row) has the focus.
    void tabToRow(int k, int rowSize) {
        for (int guard = 0; guard < 10; ++guard) {
            auto* b = qobject_cast<QRadioButton*>(focus());
            if (b && index(b) / rowSize == k)
                return;
            key(Qt::Key_Tab);
        }
    }
    // Page 8: the first mass by the calculator, opened from its button with
    // Space, typed, worked out with Enter and taken over from the keyboard.
    void useCalculator() {
        QCOMPARE(focus()->objectName(), QStringLiteral("Mol(0)"));
        key(Qt::Key_Tab);
        QCOMPARE(focus()->objectName(), QStringLiteral("but_Calc(0)"));
        bool calculatorSeen = false;
        whenModal({}, [&](QDialog*) {
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
    }

    // Pages 3 and 4: a list chooses the item whose beginning is typed.
    void chooseInLists(int n) {
        for (int i = 0; i < (n == 3 ? 3 : 4); ++i) {
            auto* list = qobject_cast<QListWidget*>(focus());
            QVERIFY2(list, qPrintable(QStringLiteral("Seite %1, Liste %2").arg(n).arg(i)));
            type(drawn(i).trimmed().left(24));
            QCOMPARE(list->selectedItems().value(0) ? list->selectedItems().value(0)->text()
                                                    : QString(),
                     drawn(i));
            key(Qt::Key_Tab);
        }
    }

    // Page 5: each row by the arrow keys; Tab goes to the next row.
    void setIonRows() {
        for (int k = 0; k < 4; ++k) {
            tabToRow(k, 7);
            const int right = drawn(k).toInt();
            while (index(focus()) < right)
                key(Qt::Key_Right);
            while (index(focus()) > right)
                key(Qt::Key_Left);
            QVERIFY(qobject_cast<QRadioButton*>(focus())->isChecked());
            if (k != 1)
                continue;
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

    // Page 6: an arrow key moves within a pair, Space chooses.
    void answerYesNo() {
        for (int k = 0; k < 6; ++k) {
            tabToRow(k, 2);
            const bool yes = drawn(k).trimmed().toInt() % 2 == 0;
            const bool onYes = index(focus()) % 2 == 0;
            if (yes != onYes)
                key(yes ? Qt::Key_Left : Qt::Key_Right);
            QCOMPARE(index(focus()), drawn(k).trimmed().toInt());
            key(Qt::Key_Space);
            QVERIFY(qobject_cast<QRadioButton*>(focus())->isChecked());
        }
    }
};

QTEST_MAIN(TestKeyboardRoad)
#include "test_keyboard_road.moc"
