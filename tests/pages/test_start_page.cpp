#include "TestSupport.h"
#include "app/AppInfo.h"
#include "app/AppMain.h"
#include "app/StartUp.h"
#include "controls/MelodyPlayer.h"
#include "pages/StartPage.h"
#include "pages/TaskPage.h"
#include "session/NamesFile.h"

#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTemporaryDir>

class TestStartPage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void refusesEmptyNameEscapeEmptiesEnterStarts();
    void acceptsNameAsTypedAndLogsTheStart();
    void expertLevelIsShownAndRemembered();
    void listsCopiesAndDeletesNames();
    void offersRealMelodies();

private:
    AppMain* start();
    template <typename T> T* find(const char* name) {
        return m_main ? m_main->findChild<T*>(QString::fromLatin1(name)) : nullptr;
    }
    QStringList storedNames() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QPointer<AppMain> m_main;
};

void TestStartPage::init() {
    m_dir = std::make_unique<QTemporaryDir>();
    qputenv("LABQUIZ_DATA", m_dir->path().toLocal8Bit());
}

void TestStartPage::cleanup() {
    delete m_main.data();
    m_dir.reset();
}

AppMain* TestStartPage::start() {
    delete m_main.data();
    m_main = qobject_cast<AppMain*>(StartUp({QStringLiteral("labquiz")}));
    if (m_main)
        m_main->flow().setSlideStepMs(0);
    return m_main;
}

QStringList TestStartPage::storedNames() const {
    NamesFile file(m_dir->filePath(QStringLiteral("names.ini")));
    file.load();
    return file.names();
}

void TestStartPage::refusesEmptyNameEscapeEmptiesEnterStarts() {
    QVERIFY(start());
    auto* field = find<QLineEdit>("BenutzerName");
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
            find<QPushButton>("OkS0")->click();
        QCOMPARE(answer.text(),
                 QStringLiteral("Du solltest vielleicht doch einen Namen eingeben..."));
        QCOMPARE(answer.title(), QStringLiteral("!?"));
        QCOMPARE(answer.buttons(), QStringList{QStringLiteral("OK")});
    }
    QVERIFY(!m_main->flow().taskPage(1)->isVisible());
    QVERIFY(storedNames().isEmpty());
    QCOMPARE(m_main->windowTitle(), QStringLiteral("Laborix Test"));
    field->clear();
    QTest::keyClicks(field, QStringLiteral("Dora"));
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY(m_main->flow().taskPage(1)->isVisible());
}

void TestStartPage::acceptsNameAsTypedAndLogsTheStart() {
    QVERIFY(start());
    const QString typed = QStringLiteral("  Jürgen Ähre  ");
    find<QLineEdit>("BenutzerName")->setText(typed);
    find<QPushButton>("OkS0")->click();
    const SessionState& s = m_main->flow().state();
    QCOMPARE(s.CandidateName, typed);
    QCOMPARE(storedNames(), QStringList{typed});
    QCOMPARE(m_main->windowTitle(), typed + QStringLiteral(" im LABORIX -TEST"));
    QVERIFY(
        QRegularExpression(QStringLiteral("^\\d\\d-\\d\\d-\\d{4}$")).match(s.TestDate).hasMatch());
    QCOMPARE(s.TestDate, QDate::currentDate().toString(QStringLiteral("MM-dd-yyyy")));
    QVERIFY(!find<QLabel>("Streberstufe")->isVisible());
    // Every substance has its three terms once a test has started.
    const auto& substances = m_main->flow().bank().Substances;
    QVERIFY(substances.count() > 0);
    for (int i = 1; i <= substances.count(); ++i)
        QVERIFY(substances[i].Lead && substances[i].Formula && substances[i].SecondTerm);

    QFile log(m_dir->filePath(QLatin1String(AppInfo::kLogName)));
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    const QString record = QStringLiteral("-> 0 Start von: ") + typed + QStringLiteral(" - ") +
                           s.TestDate + u'/' + s.StartTime;
    QVERIFY2(text.contains(record), qPrintable(text));
    QVERIFY(
        QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d$")).match(s.StartTime).hasMatch());
}

void TestStartPage::expertLevelIsShownAndRemembered() {
    QVERIFY(start());
    find<QRadioButton>("Expert(1)")->click();
    QCOMPARE(m_main->flow().state().ExpertLevel, 1);
    find<QLineEdit>("BenutzerName")->setText(QStringLiteral("Emil"));
    find<QPushButton>("OkS0")->click();
    QCOMPARE(m_main->windowTitle(), QStringLiteral("Emil im LABORIX -TEST [1er Kandidat]"));
    QVERIFY(find<QLabel>("Streberstufe")->isVisible());

    // The next start presets the remembered level.
    QVERIFY(start());
    QVERIFY(find<QRadioButton>("Expert(1)")->isChecked());
    QCOMPARE(m_main->flow().state().ExpertLevel, 1);
    QCOMPARE(m_main->startPage()->caption(), QStringLiteral(" im LABORIX -TEST [1er Kandidat]"));
}

void TestStartPage::listsCopiesAndDeletesNames() {
    NamesFile file(m_dir->filePath(QStringLiteral("names.ini")));
    for (const char* n : {"Anna", "Bob", "Carla"})
        file.addName(QString::fromUtf8(n));
    QVERIFY(file.save());
    QVERIFY(start());
    auto* list = find<QListWidget>("Liste");
    QCOMPARE(list->count(), 3);
    {
        ModalAnswer answer(QStringLiteral("OK"));
        find<QPushButton>("L_schen")->click();
        QCOMPARE(answer.text(),
                 QStringLiteral("Du mußt erst den Namen auswählen, den Du entfernen willst!"));
        QCOMPARE(answer.title(), QString());
    }
    QCOMPARE(storedNames().size(), 3);

    list->setCurrentRow(1);
    m_main->startPage()->Liste_DblClick();
    QCOMPARE(find<QLineEdit>("BenutzerName")->text(), QStringLiteral("Bob"));
    find<QPushButton>("L_schen")->click();
    QCOMPARE(storedNames(), (QStringList{QStringLiteral("Anna"), QStringLiteral("Carla")}));
    QCOMPARE(list->count(), 2);
}

void TestStartPage::offersRealMelodies() {
    QVERIFY(start());
    auto* box = find<QComboBox>("HYMNE");
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

QTEST_MAIN(TestStartPage)
#include "test_start_page.moc"
