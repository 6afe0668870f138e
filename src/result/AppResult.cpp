#include "result/AppResult.h"

#include "controls/Look.h"
#include "controls/Mascot.h"
#include "controls/MelodyPlayer.h"
#include "controls/NoticeBox.h"
#include "controls/RoundPanel.h"
#include "result/CertificateArt.h"
#include "result/CertificatePrinter.h"
#include "result/MistakeReview.h"
#include "result/NameLabel.h"
#include "session/Grades.h"
#include "session/SessionState.h"

#include <QCoreApplication>
#include <QDir>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace {

QLabel* certLabel(QWidget* parent, const QString& name, const QString& text, const char* role) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    Look::setRole(label, QString::fromLatin1(role));
    return label;
}

} // namespace

AppResult::AppResult(SessionState& state, const FinalResult& result, int melody, QWidget* parent)
    : QDialog(parent), m_state(state), m_melody(melody) {
    setObjectName(QStringLiteral("frm_AppResult"));
    setWindowTitle(QStringLiteral("Laborix-Test - Ergebnis"));
    setModal(true);
    Look::setFill(this, Look::slate());
    setMinimumSize(320, 240);
    buildCertificate();
    fillIn(result);
    m_quit = [] { QCoreApplication::exit(0); };
    m_player = [this](int index) {
        if (!m_melodyPlayer)
            m_melodyPlayer = new MelodyPlayer(this);
        return m_melodyPlayer->play(index);
    };
    maximise();
}

AppResult::~AppResult() = default;

