#include "ProbeSupport.h"
#include "TestSupport.h"
#include "overview/ResultSamples.h"
#include "result/JsonTree.h"
#include "result/ResultFile.h"
#include "result/ResultRecord.h"

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

// A finished test handed in as a file of its own: whatever the name, the
// file stays inside its folder; nothing is written over; many writers at
// once and writers killed half-way leave only whole files; a folder that
// cannot take it sends the result to the outbox, and the next start hands
// it in. The JSON reader behind it takes what QJsonDocument takes where it
// matters, refuses what is cut off or broken, and a result reads back exactly
// as it was written.
class TestResultFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void agreesWithQtOnValidity_data();
    void agreesWithQtOnValidity();
    void stricterThanQt_data();
    void stricterThanQt();
    void readsValues();
    void resultFileReadsBackWhole();
    void everyCutOfAResultIsRefused();
    void namesStayInsideTheFolder_data();
    void namesStayInsideTheFolder();
    void readingRefusesWhatIsNotAWholeResult_data();
    void readingRefusesWhatIsNotAWholeResult();
    void neverWritesOver();
    void unreachableFolderFillsTheOutbox_data();
    void unreachableFolderFillsTheOutbox();
    void thirtyWritersAtOnce();
    void killsLeaveNoBrokenFile();
};

namespace {

ResultRecord twoPages() {
    ResultRecord r;
    r.program = "Laborix Test 3.0";
    r.machine = "pc-07";
    r.candidate = "Lena Köhler";
    r.started = QDateTime(QDate(2026, 11, 24), QTime(10, 15, 2));
    r.finished = QDateTime(QDate(2026, 11, 24), QTime(10, 41, 37));
    r.grade = "gut plus";
    r.points = 12;
    r.bankFile = "labquiz.dat";
    r.bankSha256 = QString(64, u'a');
    AnswerItem wrong("Natrium", "Na", "na");
    wrong.hint = "Symbole beginnen mit einem Großbuchstaben.";
    r.pages = {{1, pageTitle(1), 2, 1, {{"Arsen", "As", "As", true}, wrong}, {}},
               {9, pageTitle(9), 2, 2, {{"H2 + O2 = H2O", "2 1 2", "2 1 2", true}}, {}}};
    r.tasks = 4;
    r.correct = 3;
    return r;
}

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

// Every file of the folder must read as a whole result; returns how many.
int wholeResults(const QString& folder, QString* why) {
    int n = 0;
    for (const QString& name : filesIn(folder)) {
        if (!ResultFile::isResultName(name))
            continue;
        QFile f(QDir(folder).filePath(name));
        if (!f.open(QIODevice::ReadOnly) || !ResultRecord::fromJson(f.readAll(), why)) {
            *why = name + QStringLiteral(": ") + *why;
            return -1;
        }
        ++n;
    }
    return n;
}

} // namespace

