#include "aids/CalculatorDialog.h"

#include "aids/CalcExpression.h"
#include "controls/Look.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

CalculatorDialog::CalculatorDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Taschenrechner"));
    setWindowTitle(QStringLiteral("Taschenrechner"));
    setModal(true);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Look::setFill(this, QColor(0xec, 0xef, 0xf1));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 14);
    layout->setSpacing(8);

    // The worked-out expression stays readable above its result.
    m_worked = new QLabel(this);
    m_worked->setObjectName(QStringLiteral("Rechnung"));
    m_worked->setAlignment(Qt::AlignRight);
    m_worked->setTextFormat(Qt::PlainText);
    m_worked->setMinimumHeight(18);
    Look::setText(m_worked, 13, QFont::Normal, Look::softInk());
    layout->addWidget(m_worked);

    m_display = new QLineEdit(this);
    m_display->setObjectName(QStringLiteral("Anzeige"));
    m_display->setAccessibleName(QStringLiteral("Rechnung eingeben"));
    m_display->setAlignment(Qt::AlignRight);
    m_display->setMaxLength(400);
    Look::setText(m_display, 24);
    m_display->setMinimumHeight(52);
    m_display->installEventFilter(this);
    connect(m_display, &QLineEdit::textEdited, this, [this] {
        setShowsMessage(false);
        tidyTyped();
    });
    layout->addWidget(m_display);

    auto* hint = new QLabel(
        QStringLiteral("Rechnung eintippen, z. B. 2*1,01+16 – Enter rechnet sie aus."), this);
    Look::setRole(hint, QStringLiteral("hint"));
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
    key->setFixedSize(60, 42);
    Look::setText(key, 18, QFont::Bold);
    const QLatin1String k(kind);
    if (k == QLatin1String("digit"))
        Look::setButtonColours(key, Qt::white, Look::ink(), QColor(0xf5, 0xf7, 0xf8),
                               Look::fieldBorder());
    else if (k == QLatin1String("operator"))
        Look::setButtonColours(key, QColor(0xd7, 0xee, 0xf0), Look::accentDark(),
                               QColor(0xc4, 0xe6, 0xe9), QColor(0x9f, 0xd0, 0xd5));
    else if (k == QLatin1String("correct"))
        Look::setButtonColours(key, QColor(0xfb, 0xe3, 0xd6), Look::alarm(),
                               QColor(0xf8, 0xd4, 0xc1), QColor(0xf0, 0xb8, 0x9a));
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
    Look::setText(m_display, message ? 16 : 24, QFont::Normal,
                  message ? Look::alarm() : Look::ink());
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
