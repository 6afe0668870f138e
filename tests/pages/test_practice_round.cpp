#include "PageSupport.h"
#include "TestSupport.h"
#include "pages/IonChargePage.h"
#include "pages/PageSet.h"
#include "pages/PracticeRound.h"
#include "pages/TaskPage.h"
#include "result/AppResult.h"
#include "result/MistakeReview.h"

#include <QListWidget>
#include <QRadioButton>
#include <QTextBrowser>

namespace {

// Everything a page shows of its tasks, in the order it made its widgets.
QStringList shownTasks(const QWidget* page) {
    QStringList out;
    for (const QWidget* w : page->findChildren<QWidget*>()) {
        if (const auto* label = qobject_cast<const QLabel*>(w))
            out << label->text();
        else if (w->property("formula").isValid())
            out << w->property("formula").toString();
        else if (const auto* list = qobject_cast<const QListWidget*>(w))
            for (int i = 0; i < list->count(); ++i)
                out << list->item(i)->text();
    }
    return out;
}

int visibleAnswerControls(const QWidget* page) {
    int n = 0;
    for (const QWidget* w : page->findChildren<QWidget*>()) {
        if (w->isVisible() &&
            (qobject_cast<const QLineEdit*>(w) || qobject_cast<const QListWidget*>(w) ||
             qobject_cast<const QRadioButton*>(w)))
            ++n;
    }
    return n;
}

void typeIntoFocus(const QString& text) {
    QWidget* focus = QApplication::focusWidget();
    QVERIFY(focus);
    QTest::keyClicks(focus, text);
}

void pressFocused(Qt::Key key = Qt::Key_Return) {
    QWidget* focus = QApplication::focusWidget();
    QVERIFY(focus);
    QTest::keyClick(focus, key);
}

} // namespace

