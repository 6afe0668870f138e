#include "TestSupport.h"
#include "chem/ElementTable.h"
#include "pages/PageHints.h"
#include "result/MistakeReview.h"

#include <QPushButton>
#include <QTextBrowser>
#include <QtTest>

namespace {

PageRecord page(int number, QList<AnswerItem> items) {
    PageRecord r;
    r.page = number;
    r.title = pageTitle(number);
    r.items = std::move(items);
    return r;
}

const ElementTable& table() {
    return shippedElements();
}

} // namespace

class TestMistakeReview final : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void hintFollowsTheTaskKind_data();
    void hintFollowsTheTaskKind();
    void listsMistakesInTestOrder();
    void saysSoWhenNothingIsWrong();
};

// The pages note their tasks in a fixed order; the place of an item decides
// which diagnosis it gets. Right items never carry a hint.
void TestMistakeReview::hintFollowsTheTaskKind_data() {
    QTest::addColumn<int>("pageNumber");
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("page 1 symbol") << 1 << 0 << "Kalium"
                                   << "K"
                                   << "Ca"
                                   << "Calcium";
    QTest::newRow("page 1 name") << 1 << 4 << "Fe"
                                 << "Eisen"
                                 << "Fe"
                                 << "Gefragt war der Name";
    QTest::newRow("page 2 number") << 2 << 1 << "penta"
                                   << "5"
                                   << "fünf"
                                   << "Ziffern";
    QTest::newRow("page 2 syllable") << 2 << 3 << "4"
                                     << "tetra"
                                     << "penta"
                                     << "steht für 5";
    QTest::newRow("page 11 formula") << 11 << 1 << "Lithiumoxid"
                                     << "Li2O"
                                     << "LiO"
                                     << "Li⁺";
    QTest::newRow("page 11 name") << 11 << 5 << "NaCl"
                                  << "Natriumchlorid"
                                  << "Chlornatrium"
                                  << "Metall";
    QTest::newRow("page 8") << 8 << 0 << "Wasser (H2O)"
                            << "18.0"
                            << "18.02"
                            << "runden";
    QTest::newRow("page 9") << 9 << 2 << "H2 + O2 = H2O"
                            << "2 1 2"
                            << "4 2 4"
                            << "durch 2";
    QTest::newRow("page 5") << 5 << 0 << "Natrium-Ion"
                            << "+1"
                            << "-1"
                            << "Vorzeichen";
    QTest::newRow("page 6") << 6 << 3 << "Luft ist ein Gemisch."
                            << "Ja"
                            << ""
                            << "Nichts";
    QTest::newRow("page 6 answered") << 6 << 3 << "Luft ist ein Gemisch."
                                     << "Ja"
                                     << "Nein"
                                     << "";
}

void TestMistakeReview::hintFollowsTheTaskKind() {
    QFETCH(int, pageNumber);
    QFETCH(int, place);
    QFETCH(QString, prompt);
    QFETCH(QString, expected);
    QFETCH(QString, given);
    QFETCH(QString, mentions);
    QList<AnswerItem> items(place + 2, AnswerItem(prompt, expected, given, true));
    items[place].right = false;
    PageRecord r = page(pageNumber, items);
    PageHints::fill(r, table());
    for (int i = 0; i < r.items.size(); ++i) {
        if (i != place)
            QVERIFY(r.items[i].hint.isEmpty());
    }
    if (mentions.isEmpty())
        QVERIFY2(r.items[place].hint.isEmpty(), qPrintable(r.items[place].hint));
    else
        QVERIFY2(r.items[place].hint.contains(mentions), qPrintable(r.items[place].hint));
}

void TestMistakeReview::listsMistakesInTestOrder() {
    AnswerItem oxide(QStringLiteral("Lithiumoxid"), QStringLiteral("Li2O"), QStringLiteral("LiO"));
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

void TestMistakeReview::saysSoWhenNothingIsWrong() {
    const QList<PageRecord> pages = {
        page(1, {{QStringLiteral("Natrium"), QStringLiteral("Na"), QStringLiteral("Na"), true}})};
    MistakeReview review(pages, nullptr, [](QWidget*) {});
    // Nothing to practise: no "Fehler üben" either.
    QVERIFY(!review.findChild<QPushButton*>(QStringLiteral("FehlerUeben")));
    auto* text = review.findChild<QTextBrowser*>(QStringLiteral("MistakeList"));
    QVERIFY(text);
    QVERIFY(!text->accessibleName().isEmpty());
    QVERIFY(text->toPlainText().contains(QStringLiteral("Keine Fehler")));
    QVERIFY(!text->toPlainText().contains(QStringLiteral("Tipp")));
}

QTEST_MAIN(TestMistakeReview)
#include "test_mistake_review.moc"
