// What the overview makes of a class's results: the selection, each name's
// attempts, each page's share, the grades, the tasks answered wrong most
// often with their most frequent wrong answers, and the class table as CSV
// bytes that a German spreadsheet opens by a double click, with text cells
// that can never turn into formulas. First the results folder read as
// students and programs leave it: every kind of bad file is skipped and named
// with its reason, temporary and foreign files are passed over in silence,
// nothing hangs, and nothing is changed.
#include "TestSupport.h"
#include "overview/ClassCsv.h"
#include "overview/ClassSummary.h"
#include "overview/ResultFolder.h"
#include "overview/ResultSamples.h"

#include <sys/stat.h>

class TestClassSummary : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void skipsEachBadFileWithItsReason() {
        QTemporaryDir dir;
        const QByteArray good = sampleClass().first().toJson();
        QByteArray v2 = good, sums = good, missing = good, large = good;
        v2.replace("\"version\": 1", "\"version\": 2");
        sums.replace("\"tasks\": 3,", "\"tasks\": 4,"); // three tasks on the pages, four in all
        missing.replace("\"candidate\"", "\"kandidat\"");
        large.insert(1, QByteArray(ResultRecord::kMaxFileBytes, ' ')); // valid JSON all the same
        const QList<std::tuple<QString, QByteArray, QString>> bad{
            {"cut.json", good.left(good.size() / 2), "kein gültiges JSON"},
            {"empty.json", "", "leer"},
            {"csv.json", "Name;Note\r\nAnna;gut\r\n", "kein gültiges JSON"},
            {"array.json", "[1, 2]", "kein gültiges JSON"},
            {"quiz.json", R"({"format": "quiz", "version": 1})", "keine Ergebnisdatei"},
            {"v2.json", v2, "Version 2 wird nicht unterstützt"},
            {"sums.json", sums, "Summen"},
            {"missing.json", missing, "Pflichtfeld"},
            {"large.json", large, "zu groß"}};
        QMap<QString, QString> expected;
        for (const auto& [name, bytes, why] : bad) {
            QVERIFY(writeBytes(dir.filePath(name), bytes));
            expected.insert(name, why);
        }
        QVERIFY(writeBytes(dir.filePath("2026-11-20_good.json"), good));
        // A result still being written, a teacher's notes, a spreadsheet, an
        // archive folder: passed over in silence.
        writeBytes(dir.filePath(".2026-11-21_anna.json.part"), good.left(40));
        writeBytes(dir.filePath(".hidden.json"), "{");
        writeBytes(dir.filePath("Notizen.txt"), "Klasse 8b");
        QDir(dir.path()).mkdir("Archiv");
        writeBytes(dir.filePath("Archiv/2026-10-01_alt.json"), good);
        // A pipe, links and a folder must never hang the reading.
        QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("pipe.json")).constData(), 0644) == 0);
        QVERIFY(QFile::link(dir.filePath("loop.json"), dir.filePath("loop.json")));
        QVERIFY(QFile::link(dir.filePath("nowhere"), dir.filePath("dangling.json")));
        QVERIFY(QFile::link(dir.filePath("2026-11-20_good.json"), dir.filePath("link.json")));
        QDir(dir.path()).mkdir("folder.json");
        expected.insert("pipe.json", "keine gewöhnliche Datei");
        expected.insert("folder.json", "keine gewöhnliche Datei");
        expected.insert("loop.json", "Verweis");
        expected.insert("dangling.json", "Verweis");

        auto snapshot = [&dir] {
            QStringList out;
            QDirIterator it(dir.path(),
                            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
            while (it.hasNext()) {
                it.next();
                out << it.fileName() + u' ' + QString::number(it.fileInfo().size()) + u' ' +
                           it.fileInfo().lastModified().toString(Qt::ISODateWithMs);
            }
            out.sort();
            return out;
        };
        const QStringList before = snapshot();
        QElapsedTimer clock;
        clock.start();
        const ResultFolder::Reading r = ResultFolder::read(dir.path());
        QVERIFY(clock.elapsed() < 5000);
        QVERIFY(r.problem.isEmpty());
        // A link to a good result is a good result.
        QCOMPARE(r.files, (QStringList{"2026-11-20_good.json", "link.json"}));
        QCOMPARE(r.records.size(), 2);
        QCOMPARE(r.skipped.size(), expected.size());
        for (const ResultFolder::Skipped& s : r.skipped)
            QVERIFY2(expected.contains(s.file) && s.why.contains(expected.value(s.file)),
                     qPrintable(s.file + u' ' + s.why));
        QCOMPARE(r.seen, int(r.records.size() + r.skipped.size()));
        QCOMPARE(snapshot(), before);
    }

    void saysWhyAFolderOrFileCannotBeRead() {
        QTemporaryDir dir;
        const ResultFolder::Reading missing = ResultFolder::read(dir.filePath("fehlt"));
        QVERIFY2(missing.problem.contains("gibt es nicht"), qPrintable(missing.problem));
        QVERIFY(missing.records.isEmpty());
        writeBytes(dir.filePath("datei"), "x");
        QVERIFY(ResultFolder::read(dir.filePath("datei")).problem.contains("kein Ordner"));
        // The drop box, which only root could read anyway, is shown by
        // test_console_commands with root's override dropped.
        QString why;
        QVERIFY(!ResultFolder::readFile(QStringLiteral("/nonexistent/folder/x.json"), &why));
        QCOMPARE(why, QStringLiteral("verschwunden, während der Ordner gelesen wurde"));
    }

    void readsManyFilesInOrder() {
        QTemporaryDir dir;
        const QByteArray good = sampleClass().first().toJson();
        for (int i = 0; i < 300; ++i)
            writeBytes(dir.filePath(QStringLiteral("r%1.json").arg(i, 4, 10, QLatin1Char('0'))),
                       i % 50 == 7 ? QByteArray("{") : good);
        ResultFolder::Progress progress;
        const ResultFolder::Reading r = ResultFolder::read(dir.path(), &progress);
        QCOMPARE(r.records.size(), 294);
        QCOMPARE(r.skipped.size(), 6);
        QCOMPARE(r.skipped[0].file, QStringLiteral("r0007.json"));
        QCOMPARE(r.files.first(), QStringLiteral("r0000.json"));
        QCOMPARE(r.files.last(), QStringLiteral("r0299.json"));
        QCOMPARE(progress.total.load(), 300);
        QCOMPARE(progress.done.load(), 300);
        // Stopped before it starts, it reads nothing.
        ResultFolder::Progress stopped;
        stopped.cancel = true;
        QVERIFY(ResultFolder::read(dir.path(), &stopped).cancelled);
    }
    void selects_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<int>("level");
        QTest::addColumn<QStringList>("tests"); // candidate and day, by finishing time
        using L = QStringList;
        dataRow("everything", "", "", "", 0,
                L{"Anna 20", "Ben 21", "Cem 22", "Anna 24", "anna  25"});
        dataRow("part of a name, any case", "ANN", "", "", 0, L{"Anna 20", "Anna 24", "anna  25"});
        dataRow("blanks around the name typed", "  ben ", "", "", 0, L{"Ben 21"});
        dataRow("from a day on, that day included", "", "2026-11-22", "", 0,
                L{"Cem 22", "Anna 24", "anna  25"});
        dataRow("up to a day, that day included", "", "", "2026-11-21", 0, L{"Anna 20", "Ben 21"});
        dataRow("one day", "", "2026-11-24", "2026-11-24", 0, L{"Anna 24"});
        dataRow("normal level", "", "", "", 1, L{"Anna 20", "Ben 21", "Anna 24", "anna  25"});
        dataRow("expert level", "", "", "", 2, L{"Cem 22"});
        dataRow("nothing matches", "Zoe", "", "", 0, L{});
    }
    void selects() {
        QFETCH(QString, name);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(int, level);
        QFETCH(QStringList, tests);
        const QList<ResultRecord> records = sampleClass();
        TestFilter filter{name, QDate::fromString(from, Qt::ISODate),
                          QDate::fromString(to, Qt::ISODate), TestFilter::Level(level)};
        QStringList got;
        for (int i : ClassSummary::of(records, filter).tests)
            got << records[i].candidate + u' ' + QString::number(records[i].finished.date().day());
        QCOMPARE(got, tests);
    }

    void groupsAttemptsOfOneName() {
        const QList<ResultRecord> records = sampleClass();
        const ClassSummary s = ClassSummary::of(records);
        // "Anna", "Anna" and "anna " are one candidate, named as last spelt.
        QCOMPARE(s.attempts.size(), 3);
        QCOMPARE(s.attempts[0].name, QStringLiteral("anna"));
        QCOMPARE(s.attempts[0].tests, (QList<int>{0, 3, 4}));
        QCOMPARE(s.attempts[1].name, QStringLiteral("Ben"));
        QCOMPARE(s.testsByName(), (QList<int>{0, 3, 4, 1, 2}));
        // The trend runs from the oldest attempt (1 of 3) to the newest (1 of 2).
        QCOMPARE(
            ClassSummary::trendText(records[0], records[4]),
            QStringLiteral("33,3 % → 50,0 % (%1 → %2)").arg(records[0].grade, records[4].grade));
    }

    void sharesPerPageAndGrades() {
        const QList<ResultRecord> records = sampleClass();
        const ClassSummary s = ClassSummary::of(records);
        QList<int> order;
        for (const ClassSummary::PageShare& p : s.pages)
            order << p.page;
        QCOMPARE(order, (QList<int>{1, 2, 11, 8, 12, 9, 3, 4, 5, 6}));
        // Page 1: 4 right of 9; page 11: 1 of 4; page 9: one equation, two tasks.
        QCOMPARE(std::pair(s.pages[0].correct, s.pages[0].tasks), std::pair(4, 9));
        QCOMPARE(std::pair(s.pages[2].correct, s.pages[2].tasks), std::pair(1, 4));
        QCOMPARE(std::pair(s.pages[5].tasks, s.pages[5].share()), std::pair(2, 1.0));
        QCOMPARE(std::pair(s.pages[1].tasks, s.pages[1].share()), std::pair(0, 0.0));
        QCOMPARE(std::pair(s.tasks, s.correct), std::pair(15, 7));

        std::array<int, ClassSummary::kGradeSteps> expected = {};
        for (const ResultRecord& r : records)
            ++expected[std::size_t(FinalGrade::stepOf(r.grade))];
        QCOMPARE(s.grades, expected);
        QCOMPARE(s.grades[15], 1); // Anna's second try, 3 of 3, is the one "sehr gut plus"
        // A grade word the program does not know counts by its points.
        ResultRecord odd = records[1];
        odd.grade = QStringLiteral("prima");
        odd.points = 11;
        QCOMPARE(ClassSummary::gradeStep(odd), 11);
        QCOMPARE(ClassSummary::percentText(0.0), QStringLiteral("0,0 %"));
        QCOMPARE(ClassSummary::percentText(0.8456), QStringLiteral("84,6 %"));
    }

    void hardestTasksWithTheirWrongAnswers() {
        const ClassSummary s = ClassSummary::of(sampleClass());
        QCOMPARE(s.hardTasks.size(), 3);
        const ClassSummary::HardTask& co = s.hardTasks[0];
        QCOMPARE(QStringList({co.prompt, co.expected}), (QStringList{"Kohlenstoffmonoxid", "CO"}));
        QCOMPARE((QList<int>{co.page, co.asked, co.wrong}), (QList<int>{11, 4, 3}));
        QCOMPARE(ClassSummary::wrongAnswersText(co.wrongAnswers),
                 QStringLiteral("„Co“ 2×, keine Antwort 1×"));
        const ClassSummary::HardTask& na = s.hardTasks[1];
        QCOMPARE((QList<int>{na.asked, na.wrong}), (QList<int>{5, 3}));
        QCOMPARE(ClassSummary::wrongAnswersText(na.wrongAnswers),
                 QStringLiteral("„na“ 2×, „NA“ 1×"));
        QCOMPARE(ClassSummary::wrongAnswersText(s.hardTasks[2].wrongAnswers),
                 QStringLiteral("„Ar“ 1×, „as“ 1×"));
        // Only the selection counts: Ben alone got all three wrong once.
        TestFilter ben;
        ben.name = QStringLiteral("Ben");
        const ClassSummary one = ClassSummary::of(sampleClass(), ben);
        QCOMPARE(one.hardTasks.size(), 3);
        for (const ClassSummary::HardTask& t : one.hardTasks)
            QCOMPARE(t.wrong, 1);

        // Four wrong answers each; the task asked less often is the harder
        // one, and at the same share the earlier page of the test comes first.
        QList<SampleTask> a, b{{1, "Eisen", "Fe", "Fe"}};
        for (int i = 0; i < 4; ++i) {
            a << SampleTask{1, "Eisen", "Fe", "Ei"} << SampleTask{5, "Sulfid", "-2", "-1"};
            b << SampleTask{2, "3", "tri", "ter"};
        }
        const ClassSummary two = ClassSummary::of(
            {sampleTest("A", "2026-11-20T10:00:00", a), sampleTest("B", "2026-11-21T10:00:00", b)});
        QStringList order;
        for (const ClassSummary::HardTask& t : two.hardTasks)
            order << t.prompt;
        QCOMPARE(order, (QStringList{"3", "Sulfid", "Eisen"}));
    }

    void csvTextCells_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cell");
        dataRow("plain", "Anna", "Anna");
        dataRow("umlauts stay", "Jörg Müßig", "Jörg Müßig");
        dataRow("empty", "", "");
        dataRow("formula", "=1+1", "'=1+1");
        dataRow("hyperlink formula, with quotes", "=HYPERLINK(\"http://x\")",
                "\"'=HYPERLINK(\"\"http://x\"\")\"");
        dataRow("plus", "+49 30 1234", "'+49 30 1234");
        dataRow("minus", "-2+3", "'-2+3");
        dataRow("at", "@SUMME(A1)", "'@SUMME(A1)");
        dataRow("tab in front", "\t=1", "'\t=1");
        dataRow("sign inside is harmless", "Anna-Lena", "Anna-Lena");
        dataRow("semicolon", "Müller; Anna", "\"Müller; Anna\"");
        dataRow("quote", "Anna \"Ani\" B", "\"Anna \"\"Ani\"\" B\"");
        dataRow("line break", "Zeile\nzwei", "\"Zeile\nzwei\"");
        dataRow("formula and semicolon", "=A1;B1", "\"'=A1;B1\"");
        dataRow("blank at the end", "Anna ", "\"Anna \"");
    }
    void csvTextCells() {
        QFETCH(QString, text);
        QFETCH(QString, cell);
        QCOMPARE(ClassCsv::textCell(text), cell);
    }

    void csvWholeTable() {
        // 5 of 6 right: 83,3 % with a decimal comma; rows in the order shown.
        const QList<ResultRecord> records{
            sampleTest("Lena Köhler", "2026-11-24T10:41:37",
                       {{1, "Natrium", "Na", "Na"},
                        {1, "Arsen", "As", "As"},
                        {1, "Eisen", "Fe", "Fe"},
                        {1, "Kupfer", "Cu", "Ku"},
                        {9, "H2 + O2 = H2O", "2 1 2", "2 1 2"}},
                       true),
            sampleTest("@Ben", "2026-11-25T08:00:00", {{1, "Natrium", "Na", "na"}})};
        const QByteArray expected =
            "\xEF\xBB\xBF"
            "Name;Datum;Uhrzeit;Stufe;Aufgaben;Richtig;Anteil richtig "
            "(%);Note;Punkte;Rechner;Datei\r\n" +
            QStringLiteral("'@Ben;25.11.2026;08:00;normal;1;0;0,0;%1;%2;pc-07;'-b.json\r\n"
                           "Lena Köhler;24.11.2026;10:41;Strebermodus;6;5;83,3;%3;%4;pc-07;"
                           "lena.json\r\n")
                .arg(records[1].grade)
                .arg(records[1].points)
                .arg(records[0].grade)
                .arg(records[0].points)
                .toUtf8();
        QCOMPARE(ClassCsv::table(records, {"lena.json", "-b.json"}, {1, 0}), expected);
    }
};

QTEST_GUILESS_MAIN(TestClassSummary)
#include "test_class_summary.moc"
