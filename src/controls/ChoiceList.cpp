#include "controls/ChoiceList.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"
#include "controls/MarkSign.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QHash>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextDocument>
#include <cmath>

namespace {

constexpr int kPadX = 8;
constexpr int kPadY = 4;

// A list may ask for rows with less padding, to show more of them at once.
int padY(const QWidget* view) {
    const QVariant pad = view ? view->property("rowPadding") : QVariant();
    return pad.isValid() ? pad.toInt() : kPadY;
}

QString shownText(const QString& text) {
    // The bank pads texts with blanks; a wrapped item would show them as an
    // empty last line.
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1) == u' ')
        --end;
    return FormulaText::textToHtml(QStringView(text).left(end));
}

// Draws an item as wrapped rich text and measures it at the list's width.
class WrappingDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        const bool selected = opt.state.testFlag(QStyle::State_Selected);
        painter->save();
        if (selected)
            painter->fillRect(opt.rect, Look::accent());
        QTextDocument doc;
        layOut(doc, opt.text, opt.font, opt.rect.width());
        painter->translate(opt.rect.topLeft() + QPoint(kPadX, padY(opt.widget)));
        QAbstractTextDocumentLayout::PaintContext context;
        // Marked lists are disabled; their text is black so that it reads
        // on both mark colours (slate ink on the wrong colour would not).
        const bool marked = opt.widget && opt.widget->property("markColour").isValid();
        context.palette.setColor(QPalette::Text, selected ? QColor(Qt::white)
                                                 : marked ? QColor(Qt::black)
                                                          : Look::ink());
        doc.documentLayout()->draw(painter, context);
        painter->restore();

        painter->save();
        painter->setPen(Look::line());
        painter->drawLine(opt.rect.bottomLeft(), opt.rect.bottomRight());
        if (opt.state.testFlag(QStyle::State_HasFocus)) {
            painter->setPen(QPen(selected ? QColor(0xf9, 0xa8, 0x25) : Look::accent(), 1.5));
            painter->drawRect(QRectF(opt.rect).adjusted(1, 1, -1.5, -1.5));
        }
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        int width = opt.rect.width();
        if (const auto* view = qobject_cast<const QAbstractItemView*>(opt.widget))
            width = view->viewport()->width();
        // A list lays out all its items at once; the same texts come back
        // on every draw, so their heights are kept.
        const QString key = QString::number(width) + u'\n' + opt.font.key() + u'\n' + opt.text;
        auto found = m_heights.constFind(key);
        if (found == m_heights.cend()) {
            if (m_heights.size() > 4000)
                m_heights.clear();
            found = m_heights.insert(key, textHeight(opt.text, opt.font, width));
        }
        return {width, found.value() + 2 * padY(opt.widget) + 1};
    }

    static int textHeight(const QString& text, const QFont& font, int width) {
        QTextDocument doc;
        layOut(doc, text, font, width);
        return static_cast<int>(std::ceil(doc.size().height()));
    }

private:
    mutable QHash<QString, int> m_heights;

    static void layOut(QTextDocument& doc, const QString& text, const QFont& font, int width) {
        doc.setDocumentMargin(0);
        doc.setDefaultFont(font);
        doc.setHtml(shownText(text));
        doc.setTextWidth(qMax(40, width - 2 * kPadX));
    }
};

} // namespace

ChoiceList::ChoiceList(QWidget* parent) : QListWidget(parent) {
    setSelectionMode(QAbstractItemView::SingleSelection);
    setWordWrap(true);
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(12);
    // Items are measured at the list's width, so they are laid out again
    // whenever that width changes.
    setResizeMode(QListView::Adjust);
    setUniformItemSizes(false);
    setItemDelegate(new WrappingDelegate(this));
    QFont small = font();
    small.setPixelSize(13);
    setFont(small);
}

void ChoiceList::setChoices(const QStringList& texts) {
    clear();
    addItems(texts);
    clearSelection();
    setCurrentItem(nullptr);
    scrollToTop();
    fitAll();
}

void ChoiceList::keyboardSearch(const QString& search) {
    const bool fresh =
        !m_lastKey.isValid() || m_lastKey.elapsed() > QApplication::keyboardInputInterval();
    m_lastKey.restart();
    if (fresh && selectedItems().isEmpty())
        selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    QListWidget::keyboardSearch(search);
}

