#include "TestSupport.h"
#include "controls/ButtonEnterKey.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QRadioButton>
#include <QVBoxLayout>

// Enter on a focused button presses it, once the filter sits on the
// application; other widgets and toggles keep their own handling.
class TestButtonEnterKey : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pressesOnlyPlainButtons_data();
    void pressesOnlyPlainButtons();
    void heldKeyPressesOnce();
    void installsOnce();
};

void TestButtonEnterKey::initTestCase() {
    ButtonEnterKey::install(QCoreApplication::instance());
}

void TestButtonEnterKey::pressesOnlyPlainButtons_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("clicks");
    const int none = Qt::NoModifier;
    dataRow("Enter auf Weiter", "Weiter", int(Qt::Key_Return), none, 1);
    dataRow("Enter des Ziffernblocks", "Weiter", int(Qt::Key_Enter), int(Qt::KeypadModifier), 1);
    dataRow("Leertaste wie bisher", "Weiter", int(Qt::Key_Space), none, 1);
    dataRow("Alt+Enter nicht", "Weiter", int(Qt::Key_Return), int(Qt::AltModifier), 0);
    dataRow("Strg+Enter nicht", "Weiter", int(Qt::Key_Return), int(Qt::ControlModifier), 0);
    dataRow("andere Taste", "Weiter", int(Qt::Key_A), none, 0);
    dataRow("gesperrter Knopf", "Gesperrt", int(Qt::Key_Return), none, 0);
    dataRow("Optionsfeld bleibt", "Option", int(Qt::Key_Return), none, 0);
    dataRow("Kästchen bleibt", "Kaestchen", int(Qt::Key_Return), none, 0);
    dataRow("Eingabefeld", "Feld", int(Qt::Key_Return), none, 0);
}

void TestButtonEnterKey::pressesOnlyPlainButtons() {
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

void TestButtonEnterKey::heldKeyPressesOnce() {
    QPushButton button(QStringLiteral("&OK"));
    int pressed = 0;
    connect(&button, &QPushButton::clicked, this, [&pressed] { ++pressed; });
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QKeyEvent first(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(u'\r'), false);
    QApplication::sendEvent(&button, &first);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(u'\r'), true);
        QApplication::sendEvent(&button, &repeat);
    }
    QCOMPARE(pressed, 1);
}

void TestButtonEnterKey::installsOnce() {
    ButtonEnterKey::install(QCoreApplication::instance());
    ButtonEnterKey::install(QCoreApplication::instance());
    QCOMPARE(QCoreApplication::instance()
                 ->findChildren<ButtonEnterKey*>(QString(), Qt::FindDirectChildrenOnly)
                 .size(),
             1);
}

QTEST_MAIN(TestButtonEnterKey)
#include "test_button_enter_key.moc"
