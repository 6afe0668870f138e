#include "controls/ChoiceList.h"

#include "chem/FormulaText.h"
#include "controls/Look.h"

#include <QAbstractTextDocumentLayout>
#include <QHash>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextDocument>
#include <cmath>

namespace {

constexpr int kPadX = 8;
constexpr int kPadY = 4;

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
        painter->translate(opt.rect.topLeft() + QPoint(kPadX, kPadY));
        QAbstractTextDocumentLayout::PaintContext context;
        // Marked lists are disabled; their text stays dark so that it reads
        // on the right and wrong colours.
        context.palette.setColor(QPalette::Text, selected ? QColor(Qt::white) : Look::ink());
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
            QTextDocument doc;
            layOut(doc, opt.text, opt.font, width);
            found = m_heights.insert(key, static_cast<int>(std::ceil(doc.size().height())));
        }
        return {width, found.value() + 2 * kPadY + 1};
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
    viewport()->update();
}

void ChoiceList::paintEvent(QPaintEvent* event) {
    // Painted here rather than through the palette: the viewport keeps a
    // palette of its own, renewed whenever the list is enabled or disabled.
    if (m_mark.isValid()) {
        QPainter painter(viewport());
        painter.fillRect(event->rect(), m_mark);
    }
    QListWidget::paintEvent(event);
}

QString ChoiceList::chosenText() const {
    const QList<QListWidgetItem*> chosen = selectedItems();
    return chosen.isEmpty() ? QString() : chosen.first()->text();
}

void ChoiceList::replaceChoice(int row, const QString& text) {
    if (QListWidgetItem* it = item(row))
        it->setText(text);
}
