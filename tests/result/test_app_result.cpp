// The result form and what it shows: the grade by the share of right answers
// (the running mark of the score line and the final grade of the certificate
// go by the same steps), the certificate and where it is printed, the melody,
// and the review of every wrong answer with its hint, each cause of a
// mistake with the answers that must get its hint and close ones that must not.
#include "TestSupport.h"
#include "chem/MistakeHints.h"
#include "controls/Mascot.h"
#include "pages/PageHints.h"
#include "result/AppResult.h"
#include "result/CertificatePrinter.h"
#include "result/FinalGrade.h"
#include "result/MistakeReview.h"
#include "session/Grades.h"
#include "session/SessionState.h"

#include <QFrame>
#include <QImage>
#include <QTextBrowser>
#include <memory>

using Kind = MistakeHints::Kind;
Q_DECLARE_METATYPE(MistakeHints::Kind)

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

PageRecord page(int number, QList<AnswerItem> items) {
    PageRecord r;
    r.page = number;
    r.title = pageTitle(number);
    r.items = std::move(items);
    return r;
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

const QHash<QString, Kind>& kinds() {
    static const QHash<QString, Kind> map = {{QStringLiteral("symbol"), Kind::ElementSymbol},
                                             {QStringLiteral("name"), Kind::ElementName},
                                             {QStringLiteral("number"), Kind::SyllableNumber},
                                             {QStringLiteral("syllable"), Kind::NumberSyllable},
                                             {QStringLiteral("formula"), Kind::Formula},
                                             {QStringLiteral("substance"), Kind::SubstanceName},
                                             {QStringLiteral("molar"), Kind::MolarMass},
                                             {QStringLiteral("amount"), Kind::Amount},
                                             {QStringLiteral("equation"), Kind::Equation},
                                             {QStringLiteral("ion"), Kind::IonCharge},
                                             {QStringLiteral("choice"), Kind::Choice}};
    return map;
}

} // namespace