void TestResultFile::agreesWithQtOnValidity_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("blanks around") << QByteArray(" \r\n\t{ } \n");
    QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF{\"a\": 1}");
    QTest::newRow("nesting") << QByteArray(R"({"a": [1, {"b": [true, false, null]}, "x"]})");
    QTest::newRow("numbers") << QByteArray(R"([0, -0, 12, -3.25, 1e5, 2.5E-3, 6.022e+23])");
    QTest::newRow("escapes") << QByteArray(R"(["\" \\ \/ \b \f \n \r \t \u00fc \ud83d\ude00"])");
    QTest::newRow("umlauts") << QByteArray("[\"K\xC3\xB6hler \xE2\x82\xAC \xF0\x9F\x98\x80\"]");
    QTest::newRow("empty key") << QByteArray(R"({"": 1})");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("only blanks") << QByteArray("  ");
    QTest::newRow("cut in a text") << QByteArray(R"({"a": "Lena)");
    QTest::newRow("cut after a comma") << QByteArray(R"({"a": 1,)");
    QTest::newRow("cut in a literal") << QByteArray(R"({"a": tru)");
    QTest::newRow("missing colon") << QByteArray(R"({"a" 1})");
    QTest::newRow("unquoted key") << QByteArray(R"({a: 1})");
    QTest::newRow("trailing comma") << QByteArray(R"([1, 2,])");
    QTest::newRow("leading zero") << QByteArray(R"([01])");
    QTest::newRow("plus sign") << QByteArray(R"([+1])");
    QTest::newRow("number too large") << QByteArray(R"([1e400])");
    QTest::newRow("garbage after") << QByteArray(R"({"a": 1} x)");
    QTest::newRow("two values") << QByteArray(R"({} {})");
    QTest::newRow("bad UTF-8") << QByteArray("[\"\xC3\x28\"]");
    QTest::newRow("overlong UTF-8") << QByteArray("[\"\xC0\xAF\"]");
    QTest::newRow("surrogate in UTF-8") << QByteArray("[\"\xED\xA0\x80\"]");
    QTest::newRow("past U+10FFFF") << QByteArray("[\"\xF4\x90\x80\x80\"]");
    QTest::newRow("UTF-8 cut off") << QByteArray("[\"\xE2\x82");
    QTest::newRow("short unicode escape") << QByteArray(R"(["\u12"])");
    QTest::newRow("single quotes") << QByteArray(R"(['a'])");
}

void TestResultFile::agreesWithQtOnValidity() {
    QFETCH(QByteArray, json);
    QJsonParseError error;
    QJsonDocument::fromJson(json, &error);
    const bool qtTakes = error.error == QJsonParseError::NoError;
    QCOMPARE(JsonTree::parse(json).has_value(), qtTakes);
}

void TestResultFile::stricterThanQt_data() {
    QTest::addColumn<QByteArray>("json");
    // QJsonDocument lets these pass; no program writes them.
    QTest::newRow("point without digits") << QByteArray("[1.]");
    QTest::newRow("digits only after the point") << QByteArray("[.5]");
    QTest::newRow("unknown escape") << QByteArray(R"(["\x"])");
    QTest::newRow("nested far too deep") << QByteArray(100, '[') + QByteArray(100, ']');
}

void TestResultFile::stricterThanQt() {
    QFETCH(QByteArray, json);
    QVERIFY(!JsonTree::parse(json));
}

void TestResultFile::readsValues() {
    const auto tree = JsonTree::parse(
        R"({"a": "Na\u00df \"x\"", "n": -2.5e1, "t": true, "f": false, "z": null,
            "list": [1, [2, 3], {"k": 4}, 5], "a": "zuletzt", "k\u0065y": 7})");
    QVERIFY(tree);
    const JsonTree::Value root = tree->root();
    QVERIFY(root.isObject());
    QCOMPARE(root.member(QLatin1String("a")).toString(), QStringLiteral("zuletzt"));
    QCOMPARE(root.member(QLatin1String("n")).toNumber(), -25.0);
    QVERIFY(root.member(QLatin1String("t")).toBool());
    QVERIFY(root.member(QLatin1String("f")).isBool());
    QVERIFY(!root.member(QLatin1String("f")).toBool());
    QVERIFY(root.member(QLatin1String("z")).isValid());
    QVERIFY(!root.member(QLatin1String("fehlt")).isValid());
    QCOMPARE(root.member(QLatin1String("key")).toNumber(), 7.0);
    const QList<JsonTree::Value> list = root.member(QLatin1String("list")).elements();
    QCOMPARE(list.size(), 4);
    QCOMPARE(list[1].elements().size(), 2);
    QCOMPARE(list[2].member(QLatin1String("k")).toNumber(), 4.0);
    QCOMPARE(list[3].toNumber(), 5.0);
    const auto text = JsonTree::parse(R"(["Na\u00df \"x\" \ud83d\ude00 \/"])");
    QCOMPARE(text->root().elements()[0].toString(), QString::fromUtf8("Naß \"x\" 😀 /"));
}

