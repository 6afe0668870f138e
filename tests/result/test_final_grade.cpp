#include "result/CertificatePrinter.h"
#include "result/FinalGrade.h"
#include "session/SessionState.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestFinalGrade : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void gradeAtEveryBoundary_data();
    void gradeAtEveryBoundary();
    void expressionComparesInLowerCase_data();
    void expressionComparesInLowerCase();
    void gradeNumberOfEveryMark_data();
    void gradeNumberOfEveryMark();
    void certificateSentences_data();
    void certificateSentences();
    void historyLineForTheLog();
    void preparesTheWholeResult();
    void safeCertificateFileNames_data();
    void safeCertificateFileNames();
    void choosesWhereThePageGoes();
};

void TestFinalGrade::gradeAtEveryBoundary_data() {
    QTest::addColumn<int>("correct");
    QTest::addColumn<int>("tasks");
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("expression");
    QTest::addColumn<bool>("honours");
    QTest::newRow("none right") << 0 << 60 << "ungenügend" << 3 << false;
    QTest::newRow("1 of 10 is exactly 0.1") << 1 << 10 << "ungenügend" << 3 << false;
    QTest::newRow("just over 0.1") << 7 << 60 << "mangelhaft minus" << 3 << false;
    QTest::newRow("0.2 exactly") << 2 << 10 << "mangelhaft minus" << 3 << false;
    QTest::newRow("0.3 exactly") << 3 << 10 << "mangelhaft" << 3 << false;
    QTest::newRow("0.4 exactly") << 8 << 20 << "mangelhaft plus" << 3 << false;
    QTest::newRow("9 of 20 stays below 0.45") << 9 << 20 << "ausreichend minus" << 6 << false;
    QTest::newRow("0.5 exactly") << 10 << 20 << "ausreichend" << 6 << false;
    QTest::newRow("0.55 exactly") << 11 << 20 << "ausreichend plus" << 6 << false;
    QTest::newRow("0.6 exactly") << 12 << 20 << "befriedigend minus" << 5 << false;
    QTest::newRow("0.65 exactly") << 13 << 20 << "befriedigend" << 5 << false;
    QTest::newRow("0.7 exactly") << 14 << 20 << "befriedigend plus" << 5 << false;
    QTest::newRow("0.75 exactly") << 15 << 20 << "gut minus" << 1 << false;
    QTest::newRow("0.8 exactly") << 16 << 20 << "gut" << 1 << false;
    QTest::newRow("17 of 20 is exactly 0.85") << 17 << 20 << "gut plus" << 1 << false;
    QTest::newRow("just over 0.85") << 35 << 40 << "sehr gut minus" << 2 << true;
    QTest::newRow("18 of 20 is exactly 0.9") << 18 << 20 << "sehr gut minus" << 2 << true;
    QTest::newRow("just over 0.9") << 37 << 40 << "sehr gut" << 2 << true;
    QTest::newRow("19 of 20 is exactly 0.95") << 19 << 20 << "sehr gut" << 2 << true;
    QTest::newRow("just over 0.95") << 58 << 60 << "sehr gut plus" << 2 << true;
    QTest::newRow("all right") << 60 << 60 << "sehr gut plus" << 2 << true;
}

void TestFinalGrade::gradeAtEveryBoundary() {
    QFETCH(int, correct);
    QFETCH(int, tasks);
    QFETCH(QString, word);
    QFETCH(int, expression);
    QFETCH(bool, honours);
    QCOMPARE(FinalGrade::gradeWord(correct, tasks), word);
    QCOMPARE(FinalGrade::expressionOf(word), expression);
    QCOMPARE(FinalGrade::earnsHonours(float(double(correct) / tasks)), honours);
}

void TestFinalGrade::expressionComparesInLowerCase_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("expression");
    QTest::newRow("as written") << "befriedigend plus" << 5;
    QTest::newRow("capitals") << "Sehr Gut Plus" << 2;
    QTest::newRow("umlaut in capitals") << "UNGENÜGEND" << 3;
    QTest::newRow("gut is not gut minus") << "gut" << 1;
    QTest::newRow("trailing blank") << "gut " << FinalGrade::kNoExpression;
    QTest::newRow("running mark") << "1+" << FinalGrade::kNoExpression;
    QTest::newRow("empty") << "" << FinalGrade::kNoExpression;
}

