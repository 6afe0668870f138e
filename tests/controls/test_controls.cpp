#include "TestSupport.h"
#include "controls/BoxLabel.h"
#include "controls/ButtonEnterKey.h"
#include "controls/ChoiceList.h"
#include "controls/FormulaTextLabel.h"
#include "controls/LabStyle.h"
#include "controls/Look.h"
#include "controls/MarkSign.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

// An answer field of this kind, as the pages make them.
QWidget* makeField(const QString& kind, QWidget* parent) {
    if (kind == QLatin1String("edit"))
        return new QLineEdit(QStringLiteral("Na"), parent);
    if (kind == QLatin1String("label"))
        return new QLabel(QStringLiteral("Natrium-Ion"), parent);
    if (kind == QLatin1String("box"))
        return new BoxLabel(QStringLiteral("Natrium-Ion"), parent);
    if (kind == QLatin1String("radio"))
        return new QRadioButton(QStringLiteral("+1"), parent);
    auto* list = new ChoiceList(parent);
    list->setChoices({QStringLiteral("Element"), QStringLiteral("Verbindung")});
    return list;
}

} // namespace

// The program's own controls. The look without style sheets: a role gives
// its font, a mark goes into the colour the field is really painted with and
// comes out again completely. Enter on a focused button presses it, once the
// filter sits on the application; other widgets and toggles keep their own
// handling.
class TestControls : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        Look::install();
        ButtonEnterKey::install(QCoreApplication::instance());
    }
    void roleGivesFont_data() {
        QTest::addColumn<QString>("role");
        QTest::addColumn<int>("pixels");
        QTest::addColumn<int>("weight");
        QTest::addColumn<QColor>("colour");
        dataRow("Seitentitel", QStringLiteral("pageTitle"), 17, int(QFont::Bold),
                QColor(Qt::white));
        dataRow("Gruppentitel", QStringLiteral("groupTitle"), 15, int(QFont::Bold),
                Look::accentDark());
        dataRow("Hinweis", QStringLiteral("hint"), 12, int(QFont::Normal), Look::softInk());
        dataRow("Aufgabe", QStringLiteral("prompt"), 15, int(QFont::Normal), Look::ink());
        dataRow("Zähler", QStringLiteral("counter"), 14, int(QFont::Bold), QColor(Qt::white));
        dataRow("Note", QStringLiteral("certGrade"), 34, int(QFont::ExtraBold), Look::accentDark());
    }

    void roleGivesFont() {
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

    void markIsPaintedAndCleared_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QColor>("mark");
        dataRow("Eingabefeld richtig", QStringLiteral("edit"), Look::right());
        dataRow("Eingabefeld falsch", QStringLiteral("edit"), Look::wrong());
        dataRow("Beschriftung falsch", QStringLiteral("label"), Look::wrong());
        dataRow("Kastenbeschriftung falsch", QStringLiteral("box"), Look::wrong());
        dataRow("Optionsfeld richtig", QStringLiteral("radio"), Look::right());
    }

    void markIsPaintedAndCleared() {
        QFETCH(QString, kind);
        QFETCH(QColor, mark);
        // The parent's own background must show through again once cleared.
        QWidget parent;
        Look::setFill(&parent, Look::slate());
        QWidget* field = makeField(kind, &parent);
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

    void clearingKeepsOwnColours() {
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
    void styleFillsButtonsAndFields() {
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
        QCOMPARE(pixel(edit, {60, 15}), QColor(Qt::white));
        Look::setBackground(edit, Look::wrong());
        QCOMPARE(pixel(edit, {60, 15}), Look::wrong());
        Look::setBackground(radio, Look::right());
        QCOMPARE(pixel(radio, {54, 3}), Look::right());
        Look::clearMarks(radio);
        QVERIFY(pixel(radio, {54, 3}) != Look::right());
        QCOMPARE(pixel(button, {10, 16}), Look::accent());
    }

    // A bank text keeps its stored form as the label's text, is drawn with its
    // formulas set, and gets the room the drawn text needs.
    void formulaTextKeepsStoredTextAndRoom() {
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

    void contrastRatio_data() {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        // The formula's own fixed points.
        dataRow("Schwarz auf Weiß", QColor(Qt::black), QColor(Qt::white), 21.0, 21.0);
        dataRow("gleiche Farben", Look::accent(), Look::accent(), 1.0, 1.0);
        dataRow("Grau 777 auf Weiß (Grenzfall)", QColor(0x77, 0x77, 0x77), QColor(Qt::white), 4.47,
                4.49);
        // Every pair of text and ground the program shows must reach 4.5:1.
        dataRow("Text auf Karte", Look::ink(), QColor(Qt::white), 4.5, 21.0);
        dataRow("Hinweis auf Karte", Look::softInk(), QColor(Qt::white), 4.5, 21.0);
        dataRow("Hinweis auf Urkunde", Look::softInk(), QColor(0xff, 0xfd, 0xf6), 4.5, 21.0);
        dataRow("Text auf richtig", QColor(Qt::black), Look::right(), 4.5, 21.0);
        dataRow("Text auf falsch", QColor(Qt::black), Look::wrong(), 4.5, 21.0);
        dataRow("falsche Wahl auf Chip", Look::wrong(), QColor(Qt::black), 4.5, 21.0);
        dataRow("gelbes Ja/Nein auf Tafel", Look::paletteColour(14), Look::slate(), 4.5, 21.0);
        dataRow("gewähltes Ja/Nein auf Chip", Look::paletteColour(0), QColor(Qt::white), 4.5, 21.0);
        dataRow("Knopftext", QColor(Qt::white), Look::accent(), 4.5, 21.0);
        dataRow("Gruppentitel", Look::accentDark(), QColor(Qt::white), 4.5, 21.0);
        dataRow("Titel der Urkunde", QColor(0x8a, 0x64, 0x10), QColor(0xff, 0xfd, 0xf6), 4.5, 21.0);
    }

    void contrastRatio() {
        QFETCH(QColor, text);
        QFETCH(QColor, ground);
        QFETCH(double, low);
        QFETCH(double, high);
        const double ratio = Look::contrastRatio(text, ground);
        QVERIFY2(ratio >= low - 1e-9 && ratio <= high + 1e-9, qPrintable(QString::number(ratio)));
        QCOMPARE(Look::contrastRatio(ground, text), ratio);
    }

    void markReadsInGreyscale_data() {
        QTest::addColumn<QString>("kind");
        dataRow("Eingabefeld", QStringLiteral("edit"));
        dataRow("Kastenbeschriftung", QStringLiteral("box"));
        dataRow("Optionsfeld", QStringLiteral("radio"));
        dataRow("Auswahlliste", QStringLiteral("list"));
    }

    // A field marked right and one marked wrong, photographed and turned grey:
    // the dark strokes alone (below the grey of either fill) must differ, and
    // each carries a badge that names its verdict.
    void markReadsInGreyscale() {
        QFETCH(QString, kind);
        auto make = [&](QWidget* parent) {
            QWidget* w = makeField(kind, parent);
            w->setGeometry(0, 0, 140, kind == QLatin1String("list") ? 80 : 32);
            return w;
        };
        auto mark = [&](QWidget* w, bool right) {
            const QColor colour = right ? Look::right() : Look::wrong();
            if (auto* list = qobject_cast<ChoiceList*>(w))
                list->setMark(colour);
            else
                Look::setBackground(w, colour);
        };
        // Pixels darker than either fill turns in greyscale: strokes, not fills.
        const int fillGrey = std::min(qGray(Look::right().rgb()), qGray(Look::wrong().rgb()));
        auto strokes = [&](QWidget* w) {
            const QImage image = w->grab().toImage();
            QList<bool> dark;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    dark << (qGray(image.pixel(x, y)) < fillGrey - 30);
            return dark;
        };
        QWidget parent;
        parent.resize(300, 200);
        QWidget* rightField = make(&parent);
        QWidget* wrongField = make(&parent);
        mark(rightField, true);
        mark(wrongField, false);
        QVERIFY(MarkSign::of(rightField) && MarkSign::of(rightField)->isRight());
        QVERIFY(MarkSign::of(wrongField) && !MarkSign::of(wrongField)->isRight());
        QCOMPARE(MarkSign::of(wrongField)->accessibleName(), QStringLiteral("falsch"));
        const QList<bool> a = strokes(rightField);
        const QList<bool> b = strokes(wrongField);
        QCOMPARE(a.size(), b.size());
        int differing = 0;
        for (qsizetype i = 0; i < a.size(); ++i)
            differing += a[i] != b[i] ? 1 : 0;
        // The tick and the cross alone differ in some dozens of pixels.
        QVERIFY2(differing > 40, qPrintable(QString::number(differing)));

        // Cleared, the badge is gone and the field has its room back.
        const QSize before = rightField->sizeHint();
        if (auto* list = qobject_cast<ChoiceList*>(rightField))
            list->setMark({});
        else
            Look::clearMarks(rightField);
        QVERIFY(!MarkSign::of(rightField));
        QVERIFY(rightField->sizeHint().width() <= before.width());
    }

    void pressesOnlyPlainButtons_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("clicks");
        const int none = Qt::NoModifier;
        dataRow("Enter auf Weiter", "Weiter", int(Qt::Key_Return), none, 1);
        dataRow("Enter des Ziffernblocks", "Weiter", int(Qt::Key_Enter), int(Qt::KeypadModifier),
                1);
        dataRow("Leertaste wie bisher", "Weiter", int(Qt::Key_Space), none, 1);
        dataRow("Alt+Enter nicht", "Weiter", int(Qt::Key_Return), int(Qt::AltModifier), 0);
        dataRow("Strg+Enter nicht", "Weiter", int(Qt::Key_Return), int(Qt::ControlModifier), 0);
        dataRow("andere Taste", "Weiter", int(Qt::Key_A), none, 0);
        dataRow("gesperrter Knopf", "Gesperrt", int(Qt::Key_Return), none, 0);
        dataRow("Optionsfeld bleibt", "Option", int(Qt::Key_Return), none, 0);
        dataRow("Kästchen bleibt", "Kaestchen", int(Qt::Key_Return), none, 0);
        dataRow("Eingabefeld", "Feld", int(Qt::Key_Return), none, 0);
    }

    void pressesOnlyPlainButtons() {
        QFETCH(QString, target);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(int, clicks);

        QWidget page;
        auto* layout = new QVBoxLayout(&page);
        auto add = [&](auto* w, const char* name) {
            w->setObjectName(QString::fromLatin1(name));
            layout->addWidget(w);
            return w;
        };
        auto* field = add(new QLineEdit, "Feld");
        add(new QPushButton(QStringLiteral("&Weiter")), "Weiter");
        add(new QPushButton(QStringLiteral("Aus")), "Gesperrt")->setEnabled(false);
        auto* option = add(new QRadioButton(QStringLiteral("Ja")), "Option");
        auto* box = add(new QCheckBox(QStringLiteral("Kästchen")), "Kaestchen");
        int pressed = 0;
        for (auto* b : page.findChildren<QAbstractButton*>())
            connect(b, &QAbstractButton::clicked, this, [&pressed] { ++pressed; });
        int returns = 0;
        connect(field, &QLineEdit::returnPressed, this, [&returns] { ++returns; });
        page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&page));

        QWidget* w = page.findChild<QWidget*>(target);
        QVERIFY(w);
        QTest::keyClick(w, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(pressed, clicks);
        QVERIFY(!option->isChecked());
        QVERIFY(!box->isChecked());
        // An answer field still gets its Enter.
        QCOMPARE(returns, target == QLatin1String("Feld") ? 1 : 0);
    }

    void heldKeyPressesOnce() {
        QPushButton button(QStringLiteral("&OK"));
        int pressed = 0;
        connect(&button, &QPushButton::clicked, this, [&pressed] { ++pressed; });
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QKeyEvent first(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(u'\r'), false);
        QApplication::sendEvent(&button, &first);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(u'\r'),
                             true);
            QApplication::sendEvent(&button, &repeat);
        }
        QCOMPARE(pressed, 1);
    }

    void installsOnce() {
        ButtonEnterKey::install(QCoreApplication::instance());
        ButtonEnterKey::install(QCoreApplication::instance());
        QCOMPARE(QCoreApplication::instance()
                     ->findChildren<ButtonEnterKey*>(QString(), Qt::FindDirectChildrenOnly)
                     .size(),
                 1);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