void TestResultFile::resultFileReadsBackWhole() {
    for (ResultRecord r : sampleClass()) {
        r.bankSha256 = QStringLiteral("ab12");
        r.pages[0].items[0].hint = QStringLiteral("Groß- und Kleinschreibung: \"Na\"\n");
        r.candidate += QStringLiteral(" Jörg \t\\ ☺");
        QString why;
        const std::optional<ResultRecord> back = ResultRecord::fromJson(r.toJson(), &why);
        QVERIFY2(back, qPrintable(why));
        QCOMPARE(back->toJson(), r.toJson());
        QCOMPARE(back->candidate, r.candidate);
        QCOMPARE(back->pages[0].items[0].hint, r.pages[0].items[0].hint);
    }
}

void TestResultFile::everyCutOfAResultIsRefused() {
    const QByteArray whole = sampleClass()[2].toJson();
    for (qsizetype n = 0; n < whole.size(); n += 7) {
        // Blanks after the closing brace are all a cut may leave out.
        if (whole.left(n).trimmed() == whole.trimmed())
            continue;
        QVERIFY2(!ResultRecord::fromJson(whole.left(n)), qPrintable(QString::number(n)));
    }
}

void TestResultFile::namesStayInsideTheFolder_data() {
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<QString>("part"); // what the name becomes in the file name
    dataRow("Umlaute", QStringLiteral("Lena Köhler"), QStringLiteral("Lena_Koehler"));
    dataRow("nach oben", QStringLiteral("../../x"), QStringLiteral("x"));
    dataRow("Trenner", QStringLiteral("a/b\\c"), QStringLiteral("abc"));
    dataRow("Gerätename", QStringLiteral("CON"), QStringLiteral("CON"));
    dataRow("versteckt", QStringLiteral(" .hidden"), QStringLiteral("hidden"));
    dataRow("300 Zeichen", QString(300, u'a'), QString(40, u'a'));
    dataRow("Emoji", QStringLiteral("🧪 Zoë"), QStringLiteral("Zoe"));
    dataRow("Steuerzeichen", QStringLiteral("A\x01\nB\t"), QStringLiteral("A_B"));
    dataRow("nichts übrig", QStringLiteral("/..."), QStringLiteral("unbenannt"));
}

