#include "TestSupport.h"
#include "result/CertificatePrinter.h"
#include "result/FinalGrade.h"
#include "session/Grades.h"
#include "session/SessionState.h"

#include <QTemporaryDir>

// The running mark of the score line and the final grade of the certificate
// go by the same steps of the share of right answers.
class TestFinalGrade : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void gradesAtEveryBoundary_data();
    void gradesAtEveryBoundary();
    void readsWordsAndMarksStrictly();
    void certificateSentences();
    void historyLineForTheLog();
    void preparesTheWholeResult();
    void safeCertificateFileNames_data();
    void safeCertificateFileNames();
    void choosesWhereThePageGoes();
};

void TestFinalGrade::gradesAtEveryBoundary_data() {
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

void TestFinalGrade::gradesAtEveryBoundary() {
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

void TestFinalGrade::readsWordsAndMarksStrictly() {
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
void TestFinalGrade::certificateSentences() {
    QCOMPARE(FinalGrade::countSentence(-1, 0),
             QStringLiteral(" Von -1 Aufgaben wurden  0 richtig gelöst!"));
    QCOMPARE(FinalGrade::levelSentence(7), QStringLiteral("Schwierigkeitsgrad: Hohe Stufe "));
}

void TestFinalGrade::historyLineForTheLog() {
    SessionState s;
    s.CandidateName = QStringLiteral("Jörg Müller");
    s.TasksSoFar = 60;
    s.CorrectSoFar = 45;
    s.ExpertLevel = 1;
    s.TestDate = QStringLiteral("03-24-2003");
    s.StartTime = QStringLiteral("10:15:02");
    s.EndTime = QStringLiteral("10:41:37");
    QCOMPARE(FinalGrade::historyLine(s, QStringLiteral("gut minus"), 10),
             QStringLiteral("<-  Jörg Müller  60 Aufgaben, 45 richtig, 15 falsch, Stufe hoch, "
                            "24.03.2003 10:15:02-10:41:37, 10 Notenpunkte - Note: gut minus"));
    // A name that holds a line break still makes one line of the log.
    s.CandidateName = QStringLiteral("Anna\nBerta\r");
    const QString line = FinalGrade::historyLine(s, QStringLiteral("gut"), 11);
    QVERIFY(line.startsWith(QStringLiteral("<-  Anna Berta   60 Aufgaben")));
    QVERIFY(!line.contains(u'\n') && !line.contains(u'\r'));
}

void TestFinalGrade::preparesTheWholeResult() {
    SessionState s;
    s.CandidateName = QStringLiteral("Anna");
    s.TasksSoFar = 20;
    s.CorrectSoFar = 18;
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

void TestFinalGrade::safeCertificateFileNames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("file");
    dataRow("umlauts kept", "Jörg Weiß", "11-02-2024", "Laborix-Urkunde Jörg Weiß 02.11.2024.pdf");
    dataRow("quotes and slashes", "Anna \"Chemie\" A/B\\C", "03-24-2003",
            "Laborix-Urkunde Anna Chemie A B C 24.03.2003.pdf");
    dataRow("reserved characters", "a<b>c:d|e?f*g", "03-24-2003",
            "Laborix-Urkunde a b c d e f g 24.03.2003.pdf");
    dataRow("tabs and line breaks", "Anna\t\nBerta", "03-24-2003",
            "Laborix-Urkunde Anna Berta 24.03.2003.pdf");
    dataRow("dots at the ends", "..Anna.. ", "03-24-2003", "Laborix-Urkunde Anna 24.03.2003.pdf");
    dataRow("nothing usable", "///", "03-24-2003", "Laborix-Urkunde 24.03.2003.pdf");
    dataRow("no date stored", "Anna", "", "Laborix-Urkunde Anna.pdf");
}

void TestFinalGrade::safeCertificateFileNames() {
    QFETCH(QString, name);
    QFETCH(QString, date);
    QFETCH(QString, file);
    QCOMPARE(CertificatePrinter::fileNameFor(name, date), file);
}

void TestFinalGrade::choosesWhereThePageGoes() {
    QTemporaryDir docs;
    using Kind = CertificatePrinter::Target::Kind;
    // The test's file wins over everything.
    auto t = CertificatePrinter::chooseTarget(QStringLiteral("/tmp/x.pdf"), true, docs.path(),
                                              QStringLiteral("Anna"), QStringLiteral("03-24-2003"));
    QCOMPARE(t.kind, Kind::PdfFile);
    QCOMPARE(t.file, QStringLiteral("/tmp/x.pdf"));
    QVERIFY(!t.forLackOfPrinter);
    t = CertificatePrinter::chooseTarget(QString(), true, docs.path(), QStringLiteral("Anna"),
                                         QStringLiteral("03-24-2003"));
    QCOMPARE(t.kind, Kind::Printer);
    // Without a printer: the documents folder, and an earlier certificate is kept.
    t = CertificatePrinter::chooseTarget(QString(), false, docs.path(), QStringLiteral("Anna"),
                                         QStringLiteral("03-24-2003"));
    QCOMPARE(t.kind, Kind::PdfFile);
    QVERIFY(t.forLackOfPrinter);
    QCOMPARE(t.file, docs.filePath(QStringLiteral("Laborix-Urkunde Anna 24.03.2003.pdf")));
    QFile(t.file).open(QIODevice::WriteOnly);
    t = CertificatePrinter::chooseTarget(QString(), false, docs.path(), QStringLiteral("Anna"),
                                         QStringLiteral("03-24-2003"));
    QCOMPARE(t.file, docs.filePath(QStringLiteral("Laborix-Urkunde Anna 24.03.2003 (2).pdf")));

    // A very long name, in letters that take two bytes, still gives a name
    // that every file system takes.
    const QString longName = QString(200, QChar(u'ä')) + QStringLiteral("😀x");
    const QString file = CertificatePrinter::fileNameFor(longName, QStringLiteral("03-24-2003"));
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

QTEST_MAIN(TestFinalGrade)
#include "test_final_grade.moc"