void AppResult::buildCertificate() {
    m_frame = new RoundPanel({QColor(0xff, 0xfd, 0xf6), Look::accent(), 3, 10}, this);
    m_frame->setObjectName(QStringLiteral("Dahinter"));
    // The frame's own caption, kept as the control has it; the strip on the
    // certificate says what the page is.
    m_frame->setWindowTitle(QStringLiteral("Frame Title"));
    m_frame->setFixedSize(kFrameWidth, kFrameHeight);
    auto* outer = new QVBoxLayout(m_frame);
    outer->setContentsMargins(3, 3, 3, 3);
    outer->setSpacing(0);

    Look::Box strip{Look::accent(), QColor(), 0, 7};
    strip.topCornersOnly = true;
    auto* titleBar = new RoundPanel(strip, m_frame);
    titleBar->setObjectName(QStringLiteral("FrameTitleBar"));
    titleBar->setFixedHeight(46);
    auto* titleRow = new QHBoxLayout(titleBar);
    titleRow->setContentsMargins(18, 6, 18, 6);
    titleRow->setSpacing(10);
    auto* okSign = new CertificateArt(CertificateArt::Kind::OkSign, titleBar);
    okSign->setObjectName(QStringLiteral("FrameIcon"));
    okSign->setFixedSize(28, 28);
    titleRow->addWidget(okSign);
    auto* titleText = new QLabel(QStringLiteral("URKUNDE"), titleBar);
    titleText->setObjectName(QStringLiteral("FrameTitleText"));
    Look::setText(titleText, 19, QFont::Bold, Qt::white);
    QFont spaced = titleText->font();
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, 2);
    titleText->setFont(spaced);
    titleRow->addWidget(titleText);
    titleRow->addStretch(1);
    auto* titleNote = new QLabel(QStringLiteral("Laborix Test · Selbsttest Chemie"), titleBar);
    titleNote->setObjectName(QStringLiteral("FrameTitleNote"));
    Look::setText(titleNote, 13, QFont::Normal, QColor(Qt::white));
    titleRow->addWidget(titleNote);
    outer->addWidget(titleBar);

    auto* body = new QHBoxLayout;
    body->setContentsMargins(26, 18, 30, 6);
    body->setSpacing(26);
    outer->addLayout(body, 1);

    auto* left = new QVBoxLayout;
    left->setSpacing(4);
    m_mascot = new Mascot(m_frame);
    m_mascot->setObjectName(QStringLiteral("ctl_DrQuark1"));
    m_mascot->setOutline(Look::softInk());
    m_mascot->setFixedSize(150, 172);
    left->addWidget(m_mascot, 0, Qt::AlignHCenter);
    auto* label1 =
        certLabel(m_frame, QStringLiteral("Label1"),
                  QStringLiteral("Dr. Quark - Freier Mitarbeiter des QV"), "certCaption");
    Look::setText(label1, 13, QFont::Normal, Look::softInk(), true);
    label1->setWordWrap(true);
    label1->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label1->setFixedWidth(180);
    left->addWidget(label1, 0, Qt::AlignHCenter);
    left->addStretch(1);
    auto* seal = new CertificateArt(CertificateArt::Kind::Seal, m_frame);
    seal->setObjectName(QStringLiteral("Image1"));
    seal->setFixedSize(118, 146);
    left->addWidget(seal, 0, Qt::AlignHCenter);
    body->addLayout(left);

    auto* right = new QVBoxLayout;
    right->setSpacing(4);
    right->addWidget(certLabel(m_frame, QStringLiteral("Label11"),
                               QStringLiteral(" Der Laborix - Test wurde bearbeitet von:"),
                               "certCaption"));
    m_name = new NameLabel(m_frame);
    m_name->setObjectName(QStringLiteral("Textname"));
    Look::setText(m_name, 32, QFont::Bold, Look::ink());
    m_name->setFixedHeight(86);
    m_name->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    right->addWidget(m_name);
    right->addSpacing(6);
    // A screen reader reads the labels in the order they are made, so each
    // comes after the caption it belongs to.
    const QString placeholder = QStringLiteral(" Der Laborix - ");
    auto texturt = [&](int i, const char* role) {
        m_texturt[i] = certLabel(m_frame, QStringLiteral("Texturt(%1)").arg(i), placeholder, role);
        right->addWidget(m_texturt[i]);
    };
    texturt(0, "certLine");
    right->addSpacing(14);
    right->addWidget(certLabel(m_frame, QStringLiteral("Label12"),
                               QStringLiteral(" Das entspricht der Note: "), "certCaption"));
    texturt(1, "certGrade");
    right->addSpacing(10);
    texturt(2, "certSmall");
    m_streb = certLabel(m_frame, QStringLiteral("Streb"), QString(), "certSmall");
    right->addWidget(m_streb);
    right->addSpacing(16);
    m_titel[0] = certLabel(m_frame, QStringLiteral("Titel(0)"),
                           QStringLiteral(" Das Ergebnis berechtigt, fortan den Titel zu führen:"),
                           "certCaption");
    right->addWidget(m_titel[0]);
    auto* titleLine = new QHBoxLayout;
    titleLine->setSpacing(14);
    m_titel[1] = certLabel(m_frame, QStringLiteral("Titel(1)"),
                           QStringLiteral("Getesteter Laborix "), "certTitle");
    titleLine->addWidget(m_titel[1]);
    m_musik = new QPushButton(m_frame);
    m_musik->setObjectName(QStringLiteral("Musik"));
    m_musik->setIcon(CertificateArt::icon(CertificateArt::Kind::Loudspeaker, Look::accentDark()));
    m_musik->setIconSize(QSize(26, 26));
    m_musik->setFixedSize(44, 44);
    Look::setButtonColours(m_musik, Qt::white, Look::accentDark(), QColor(0xff, 0xf8, 0xe1),
                           QColor(0xc9, 0x9a, 0x2e));
    m_musik->setToolTip(QStringLiteral("Belobigungsmelodie abspielen"));
    m_musik->setAccessibleName(QStringLiteral("Belobigungsmelodie"));
    titleLine->addWidget(m_musik);
    titleLine->addStretch(1);
    right->addLayout(titleLine);
    // Dr. Quark and the seal adorn the certificate; they are read after it.
    for (QWidget* adornment : {static_cast<QWidget*>(m_mascot), static_cast<QWidget*>(label1),
                               static_cast<QWidget*>(seal)})
        adornment->raise();
    right->addStretch(1);
    // The honours keep their place when hidden, so the certificate does not
    // jump between a good and a very good result.
    for (QWidget* w : {static_cast<QWidget*>(m_titel[0]), static_cast<QWidget*>(m_titel[1]),
                       static_cast<QWidget*>(m_musik)}) {
        QSizePolicy policy = w->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        w->setSizePolicy(policy);
    }
    body->addLayout(right, 1);

    auto* border = new CertificateArt(CertificateArt::Kind::Molecules, m_frame);
    border->setObjectName(QStringLiteral("Picture1"));
    border->setFixedHeight(24);
    auto* borderRow = new QHBoxLayout;
    borderRow->setContentsMargins(26, 0, 26, 0);
    borderRow->addWidget(border);
    outer->addLayout(borderRow);

    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(26, 10, 26, 16);
    m_druck = new QPushButton(QStringLiteral("Graphik Drucken"), m_frame);
    m_druck->setObjectName(QStringLiteral("Druck"));
    m_druck->setIcon(CertificateArt::icon(CertificateArt::Kind::Printer, Qt::white));
    m_druck->setIconSize(QSize(20, 20));
    bottom->addWidget(m_druck, 0, Qt::AlignBottom);
    m_review = new QPushButton(QStringLiteral("&Fehler ansehen"), m_frame);
    m_review->setObjectName(QStringLiteral("FehlerAnsehen"));
    m_review->setAccessibleName(QStringLiteral("Fehler ansehen: jede falsche Antwort mit der "
                                               "richtigen und einem Tipp"));
    bottom->addSpacing(10);
    bottom->addWidget(m_review, 0, Qt::AlignBottom);
    bottom->addStretch(1);
    m_neute = new RoundPanel({QColor(0xee, 0xf6, 0xf7), QColor(0xb2, 0xdf, 0xdb), 1, 6}, m_frame);
    m_neute->setObjectName(QStringLiteral("Neute"));
    auto* neuteRow = new QHBoxLayout(m_neute);
    neuteRow->setContentsMargins(16, 8, 10, 8);
    neuteRow->setSpacing(10);
    auto* question = new QLabel(QStringLiteral("Neue Übung?"), m_neute);
    question->setObjectName(QStringLiteral("NeuteText"));
    Look::setText(question, 16, QFont::Bold, Look::accentDark());
    neuteRow->addWidget(question);
    auto* yes = new QPushButton(QStringLiteral("Ja"), m_neute);
    yes->setObjectName(QStringLiteral("CSCmd1"));
    auto* no = new QPushButton(QStringLiteral("Nein"), m_neute);
    no->setObjectName(QStringLiteral("CSCmd3"));
    for (QPushButton* b : {yes, no})
        b->setFixedWidth(100);
    neuteRow->addWidget(yes);
    neuteRow->addWidget(no);
    bottom->addWidget(m_neute);
    outer->addLayout(bottom);

    // Printing hides these two; the rest of the certificate stays where it was.
    for (QWidget* w : {static_cast<QWidget*>(m_druck), static_cast<QWidget*>(m_neute),
                       static_cast<QWidget*>(m_review)}) {
        QSizePolicy policy = w->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        w->setSizePolicy(policy);
    }
    connect(m_druck, &QPushButton::clicked, this, &AppResult::Druck_Click);
    connect(m_review, &QPushButton::clicked, this, &AppResult::showMistakes);
    connect(m_musik, &QPushButton::clicked, this, &AppResult::Musik_Click);
    connect(yes, &QPushButton::clicked, this, &AppResult::CSCmd1_Click);
    connect(no, &QPushButton::clicked, this, &AppResult::CSCmd3_Click);
    yes->setFocus();
}