void TestResultFile::namesStayInsideTheFolder() {
    QFETCH(QString, candidate);
    QFETCH(QString, part);
    QTemporaryDir dir;
    ResultRecord r = twoPages();
    r.candidate = candidate;
    const ResultFile::HandIn done =
        ResultFile::handIn(r, dir.path(), dir.filePath(QStringLiteral("Ausgang")), 4711);
    QVERIFY2(!done.inOutbox, qPrintable(done.why));
    QCOMPARE(QFileInfo(done.path).absolutePath(), QFileInfo(dir.path()).absoluteFilePath());
    // Only the finished file is there: no temporary one, nothing elsewhere.
    QCOMPARE(filesIn(dir.path()), QStringList{QFileInfo(done.path).fileName()});
    QCOMPARE(QFileInfo(done.path).fileName(),
             QStringLiteral("2026-11-24_10-41-37_") + part + QStringLiteral("_pc-07_4711.json"));
    QFile f(done.path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(ResultRecord::fromJson(f.readAll())->candidate, candidate);
}

void TestResultFile::readingRefusesWhatIsNotAWholeResult_data() {
    const QByteArray whole = twoPages().toJson();
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("why"); // empty: read
    dataRow("ganz", whole, QString());
    dataRow("abgeschnitten", whole.left(whole.size() / 2), QStringLiteral("kein gültiges JSON"));
    dataRow("kein JSON", QByteArray("Name;Note\r\n"), QStringLiteral("kein gültiges JSON"));
    dataRow("andere Version", QByteArray(whole).replace("\"version\": 1", "\"version\": 2"),
            QStringLiteral("Version 2"));
    dataRow("Summe falsch", QByteArray(whole).replace("\"tasks\": 4", "\"tasks\": 5"),
            QStringLiteral("Summen"));
    dataRow("mehr richtig als Aufgaben",
            QByteArray(whole).replace("\"tasks\": 2,", "\"tasks\": 0,"), QStringLiteral("mehr"));
    dataRow("Feld fehlt", QByteArray(whole).replace("\"candidate\"", "\"kandidat\""),
            QStringLiteral("Pflichtfeld"));
    dataRow("Stufe unbekannt", QByteArray(whole).replace("\"normal\"", "\"leicht\""),
            QStringLiteral("Pflichtfeld"));
    dataRow("zu groß", whole + QByteArray(ResultRecord::kMaxFileBytes, ' '),
            QStringLiteral("zu groß"));
}

void TestResultFile::readingRefusesWhatIsNotAWholeResult() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, why);
    QString reason;
    const std::optional<ResultRecord> read = ResultRecord::fromJson(bytes, &reason);
    if (why.isEmpty()) {
        QVERIFY2(read, qPrintable(reason));
        // What was written is what is read.
        QCOMPARE(read->toJson(), bytes);
        QCOMPARE(read->pages[0].items[1].hint, twoPages().pages[0].items[1].hint);
    } else {
        QVERIFY(!read);
        QVERIFY2(reason.contains(why), qPrintable(reason));
    }
}

void TestResultFile::neverWritesOver() {
    QTemporaryDir dir;
    const QString name = QStringLiteral("gleich.json");
    QStringList written;
    for (int i = 1; i <= 3; ++i)
        written
            << QFileInfo(ResultFile::writeNew(dir.path(), name, QByteArray::number(i))).fileName();
    QCOMPARE(written,
             (QStringList{name, QStringLiteral("gleich-2.json"), QStringLiteral("gleich-3.json")}));
    QFile first(dir.filePath(name));
    QVERIFY(first.open(QIODevice::ReadOnly));
    QCOMPARE(first.readAll(), QByteArray("1"));
}

void TestResultFile::unreachableFolderFillsTheOutbox_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("outbox");
    // Students may create files there, but neither list nor read them.
    dataRow("Abgabeordner 1733", QStringLiteral("dropbox"), false);
    dataRow("schreibgeschützt", QStringLiteral("readonly"), true);
    dataRow("Server weg", QStringLiteral("missing"), true);
}

void TestResultFile::unreachableFolderFillsTheOutbox() {
    QFETCH(QString, kind);
    QFETCH(bool, outbox);
    if (::geteuid() != 0)
        QSKIP("braucht root: der Ordner gehört einem anderen Konto, der Schreiber hat keine "
              "Sonderrechte");
    QTemporaryDir dir;
    QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0755) == 0);
    const QString results =
        dir.filePath(kind == QLatin1String("missing") ? QStringLiteral("server/weg/Ergebnisse")
                                                      : QStringLiteral("Ergebnisse"));
    const QString box = dir.filePath(QStringLiteral("Ausgang"));
    if (kind != QLatin1String("missing")) {
        QVERIFY(QDir().mkpath(results));
        const QByteArray path = QFile::encodeName(results);
        // The teacher's folder: another owner, so the writer is "others".
        QVERIFY(::chown(path.constData(), 65534, 65534) == 0);
        QVERIFY(::chmod(path.constData(), kind == QLatin1String("dropbox") ? 01733 : 0555) == 0);
    } else {
        // No server: the path leads through a plain file.
        QVERIFY(writeFile(dir.filePath(QStringLiteral("server")), QByteArray("x")));
    }
    QVERIFY(QDir().mkpath(box));
    ProbeRun writer(dir.path(),
                    {"--no-override", "--results", results, "--outbox", box, "--count", "1"});
    writer.start();
    QVERIFY2(writer.finish() && writer.exitedCleanly(), qPrintable(writer.transcript()));
    const QString said = outbox ? QStringLiteral("OUTBOX ") : QStringLiteral("WROTE ");
    QVERIFY2(writer.linesStartingWith(said).size() == 1, qPrintable(writer.transcript()));
    QString why;
    QCOMPARE(wholeResults(outbox ? box : results, &why), 1);
    if (!outbox)
        return;
    // The next start, with the folder back, hands it in and empties the box.
    if (kind == QLatin1String("missing"))
        QVERIFY(QFile::remove(dir.filePath(QStringLiteral("server"))));
    else
        QVERIFY(::chmod(QFile::encodeName(results).constData(), 01733) == 0);
    QCOMPARE(ResultFile::deliverOutbox(box, results), 0);
    QCOMPARE(filesIn(box), QStringList());
    QCOMPARE(wholeResults(results, &why), 1);
}

