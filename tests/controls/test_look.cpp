#include "TestSupport.h"
#include "controls/BoxLabel.h"
#include "controls/FormulaTextLabel.h"
#include "controls/LabStyle.h"
#include "controls/Look.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

// The look without style sheets: a role gives its font, a mark goes into the
// colour the field is really painted with and comes out again completely.
class TestLook : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { Look::install(); }
    void roleGivesFont_data();
    void roleGivesFont();
    void markIsPaintedAndCleared_data();
    void markIsPaintedAndCleared();
    void clearingKeepsOwnColours();
    void styleFillsButtonsAndFields();
    void formulaTextKeepsStoredTextAndRoom();
};

void TestLook::roleGivesFont_data() {
    QTest::addColumn<QString>("role");
    QTest::addColumn<int>("pixels");
    QTest::addColumn<int>("weight");
    QTest::addColumn<QColor>("colour");
    dataRow("Seitentitel", QStringLiteral("pageTitle"), 17, int(QFont::Bold), QColor(Qt::white));
    dataRow("Gruppentitel", QStringLiteral("groupTitle"), 15, int(QFont::Bold), Look::accentDark());
    dataRow("Hinweis", QStringLiteral("hint"), 12, int(QFont::Normal), Look::softInk());
    dataRow("Aufgabe", QStringLiteral("prompt"), 15, int(QFont::Normal), Look::ink());
    dataRow("Zähler", QStringLiteral("counter"), 14, int(QFont::Bold), QColor(Qt::white));
    dataRow("Note", QStringLiteral("certGrade"), 34, int(QFont::ExtraBold), Look::accentDark());
}

void TestLook::roleGivesFont() {
    QFETCH(QString, role);
    QFETCH(int, pixels);
    QFETCH(int, weight);
    QFETCH(QColor, colour);
    QWidget parent;
    auto* label = new QLabel(QStringLiteral("Wasserstoff"), &parent);
    Look::setRole(label, role);
    QCOMPARE(label->property("role").toString(), role);
    QCOMPARE(label->font().pixelSize(), pixels);
    QCOMPARE(int(label->font().weight()), weight);
    QVERIFY(!label->font().italic());
    QCOMPARE(label->palette().color(QPalette::WindowText), colour);
}

void TestLook::markIsPaintedAndCleared_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QColor>("mark");
    dataRow("Eingabefeld richtig", QStringLiteral("edit"), Look::right());
    dataRow("Eingabefeld falsch", QStringLiteral("edit"), Look::wrong());
    dataRow("Beschriftung falsch", QStringLiteral("label"), Look::wrong());
    dataRow("Kastenbeschriftung falsch", QStringLiteral("box"), Look::wrong());
    dataRow("Optionsfeld richtig", QStringLiteral("radio"), Look::right());
}

void TestLook::markIsPaintedAndCleared() {
    QFETCH(QString, kind);
    QFETCH(QColor, mark);
    // The parent's own background must show through again once cleared.
    QWidget parent;
    Look::setFill(&parent, Look::slate());
    QWidget* field = nullptr;
    if (kind == QLatin1String("edit"))
        field = new QLineEdit(&parent);
    else if (kind == QLatin1String("label"))
        field = new QLabel(QStringLiteral("Natrium-Ion"), &parent);
    else if (kind == QLatin1String("box"))
        field = new BoxLabel(QStringLiteral("Natrium-Ion"), &parent);
    else
        field = new QRadioButton(QStringLiteral("+1"), &parent);
    auto painted = [&] {
        if (auto* box = qobject_cast<BoxLabel*>(field))
            return box->shownFill();
        if (qobject_cast<QLineEdit*>(field))
            return field->palette().color(QPalette::Base);
        return field->palette().color(QPalette::Window);
    };
    const QColor plain = painted();
    const bool plainFill = field->autoFillBackground();

    Look::setBackground(field, mark);
    QCOMPARE(painted(), mark);
    QCOMPARE(field->property("markColour").value<QColor>(), mark);
    QCOMPARE(field->autoFillBackground(), kind == QLatin1String("label"));

    Look::clearMarks(field);
    QCOMPARE(painted(), plain);
    QCOMPARE(field->autoFillBackground(), plainFill);
    QVERIFY(!field->property("markColour").isValid());
    // Still inheriting: a new parent colour reaches the cleared field.
    if (kind == QLatin1String("label") || kind == QLatin1String("radio")) {
        Look::setFill(&parent, Look::accent());
        QCOMPARE(painted(), Look::accent());
    }
}

