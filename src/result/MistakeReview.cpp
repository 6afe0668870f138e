#include "result/MistakeReview.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

// Formulas set with subscripts, other words as typed.
QString shown(const QString& text) {
    return FormulaText::textToHtml(text);
}

} // namespace

int MistakeReview::mistakes(const QList<PageRecord>& pages) {
    int n = 0;
    for (const PageRecord& page : pages) {
        for (const AnswerItem& item : page.items)
            n += item.right ? 0 : 1;
    }
    return n;
}

QString MistakeReview::html(const QList<PageRecord>& pages) {
    const int count = mistakes(pages);
    if (count == 0)
        return QStringLiteral("<p style='font-size:18px'><b>Keine Fehler – alles richtig!</b> "
                              "Hier gibt es nichts zu üben.</p>");
    QString out = QStringLiteral("<p>%1 – hier stehen sie mit der richtigen Antwort.</p>")
                      .arg(count == 1 ? QStringLiteral("Ein Fehler")
                                      : QStringLiteral("%1 Fehler").arg(count));
    for (const PageRecord& page : pages) {
        QString rows;
        for (const AnswerItem& item : page.items) {
            if (item.right)
                continue;
            // Page 2 keeps the accepted syllables joined by "*".
            QString expected = item.expected;
            if (page.page == 2)
                expected.replace(u'*', QStringLiteral(" oder "));
            const QString given = item.given.trimmed().isEmpty()
                                      ? QStringLiteral("<i>(keine Antwort)</i>")
                                      : shown(item.given);
            rows += QStringLiteral("<p style='margin-top:8px'><b>%1</b><br>"
                                   "✗ Deine Antwort: %2<br>"
                                   "✓ Richtig: <b>%3</b>")
                        .arg(shown(item.prompt), given, shown(expected));
            if (!item.hint.isEmpty())
                rows += QStringLiteral("<br><b>Tipp:</b> %1").arg(item.hint.toHtmlEscaped());
            rows += QStringLiteral("</p>");
        }
        if (!rows.isEmpty())
            out += QStringLiteral("<h3 style='color:%1'>%2</h3>")
                       .arg(Look::accentDark().name(), page.title.toHtmlEscaped()) +
                   rows;
    }
    return out;
}

MistakeReview::MistakeReview(const QList<PageRecord>& pages, QWidget* parent,
                             std::function<void(QWidget*)> practise)
    : QDialog(parent) {
    setObjectName(QStringLiteral("MistakeReview"));
    setWindowTitle(QStringLiteral("Fehler ansehen"));
    resize(760, 600);
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel(QStringLiteral("Deine Fehler – und was dahintersteckt"), this);
    Look::setText(heading, 20, QFont::Bold, Look::accentDark());
    layout->addWidget(heading);

    m_text = new QTextBrowser(this);
    m_text->setObjectName(QStringLiteral("MistakeList"));
    m_text->setAccessibleName(QStringLiteral("Liste der falschen Antworten mit Tipps"));
    m_text->setOpenLinks(false);
    Look::setText(m_text, 15, QFont::Normal, Look::ink());
    m_text->setHtml(html(pages));
    layout->addWidget(m_text, 1);

    auto* buttons = new QHBoxLayout;
    if (practise && mistakes(pages) > 0) {
        m_practise = new QPushButton(QStringLiteral("Fehler &üben"), this);
        m_practise->setObjectName(QStringLiteral("FehlerUeben"));
        m_practise->setAccessibleName(
            QStringLiteral("Fehler üben: die falsch beantworteten Aufgaben noch einmal lösen, "
                           "ohne Note"));
        buttons->addWidget(m_practise);
        connect(m_practise, &QPushButton::clicked, this,
                [this, practise = std::move(practise)] { practise(this); });
    }
    buttons->addStretch(1);
    auto* close = new QPushButton(QStringLiteral("&Schließen"), this);
    close->setObjectName(QStringLiteral("MistakeReviewClose"));
    close->setAccessibleName(QStringLiteral("Fehlerliste schließen"));
    close->setDefault(true);
    buttons->addWidget(close);
    layout->addLayout(buttons);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    m_text->setFocus();
}
