#include "TestSupport.h"
#include "app/AppInfo.h"
#include "controls/MelodyPlayer.h"
#include "pages/StartPage.h"
#include "pages/TaskPage.h"
#include "session/NamesFile.h"

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>

namespace {

QStringList storedNames(const AppRun& app) {
    NamesFile file(app.file(QStringLiteral("names.ini")));
    file.load();
    return file.names();
}

} // namespace

class TestStartPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void refusesEmptyNameEscapeEmptiesEnterStarts() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        auto* field = child<QLineEdit>(main, "BenutzerName");
        QTest::keyClicks(field, QStringLiteral("Dora"));
        QTest::keyClick(field, Qt::Key_Escape);
        QCOMPARE(field->text(), QString());
        // Nothing, or only blanks, is no name: by Enter or by the button.
        for (const QString& name : {QString(), QStringLiteral("     ")}) {
            field->setText(name);
            ModalAnswer answer(QStringLiteral("OK"));
            if (name.isEmpty())
                QTest::keyClick(field, Qt::Key_Return);
            else
                child<QPushButton>(main, "OkS0")->click();
            QCOMPARE(answer.text(),
                     QStringLiteral("Du solltest vielleicht doch einen Namen eingeben..."));
            QCOMPARE(answer.title(), QStringLiteral("!?"));
            QCOMPARE(answer.buttons(), QStringList{QStringLiteral("OK")});
        }
        QVERIFY(!main->flow().taskPage(1)->isVisible());
        QVERIFY(storedNames(app).isEmpty());
        QCOMPARE(main->windowTitle(), QStringLiteral("Laborix Test"));
        field->clear();
        QTest::keyClicks(field, QStringLiteral("Dora"));
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(main->flow().taskPage(1)->isVisible());
    }

    void acceptsNameAsTypedAndLogsTheStart() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        const QString typed = QStringLiteral("  Jürgen Ähre  ");
        startTest(main, typed);
        const SessionState& s = main->flow().state();
        QCOMPARE(s.CandidateName, typed);
        QCOMPARE(storedNames(app), QStringList{typed});
        QCOMPARE(main->windowTitle(), typed + QStringLiteral(" im LABORIX -TEST"));
        QCOMPARE(s.TestDate, QDate::currentDate().toString(QStringLiteral("MM-dd-yyyy")));
        QVERIFY(!child<QLabel>(main, "Streberstufe")->isVisible());
        // Every substance has its three terms once a test has started.
        const auto& substances = main->flow().bank().Substances;
        QVERIFY(substances.count() > 0);
        for (int i = 1; i <= substances.count(); ++i)
            QVERIFY(substances[i].Lead && substances[i].Formula && substances[i].SecondTerm);

        QFile log(app.file(QLatin1String(AppInfo::kLogName)));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        const QString record = QStringLiteral("-> 0 Start von: ") + typed + QStringLiteral(" - ") +
                               s.TestDate + u'/' + s.StartTime;
        QVERIFY2(text.contains(record), qPrintable(text));
        QVERIFY(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d$"))
                    .match(s.StartTime)
                    .hasMatch());
    }

    void expertLevelIsShownAndRemembered() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        child<QRadioButton>(main, "Expert(1)")->click();
        QCOMPARE(main->flow().state().ExpertLevel, 1);
        startTest(main, QStringLiteral("Emil"));
        QCOMPARE(main->windowTitle(), QStringLiteral("Emil im LABORIX -TEST [1er Kandidat]"));
        QVERIFY(child<QLabel>(main, "Streberstufe")->isVisible());

        // The next start presets the remembered level.
        delete main;
        QVERIFY((main = app.start()));
        QVERIFY(child<QRadioButton>(main, "Expert(1)")->isChecked());
        QCOMPARE(main->flow().state().ExpertLevel, 1);
        QCOMPARE(main->startPage()->caption(), QStringLiteral(" im LABORIX -TEST [1er Kandidat]"));
    }

    void listsCopiesAndDeletesNames() {
        AppRun app;
        NamesFile file(app.file(QStringLiteral("names.ini")));
        for (const char* n : {"Anna", "Bob", "Carla"})
            file.addName(QString::fromUtf8(n));
        QVERIFY(file.save());
        AppMain* main = app.start();
        QVERIFY(main);
        auto* list = child<QListWidget>(main, "Liste");
        QCOMPARE(list->count(), 3);
        {
            ModalAnswer answer(QStringLiteral("OK"));
            child<QPushButton>(main, "L_schen")->click();
            QCOMPARE(answer.text(),
                     QStringLiteral("Du mußt erst den Namen auswählen, den Du entfernen willst!"));
            QCOMPARE(answer.title(), QString());
        }
        QCOMPARE(storedNames(app).size(), 3);

        list->setCurrentRow(1);
        main->startPage()->Liste_DblClick();
        QCOMPARE(child<QLineEdit>(main, "BenutzerName")->text(), QStringLiteral("Bob"));
        child<QPushButton>(main, "L_schen")->click();
        QCOMPARE(storedNames(app), (QStringList{QStringLiteral("Anna"), QStringLiteral("Carla")}));
        QCOMPARE(list->count(), 2);
    }

    void offersRealMelodies() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        auto* box = child<QComboBox>(main, "HYMNE");
        QVERIFY(box->count() >= 3);
        QCOMPARE(box->itemText(0), MelodyPlayer::melodyNames().first());
        // Each melody renders to sound of a sensible length.
        for (int i = 0; i < box->count(); ++i) {
            int notes = 0;
            const QByteArray pcm = MelodyPlayer::render(MelodyPlayer::tuneOf(i), 8000, &notes);
            QVERIFY(notes >= 5);
            QVERIFY(pcm.size() > 8000 && pcm.size() < 8000 * 2 * 20);
        }
    }
};

QTEST_MAIN(TestStartPage)
#include "test_start_page.moc"