void TestLook::clearingKeepsOwnColours() {
    QWidget parent;
    auto* word = new QLabel(QStringLiteral("Ja"), &parent);
    Look::setRole(word, QStringLiteral("groupTitle"));
    Look::setTextColour(word, Look::paletteColour(14));
    Look::setTextColour(word, Look::paletteColour(0));
    QCOMPARE(word->palette().color(QPalette::WindowText), Look::paletteColour(0));
    QCOMPARE(word->property("markTextColour").value<QColor>(), Look::paletteColour(0));
    Look::clearMarks(word);
    QCOMPARE(word->palette().color(QPalette::WindowText), Look::accentDark());
    QVERIFY(!word->property("markTextColour").isValid());
}

// What LabStyle paints: a pixel inside the field or button, away from text.
void TestLook::styleFillsButtonsAndFields() {
    QVERIFY(qobject_cast<LabStyle*>(QApplication::style()));
    QWidget parent;
    auto* edit = new QLineEdit(&parent);
    edit->setGeometry(0, 0, 120, 30);
    auto* radio = new QRadioButton(QStringLiteral("+1"), &parent);
    radio->setContentsMargins(8, 5, 8, 5);
    radio->setGeometry(0, 40, 80, 30);
    auto* button = new QPushButton(&parent);
    Look::setButtonColours(button, Look::accent(), Qt::white, Look::accentHover());
    button->setGeometry(0, 80, 120, 32);
    QCOMPARE(radio->sizeHint() - QRadioButton(radio->text()).sizeHint(), QSize(16, 10));

    auto pixel = [](QWidget* w, QPoint at) { return w->grab().toImage().pixelColor(at); };
    QCOMPARE(pixel(edit, {100, 15}), QColor(Qt::white));
    Look::setBackground(edit, Look::wrong());
    QCOMPARE(pixel(edit, {100, 15}), Look::wrong());
    Look::setBackground(radio, Look::right());
    QCOMPARE(pixel(radio, {76, 15}), Look::right());
    Look::clearMarks(radio);
    QVERIFY(pixel(radio, {76, 15}) != Look::right());
    QCOMPARE(pixel(button, {10, 16}), Look::accent());
}

// A bank text keeps its stored form as the label's text, is drawn with its
// formulas set, and gets the room the drawn text needs.
void TestLook::formulaTextKeepsStoredTextAndRoom() {
    FormulaTextLabel label;
    Look::setRole(&label, QStringLiteral("prompt"));
    label.setWordWrap(true);
    const QString stored =
        QStringLiteral("Ein Ion mit der Ladung 2- wie SO4^2- oder CO3^2- und Wasser H2O   ");
    label.setStoredText(stored);
    QCOMPARE(label.text(), stored);
    QVERIFY(label.drawnHtml().contains(QStringLiteral("SO<sub>4</sub><sup>2\u2212</sup>")));
    for (const int width : {120, 260, 600}) {
        QTextDocument drawn;
        drawn.setDocumentMargin(0);
        drawn.setDefaultFont(label.font());
        drawn.setHtml(label.drawnHtml());
        drawn.setTextWidth(width);
        QVERIFY(label.heightForWidth(width) >= drawn.size().height());
    }
    // Without a formula, and once cleared, QLabel draws the text itself.
    label.setStoredText(QStringLiteral("Kochsalz & Zucker <gelöst>"));
    QVERIFY(label.drawnHtml().isEmpty());
    label.setStoredText(QString());
    QVERIFY(label.drawnHtml().isEmpty());
    QCOMPARE(label.text(), QString());
}

QTEST_MAIN(TestLook)
#include "test_look.moc"