class TestPracticeRound final : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void drawsEveryPageKindAgainFromItsRecord_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QList<int>>("items");
        QTest::addColumn<int>("answerControls"); // -1: depends on the draw
        // Where the focus starts and where Enter takes it, round to the start.
        QTest::addColumn<QStringList>("enterRing");
        dataRow("elements", 1, QList<int>{1, 4}, 2, QStringList{"EleSym(1)", "Ele(1)"});
        dataRow("number syllables", 2, QList<int>{0, 3}, 2, QStringList{"Zahl(0)", "Zahl(3)"});
        dataRow("definitions", 3, QList<int>{2}, 1, QStringList{"Auswahl(2)"});
        dataRow("terms", 4, QList<int>{0, 2}, 2, QStringList{"AuswahlS4(0)", "AuswahlS4(2)"});
        dataRow("ion charges", 5, QList<int>{1, 3}, 2 * IonChargePage::kCharges,
                QStringList{"ChooseS5_1(7)"});
        dataRow("statements", 6, QList<int>{0, 5}, 4, QStringList{"JaNein1(0)"});
        dataRow("molar masses", 8, QList<int>{3}, 1, QStringList{"Mol(3)"});
        dataRow("equations", 9, QList<int>{0, 4}, -1, QStringList{"Einsetz(0)"});
        dataRow("substances", 11, QList<int>{2, 3}, 2, QStringList{});
        dataRow("amounts", 12, QList<int>{1, 2, 4}, 3,
                QStringList{"Stoffm(1)", "Stoffm(2)", "Stoffm(4)"});
    }

    // A page drawn again from its record shows exactly what it showed in the
    // test, the practised tasks only, and judges them as the same tasks.
    void drawsEveryPageKindAgainFromItsRecord() {
        QFETCH(int, number);
        QFETCH(QList<int>, items);
        QFETCH(int, answerControls);
        QFETCH(QStringList, enterRing);
        QWidget holder;
        holder.resize(960, 520);
        TestFlow flow(&holder);
        flow.setBank(TaskBank::LoadTaskBank(QStringLiteral(":/data/labquiz.dat")),
                     QStringLiteral("labquiz.dat"));
        flow.setElements(&shippedElements());
        flow.state().ExpertLevel = 1;
        holder.show();

        TaskPage* test = PageSet::create(number, flow, &holder);
        test->resize(holder.size());
        test->show();
        test->generate();
        const QStringList shown = shownTasks(test);
        test->check();
        const PageRecord original = flow.state().Pages.last();
        QVERIFY(!original.draws.isEmpty());
        test->hide();

        TaskPage* practice = PageSet::create(number, flow, &holder);
        practice->resize(holder.size());
        practice->setPractised(items);
        practice->show();
        flow.replay(original.draws);
        practice->generate();
        QCOMPARE(shownTasks(practice), shown);
        if (answerControls >= 0)
            QCOMPARE(visibleAnswerControls(practice), answerControls);
        holder.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&holder));
        for (const QString& name : enterRing) {
            QCOMPARE(focusName(), name);
            if (enterRing.size() > 1)
                pressFocused();
        }
        if (!enterRing.isEmpty())
            QCOMPARE(focusName(), enterRing.first());
        practice->check();
        const PageRecord again = flow.state().Pages.last();
        QCOMPARE(again.draws, original.draws);
        QCOMPARE(again.items.size(), original.items.size());
        for (int i : items) {
            QCOMPARE(again.items[i].prompt, original.items[i].prompt);
            QCOMPARE(again.items[i].expected, original.items[i].expected);
        }
    }

    // The whole road with the keyboard: a test with one wrong answer on each of
    // three pages, the review, "Fehler üben" with one page answered wrong again, the repeat of that
    // one, "Alles geübt", back to the review; then "Fehler üben" once more and Escape. The test's
    // counters and record, the result folder and the log stay as the test left them.
    void practisesUntilAllRightWithoutTouchingTheTest() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        TestFlow& flow = main->flow();
        SessionState& s = flow.state();
        startTest(main, QStringLiteral("Anna"));
        for (int i = 0; i < 6; ++i)
            child<QLineEdit>(main, QString::fromLatin1(i < 3 ? "EleSym(%1)" : "Ele(%1)").arg(i % 3))
                ->setText(i == 1 ? QStringLiteral("xx") : firstAccepted(s.DrawnAnswers[i]));
        flow.taskPage(1)->okButton()->click();
        flow.ShowPage(2);
        for (int i = 0; i < 4; ++i)
            child<QLineEdit>(main, QStringLiteral("Zahl(%1)").arg(i))
                ->setText(i == 2 ? QStringLiteral("xx") : firstAccepted(s.DrawnAnswers[i]));
        flow.taskPage(2)->okButton()->click();
        flow.ShowPage(6);
        // The first statement answered the other way round.
        for (int k = 0; k < 6; ++k)
            child<QAbstractButton>(
                main,
                QStringLiteral("JaNein1(%1)").arg(s.DrawnAnswers[k].trimmed().toInt() ^ (k == 0)))
                ->click();
        flow.taskPage(6)->okButton()->click();
        QCOMPARE(s.TasksSoFar, 16);
        QCOMPARE(s.CorrectSoFar, 13);
        const QString syllable = firstAccepted(s.Pages[1].items[2].expected);

        const QMap<QString, QByteArray> files = folderFiles(app.dir.path());
        QVERIFY(!files.isEmpty());
        bool reviewed = false;
        bool practised = false;
        bool escaped = false;
        whenModal(QStringLiteral("frm_AppResult"), [&](QDialog* form) {
            whenModal(QStringLiteral("MistakeReview"), [&](QDialog* review) {
                auto* start = child<QPushButton>(review, QStringLiteral("FehlerUeben"));
                QVERIFY(start && !start->accessibleName().isEmpty());
                whenModal(QStringLiteral("PracticeRound"), [&](QDialog* dialog) {
                    auto* round = static_cast<PracticeRound*>(dialog);
                    [&] {
                        // Page 1: only the wrong symbol, answered right now.
                        QCOMPARE(focusName(), QStringLiteral("EleSym(1)"));
                        QVERIFY(!child<QLineEdit>(round, QStringLiteral("EleSym(0)"))->isVisible());
                        typeIntoFocus(round->flow().state().DrawnAnswers[1]);
                        round->page()->okButton()->click();
                        QVERIFY(child<QLabel>(round, QStringLiteral("PracticeOutcome"))
                                    ->text()
                                    .contains(QStringLiteral("Alle")));
                        QCOMPARE(QApplication::focusWidget(), round->page()->nextButton());
                        pressFocused();
                        // Page 2: the wrong syllable, in capitals this time.
                        QCOMPARE(round->page()->pageNumber(), 2);
                        QCOMPARE(focusName(), QStringLiteral("Zahl(2)"));
                        typeIntoFocus(syllable.toUpper());
                        round->page()->okButton()->click();
                        const AnswerItem item = round->flow().state().Pages.last().items[2];
                        QVERIFY(!item.right && !item.hint.isEmpty());
                        auto* hints = child<QTextBrowser>(round, QStringLiteral("PracticeHints"));
                        QVERIFY(hints->isVisible() && !hints->accessibleName().isEmpty());
                        QVERIFY(hints->toPlainText().contains(item.hint));
                        pressFocused();
                        // Page 6, the test's last: judged, but nothing is handed in.
                        QCOMPARE(focusName(), QStringLiteral("JaNein1(0)"));
                        const int yes = round->flow().state().DrawnAnswers[0].trimmed().toInt();
                        child<QAbstractButton>(round, QStringLiteral("JaNein1(%1)").arg(yes))
                            ->click();
                        round->page()->okButton()->click();
                        pressFocused();
                        QCOMPARE(child<QLabel>(round, QStringLiteral("PracticeEndTitle"))->text(),
                                 QStringLiteral("Noch 1 Aufgabe falsch"));
                        pressFocused(); // "Noch einmal üben"
                        QCOMPARE(round->round(), 2);
                        QCOMPARE(focusName(), QStringLiteral("Zahl(2)"));
                        typeIntoFocus(syllable);
                        round->page()->okButton()->click();
                        pressFocused();
                        QCOMPARE(child<QLabel>(round, QStringLiteral("PracticeEndTitle"))->text(),
                                 QStringLiteral("Alles geübt"));
                        pressFocused(); // "Zurück zur Fehlerliste"
                        practised = true;
                    }();
                    if (round->isVisible())
                        round->reject();
                });
                start->click();
                [&] {
                    QVERIFY(review->isVisible());
                    QCOMPARE(s.TasksSoFar, 16);
                    QCOMPARE(s.CorrectSoFar, 13);
                    QCOMPARE(s.Pages.size(), 3);
                    QCOMPARE(MistakeReview::mistakes(s.Pages), 3);
                    QCOMPARE(folderFiles(app.dir.path()), files);
                }();
                whenModal(QStringLiteral("PracticeRound"), [&](QDialog* round) {
                    pressFocused(Qt::Key_Escape);
                    escaped = !round->isVisible();
                    if (!escaped)
                        round->reject();
                });
                start->click();
                reviewed = true;
                review->accept();
            });
            child<QPushButton>(form, QStringLiteral("FehlerAnsehen"))->click();
            static_cast<AppResult*>(form)->CSCmd3_Click();
        });
        flow.taskPage(6)->nextButton()->click();
        QVERIFY(reviewed);
        QVERIFY(practised);
        QVERIFY(escaped);
        QCOMPARE(s.TasksSoFar, 16);
    }
};

QTEST_MAIN(TestPracticeRound)
#include "test_practice_round.moc"
