#include "controls/FormulaTextLabel.h"

#include "chem/FormulaText.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPainter>
#include <QTextDocument>
#include <QTextOption>
#include <cmath>

FormulaTextLabel::FormulaTextLabel(QWidget* parent) : BoxLabel(QString(), parent) {
    setTextFormat(Qt::PlainText);
}

FormulaTextLabel::~FormulaTextLabel() = default;

void FormulaTextLabel::setStoredText(const QString& text) {
    const QString html = FormulaText::textToHtml(text);
    // Without a formula the converted text differs from the stored one only
    // by escaping; QLabel draws such a text itself.
    m_html = html == text.toHtmlEscaped() || html == text ? QString() : html;
    m_document.reset();
    setText(text);
}

QRect FormulaTextLabel::textArea() const {
    return contentsRect().adjusted(margin(), margin(), -margin(), -margin());
}

int FormulaTextLabel::frameHeight() const {
    return height() - textArea().height();
}

QTextDocument& FormulaTextLabel::document(int width) const {
    if (!m_document) {
        m_document = std::make_unique<QTextDocument>();
        m_document->setDocumentMargin(0);
        m_document->setDefaultFont(font());
        QTextOption option = m_document->defaultTextOption();
        option.setWrapMode(wordWrap() ? QTextOption::WordWrap : QTextOption::NoWrap);
        m_document->setDefaultTextOption(option);
        m_document->setHtml(m_html);
    }
    m_document->setTextWidth(wordWrap() && width > 0 ? width : -1);
    return *m_document;
}

int FormulaTextLabel::heightForWidth(int width) const {
    const int plain = BoxLabel::heightForWidth(width);
    if (m_html.isEmpty() || plain < 0)
        return plain;
    const QMargins m = contentsMargins();
    const int inner = width - m.left() - m.right() - 2 * margin();
    const int drawn = int(std::ceil(document(inner).size().height()));
    return qMax(plain, drawn + m.top() + m.bottom() + 2 * margin());
}

QSize FormulaTextLabel::sizeHint() const {
    QSize size = BoxLabel::sizeHint();
    if (!m_html.isEmpty() && wordWrap())
        size.setHeight(qMax(size.height(), heightForWidth(size.width())));
    else if (!m_html.isEmpty())
        size.setHeight(qMax(size.height(), int(std::ceil(document(-1).size().height())) +
                                               contentsMargins().top() +
                                               contentsMargins().bottom() + 2 * margin()));
    return size;
}

QSize FormulaTextLabel::minimumSizeHint() const {
    QSize size = BoxLabel::minimumSizeHint();
    if (!m_html.isEmpty() && !wordWrap())
        size.setHeight(qMax(size.height(), sizeHint().height()));
    return size;
}

void FormulaTextLabel::paintEvent(QPaintEvent* event) {
    if (m_html.isEmpty()) {
        BoxLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    paintBox(painter);
    const QRect area = textArea();
    QTextDocument& doc = document(area.width());
    const qreal height = doc.size().height();
    qreal top = area.top();
    if (alignment() & Qt::AlignVCenter)
        top += (area.height() - height) / 2;
    else if (alignment() & Qt::AlignBottom)
        top += area.height() - height;
    qreal left = area.left();
    if (!wordWrap() && (alignment() & Qt::AlignHCenter))
        left += (area.width() - doc.idealWidth()) / 2;
    else if (!wordWrap() && (alignment() & Qt::AlignRight))
        left += area.width() - doc.idealWidth();
    painter.translate(left, top);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    doc.documentLayout()->draw(&painter, context);
}

void FormulaTextLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange)
        m_document.reset();
    BoxLabel::changeEvent(event);
}