void AppResult::fillIn(const FinalResult& result) {
    const SessionState& s = m_state;
    m_name->setText(s.CandidateName);
    m_name->setToolTip(s.CandidateName);
    m_texturt[0]->setText(FinalGrade::countSentence(result.tasks, result.correct));
    m_texturt[1]->setText(result.gradeWord);
    m_texturt[1]->setToolTip(QStringLiteral("%1 von 15 Notenpunkten").arg(result.gradeNumber));
    m_texturt[2]->setText(FinalGrade::dateSentence(s.TestDate, s.StartTime, s.EndTime));
    m_streb->setText(FinalGrade::levelSentence(result.level));
    m_streb->show();
    m_state.RunningGrade = result.gradeWord;

    const int expression = FinalGrade::expressionOf(result.gradeWord);
    if (expression != FinalGrade::kNoExpression)
        m_mascot->setExpression(expression);

    const bool honours = FinalGrade::earnsHonours(Grades::ratio(result.correct, result.tasks));
    m_titel[0]->setVisible(honours);
    m_titel[1]->setVisible(honours);
    m_musik->setVisible(honours);
}

void AppResult::maximise() {
    // Without a window manager (a bare X server) the maximised state alone
    // changes nothing, so the window also takes the screen's free area.
    if (const QScreen* s = screen())
        setGeometry(s->availableGeometry());
    setWindowState(windowState() | Qt::WindowMaximized);
    centreFrame();
}

