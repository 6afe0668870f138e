#include "TestSupport.h"
#include "controls/Mascot.h"
#include "result/AppResult.h"
#include "result/FinalGrade.h"
#include "session/SessionState.h"

#include <QElapsedTimer>
#include <QFrame>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <memory>

namespace {

SessionState stateFor(int correct, int tasks, int level = 0,
                      const QString& name = QStringLiteral("Anna Schmidt")) {
    SessionState s;
    s.CandidateName = name;
    s.TasksSoFar = tasks;
    s.CorrectSoFar = correct;
    s.ExpertLevel = level;
    s.RunningGrade = QStringLiteral("2");
    s.TestDate = QStringLiteral("03-24-2003");
    s.StartTime = QStringLiteral("10:15:02");
    s.EndTime = QStringLiteral("10:41:37");
    return s;
}

// Pages of a PDF as Qt writes it: one "/Type /Page" object per page.
int pdfPages(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray pdf = f.readAll();
    if (!pdf.startsWith("%PDF-"))
        return -1;
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page(?![s\\w])"));
    return int(QString::fromLatin1(pdf).count(page));
}

struct Form {
    SessionState state;
    std::unique_ptr<AppResult> form;
    QList<int> played;
    int quits = 0;

    Form(int correct, int tasks, int level = 0,
         const QString& name = QStringLiteral("Anna Schmidt"))
        : state(stateFor(correct, tasks, level, name)) {
        form = std::make_unique<AppResult>(state, FinalGrade::prepare(state), 3);
        form->setPlayer([this](int melody) {
            played << melody;
            return true;
        });
        form->setQuitter([this] { ++quits; });
        form->show();
    }
    template <typename T = QWidget> T* find(const QString& name) {
        return form->findChild<T*>(name);
    }
    QString text(const QString& name) { return find<QLabel>(name)->text(); }
};

} // namespace

class TestAppResult : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void showsTheCertificateTexts();
    void mascotDrawsADifferentFaceForEachCode();
    void keepsTheFrameCentred();
    void printsOnePageAndComesBack_data();
    void printsOnePageAndComesBack();
    void playsTheMelodyOnce();
    void newExerciseResetsQuitEndsAtOnce();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestAppResult::init() {
    m_dir = std::make_unique<QTemporaryDir>();
    qunsetenv("LABQUIZ_PRINT_TO");
}

void TestAppResult::showsTheCertificateTexts() {
    Form f(15, 20);
    QCOMPARE(f.form->objectName(), QStringLiteral("frm_AppResult"));
    QVERIFY(f.form->isModal());
    QVERIFY(f.form->windowState() & Qt::WindowMaximized);
    // The fixed texts stand where they are named; the others are this result's.
    for (const char* name : {"Label11", "Label12", "Label1", "Titel(0)", "Titel(1)", "Druck",
                             "CSCmd1", "CSCmd3", "Neute", "Dahinter"})
        QVERIFY2(f.find(QString::fromLatin1(name)), name);
    QCOMPARE(f.text(QStringLiteral("Textname")), QStringLiteral("Anna Schmidt"));
    QCOMPARE(f.text(QStringLiteral("Texturt(0)")),
             QStringLiteral(" Von  20 Aufgaben wurden  15 richtig gelöst!"));
    QCOMPARE(f.text(QStringLiteral("Texturt(1)")), QStringLiteral("gut minus"));
    QCOMPARE(f.find(QStringLiteral("ctl_DrQuark1"))->property("Expression").toInt(), 1);
    QCOMPARE(f.text(QStringLiteral("Texturt(2)")),
             QStringLiteral(" Bearbeitung am: 24.03.2003 von:10:15:02 bis:10:41:37 Uhr."));
    QCOMPARE(f.text(QStringLiteral("Streb")), QStringLiteral("Schwierigkeitsgrad: normal "));
    QVERIFY(f.find(QStringLiteral("Streb"))->isVisible());
    // "gut minus" earns no title and no melody.
    for (const char* name : {"Titel(0)", "Titel(1)", "Musik"})
        QVERIFY(!f.find(QString::fromLatin1(name))->isVisible());
    // The grade word replaces the running mark; the counters stay.
    QCOMPARE(f.state.RunningGrade, QStringLiteral("gut minus"));
    QVERIFY(f.state.TasksSoFar == 20 && f.state.CorrectSoFar == 15);

    Form expert(15, 20, 1);
    QCOMPARE(expert.text(QStringLiteral("Streb")),
             QStringLiteral("Schwierigkeitsgrad: Hohe Stufe "));
}