void TestResultFile::thirtyWritersAtOnce() {
    constexpr int kWriters = 30;
    QTemporaryDir dir;
    const QString results = dir.filePath(QStringLiteral("Ergebnisse"));
    const QString go = dir.filePath(QStringLiteral("los"));
    std::vector<std::unique_ptr<ProbeRun>> writers;
    for (int i = 0; i < kWriters; ++i) {
        // The same name for all: only machine, process and order keep them apart.
        writers.push_back(
            std::make_unique<ProbeRun>(dir.path(), QStringList{"--results", results, "--count", "1",
                                                               "--at", go, "--name", "Klasse 9b"}));
        writers.back()->start();
    }
    QThread::msleep(1500); // all loaded and waiting for the same moment
    QVERIFY(writeFile(go, QByteArray()));
    for (auto& w : writers)
        QVERIFY2(w->finish() && w->exitedCleanly(), qPrintable(w->transcript()));
    QString why;
    QCOMPARE(wholeResults(results, &why), kWriters);
    QCOMPARE(filesIn(results).size(), kWriters); // no temporary file left
}

void TestResultFile::killsLeaveNoBrokenFile() {
    constexpr int kKills = 200;
    QTemporaryDir dir;
    const QString results = dir.filePath(QStringLiteral("Ergebnisse"));
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    ProbeRun server(dir.path(), {"--results", results, "--server"});
    server.start();
    for (int round = 1; round <= kKills; ++round) {
        server.send("go\n");
        QVERIFY2(server.waitFor(QStringLiteral("READY "), 20000, round),
                 qPrintable(server.transcript()));
        const QString ready = server.linesStartingWith(QStringLiteral("READY ")).last();
        // Up to 20 ms: some writes finish, many are cut off (a sanitizer
        // build writes several times slower).
        QThread::usleep(random.bounded(20000));
        QCOMPARE(::kill(ready.section(u' ', 2, 2).toInt(), SIGKILL), 0);
        QVERIFY2(server.waitFor(QStringLiteral("GONE "), 20000, round),
                 qPrintable(server.transcript()));
    }
    server.process().closeWriteChannel();
    QVERIFY2(server.finish() && server.exitedCleanly(), qPrintable(server.transcript()));
    QString why;
    const int whole = wholeResults(results, &why);
    QVERIFY2(whole >= 0, qPrintable(why + QStringLiteral(" (Startwert %1)").arg(seed)));
    int temporary = 0;
    for (const QString& name : filesIn(results))
        temporary += !ResultFile::isResultName(name);
    qInfo("%d kills: %d whole results, %d temporary files left hidden", kKills, whole, temporary);
    // Kills that hit nothing would prove nothing.
    QVERIFY(whole + temporary > 0);
}

QTEST_MAIN(TestResultFile)
#include "test_result_file.moc"
