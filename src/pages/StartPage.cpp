#include "pages/StartPage.h"

#include "controls/BoxLabel.h"
#include "controls/Look.h"
#include "controls/MelodyPlayer.h"
#include "controls/NoticeBox.h"
#include "session/CandidateRecords.h"
#include "session/NamesFile.h"
#include "session/TestFlow.h"
#include "session/TextRules.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTime>
#include <QVBoxLayout>

StartPage::StartPage(TestFlow& flow, CandidateRecords& info, QWidget* parent, QLabel* streberMarker)
    : QWidget(parent), m_flow(flow), m_info(info), m_streber(streberMarker) {
    setObjectName(QStringLiteral("Seite(0)"));
    setAutoFillBackground(true);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    auto* title = new QLabel(QStringLiteral("Willkommen zum Laborix-Test"), this);
    Look::setRole(title, QStringLiteral("pageTitle"));
    outer->addWidget(title);

    auto* body = new QGridLayout;
    body->setContentsMargins(28, 14, 28, 18);
    body->setHorizontalSpacing(36);
    body->setVerticalSpacing(8);
    outer->addLayout(body, 1);

    auto* hint = new QLabel(QStringLiteral("Gib Deinen Namen ein oder wähle ihn aus der Liste, "
                                           "wähle die Stufe und starte den Test."),
                            this);
    Look::setRole(hint, QStringLiteral("hint"));
    body->addWidget(hint, 0, 0, 1, 2);

    auto* nameCaption = new QLabel(QStringLiteral("Dein &Name:"), this);
    Look::setRole(nameCaption, QStringLiteral("groupTitle"));
    body->addWidget(nameCaption, 1, 0);
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("BenutzerName"));
    m_name->setAccessibleName(QStringLiteral("Dein Name"));
    m_name->setMaxLength(200);
    m_name->installEventFilter(this);
    nameCaption->setBuddy(m_name);
    body->addWidget(m_name, 2, 0);

    auto* listCaption =
        new QLabel(QStringLiteral("Frühere &Kandidaten (Doppelklick übernimmt):"), this);
    Look::setRole(listCaption, QStringLiteral("groupTitle"));
    body->addWidget(listCaption, 3, 0);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("Liste"));
    m_list->setAccessibleName(QStringLiteral("Frühere Kandidaten"));
    Look::setText(m_list, 15);
    m_list->setSpacing(2);
    listCaption->setBuddy(m_list);
    body->addWidget(m_list, 4, 0, 3, 1);
    m_delete = new QPushButton(QStringLiteral("Name &löschen"), this);
    m_delete->setObjectName(QStringLiteral("L_schen"));
    body->addWidget(m_delete, 7, 0, Qt::AlignLeft);

    auto* levelCaption = new QLabel(QStringLiteral("Schwierigkeitsgrad:"), this);
    Look::setRole(levelCaption, QStringLiteral("groupTitle"));
    body->addWidget(levelCaption, 1, 1);
    auto* group = new QButtonGroup(this);
    const QString levels[2] = {QStringLiteral("Nomale(r) Schüler(in)"),
                               QStringLiteral("Ambitionen auf die Note '1'")};
    for (int i = 0; i < 2; ++i) {
        m_level[i] = new QRadioButton(levels[i], this);
        m_level[i]->setObjectName(QStringLiteral("Expert(%1)").arg(i));
        Look::setText(m_level[i], 15);
        group->addButton(m_level[i], i);
        body->addWidget(m_level[i], 2 + i, 1);
        connect(m_level[i], &QRadioButton::clicked, this, [this, i] { Expert_Click(i); });
    }
    m_level[0]->setChecked(true);

    auto* melodyCaption = new QLabel(
        QStringLiteral(
            "Welche Belobigungsmelodie?  (falls der Test mit 'sehr gut' abgeschlossen wird)"),
        this);
    melodyCaption->setObjectName(QStringLiteral("HYMNE_Caption"));
    melodyCaption->setWordWrap(true);
    Look::setRole(melodyCaption, QStringLiteral("hint"));
    body->addWidget(melodyCaption, 4, 1);
    m_melody = new QComboBox(this);
    m_melody->setObjectName(QStringLiteral("HYMNE"));
    m_melody->setAccessibleName(QStringLiteral("Belobigungsmelodie"));
    m_melody->addItems(MelodyPlayer::melodyNames());
    Look::setText(m_melody, 15);
    body->addWidget(m_melody, 5, 1, Qt::AlignTop);

    auto* about = new BoxLabel(
        QStringLiteral("So läuft der Test: Zehn Aufgabenseiten – von Elementsymbolen bis zu "
                       "Verständnisfragen – werden zufällig gezogen. Jede Seite wird mit „OK“ "
                       "einmal geprüft: Richtiges wird grün, Falsches rot markiert und berichtigt. "
                       "Unten siehst Du Deinen aktuellen Notenstand.\n\n"
                       "Hilfen in der normalen Stufe: Periodensystem (Strg+F1) und Taschenrechner "
                       "(Strg+F2). Im Strebermodus gibt es keine Hilfen, dafür alle Aufgaben."),
        this);
    about->setObjectName(QStringLiteral("StartInfo"));
    about->setWordWrap(true);
    Look::Box stripe;
    stripe.fill = QColor(0xee, 0xf6, 0xf7);
    stripe.border = Look::accent();
    stripe.stripe = 4;
    about->setBox(stripe);
    about->setContentsMargins(20, 10, 12, 10);
    Look::setText(about, 13, QFont::Normal, QColor(0x37, 0x47, 0x4f));
    body->addWidget(about, 6, 1, Qt::AlignTop);

    m_start = new QPushButton(QStringLiteral("Test &starten"), this);
    m_start->setObjectName(QStringLiteral("OkS0"));
    body->addWidget(m_start, 7, 1, Qt::AlignRight);
    body->setRowStretch(6, 1);
    body->setColumnStretch(0, 1);
    body->setColumnStretch(1, 1);

    connect(m_start, &QPushButton::clicked, this, &StartPage::OkS0_Click);
    connect(m_delete, &QPushButton::clicked, this, &StartPage::L_schen_Click);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this] { Liste_DblClick(); });
    m_list->installEventFilter(this);
    setTabOrder(m_name, m_list);
}