void TestAppResult::mascotDrawsADifferentFaceForEachCode() {
    const int codes[] = {0, 1, 2, 3, 5, 6};
    QList<QImage> faces;
    for (int code : codes) {
        Mascot m;
        m.resize(112, 128);
        m.setProperty("Expression", code);
        QCOMPARE(m.expression(), code);
        faces << m.grab().toImage();
    }
    for (int i = 0; i < faces.size(); ++i) {
        for (int j = i + 1; j < faces.size(); ++j) {
            // "Different" means more than a few pixels: count what changed.
            int changed = 0;
            for (int y = 0; y < faces[i].height(); ++y)
                for (int x = 0; x < faces[i].width(); ++x)
                    changed += faces[i].pixel(x, y) != faces[j].pixel(x, y);
            QVERIFY2(changed > 300, qPrintable(QStringLiteral("codes %1 and %2: %3 pixels")
                                                   .arg(codes[i])
                                                   .arg(codes[j])
                                                   .arg(changed)));
        }
    }
}

void TestAppResult::keepsTheFrameCentred() {
    Form f(15, 20);
    QWidget* frame = f.find(QStringLiteral("Dahinter"));
    f.form->setWindowState(Qt::WindowNoState);
    f.form->resize(1000, 700);
    QCOMPARE(frame->pos(), QPoint((1000 - frame->width()) / 2, (700 - frame->height()) / 2));
    // Smaller than the frame: negative offsets, the frame is clipped.
    f.form->resize(600, 400);
    QVERIFY(frame->x() < 0 && frame->y() < 0);
    QCOMPARE(frame->pos(), QPoint((600 - frame->width()) / 2, (400 - frame->height()) / 2));
}

void TestAppResult::printsOnePageAndComesBack_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("correct");
    QTest::addColumn<QString>("printTo"); // LABQUIZ_PRINT_TO in the test's folder, if any
    QTest::addColumn<bool>("printer");
    QTest::addColumn<QString>("file"); // the certificate written, in the test's folder
    QTest::addColumn<QString>("notice");
    dataRow("to the test's file", "Anna Schmidt", 19, "urkunde.pdf", true, "urkunde.pdf", "");
    dataRow("long name with quotes and slashes",
            QStringLiteral("\"Max\" / Mustermann \\ ").repeated(10), 4, "urkunde.pdf", true,
            "urkunde.pdf", "");
    dataRow("no printer: the documents folder", "Jörg: \"der Chemiker\"", 15, QString(), false,
            "Dokumente/Laborix-Urkunde Jörg der Chemiker 24.03.2003.pdf",
            "Es ist kein Drucker eingerichtet.");
    // A folder in place of the file: nothing can be written there.
    dataRow("failed print", "Anna", 15, ".", true, "", "Die Urkunde konnte nicht gedruckt werden.");
}