void ChoiceList::setRowPadding(int pixels) {
    setProperty("rowPadding", pixels);
    doItemsLayout();
    fitAll();
}

void ChoiceList::setShowAll(bool all) {
    m_showAll = all;
    setVerticalScrollBarPolicy(all ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    fitAll();
}

int ChoiceList::allRowsHeight() const {
    const QMargins margins = viewportMargins();
    int height = 2 * frameWidth() + margins.top() + margins.bottom();
    for (int row = 0; row < count(); ++row)
        height += sizeHintForRow(row);
    return height;
}

int ChoiceList::markedHeight() const {
    const int width = this->width() - 2 * frameWidth() - kMarkInset - MarkSign::kRoom;
    int height = 2 * frameWidth() + 2 * kMarkInset;
    for (int row = 0; row < count(); ++row)
        height +=
            WrappingDelegate::textHeight(item(row)->text(), font(), width) + 2 * padY(this) + 1;
    return height;
}

void ChoiceList::fitAll() {
    // Measured at the list's present width: every item shows, none scrolls.
    if (m_showAll && count() > 0 && viewport()->width() > 0)
        setFixedHeight(allRowsHeight());
}

void ChoiceList::resizeEvent(QResizeEvent* event) {
    QListWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        fitAll();
}

QStringList ChoiceList::choices() const {
    QStringList out;
    out.reserve(count());
    for (int i = 0; i < count(); ++i)
        out << item(i)->text();
    return out;
}

void ChoiceList::setMark(const QColor& colour) {
    m_mark = colour;
    setProperty("markColour", colour.isValid() ? QVariant(colour) : QVariant());
    // The tick or cross sits in a strip of its own beside the items, so it
    // never covers an item's text.
    if (colour.isValid()) {
        // The inset keeps the heavy border of a wrong list off the text.
        setViewportMargins(kMarkInset, kMarkInset, MarkSign::kRoom, kMarkInset);
        MarkSign::attach(this, Look::isRight(colour), true);
        fitAll();
    } else {
        setViewportMargins(0, 0, 0, 0);
        MarkSign::detach(this);
        // The description is the verdict of the last check.
        setAccessibleDescription(QString());
    }
    viewport()->update();
    update();
}

void ChoiceList::paintEvent(QPaintEvent* event) {
    // Painted here rather than through the palette: the viewport keeps a
    // palette of its own, renewed whenever the list is enabled or disabled.
    if (m_mark.isValid()) {
        QPainter painter(viewport());
        painter.fillRect(event->rect(), m_mark);
    }
    QListWidget::paintEvent(event);
    if (hasFocus()) {
        // The list as a whole shows the focus, also before an item is current.
        QPainter painter(viewport());
        painter.setPen(QPen(Look::accent(), 2));
        painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
    }
}

void ChoiceList::focusInEvent(QFocusEvent* event) {
    QListWidget::focusInEvent(event);
    viewport()->update();
}

void ChoiceList::focusOutEvent(QFocusEvent* event) {
    QListWidget::focusOutEvent(event);
    viewport()->update();
}

bool ChoiceList::event(QEvent* event) {
    // The strip beside the viewport is the list's own: it takes the mark
    // colour, so the badge stands on the field it marks.
    if (event->type() != QEvent::Paint || !m_mark.isValid())
        return QListWidget::event(event);
    {
        QPainter painter(this);
        painter.fillRect(rect().adjusted(frameWidth(), frameWidth(), -frameWidth(), -frameWidth()),
                         m_mark);
    }
    const bool done = QListWidget::event(event);
    if (!Look::isRight(m_mark)) {
        // A wrong list also has a heavy dark border around its items.
        QPainter painter(this);
        painter.setPen(QPen(Qt::black, kMarkInset));
        const qreal half = kMarkInset / 2.0;
        painter.drawRect(QRectF(viewport()->geometry()).adjusted(-half, -half, half, half));
    }
    return done;
}

QString ChoiceList::chosenText() const {
    const QList<QListWidgetItem*> chosen = selectedItems();
    return chosen.isEmpty() ? QString() : chosen.first()->text();
}

void ChoiceList::replaceChoice(int row, const QString& text) {
    if (QListWidgetItem* it = item(row))
        it->setText(text);
}