bool StartPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_name && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape) {
            m_name->clear();
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            OkS0_Click();
            return true;
        }
    }
    // From the keyboard, Enter on a listed name takes it over like a double click.
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Liste_DblClick();
            m_name->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void StartPage::presetLevel(int level) {
    if (level < 0 || level > 1)
        return;
    m_level[level]->setChecked(true);
    Expert_Click(level);
}

void StartPage::fillNames() {
    m_list->clear();
    m_list->addItems(m_info.names().names());
}

void StartPage::generate() {
    fillNames();
    m_name->setText(m_flow.state().CandidateName);
    if (!m_flow.state().CandidateName.isEmpty() && window())
        window()->setWindowTitle(caption());
}

QString StartPage::caption() const {
    return m_flow.state().CandidateName + (m_flow.state().isExpert()
                                               ? QStringLiteral(" im LABORIX -TEST [1er Kandidat]")
                                               : QStringLiteral(" im LABORIX -TEST"));
}

void StartPage::Expert_Click(int index) {
    m_flow.state().ExpertLevel = index;
}

void StartPage::Liste_DblClick() {
    if (QListWidgetItem* item = m_list->currentItem())
        m_name->setText(item->text());
}

void StartPage::L_schen_Click() {
    QListWidgetItem* item = m_list->currentItem();
    if (!item || !item->isSelected() || item->text().isEmpty()) {
        m_info.message(
            this, QStringLiteral("Du mußt erst den Namen auswählen, den Du entfernen willst!"));
        return;
    }
    m_info.removeName(item->text());
    fillNames();
}

int StartPage::chosenMelody() const {
    return m_melody->currentIndex();
}

void StartPage::OkS0_Click() {
    if (CanonicalText(m_name->text()).isEmpty()) {
        NoticeBox::inform(this,
                          QStringLiteral("Du solltest vielleicht doch einen Namen eingeben..."),
                          QStringLiteral("!?"));
        return;
    }
    SessionState& state = m_flow.state();
    // Page 11 expects every term of a substance to exist.
    auto& substances = m_flow.bank().Substances;
    for (int i = 1; i <= substances.count(); ++i) {
        SubstanceRecord& r = substances[i];
        if (!r.Lead)
            r.Lead = TermList();
        if (!r.Formula)
            r.Formula = TermList();
        if (!r.SecondTerm)
            r.SecondTerm = TermList();
    }
    const QString typed = m_name->text();
    m_info.addName(typed);
    state.CandidateName = typed;
    state.StartedAt = QDateTime::currentDateTime();
    state.TestDate = state.StartedAt.date().toString(QStringLiteral("MM-dd-yyyy"));
    state.StartTime = state.StartedAt.time().toString(QStringLiteral("HH:mm:ss"));

    m_info.logStart(QStringLiteral("-> ") + QString::number(state.ExpertLevel) +
                        QStringLiteral(" Start von: ") + state.CandidateName +
                        QStringLiteral(" - ") + state.TestDate + u'/' + state.StartTime,
                    state.CandidateName);
    if (window())
        window()->setWindowTitle(caption());
    if (m_streber)
        m_streber->setVisible(state.isExpert());
    m_info.setDifficulty(state.ExpertLevel);
    m_flow.ShowPage(1);
}