void TestAppResult::printsOnePageAndComesBack() {
    QFETCH(QString, name);
    QFETCH(int, correct);
    QFETCH(QString, printTo);
    QFETCH(bool, printer);
    QFETCH(QString, file);
    QFETCH(QString, notice);
    const QDir dir(m_dir->path());
    if (!printTo.isEmpty())
        qputenv("LABQUIZ_PRINT_TO", dir.filePath(printTo).toLocal8Bit());
    Form f(correct, 20, 0, name);
    f.form->setPrinterCheck([printer] { return printer; });
    f.form->setDocumentsFolder(dir.filePath(QStringLiteral("Dokumente")));
    const bool musik = f.find(QStringLiteral("Musik"))->isVisible();
    ModalAnswer answer(QStringLiteral("OK"));
    f.find<QPushButton>(QStringLiteral("Druck"))->click();
    QCOMPARE(answer.seen(), !notice.isEmpty());
    QVERIFY2(answer.text().startsWith(notice) || notice.isEmpty(), qPrintable(answer.text()));
    QCOMPARE(f.form->lastPdf(), file.isEmpty() ? QString() : dir.filePath(file));
    if (!file.isEmpty())
        QCOMPARE(pdfPages(dir.filePath(file)), 1);
    if (answer.seen() && !file.isEmpty())
        QVERIFY(answer.text().contains(QDir::toNativeSeparators(dir.filePath(file))));
    if (!printTo.isEmpty() && notice.isEmpty()) {
        // A second print overwrites the named file, still one page.
        f.find<QPushButton>(QStringLiteral("Druck"))->click();
        QCOMPARE(pdfPages(dir.filePath(file)), 1);
    }
    // Back as before: maximised, frame centred, the panel and the buttons shown.
    QVERIFY(f.form->isVisible() && f.form->windowState() & Qt::WindowMaximized);
    QWidget* frame = f.find(QStringLiteral("Dahinter"));
    QCOMPARE(frame->pos(), QPoint(int((f.form->width() - frame->width()) / 2.0f),
                                  int((f.form->height() - frame->height()) / 2.0f)));
    QVERIFY(f.find(QStringLiteral("Neute"))->isVisible());
    QVERIFY(f.find(QStringLiteral("Druck"))->isVisible());
    QCOMPARE(f.find(QStringLiteral("Musik"))->isVisible(), musik);
    QCOMPARE(f.text(QStringLiteral("Textname")), name);
}

void TestAppResult::playsTheMelodyOnce() {
    Form f(19, 20);
    QCOMPARE(f.text(QStringLiteral("Texturt(1)")), QStringLiteral("sehr gut"));
    QCOMPARE(f.find(QStringLiteral("ctl_DrQuark1"))->property("Expression").toInt(), 2);
    QVERIFY(f.find(QStringLiteral("Titel(0)"))->isVisible());
    auto* musik = f.find<QPushButton>(QStringLiteral("Musik"));
    QVERIFY(musik->isVisible());
    musik->click();
    QCOMPARE(f.played, QList<int>{3}); // the melody chosen on the start page
    QVERIFY(!musik->isVisible());
    QVERIFY(f.form->melodyPlayed());
    f.form->Musik_Click();
    QCOMPARE(f.played.size(), 1);

    // The real player: here there may be no sound device at all, and then
    // it stays silent instead of hanging.
    SessionState s = stateFor(20, 20);
    AppResult form(s, FinalGrade::prepare(s), 0);
    form.show();
    form.findChild<QPushButton*>(QStringLiteral("Musik"))->click();
    QVERIFY(form.melodyPlayed());
    QTest::qWait(50);
}

void TestAppResult::newExerciseResetsQuitEndsAtOnce() {
    Form again(15, 20, 1);
    again.find<QPushButton>(QStringLiteral("CSCmd1"))->click();
    QVERIFY(again.state.TasksSoFar == 0 && again.state.CorrectSoFar == 0);
    QCOMPARE(again.state.ExpertLevel, 0);
    QCOMPARE(again.form->result(), int(QDialog::Accepted));
    QVERIFY(!again.form->isVisible());
    QVERIFY(!again.form->quitRequested() && again.quits == 0);

    Form quit(15, 20, 1);
    quit.find<QPushButton>(QStringLiteral("CSCmd3"))->click();
    QVERIFY(quit.form->quitRequested() && quit.quits == 1);
    QVERIFY(!quit.form->isVisible());
    // Nothing is reset on the way out.
    QVERIFY(quit.state.TasksSoFar == 20 && quit.state.ExpertLevel == 1);
}

QTEST_MAIN(TestAppResult)
#include "test_app_result.moc"
