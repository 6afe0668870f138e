#include "aids/CalculatorDialog.h"

#include "aids/CalcExpression.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

CalculatorDialog::CalculatorDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Taschenrechner"));
    setWindowTitle(QStringLiteral("Taschenrechner"));
    setModal(true);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setStyleSheet(QStringLiteral(
        "QDialog#Taschenrechner { background: #eceff1; }"
        "QLineEdit#Anzeige { font-size: 24px; padding: 6px 10px; min-height: 40px;"
        "  background: #ffffff; border: 2px solid #1b7f8c; border-radius: 6px; }"
        "QLabel[role=\"hint\"] { color: #607d8b; font-size: 12px; font-style: italic; }"
        "QLineEdit#Anzeige[message=\"true\"] { font-size: 16px; color: #8a1c1c; }"
        "QLabel#Rechnung { color: #607d8b; font-size: 13px; }"
        "QPushButton[kind] { min-width: 60px; max-width: 60px; min-height: 42px;"
        "  max-height: 42px; padding: 0px; font-size: 18px; font-weight: 600;"
        "  border-radius: 6px; }"
        "QPushButton[kind=\"digit\"] { background: #ffffff; color: #263238;"
        "  border: 1px solid #b0bec5; }"
        "QPushButton[kind=\"digit\"]:hover { background: #f5f7f8; }"
        "QPushButton[kind=\"operator\"] { background: #d7eef0; color: #125c66;"
        "  border: 1px solid #9fd0d5; }"
        "QPushButton[kind=\"operator\"]:hover { background: #c4e6e9; }"
        "QPushButton[kind=\"correct\"] { background: #fbe3d6; color: #8a1c1c;"
        "  border: 1px solid #f0b89a; }"
        "QPushButton[kind=\"equals\"] { background: #1b7f8c; color: #ffffff; border: none; }"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 14);
    layout->setSpacing(8);

    // The worked-out expression stays readable above its result.
    m_worked = new QLabel(this);
    m_worked->setObjectName(QStringLiteral("Rechnung"));
    m_worked->setAlignment(Qt::AlignRight);
    m_worked->setTextFormat(Qt::PlainText);
    m_worked->setMinimumHeight(18);
    layout->addWidget(m_worked);

    m_display = new QLineEdit(this);
    m_display->setObjectName(QStringLiteral("Anzeige"));
    m_display->setAlignment(Qt::AlignRight);
    m_display->setMaxLength(400);
    m_display->installEventFilter(this);
    connect(m_display, &QLineEdit::textEdited, this, [this] {
        setShowsMessage(false);
        tidyTyped();
    });
    layout->addWidget(m_display);

    auto* hint = new QLabel(
        QStringLiteral("Rechnung eintippen, z. B. 2*1,01+16 – Enter rechnet sie aus."), this);
    hint->setProperty("role", QStringLiteral("hint"));
    layout->addWidget(hint);

    auto* keys = new QGridLayout;
    keys->setSpacing(6);
    const struct {
        const char* caption;
        const char* inserts;
        const char* kind;
    } rows[5][4] = {
        {{"C", "", "correct"},
         {"\u232B", "", "correct"},
         {"(", "(", "operator"},
         {")", ")", "operator"}},
        {{"7", "7", "digit"},
         {"8", "8", "digit"},
         {"9", "9", "digit"},
         {"\u00F7", "\u00F7", "operator"}},
        {{"4", "4", "digit"},
         {"5", "5", "digit"},
         {"6", "6", "digit"},
         {"\u00D7", "\u00D7", "operator"}},
        {{"1", "1", "digit"},
         {"2", "2", "digit"},
         {"3", "3", "digit"},
         {"\u2212", "-", "operator"}},
        {{"0", "0", "digit"}, {",", ",", "digit"}, {"=", "", "equals"}, {"+", "+", "operator"}}};
    for (int r = 0; r < 5; ++r) {
        for (int c = 0; c < 4; ++c) {
            const auto& k = rows[r][c];
            keys->addWidget(
                addKey(QString::fromUtf8(k.caption), QString::fromUtf8(k.inserts), k.kind), r, c);
        }
    }
    layout->addLayout(keys);

    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    m_takeOver = new QPushButton(QStringLiteral("Übernehmen"), this);
    m_takeOver->setObjectName(QStringLiteral("Übernehmen"));
    m_takeOver->setToolTip(QStringLiteral("Schließt den Rechner und übernimmt die Zahl"));
    connect(m_takeOver, &QPushButton::clicked, this, &CalculatorDialog::takeOver);
    bottom->addWidget(m_takeOver);
    layout->addSpacing(4);
    layout->addLayout(bottom);

    // The keys take no focus: typing goes on in the display, and Tab leads
    // straight from the display to "Übernehmen".
    setTabOrder(m_display, m_takeOver);
    m_display->setFocus();
    setFixedSize(sizeHint().expandedTo(QSize(300, 0)));
}

