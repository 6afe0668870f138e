// The main window as a candidate and a teacher meet it: what the start
// builds, the start page (names, level, melody), one instance per account,
// a new test and the end, a bank it cannot use, and the card's place.
#include "TestSupport.h"
#include "app/AppInfo.h"
#include "app/CommandLine.h"
#include "app/TextScale.h"
#include "controls/MelodyPlayer.h"
#include "pages/StartPage.h"
#include "pages/TaskPage.h"
#include "result/AppResult.h"
#include "session/NamesFile.h"

#include <QAction>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QRadioButton>

namespace {

QStringList storedNames(const AppRun& app) {
    NamesFile file(app.file(QStringLiteral("names.ini")));
    file.load();
    return file.names();
}

} // namespace

class TestApp : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startsOnShippedBankWithMenusAndPages() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        QCOMPARE(main->objectName(), QStringLiteral("frm_AppMain"));
        QVERIFY(QFile::exists(app.file(QStringLiteral("labquiz.dat"))));
        QVERIFY(QFile::exists(app.file(QStringLiteral("elements.dat"))));
        // The seeded copy is editable by the teacher.
        QVERIFY(QFileInfo(app.file(QStringLiteral("labquiz.dat"))).isWritable());
        QVERIFY(main->flow().bank().ElementNames.count() >= 6);

        const struct {
            const char* name;
            const char* text;
            QKeySequence keys;
        } actions[] = {{"mnu_FileNew", "&Neuer Test", {}},
                       {"M_P_ENDE", "&Beenden", {}},
                       {"M_H_P2", "Perioden&system", QKeySequence(Qt::CTRL | Qt::Key_F1)},
                       {"mnu_HelpCalc", "&Taschenrechner", QKeySequence(Qt::CTRL | Qt::Key_F2)},
                       {"M_H_INFO", "&Info", QKeySequence(Qt::Key_F1)}};
        for (const auto& a : actions) {
            auto* action = child<QAction>(main, QString::fromLatin1(a.name));
            QVERIFY2(action, a.name);
            QCOMPARE(action->text(), QString::fromUtf8(a.text));
            QCOMPARE(action->shortcut(), a.keys);
        }
        // What Qt itself shows is German too: key names and a field's context menu.
        QCOMPARE(QKeySequence(Qt::CTRL | Qt::Key_F1).toString(QKeySequence::NativeText),
                 QStringLiteral("Strg+F1"));
        std::unique_ptr<QMenu> menu(
            child<QLineEdit>(main, QStringLiteral("BenutzerName"))->createStandardContextMenu());
        QStringList entries;
        for (QAction* action : menu->actions())
            entries << action->text().section(u'\t', 0, 0);
        QVERIFY2(entries.contains(QStringLiteral("&Kopieren")) &&
                     entries.contains(QStringLiteral("Alles auswählen")),
                 qPrintable(entries.join(u'|')));
        // The start builds what the start page shows; the other pages and the
        // periodic table follow once the event loop has time.
        for (int n = 1; n <= 12; ++n)
            QVERIFY(!child<QWidget>(main, QStringLiteral("Seite(%1)").arg(n)));
        QVERIFY(!main->hasPeriodicTable());
        QTRY_VERIFY(main->hasPeriodicTable());
        for (int n = 0; n <= 12; ++n) {
            QWidget* page = child<QWidget>(main, QStringLiteral("Seite(%1)").arg(n));
            QCOMPARE(page != nullptr, n != 7 && n != 10);
        }
        const int buttons[] = {1, 2, 3, 4, 5, 6, 7, 8, 11, 12};
        for (int b : buttons) {
            auto* ok = child<QPushButton>(main, QStringLiteral("OKS%1(0)").arg(b));
            auto* next = child<QPushButton>(main, QStringLiteral("OKS%1(1)").arg(b));
            QVERIFY(ok && next);
            QCOMPARE(ok->text(), QStringLiteral("&OK"));
            QCOMPARE(next->text(), QStringLiteral("&Weiter"));
        }
        QVERIFY(child<QWidget>(main, QStringLiteral("Seite(0)"))->isVisible());
        QCOMPARE(child<QLabel>(main, QStringLiteral("Aufgabenanz"))->text(), QStringLiteral(" 0"));
    }

    void refusesSecondInstanceUnlessNew() {
        AppRun app;
        AppMain* first = app.start();
        QVERIFY(first);
        {
            ModalAnswer answer(QStringLiteral("OK"));
            QVERIFY(!app.start());
            QVERIFY(answer.seen());
            QCOMPARE(answer.text(),
                     QStringLiteral("Der Laborixtest läuft bereits oder wird noch geladen."));
        }
        {
            ModalAnswer answer(QStringLiteral("OK"));
            QVERIFY(!app.start({QStringLiteral("labquiz"), QStringLiteral("/new")})); // case counts
        }
        AppMain* successor = app.start({QStringLiteral("labquiz"), QStringLiteral("/NEW")});
        QVERIFY(successor);
        // Once the first one has gone, a plain start works again.
        delete first;
        delete successor;
        QVERIFY(app.start());
    }

    void formsTheSuccessorCommand() {
        AppRun app;
        QCOMPARE(CommandLine::successorCommand("/opt/lab", "labquiz", "-DEV"),
                 QStringLiteral("\"/opt/lablabquiz\" /NEW-DEV"));
        QCOMPARE(CommandLine::successorCommand("C:\\Prog", "labquiz", QString()),
                 QStringLiteral("\"C:\\Proglabquiz\" /NEW"));
        // A program that is not there is replaced by this one.
        const auto own = CommandLine::launchFor("\"/gibt/esnicht\" /NEW-DEV x", "/usr/bin/labquiz");
        QCOMPARE(own.program, QStringLiteral("/usr/bin/labquiz"));
        QCOMPARE(own.arguments, (QStringList{"/NEW-DEV", "x"}));
        const QString named = app.file(QStringLiteral("prog"));
        QVERIFY(writeFile(named, "x"));
        QCOMPARE(CommandLine::launchFor(u'"' + named + "\" /NEW", "/own").program, named);
        // Switches are searched in the whole line; repeated new tests pile up "/NEW".
        CommandLine line({QStringLiteral("/NEW/NEW-dev")});
        QVERIFY(line.hasNewSwitch() && line.hasDevSwitch());
        QVERIFY(!CommandLine({QStringLiteral("/new")}).hasNewSwitch());
    }

    void newTestStartsSuccessorAndQuitAsks() {
        AppRun app;
        AppMain* main = app.start({QStringLiteral("labquiz"), QStringLiteral("-dev")});
        QVERIFY(main);
        QString program;
        QStringList arguments;
        int exits = 0;
        main->setLauncher([&](const QString& p, const QStringList& a) {
            program = p;
            arguments = a;
            return true;
        });
        main->setExiter([&] { ++exits; });
        {
            ModalAnswer answer(QStringLiteral("Nein"));
            main->mnu_FileNew_Click();
            QCOMPARE(answer.title(), QStringLiteral("Neu?"));
            QCOMPARE(answer.text(), QStringLiteral("Wirklich einen neuen Test beginnen?"));
            QCOMPARE(answer.buttons(), (QStringList{QStringLiteral("Ja"), QStringLiteral("Nein")}));
        }
        QVERIFY(program.isEmpty());
        QCOMPARE(exits, 0);
        {
            ModalAnswer answer(QStringLiteral("Ja"));
            main->mnu_FileNew_Click();
        }
        QCOMPARE(program, QCoreApplication::applicationFilePath());
        QCOMPARE(arguments, QStringList{QStringLiteral("/NEW-dev")});
        QCOMPARE(exits, 1);
        QVERIFY(main->successorCommand().endsWith(QStringLiteral("\" /NEW-dev")));

        {
            ModalAnswer answer(QStringLiteral("Nein"));
            main->M_P_ENDE_Click();
            QCOMPARE(answer.title(), QStringLiteral("Ende?"));
            QCOMPARE(answer.text(), QStringLiteral("Wollen Sie den Test wirklich verlassen?"));
        }
        QCOMPARE(exits, 1);
        {
            ModalAnswer answer(QStringLiteral("Ja"));
            main->M_P_ENDE_Click();
        }
        QCOMPARE(exits, 2);
    }

    void endOfTestShowsResultThenAsksForNewTest() {
        AppRun app;
        AppMain* main = app.start();
        QVERIFY(main);
        int launches = 0;
        int exits = 0;
        main->setLauncher([&](const QString&, const QStringList&) {
            ++launches;
            return true;
        });
        main->setExiter([&] { ++exits; });
        startTest(main, QStringLiteral("Anna"));
        main->flow().ShowPage(6);
        auto* page = main->flow().taskPage(6);
        for (int k = 0; k < 6; ++k) {
            const int e = main->flow().state().DrawnAnswers[k].trimmed().toInt();
            child<QAbstractButton>(main, QStringLiteral("JaNein1(%1)").arg(e))->click();
        }
        page->okButton()->click();

        // The log holds the start line and, after the check, the history line.
        QFile log(app.file(QStringLiteral("laborix.log")));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(log.readAll()).split(QStringLiteral("\r\n"));
        QVERIFY(lines.size() >= 2);
        QVERIFY2(lines[0].startsWith(QStringLiteral("-> 0 Start von: Anna - ")),
                 qPrintable(lines[0]));
        QVERIFY2(lines[1].startsWith(QStringLiteral("<-  Anna  6 Aufgaben, 6 richtig, 0 falsch")),
                 qPrintable(lines[1]));
        QVERIFY(lines[1].endsWith(QStringLiteral(" - Note: sehr gut plus")));

        // "Ja": counters and level reset, the form closes, then the new-test
        // question.
        QString shownTitle;
        QString shownGrade;
        bool wasModal = false;
        std::unique_ptr<ModalAnswer> newTest;
        main->setResultHook([&](AppResult* form) {
            QTimer::singleShot(0, form, [&, form] {
                wasModal = QApplication::activeModalWidget() == form;
                shownTitle = form->windowTitle();
                shownGrade = child<QLabel>(form, QStringLiteral("Texturt(1)"))->text();
                newTest = std::make_unique<ModalAnswer>(QStringLiteral("Nein"));
                child<QPushButton>(form, QStringLiteral("CSCmd1"))->click();
            });
        });
        page->nextButton()->click();
        QVERIFY(wasModal);
        QCOMPARE(shownTitle, QStringLiteral("Laborix-Test - Ergebnis"));
        QCOMPARE(shownGrade, QStringLiteral("sehr gut plus"));
        QVERIFY(newTest && newTest->seen());
        QCOMPARE(newTest->title(), QStringLiteral("Neu?"));
        QCOMPARE(main->flow().state().TasksSoFar, 0);
        QCOMPARE(launches, 0);
        QCOMPARE(exits, 0);
        QVERIFY(!main->findChild<AppResult*>());
    }

    void missingBankShowsNoticeAndGoesOn() {
        AppRun app;
        QVERIFY(writeFile(app.file(QStringLiteral("labquiz.dat")), QByteArray()));
        AppMain* main = app.start();
        QVERIFY(main);
        startTest(main, QStringLiteral("Bob"));
        TaskPage* page = main->flow().taskPage(1);
        QVERIFY(page->isVisible());
        const QString notice = page->bankNotice();
        QVERIFY2(notice.contains(QStringLiteral("ElementNames")) &&
                     notice.contains(QStringLiteral("mindestens 6")),
                 qPrintable(notice));
        QVERIFY(!page->okButton()->isVisible());
        page->nextButton()->click();
        QVERIFY(main->flow().taskPage(2)->isVisible());
        QCOMPARE(main->flow().state().TasksSoFar, 0);

        // An unreadable file says so.
        delete main;
        QFile::remove(app.file(QStringLiteral("labquiz.dat")));
        QDir().mkdir(app.file(QStringLiteral("labquiz.dat")));
        {
            // The start names the file it could not take and why.
            ModalAnswer answer(QStringLiteral("OK"));
            main = app.start();
            QVERIFY2(answer.text().contains(QStringLiteral("labquiz.dat ist keine gewöhnliche "
                                                           "Datei, sondern ein Ordner")),
                     qPrintable(answer.text()));
        }
        startTest(main, QStringLiteral("Bob"));
        QVERIFY(main->flow().taskPage(1)->bankNotice().contains(QStringLiteral("nicht gefunden")));
    }

    void normalLevelWithoutBasicEntriesDoesNotHang() {
        AppRun app;
        QVERIFY(
            writeFile(app.file(QStringLiteral("labquiz.dat")), cp1252Lines(syntheticBank(0, 8))));
        AppMain* main = app.start();
        QVERIFY(main);
        startTest(main, QStringLiteral("Carla"));
        TaskPage* page = main->flow().taskPage(1);
        QVERIFY(
            page->bankNotice().contains(QStringLiteral("für die normale Stufe nur 0 Einträge")));
        delete main;

        AppMain* expert = app.start();
        child<QRadioButton>(expert, QStringLiteral("Expert(1)"))->click();
        startTest(expert, QStringLiteral("Carla"));
        QVERIFY(expert->flow().taskPage(1)->bankNotice().isEmpty());
        QVERIFY(expert->flow().taskPage(1)->okButton()->isVisible());
    }

    void resizeKeepsCardCentred() {
        AppRun app;
        AppMain* main = app.start();
        main->resize(1500, 1100);
        QCoreApplication::processEvents();
        auto* holder = child<QWidget>(main, QStringLiteral("bar_Holder"));
        auto* header = child<QWidget>(main, QStringLiteral("bar_Splash"));
        auto* footer = child<QWidget>(main, QStringLiteral("bar_Sep"));
        QWidget* area = main->centralWidget();
        QCOMPARE(holder->size(), QSize(AppMain::kHolderWidth, AppMain::kHolderHeight));
        QCOMPARE(holder->x(), (area->width() - holder->width()) / 2);
        QCOMPARE(holder->y(), (area->height() - holder->height()) / 2);
        QCOMPARE(header->geometry().bottom() + 1, holder->y());
        QCOMPARE(header->x(), holder->x());
        QCOMPARE(header->width(), holder->width());
        QCOMPARE(footer->y(), holder->y() + holder->height());
        QCOMPARE(footer->x(), holder->x());
    }

    void showsInfo() {
        AppRun app;
        AppMain* main = app.start();
        ModalAnswer answer(QStringLiteral("OK"));
        main->M_H_INFO_Click();
        QVERIFY(answer.text().contains(QStringLiteral("Laborix Test")));
        QVERIFY(answer.text().contains(QStringLiteral("3.0")));
        QVERIFY(answer.text().contains(QStringLiteral("28.03.2006")));
        QVERIFY(answer.text().contains(QStringLiteral("Ergebnisordner:\n  ") +
                                       QDir::toNativeSeparators(main->info().resultsFolder())));
    }
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

    void followsTheDesktopTextSize_data() {
        QTest::addColumn<double>("textPx");
        QTest::addColumn<QSizeF>("screen");
        QTest::addColumn<double>("factor");
        const QSizeF wide(1920, 1040);
        dataRow("Qt's own default text", 12.0, wide, 1.0);
        dataRow("smaller desktop text", 10.0, wide, 1.0);
        dataRow("one size larger (10 pt)", 13.0, wide, 1.08);
        dataRow("GNOME's 11 pt", 14.67, wide, 1.22);
        dataRow("large text, 150 %", 18.0, wide, 1.5);
        dataRow("huge text is capped", 40.0, QSizeF(4000, 3000), 2.0);
        // A school laptop with a taskbar leaves little room: the window must fit.
        dataRow("laptop takes what fits", 18.0, QSizeF(1366, 728), 1.08);
        dataRow("screen smaller than the window", 18.0, QSizeF(800, 600), 1.0);
        dataRow("no screen", 18.0, QSizeF(), 1.0);
    }
    void followsTheDesktopTextSize() {
        QFETCH(double, textPx);
        QFETCH(QSizeF, screen);
        QFETCH(double, factor);
        const QSizeF needed = AppMain::smallestSize();
        const double got = TextScale::forDesktop(textPx, screen, needed);
        QCOMPARE(got, factor);
        // What the factor makes of the window still fits the screen it was
        // measured on.
        if (got > 1.0)
            QVERIFY(needed.width() * got <= screen.width() &&
                    needed.height() * got <= screen.height());
    }
};

QTEST_MAIN(TestApp)
#include "test_app.moc"