void TestFinalGrade::expressionComparesInLowerCase() {
    QFETCH(QString, word);
    QFETCH(int, expression);
    QCOMPARE(FinalGrade::expressionOf(word), expression);
}

void TestFinalGrade::gradeNumberOfEveryMark_data() {
    QTest::addColumn<QString>("mark");
    QTest::addColumn<int>("number");
    const char* marks[] = {"6-", "6", "6+", "5-", "5", "5+", "4-", "4", "4+",
                           "3-", "3", "3+", "2-", "2", "2+", "1-", "1", "1+"};
    const int numbers[] = {0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    for (int i = 0; i < 18; ++i)
        QTest::newRow(marks[i]) << QString::fromLatin1(marks[i]) << numbers[i];
    QTest::newRow("no such mark") << "7" << 0;
    QTest::newRow("blank before") << " 1+" << 0;
    QTest::newRow("grade word") << "sehr gut" << 0;
    QTest::newRow("empty") << "" << 0;
}

void TestFinalGrade::gradeNumberOfEveryMark() {
    QFETCH(QString, mark);
    QFETCH(int, number);
    QCOMPARE(FinalGrade::gradeNumber(mark), number);
}

void TestFinalGrade::certificateSentences_data() {
    QTest::addColumn<int>("tasks");
    QTest::addColumn<int>("correct");
    QTest::addColumn<QString>("counts");
    QTest::newRow("20 and 15") << 20 << 15 << " Von  20 Aufgaben wurden  15 richtig gelöst!";
    QTest::newRow("5 and 3") << 5 << 3 << " Von  5 Aufgaben wurden  3 richtig gelöst!";
    QTest::newRow("none") << 60 << 0 << " Von  60 Aufgaben wurden  0 richtig gelöst!";
    QTest::newRow("negative gets its sign")
        << -1 << 0 << " Von -1 Aufgaben wurden  0 richtig gelöst!";
}

void TestFinalGrade::certificateSentences() {
    QFETCH(int, tasks);
    QFETCH(int, correct);
    QFETCH(QString, counts);
    QCOMPARE(FinalGrade::countSentence(tasks, correct), counts);
    // Date and level lines do not depend on the counts; checked once here.
    QCOMPARE(FinalGrade::germanDate(QStringLiteral("03-24-2003")), QStringLiteral("24.03.2003"));
    QCOMPARE(FinalGrade::dateSentence(QStringLiteral("03-24-2003"), QStringLiteral("10:15:02"),
                                      QStringLiteral("10:41:37")),
             QStringLiteral(" Bearbeitung am: 24.03.2003 von:10:15:02 bis:10:41:37 Uhr."));
    QCOMPARE(FinalGrade::levelSentence(0), QStringLiteral("Schwierigkeitsgrad: normal "));
    QCOMPARE(FinalGrade::levelSentence(1), QStringLiteral("Schwierigkeitsgrad: Hohe Stufe "));
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
    QTest::newRow("plain") << "Anna Schmidt"
                           << "03-24-2003"
                           << "Laborix-Urkunde Anna Schmidt 24.03.2003.pdf";
    QTest::newRow("umlauts kept") << "Jörg Weiß"
                                  << "11-02-2024"
                                  << "Laborix-Urkunde Jörg Weiß 02.11.2024.pdf";
    QTest::newRow("quotes and slashes") << "Anna \"Chemie\" A/B\\C"
                                        << "03-24-2003"
                                        << "Laborix-Urkunde Anna Chemie A B C 24.03.2003.pdf";
    QTest::newRow("reserved characters") << "a<b>c:d|e?f*g"
                                         << "03-24-2003"
                                         << "Laborix-Urkunde a b c d e f g 24.03.2003.pdf";
    QTest::newRow("tabs and line breaks") << "Anna\t\nBerta"
                                          << "03-24-2003"
                                          << "Laborix-Urkunde Anna Berta 24.03.2003.pdf";
    QTest::newRow("dots at the ends") << "..Anna.. "
                                      << "03-24-2003"
                                      << "Laborix-Urkunde Anna 24.03.2003.pdf";
    QTest::newRow("nothing usable") << "///"
                                    << "03-24-2003"
                                    << "Laborix-Urkunde 24.03.2003.pdf";
    QTest::newRow("no date stored") << "Anna"
                                    << ""
                                    << "Laborix-Urkunde Anna.pdf";
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

QTEST_GUILESS_MAIN(TestFinalGrade)
#include "test_final_grade.moc"