QPushButton* CalculatorDialog::addKey(const QString& caption, const QString& inserts,
                                      const char* kind) {
    auto* key = new QPushButton(caption, this);
    key->setObjectName(QStringLiteral("Taste(%1)").arg(caption));
    key->setProperty("kind", QString::fromLatin1(kind));
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoDefault(false);
    if (!inserts.isEmpty()) {
        connect(key, &QPushButton::clicked, this, [this, inserts] { insert(inserts); });
    } else if (caption == QLatin1String("C")) {
        key->setToolTip(QStringLiteral("Alles löschen"));
        connect(key, &QPushButton::clicked, this, &CalculatorDialog::clearAll);
    } else if (caption == QLatin1String("=")) {
        key->setToolTip(QStringLiteral("Ausrechnen (Enter)"));
        connect(key, &QPushButton::clicked, this, &CalculatorDialog::calculate);
    } else {
        key->setToolTip(QStringLiteral("Letztes Zeichen löschen (Rücktaste)"));
        connect(key, &QPushButton::clicked, this, &CalculatorDialog::backspace);
    }
    return key;
}

double CalculatorDialog::run(QWidget* parent) {
    CalculatorDialog dialog(parent);
    return dialog.exec() == QDialog::Accepted ? dialog.value() : 0.0;
}

void CalculatorDialog::calculate() {
    if (m_showsMessage)
        return;
    const QString expression = m_display->text();
    const CalcExpression::Result r = CalcExpression::evaluate(expression);
    if (r.error == CalcExpression::Error::Empty)
        return;
    m_lastExpression = expression;
    m_worked->setText(m_worked->fontMetrics().elidedText(expression + QStringLiteral(" ="),
                                                         Qt::ElideLeft, m_display->width()));
    if (r.ok()) {
        m_display->setText(CalcExpression::localeText(r.value));
        m_display->end(false);
    } else {
        // The message stands selected, so the next key typed replaces it;
        // Backspace brings the expression back to be mended.
        m_display->setText(CalcExpression::message(r));
        m_display->selectAll();
        setShowsMessage(true);
    }
}

void CalculatorDialog::takeOver() {
    m_value = 0.0;
    if (!m_showsMessage) {
        const CalcExpression::Result r = CalcExpression::evaluate(m_display->text());
        if (r.ok())
            m_value = r.value;
    }
    accept();
}

void CalculatorDialog::insert(const QString& text) {
    if (m_showsMessage) {
        m_display->clear();
        setShowsMessage(false);
    }
    m_display->insert(text);
    m_display->setFocus();
}

void CalculatorDialog::backspace() {
    if (m_showsMessage) {
        m_display->setText(m_lastExpression);
        setShowsMessage(false);
    } else {
        m_display->backspace();
    }
    m_display->setFocus();
}

void CalculatorDialog::clearAll() {
    m_display->clear();
    m_worked->clear();
    setShowsMessage(false);
    m_display->setFocus();
}

// A message is shown smaller and in red, so that it reads as one and fits.
void CalculatorDialog::setShowsMessage(bool message) {
    if (m_showsMessage == message)
        return;
    m_showsMessage = message;
    m_display->setProperty("message", message);
    m_display->style()->unpolish(m_display);
    m_display->style()->polish(m_display);
}

// "*" and "/" typed on the keyboard are shown as the calculator's own signs,
// so that the display reads the same whichever way a sign came in.
void CalculatorDialog::tidyTyped() {
    QString text = m_display->text();
    if (!text.contains(u'*') && !text.contains(u'/'))
        return;
    const int cursor = m_display->cursorPosition();
    text.replace(u'*', QChar(0x00D7)).replace(u'/', QChar(0x00F7));
    m_display->setText(text);
    m_display->setCursorPosition(cursor);
}

bool CalculatorDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_display && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            calculate();
            return true;
        }
        if (key == Qt::Key_Backspace && m_showsMessage) {
            backspace();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
