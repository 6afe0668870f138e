// The JSON reader behind result files: it takes what QJsonDocument takes
// where it matters, refuses what is cut off or broken, and a result file
// reads back exactly as it was written.
#include "overview/ResultSamples.h"
#include "result/JsonTree.h"
#include "result/ResultRecord.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class TestJsonTree : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void agreesWithQtOnValidity_data();
    void agreesWithQtOnValidity();
    void stricterThanQt_data();
    void stricterThanQt();
    void readsValues();
    void resultFileReadsBackWhole();
    void everyCutOfAResultIsRefused();
};

void TestJsonTree::agreesWithQtOnValidity_data() {
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

void TestJsonTree::agreesWithQtOnValidity() {
    QFETCH(QByteArray, json);
    QJsonParseError error;
    QJsonDocument::fromJson(json, &error);
    const bool qtTakes = error.error == QJsonParseError::NoError;
    QCOMPARE(JsonTree::parse(json).has_value(), qtTakes);
}

void TestJsonTree::stricterThanQt_data() {
    QTest::addColumn<QByteArray>("json");
    // QJsonDocument lets these pass; no program writes them.
    QTest::newRow("point without digits") << QByteArray("[1.]");
    QTest::newRow("digits only after the point") << QByteArray("[.5]");
    QTest::newRow("unknown escape") << QByteArray(R"(["\x"])");
    QTest::newRow("nested far too deep") << QByteArray(100, '[') + QByteArray(100, ']');
}

void TestJsonTree::stricterThanQt() {
    QFETCH(QByteArray, json);
    QVERIFY(!JsonTree::parse(json));
}

void TestJsonTree::readsValues() {
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

void TestJsonTree::resultFileReadsBackWhole() {
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

void TestJsonTree::everyCutOfAResultIsRefused() {
    const QByteArray whole = sampleClass()[2].toJson();
    for (qsizetype n = 0; n < whole.size(); n += 7) {
        // Blanks after the closing brace are all a cut may leave out.
        if (whole.left(n).trimmed() == whole.trimmed())
            continue;
        QVERIFY2(!ResultRecord::fromJson(whole.left(n)), qPrintable(QString::number(n)));
    }
}

QTEST_GUILESS_MAIN(TestJsonTree)
#include "test_json_tree.moc"