void AppResult::centreFrame() {
    const float left = (static_cast<float>(width()) - static_cast<float>(m_frame->width())) / 2.0f;
    const float top = (static_cast<float>(height()) - static_cast<float>(m_frame->height())) / 2.0f;
    m_frame->move(static_cast<int>(left), static_cast<int>(top));
}

void AppResult::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    centreFrame();
}

void AppResult::Musik_Click() {
    if (m_melodyPlayed)
        return;
    m_melodyPlayed = true;
    if (FinalGrade::earnsHonours(Grades::ratio(m_state.CorrectSoFar, m_state.TasksSoFar)) &&
        m_player)
        m_player(m_melody); // false without a sound device: then it stays silent
    m_musik->hide();
}

QString AppResult::printCertificate(QString* notice) {
    const bool installed =
        m_printerCheck ? m_printerCheck() : CertificatePrinter::printerInstalled();
    const QString documents =
        m_documentsFolder.isEmpty() ? CertificatePrinter::documentsFolder() : m_documentsFolder;
    const CertificatePrinter::Target target =
        CertificatePrinter::chooseTarget(qEnvironmentVariable("LABQUIZ_PRINT_TO"), installed,
                                         documents, m_state.CandidateName, m_state.TestDate);
    const QString problem = CertificatePrinter::print(m_frame, target);
    m_lastPdf = problem.isEmpty() && target.kind == CertificatePrinter::Target::Kind::PdfFile
                    ? target.file
                    : QString();
    if (problem.isEmpty() && target.forLackOfPrinter)
        *notice = QStringLiteral("Es ist kein Drucker eingerichtet. Die Urkunde wurde als "
                                 "PDF-Datei gespeichert:\n\n%1")
                      .arg(QDir::toNativeSeparators(target.file));
    return problem;
}

void AppResult::showMistakes() {
    MistakeReview review(m_state.Pages, this, m_practise);
    review.exec();
}

void AppResult::Druck_Click() {
    m_neute->hide();
    m_druck->hide();
    m_review->hide();
    setWindowState(windowState() & ~Qt::WindowMaximized);
    m_frame->move(0, 0);
    // The inner area becomes exactly the frame: what is printed is what the
    // candidate saw, without the dark surroundings.
    resize(m_frame->size());
    QString notice;
    const QString problem = printCertificate(&notice);
    maximise();
    m_neute->show();
    m_druck->show();
    m_review->show();
    if (!problem.isEmpty())
        NoticeBox::inform(this, problem);
    else if (!notice.isEmpty())
        NoticeBox::inform(this, notice);
}

void AppResult::CSCmd1_Click() {
    m_state.ExpertLevel = 0;
    m_state.TasksSoFar = 0;
    m_state.CorrectSoFar = 0;
    accept();
}

void AppResult::CSCmd3_Click() {
    m_quitRequested = true;
    reject();
    if (m_quit)
        m_quit();
}