class TestAppResult : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        qunsetenv("LABQUIZ_PRINT_TO");
    }

    void showsTheCertificateTexts() {
        Form f(15, 20);
        QCOMPARE(f.form->objectName(), QStringLiteral("frm_AppResult"));
        QVERIFY(f.form->isModal());
        QVERIFY(f.form->windowState() & Qt::WindowMaximized);
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

    void mascotDrawsADifferentFaceForEachCode() {
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

    void keepsTheFrameCentred() {
        Form f(15, 20);
        QWidget* frame = f.find(QStringLiteral("Dahinter"));
        f.form->setWindowState(Qt::WindowNoState);
        // Smaller than the frame: negative offsets, the frame is clipped.
        for (const QSize size : {QSize(1000, 700), QSize(600, 400)}) {
            f.form->resize(size);
            QCOMPARE(frame->pos(), QPoint((size.width() - frame->width()) / 2,
                                          (size.height() - frame->height()) / 2));
        }
        QVERIFY(frame->x() < 0 && frame->y() < 0);
    }

    void printsOnePageAndComesBack_data() {
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
        dataRow("failed print", "Anna", 15, ".", true, "",
                "Die Urkunde konnte nicht gedruckt werden.");
    }

    void printsOnePageAndComesBack() {
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

    void playsTheMelodyOnce() {
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

    void newExerciseResetsQuitEndsAtOnce() {
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

    void gradesAtEveryBoundary_data() {
        QTest::addColumn<int>("correct");
        QTest::addColumn<int>("tasks");
        QTest::addColumn<QString>("mark");
        QTest::addColumn<int>("points");
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("face");
        QTest::addColumn<bool>("honours");
        // Each step is reached only above its threshold; a share exactly on it
        // stays below, in single precision as the program computes it.
        dataRow("no tasks yet", 0, 0, "6", 0, "ungenügend", 3, false);
        dataRow("1 of 10 is exactly 0.1", 1, 10, "6", 0, "ungenügend", 3, false);
        dataRow("just over 0.1", 2, 19, "5-", 1, "mangelhaft minus", 3, false);
        dataRow("0.2 exactly", 1, 5, "5-", 1, "mangelhaft minus", 3, false);
        dataRow("0.3 exactly", 3, 10, "5", 2, "mangelhaft", 3, false);
        dataRow("0.4 exactly", 8, 20, "5+", 3, "mangelhaft plus", 3, false);
        dataRow("9 of 20 stays below 0.45", 9, 20, "4-", 4, "ausreichend minus", 6, false);
        dataRow("0.5 exactly", 1, 2, "4", 5, "ausreichend", 6, false);
        dataRow("0.55 exactly", 11, 20, "4+", 6, "ausreichend plus", 6, false);
        dataRow("0.6 exactly", 3, 5, "3-", 7, "befriedigend minus", 5, false);
        dataRow("0.65 exactly", 13, 20, "3", 8, "befriedigend", 5, false);
        dataRow("two thirds", 2, 3, "3+", 9, "befriedigend plus", 5, false);
        dataRow("0.7 exactly", 7, 10, "3+", 9, "befriedigend plus", 5, false);
        dataRow("0.75 exactly", 3, 4, "2-", 10, "gut minus", 1, false);
        dataRow("0.8 exactly", 4, 5, "2", 11, "gut", 1, false);
        dataRow("17 of 20 is exactly 0.85", 17, 20, "2+", 12, "gut plus", 1, false);
        dataRow("just over 0.85", 35, 40, "1-", 13, "sehr gut minus", 2, true);
        dataRow("18 of 20 is exactly 0.9", 18, 20, "1-", 13, "sehr gut minus", 2, true);
        dataRow("just over 0.9", 37, 40, "1", 14, "sehr gut", 2, true);
        dataRow("19 of 20 is exactly 0.95", 19, 20, "1", 14, "sehr gut", 2, true);
        dataRow("just over 0.95", 39, 40, "1+", 15, "sehr gut plus", 2, true);
        dataRow("all right", 60, 60, "1+", 15, "sehr gut plus", 2, true);
    }

    void gradesAtEveryBoundary() {
        QFETCH(int, correct);
        QFETCH(int, tasks);
        QFETCH(QString, mark);
        QFETCH(int, points);
        QFETCH(QString, word);
        QFETCH(int, face);
        QFETCH(bool, honours);
        const float ratio = Grades::ratio(correct, tasks);
        QCOMPARE(Grades::runningGrade(ratio), mark);
        QCOMPARE(FinalGrade::gradeNumber(mark), points);
        QCOMPARE(FinalGrade::gradeWord(correct, tasks), word);
        QCOMPARE(FinalGrade::expressionOf(word), face);
        QCOMPARE(FinalGrade::earnsHonours(ratio), honours);
    }

    void readsWordsAndMarksStrictly() {
        // The face goes by the grade word in any case; the points by the mark as written.
        QCOMPARE(FinalGrade::expressionOf("Sehr Gut Plus"), 2);
        QCOMPARE(FinalGrade::expressionOf("UNGENÜGEND"), 3);
        for (const char* word : {"gut ", "1+", ""})
            QCOMPARE(FinalGrade::expressionOf(word), FinalGrade::kNoExpression);
        for (const char* mark : {"6-", "6+", "7", " 1+", "sehr gut", ""})
            QCOMPARE(FinalGrade::gradeNumber(mark), 0);
        QCOMPARE(Grades::markOfStep(99), QStringLiteral("6"));
    }

    // The usual sentences are seen on the certificate form (test_app_result).
    void certificateSentences() {
        QCOMPARE(FinalGrade::countSentence(-1, 0),
                 QStringLiteral(" Von -1 Aufgaben wurden  0 richtig gelöst!"));
        QCOMPARE(FinalGrade::levelSentence(7), QStringLiteral("Schwierigkeitsgrad: Hohe Stufe "));
    }

    void historyLineForTheLog() {
        SessionState s = stateFor(45, 60, 1, QStringLiteral("Jörg Müller"));
        QCOMPARE(FinalGrade::historyLine(s, QStringLiteral("gut minus"), 10),
                 QStringLiteral("<-  Jörg Müller  60 Aufgaben, 45 richtig, 15 falsch, Stufe hoch, "
                                "24.03.2003 10:15:02-10:41:37, 10 Notenpunkte - Note: gut minus"));
        // A name that holds a line break still makes one line of the log.
        s.CandidateName = QStringLiteral("Anna\nBerta\r");
        const QString line = FinalGrade::historyLine(s, QStringLiteral("gut"), 11);
        QVERIFY(line.startsWith(QStringLiteral("<-  Anna Berta   60 Aufgaben")));
        QVERIFY(!line.contains(u'\n') && !line.contains(u'\r'));
    }

    void preparesTheWholeResult() {
        SessionState s = stateFor(18, 20);
        s.RunningGrade = QStringLiteral("6"); // stale: the result goes by the counters
        const FinalResult r = FinalGrade::prepare(s);
        QCOMPARE(r.gradeWord, QStringLiteral("sehr gut minus"));
        QCOMPARE(r.tasks, 20);
        QCOMPARE(r.correct, 18);
        QCOMPARE(r.wrong, 2);
        QCOMPARE(r.level, 0);
        QCOMPARE(r.gradeNumber, 13); // running mark "1-"
        QVERIFY(r.historyLine.endsWith(QStringLiteral(" - Note: sehr gut minus")));
        QVERIFY(r.historyLine.contains(QStringLiteral("Stufe normal")));
    }

    void safeCertificateFileNames_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("file");
        dataRow("umlauts kept", "Jörg Weiß", "11-02-2024",
                "Laborix-Urkunde Jörg Weiß 02.11.2024.pdf");
        dataRow("quotes and slashes", "Anna \"Chemie\" A/B\\C", "03-24-2003",
                "Laborix-Urkunde Anna Chemie A B C 24.03.2003.pdf");
        dataRow("reserved characters", "a<b>c:d|e?f*g", "03-24-2003",
                "Laborix-Urkunde a b c d e f g 24.03.2003.pdf");
        dataRow("tabs and line breaks", "Anna\t\nBerta", "03-24-2003",
                "Laborix-Urkunde Anna Berta 24.03.2003.pdf");
        dataRow("dots at the ends", "..Anna.. ", "03-24-2003",
                "Laborix-Urkunde Anna 24.03.2003.pdf");
        dataRow("nothing usable", "///", "03-24-2003", "Laborix-Urkunde 24.03.2003.pdf");
        dataRow("no date stored", "Anna", "", "Laborix-Urkunde Anna.pdf");
    }

    void safeCertificateFileNames() {
        QFETCH(QString, name);
        QFETCH(QString, date);
        QFETCH(QString, file);
        QCOMPARE(CertificatePrinter::fileNameFor(name, date), file);
    }

    void choosesWhereThePageGoes() {
        QTemporaryDir docs;
        using Kind = CertificatePrinter::Target::Kind;
        const auto target = [&](const QString& printTo, bool printer) {
            return CertificatePrinter::chooseTarget(printTo, printer, docs.path(),
                                                    QStringLiteral("Anna"), "03-24-2003");
        };
        // The test's file wins over everything.
        auto t = target(QStringLiteral("/tmp/x.pdf"), true);
        QVERIFY(t.kind == Kind::PdfFile && t.file == QStringLiteral("/tmp/x.pdf"));
        QVERIFY(!t.forLackOfPrinter);
        QCOMPARE(target(QString(), true).kind, Kind::Printer);
        // Without a printer: the documents folder, and an earlier certificate is kept.
        t = target(QString(), false);
        QVERIFY(t.kind == Kind::PdfFile && t.forLackOfPrinter);
        QCOMPARE(t.file, docs.filePath(QStringLiteral("Laborix-Urkunde Anna 24.03.2003.pdf")));
        QFile(t.file).open(QIODevice::WriteOnly);
        QCOMPARE(target(QString(), false).file,
                 docs.filePath(QStringLiteral("Laborix-Urkunde Anna 24.03.2003 (2).pdf")));

        // A very long name, in letters that take two bytes, still gives a name
        // that every file system takes.
        const QString longName = QString(200, QChar(u'ä')) + QStringLiteral("😀x");
        const QString file =
            CertificatePrinter::fileNameFor(longName, QStringLiteral("03-24-2003"));
        QVERIFY(file.toUtf8().size() <= 200);
        QVERIFY(file.startsWith(QStringLiteral("Laborix-Urkunde ää")));
        QVERIFY(file.endsWith(QStringLiteral("ä 24.03.2003.pdf")));
        QVERIFY(QFile(docs.filePath(file)).open(QIODevice::WriteOnly));
        // Cut between the two halves of a surrogate pair would leave broken text.
        const QString emojis = QString(30, QChar(u'a')) + QStringLiteral("😀").repeated(40);
        const QString cut = CertificatePrinter::fileNameFor(emojis, QString());
        QVERIFY(!cut.contains(QChar(QChar::ReplacementCharacter)));
        QCOMPARE(QString::fromUtf8(cut.toUtf8()), cut);
        QVERIFY(cut.endsWith(QStringLiteral("😀.pdf")));
    }

    // The pages note their tasks in a fixed order; the place of an item decides
    // which diagnosis it gets. Right items never carry a hint.
    void hintFollowsTheTaskKind_data() {
        QTest::addColumn<int>("pageNumber");
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("mentions");
        dataRow("page 1 symbol", 1, 0, "Kalium", "K", "Ca", "Calcium");
        dataRow("page 1 name", 1, 4, "Fe", "Eisen", "Fe", "Gefragt war der Name");
        dataRow("page 2 number", 2, 1, "penta", "5", "fünf", "Ziffern");
        dataRow("page 2 syllable", 2, 3, "4", "tetra", "penta", "steht für 5");
        dataRow("page 11 formula", 11, 1, "Lithiumoxid", "Li2O", "LiO", "Li⁺");
        dataRow("page 11 name", 11, 5, "NaCl", "Natriumchlorid", "Chlornatrium", "Metall");
        dataRow("page 8", 8, 0, "Wasser (H2O)", "18.0", "18.02", "runden");
        dataRow("page 9", 9, 2, "H2 + O2 = H2O", "2 1 2", "4 2 4", "durch 2");
        dataRow("page 5", 5, 0, "Natrium-Ion", "+1", "-1", "Vorzeichen");
        dataRow("page 6", 6, 3, "Luft ist ein Gemisch.", "Ja", "", "Nichts");
        dataRow("page 6 answered", 6, 3, "Luft ist ein Gemisch.", "Ja", "Nein", "");
    }

    void hintFollowsTheTaskKind() {
        QFETCH(int, pageNumber);
        QFETCH(int, place);
        QFETCH(QString, prompt);
        QFETCH(QString, expected);
        QFETCH(QString, given);
        QFETCH(QString, mentions);
        QList<AnswerItem> items(place + 2, AnswerItem(prompt, expected, given, true));
        items[place].right = false;
        PageRecord r = page(pageNumber, items);
        PageHints::fill(r, shippedElements());
        for (int i = 0; i < r.items.size(); ++i) {
            if (i != place)
                QVERIFY(r.items[i].hint.isEmpty());
        }
        if (mentions.isEmpty())
            QVERIFY2(r.items[place].hint.isEmpty(), qPrintable(r.items[place].hint));
        else
            QVERIFY2(r.items[place].hint.contains(mentions), qPrintable(r.items[place].hint));
    }

    void listsMistakesInTestOrder() {
        AnswerItem oxide(QStringLiteral("Lithiumoxid"), QStringLiteral("Li2O"),
                         QStringLiteral("LiO"));
        oxide.hint = QStringLiteral("Es braucht 2 Li⁺ für 1 O²⁻.");
        const QList<PageRecord> pages = {
            page(2, {{QStringLiteral("8"), QStringLiteral("octa*okta"), QStringLiteral("okto")},
                     {QStringLiteral("tri"), QStringLiteral("3"), QStringLiteral("3"), true}}),
            page(11, {oxide}),
            page(6, {{QStringLiteral("Luft ist ein Gemisch."), QStringLiteral("Ja"), QString()}})};
        QCOMPARE(MistakeReview::mistakes(pages), 3);
        const QString html = MistakeReview::html(pages);
        const qsizetype syllables = html.indexOf(pageTitle(2));
        const qsizetype formulas = html.indexOf(pageTitle(11));
        const qsizetype statements = html.indexOf(pageTitle(6));
        QVERIFY(syllables >= 0 && syllables < formulas && formulas < statements);
        QVERIFY(html.contains(QStringLiteral("octa oder okta")));
        QVERIFY(!html.contains(QStringLiteral(">3<")) && !html.contains(QStringLiteral("tri")));
        QVERIFY(html.contains(QStringLiteral("<sub>2</sub>")));
        QVERIFY(html.contains(QStringLiteral("Tipp:")) && html.contains(QStringLiteral("2 Li⁺")));
        QVERIFY(html.contains(QStringLiteral("keine Antwort")));
    }

    void saysSoWhenNothingIsWrong() {
        const QList<PageRecord> pages = {page(
            1, {{QStringLiteral("Natrium"), QStringLiteral("Na"), QStringLiteral("Na"), true}})};
        MistakeReview review(pages, nullptr, [](QWidget*) {});
        // Nothing to practise: no "Fehler üben" either.
        QVERIFY(!review.findChild<QPushButton*>(QStringLiteral("FehlerUeben")));
        auto* text = review.findChild<QTextBrowser*>(QStringLiteral("MistakeList"));
        QVERIFY(text);
        QVERIFY(!text->accessibleName().isEmpty());
        QVERIFY(text->toPlainText().contains(QStringLiteral("Keine Fehler")));
        QVERIFY(!text->toPlainText().contains(QStringLiteral("Tipp")));
    }

    void initTestCase() { QVERIFY(shippedElements().count() > 100); }
    // One table of cases: each cause with rows that must fire it and close
    // answers that must not.
    void namesTheCause_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("mentions");
        // Task kind, cause ("-": no hint) and the answers that must get it, each
        // "prompt|expected|given", then what the hint's sentence must name. An
        // amount's prompt is the portion the question asks about (or a name for one).
        static const QHash<QString, QString> portions{
            {"water", "36,04 g Wasser (H2O)"},
            {"salt", "29,22 g Natriumchlorid (NaCl)"},
            {"oxide", "10 g Magnesiumoxid (MgO)"},
            {"gas", "11,2 l Sauerstoff im Normzustand (22,4 l/mol)"}};
        auto add = [](const char* kind, const char* cause, const QStringList& cases) {
            for (const QString& c : cases) {
                const QStringList f = c.split(u'|');
                const QString prompt =
                    qstrcmp(kind, "amount") == 0
                        ? QStringLiteral("Wie viel mol sind %1? (auf zwei Nachkommastellen runden)")
                              .arg(portions.value(f[0], f[0]))
                        : f[0];
                QTest::addRow("%s %s→%s", kind, qPrintable(f[2]), cause)
                    << QString::fromUtf8(kind) << prompt << f[1] << f[2] << QString::fromUtf8(cause)
                    << f.value(3);
            }
        };
        add("symbol", "sym-case",
            {"Natrium|Na|na|Na", "Natrium|Na|NA", "Kalium|K|k", "Cobalt|Co|co", "Kupfer|Cu|CU"});
        add("symbol", "-",
            {"Natrium|Na|Nt", "Calcium|Ca|Calzium", "Kalium|K|Ka", "Natrium|Na|Na", "Natrium|Na|"});
        add("symbol", "sym-two", {"Cobalt|Co|CO|Kohlenstoffmonooxid"});
        add("symbol", "sym-name", {"Calcium|Ca|Calcium|Ca", "Calcium|Ca|calcium"});
        add("symbol", "sym-other",
            {"Kalium|K|Ca|Calcium", "Natrium|Na|Ni|Nickel", "Stickstoff|N|O|Sauerstoff"});
        add("name", "name-case",
            {"Na|Natrium|natrium", "I|Iod oder Jod|JOD|Jod", "Co|Cobalt oder Kobalt|cobalt"});
        add("name", "-", {"Na|Natrium|Natrum", "Fe|Eisen|Fee", "K|Kalium|Kalzium"});
        add("name", "name-symbol", {"Fe|Eisen|Fe|Eisen", "Fe|Eisen|fe", "Na|Natrium|Na"});
        add("name", "name-other",
            {"K|Kalium|Calcium|Ca", "N|Stickstoff|Sauerstoff|O", "Na|Natrium|Nickel|Ni"});
        add("number", "num-letters", {"penta|5|fünf", "tetra|4|IV", "di|2|zwei"});
        add("number", "-", {"penta|5|6"});
        add("syllable", "syl-case", {"4|tetra|Tetra", "8|octa*okta|Okta|octa", "1|mono|MONO"});
        add("syllable", "-", {"4|tetra|tetr", "2|di|bi", "3|tri|4"});
        add("syllable", "syl-other", {"4|tetra|penta|5", "2|di|tri|3", "6|hexa|hepta|7"});
        add("syllable", "syl-number", {"2|di|2", "5|penta|5", "3|tri|3"});
        add("formula", "f-case",
            {"Lithiumoxid|Li2O|LI2O|Li", "Natriumchlorid|NaCl|NACL",
             "Natriumsulfat|Na2SO4|Na2So4|O"});
        add("formula", "f-name",
            {"Natriumchlorid|NaCl|Natriumchlorid", "Natriumchlorid|NaCl|natriumchlorid"});
        add("formula", "-",
            {"Natriumchlorid|NaCl|NaCI", "Magnesiumchlorid|MgCl2|3MgCl",
             "Calciumhydroxid|Ca(OH)2|CaOH", "Eisen(III)-oxid|Fe2O3|Fe2O3",
             "Natriumsulfat|Na2SO4|NaSO4", "Kohlenstoffdioxid|CO2|CO"});
        add("formula", "f-coef",
            {"Natriumchlorid|NaCl|2NaCl", "Natriumoxid|Na2O|2NaO|Na",
             "Magnesiumchlorid|MgCl2|2MgCl|Cl", "Magnesiumchlorid|MgCl2|2MgCl2"});
        add("formula", "f-paren",
            {"Calciumhydroxid|Ca(OH)2|CaOH2", "Aluminiumhydroxid|Al(OH)3|AlOH3",
             "Ammoniumsulfat|(NH4)2SO4|NH42SO4"});
        add("formula", "f-swap",
            {"Natriumoxid|Na2O|NaO2", "Aluminiumoxid|Al2O3|Al3O2", "Magnesiumchlorid|MgCl2|Mg2Cl"});
        add("formula", "f-charge",
            {"Natriumoxid|Na2O|Na2O2", "Lithiumoxid|Li2O|LiO|Es braucht 2 Li⁺ für 1 O²⁻",
             "Magnesiumchlorid|MgCl2|MgCl|Mg²⁺", "Aluminiumoxid|Al2O3|AlO|Al³⁺"});
        add("formula", "f-roman",
            {"Eisen(III)-oxid|Fe2O3|FeO|Fe³⁺", "Eisen(II)-chlorid|FeCl2|FeCl3|Fe²⁺",
             "Kupfer(II)-oxid|CuO|Cu2O|Cu²⁺"});
        add("substance", "n-case",
            {"NaCl|Natriumchlorid|natriumchlorid", "LiCl|Lithiumchlorid|LithiumChlorid",
             "MgO|Magnesiumoxid|MAGNESIUMOXID"});
        add("substance", "-",
            {"NaCl|Natriumchlorid|Natriumclorid", "MgCl2|Magnesiumchlorid|Magnesiumchlorit",
             "KCl|Kaliumchlorid|Calciumchlorid", "Na2SO4|Natriumsulfat|Natriumsulf"});
        add("substance", "n-syllable",
            {"MgCl2|Magnesiumchlorid|Magnesiumdichlorid", "Al2O3|Aluminiumoxid|Dialuminiumtrioxid",
             "Na2SO4|Natriumsulfat|Dinatriumsulfat"});
        add("substance", "n-metal",
            {"NaCl|Natriumchlorid|Chlornatrium", "CaCl2|Calciumchlorid|Chloridcalcium",
             "MgO|Magnesiumoxid|Oxid-Magnesium"});
        add("substance", "n-id",
            {"NaCl|Natriumchlorid|Natriumchlor", "KBr|Kaliumbromid|Kaliumbrom",
             "MgO|Magnesiumoxid|Magnesiumox"});
        add("molar", "decimals",
            {"Lithiumchlorid (LiCl)|42.4|42,39|eine Nachkommastelle", "Natriumchlorid|58.4|58.44",
             "Magnesiumchlorid (MgCl2)|95.2|95.21"});
        // The bracket forgotten changes two counts at once: not an index forgotten.
        add("molar", "-",
            {"Magnesiumchlorid (MgCl2)|95.2|95.26", "Magnesiumoxid (MgO)|40.3|40.2",
             "Calciumhydroxid (Ca(OH)2)|74.1|57.1", "Magnesiumchlorid|95.2|59.8",
             "Natriumchlorid (NaCl)|58.4|28.0", "Wasser (H2O)|18.0|ca. 20"});
        add("molar", "m-round",
            {"Zinkoxid (ZnO)|81.4|81.3|81,38", "Ethanol (C2H5OH)|46.1|46.0",
             "Schwefelsäure (H2SO4)|98.1|98.0"});
        add("molar", "m-index",
            {"Magnesiumchlorid (MgCl2)|95.2|59.8|2 Cl-Atome", "Wasser (H2O)|18.0|17",
             "Aluminiumoxid (Al2O3)|102.0|70.0|3 O-Atome"});
        add("molar", "m-numbers",
            {"Natriumchlorid (NaCl)|58.4|28", "Wasser (H2O)|18.0|10",
             "Schwefelsäure (H2SO4)|98.1|50"});
        add("molar", "unreadable",
            {"Wasser (H2O)|18.0|ca. 18|18,0", "Schwefelsäure (H2SO4)|98.1|M = 98,1",
             "Wasser (H2O)|18.0|g/mol 18,0"});
        add("amount", "a-inverse",
            {"water|2.00|0.5|n = m / M", "salt|0.50|2", "gas|0.50|2|V / Vm"});
        add("amount", "-",
            {"salt|0.50|0.05", "gas|0.50|1.61", "water|2.00|2.5", "water|2.00|1.99",
             "water|2.00|2.01", "gas|0.50|25",
             "0 l Sauerstoff im Normzustand (22,4 l/mol)|0.00|0"});
        add("amount", "a-gas", {"water|2.00|1.61|22,4", "salt|0.50|1.30", "oxide|0.25|0.45"});
        add("amount", "a-index",
            {"water|2.00|2.12|2 H-Atome", "16 g Sauerstoff (O2)|0.50|1.00",
             "88,02 g Kohlenstoffdioxid (CO2)|2.00|3.14"});
        add("amount", "a-round", {"oxide|0.25|0.24|0,2481", "6 g Magnesium (Mg)|0.25|0.24"});
        add("amount", "decimals", {"oxide|0.25|0.248|zwei Nachkommastellen", "water|2.00|2.002"});
        add("amount", "unreadable", {"water|2.00|n = 2"});
        add("amount", "a-volume", {"gas|0.50|250.88", "gas|0.50|251", "gas|0.50|250,9"});
        add("equation", "e-multiple",
            {"H2 + O2 = H2O|2 1 2|4 2 4|durch 2", "N2 + H2 = NH3|1 3 2|2 6 4",
             "Al + O2 = Al2O3|4 3 2|12 9 6|durch 3"});
        add("equation", "-",
            {"H2 + O2 = H2O|2 1 2|2 1 2", "H2 + O2 = H2O|2 1 2|2 0 2",
             "H2 + O2 = H2O|2 1 2|2 1 2 2", "H2 + O2 = H2O|2 1 2|2 1 2."});
        add("equation", "e-unbalanced",
            {"H2 + O2 = H2O|2 1 2|1 1 1|O links 2, rechts 1",
             "N2 + H2 = NH3|1 3 2|1 3 1|N links 2, rechts 1",
             "CH4 + O2 = CO2 + H2O|1 2 1 2|1 1 1 2|O"});
        add("equation", "e-formula",
            {"H2 + O2 = H2O|2 1 2|2 1 2H2O", "Mg + O2 = MgO|2 1 2|2Mg 1 2"});
        add("equation", "e-fraction",
            {"Na + Cl2 = NaCl|2 1 2|1 0,5 1", "H2 + O2 = H2O|2 1 2|1 1/2 1"});
        add("ion", "i-sign",
            {"Natrium-Ion|+1|-1|positiv", "Chlorid-Ion|-1|+1|negativ", "Nitrat-Ion|-1|+1"});
        add("ion", "-",
            {"Natrium-Ion|+1|0", "Zink-Ion|+2|+1", "Nitrat-Ion|-1|-3", "Aluminium-Ion|+3|-2"});
        add("ion", "i-neighbour",
            {"Magnesium-Ion|+2|+3|2. Hauptgruppe", "Oxid-Ion|-2|-1|Sauerstoff",
             "Aluminium-Ion|+3|+2|3. Hauptgruppe"});
        add("choice", "c-empty",
            {"Katalysator|Stoff, der eine Reaktion beschleunigt.|", "Luft ist ein Gemisch.|Ja|  ",
             "Wasser ist ein Element.|Nein|"});
        add("choice", "-", {"Luft ist ein Gemisch.|Ja|Nein"});
    }
    void namesTheCause() {
        QFETCH(QString, kind);
        QFETCH(QString, prompt);
        QFETCH(QString, expected);
        QFETCH(QString, given);
        QFETCH(QString, cause);
        QFETCH(QString, mentions);
        const MistakeHints::Hint h =
            MistakeHints::diagnose(kinds().value(kind), prompt, expected, given, shippedElements());
        QCOMPARE(h.isEmpty() ? QStringLiteral("-") : h.cause, cause);
        if (!mentions.isEmpty())
            QVERIFY2(h.text.contains(mentions), qPrintable(h.text));
        if (!h.isEmpty()) {
            // One short sentence or two, ending as a sentence does.
            QVERIFY2(h.text.size() < 180, qPrintable(h.text));
            QVERIFY2(h.text.endsWith(u'.'), qPrintable(h.text));
        }
    }
    // The sample of wrong answers was written down before the rules: each row
    // names the cause a chemist would see, or "-". A hint naming another cause
    // is a wrong hint; the figures are printed for the notes.
    void sampleGetsNoWrongHint() {
        QFile file(QStringLiteral(LABQUIZ_SOURCE_DIR "/tests/chem/mistake_sample.tsv"));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        int answers = 0, hinted = 0, unexpected = 0;
        QStringList wrong;
        while (!file.atEnd()) {
            const QString line = QString::fromUtf8(file.readLine()).chopped(1);
            if (line.startsWith(u'#') || line.isEmpty())
                continue;
            const QStringList f = line.split(u'\t');
            QCOMPARE(f.size(), 5);
            QVERIFY2(kinds().contains(f[0]), qPrintable(line));
            ++answers;
            const MistakeHints::Hint h =
                MistakeHints::diagnose(kinds().value(f[0]), f[1], f[2], f[3], shippedElements());
            if (h.isEmpty())
                continue;
            ++hinted;
            // The annotation names causes per task kind ("m-decimals"), the
            // rules share some ("decimals").
            const QString cause = f[4];
            if (cause == QStringLiteral("-")) {
                ++unexpected;
                qInfo("hint where the sample expected none: %s → %s", qPrintable(f[3]),
                      qPrintable(h.text));
            } else if (!cause.endsWith(h.cause)) {
                wrong << f[3] + QStringLiteral(": ") + h.cause + QStringLiteral(" (") + cause +
                             u')';
            }
        }
        qInfo("%d wrong answers, %d with a hint (%.0f %%), %d of them where none was expected, %d "
              "naming another cause",
              answers, hinted, 100.0 * hinted / answers, unexpected, int(wrong.size()));
        QVERIFY2(answers >= 200, "the sample holds at least 200 answers");
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("; "))));
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_MAIN(TestAppResult)
#include "test_app_result.moc"
