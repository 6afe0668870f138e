#include "controls/PeriodicTableView.h"

#include "controls/Look.h"

#include <QHash>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int kLegendHeight = 34;
constexpr int kMargin = 8;

// One table instead of a chain of compares: the names are UTF-8 literals
// throughout, so "Übergangsmetall" cannot silently miss its colour again.
// The order is the one the legend shows.
const QList<std::pair<QString, QRgb>>& categoryTable() {
    static const QList<std::pair<QString, QRgb>> table = {
        {QStringLiteral("Alkalimetall"), 0xffcc80},
        {QStringLiteral("Erdalkalimetall"), 0xffe082},
        {QStringLiteral("Übergangsmetall"), 0xf8bbd0},
        {QStringLiteral("Metall"), 0xc5cae9},
        {QStringLiteral("Halbmetall"), 0xb2dfdb},
        {QStringLiteral("Nichtmetall"), 0xc8e6c9},
        {QStringLiteral("Halogen"), 0xe6ee9c},
        {QStringLiteral("Edelgas"), 0xb3e5fc},
        {QStringLiteral("Lanthanoid"), 0xe1bee7},
        {QStringLiteral("Actinoid"), 0xd1c4e9}};
    return table;
}

QString germanNumber(double value, int decimals) {
    return QString::number(value, 'f', decimals).replace(u'.', u',');
}

} // namespace

QColor PeriodicTableView::categoryColour(const QString& category) {
    static const QHash<QString, QRgb> colours = [] {
        QHash<QString, QRgb> h;
        for (const auto& [name, rgb] : categoryTable())
            h.insert(name, rgb);
        return h;
    }();
    return QColor(colours.value(category, 0xeceff1));
}

QStringList PeriodicTableView::categories() {
    QStringList names;
    for (const auto& entry : categoryTable())
        names << entry.first;
    return names;
}

PeriodicTableView::PeriodicTableView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ctl_PSE"));
    setMouseTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Periodensystem"));
}

QString PeriodicTableView::massText(const ElementTable::Element& e) {
    if (e.massNumberOnly)
        return QStringLiteral("[%1]").arg(e.massHundredths / 100);
    return germanNumber(e.massHundredths / 100.0, 2);
}

int PeriodicTableView::neighbour(int number, int dx, int dy) const {
    const ElementTable::Element* from = m_table.byNumber(number);
    if (!from || (dx == 0 && dy == 0))
        return number;
    const QPoint start = cellOf(*from);
    // Rows run 0..9 (7 stays empty), columns 0..17.
    for (int step = 1; step <= 18; ++step) {
        const QPoint at = start + QPoint(dx, dy) * step;
        if (at.x() < 0 || at.x() > 17 || at.y() < 0 || at.y() > 9)
            break;
        for (const ElementTable::Element& e : m_table.elements())
            if (cellOf(e) == at)
                return e.number;
    }
    return number;
}

void PeriodicTableView::moveCursor(int number) {
    if (!m_table.byNumber(number))
        return;
    m_cursor = number;
    const ElementTable::Element* e = m_table.byNumber(number);
    // A screen reader follows the ring by the name.
    setAccessibleName(QStringLiteral("Periodensystem: %1, %2, Atommasse %3")
                          .arg(e->symbol, e->name, massText(*e)));
    update();
}

void PeriodicTableView::keyPressEvent(QKeyEvent* event) {
    int dx = 0;
    int dy = 0;
    switch (event->key()) {
    case Qt::Key_Left:
        dx = -1;
        break;
    case Qt::Key_Right:
        dx = 1;
        break;
    case Qt::Key_Up:
        dy = -1;
        break;
    case Qt::Key_Down:
        dy = 1;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        select(m_cursor);
        setAccessibleDescription(selectionText());
        event->accept();
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    moveCursor(neighbour(m_cursor, dx, dy));
    event->accept();
}

void PeriodicTableView::focusInEvent(QFocusEvent* event) {
    if (!m_table.byNumber(m_cursor) && m_table.count() > 0)
        m_cursor = m_table.elements().first().number;
    moveCursor(m_selected ? m_selected : m_cursor);
    QWidget::focusInEvent(event);
}

void PeriodicTableView::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

void PeriodicTableView::setTable(ElementTable table) {
    m_table = std::move(table);
    m_selected = 0;
    update();
}

QPoint PeriodicTableView::cellOf(const ElementTable::Element& e) {
    if (e.category == QLatin1String("Lanthanoid") || (e.number >= 57 && e.number <= 71))
        return {2 + (e.number - 57), 8};
    if (e.category == QLatin1String("Actinoid") || (e.number >= 89 && e.number <= 103))
        return {2 + (e.number - 89), 9};
    return {qBound(1, e.group, 18) - 1, qBound(1, e.period, 7) - 1};
}

QRect PeriodicTableView::cellRect(QPoint cell) const {
    const int extra = cell.y() >= 8 ? kCell / 3 : 0; // a small gap above the f-block rows
    return {kMargin + cell.x() * (kCell + kGap),
            kMargin + cell.y() * (kCell + kGap) - (cell.y() >= 8 ? kCell : 0) + extra, kCell,
            kCell};
}

QSize PeriodicTableView::sizeHint() const {
    const QRect last = cellRect({17, 9});
    return {last.right() + kMargin + 1, last.bottom() + kMargin + kLegendHeight};
}

const ElementTable::Element* PeriodicTableView::elementAt(QPoint pos) const {
    for (const ElementTable::Element& e : m_table.elements()) {
        if (cellRect(cellOf(e)).contains(pos))
            return &e;
    }
    return nullptr;
}

void PeriodicTableView::select(int number) {
    m_selected = m_table.byNumber(number) ? number : 0;
    update();
}

QString PeriodicTableView::selectionText() const {
    const ElementTable::Element* e = m_table.byNumber(m_selected);
    if (!e) {
        if (m_table.count() == 0)
            return QStringLiteral("Die Datei elements.dat fehlt oder ist leer.");
        return QStringLiteral("Ein Element anklicken oder mit den Pfeiltasten wählen und Enter "
                              "drücken, um seine Daten zu sehen.");
    }
    QString mass =
        e->massNumberOnly
            ? QStringLiteral("Massenzahl des langlebigsten Isotops %1").arg(e->massHundredths / 100)
            : QStringLiteral("Atommasse %1 u").arg(germanNumber(e->massHundredths / 100.0, 2));
    QString text = QStringLiteral("%1  %2  %3 – %4 – %5")
                       .arg(e->number)
                       .arg(e->symbol, e->name, mass, e->category);
    if (e->electronegativity)
        text += QStringLiteral(" – EN %1").arg(germanNumber(*e->electronegativity, 2));
    return text;
}

void PeriodicTableView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(rect(), Qt::white);
    QFont symbolFont = font();
    symbolFont.setPixelSize(15);
    symbolFont.setBold(true);
    QFont numberFont = font();
    numberFont.setPixelSize(10);

    // Placeholders where the f-block rows belong in the main table.
    for (int row : {5, 6}) {
        const QRect r = cellRect({2, row});
        p.setPen(QPen(Look::line(), 1, Qt::DashLine));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(r).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        p.setFont(numberFont);
        p.setPen(Look::softInk());
        p.drawText(r, Qt::AlignCenter,
                   row == 5 ? QStringLiteral("57–71") : QStringLiteral("89–103"));
    }
    for (const ElementTable::Element& e : m_table.elements()) {
        const QRectF r = QRectF(cellRect(cellOf(e))).adjusted(0.5, 0.5, -0.5, -0.5);
        const bool chosen = e.number == m_selected;
        p.setPen(chosen ? QPen(Look::accentDark(), 2) : QPen(QColor(0xb0, 0xbe, 0xc5), 1));
        p.setBrush(categoryColour(e.category));
        p.drawRoundedRect(r, 3, 3);
        p.setPen(Look::ink());
        p.setFont(numberFont);
        p.drawText(r.adjusted(3, 1, -2, 0), Qt::AlignLeft | Qt::AlignTop,
                   QString::number(e.number));
        p.drawText(r.adjusted(1, 0, -1, -1), Qt::AlignHCenter | Qt::AlignBottom, massText(e));
        p.setFont(symbolFont);
        p.drawText(r.adjusted(0, 0, 0, -2), Qt::AlignCenter, e.symbol);
    }
    // The keyboard ring: black, so it stands out on every tile colour.
    if (hasFocus()) {
        if (const ElementTable::Element* e = m_table.byNumber(m_cursor)) {
            p.setPen(QPen(Qt::black, 3));
            p.setBrush(Qt::NoBrush);
            p.drawRoundedRect(QRectF(cellRect(cellOf(*e))).adjusted(-1, -1, 1, 1), 4, 4);
        }
    }
    QFont infoFont = font();
    infoFont.setPixelSize(13);
    p.setFont(infoFont);
    p.setPen(Look::ink());
    const QRect info(kMargin, height() - kLegendHeight, width() - 2 * kMargin, kLegendHeight - 6);
    p.drawText(info, Qt::AlignLeft | Qt::AlignVCenter, selectionText());
}

void PeriodicTableView::mousePressEvent(QMouseEvent* event) {
    if (const ElementTable::Element* e = elementAt(event->position().toPoint())) {
        select(e->number);
        moveCursor(e->number);
    }
    event->accept();
}

bool PeriodicTableView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        if (const ElementTable::Element* e = elementAt(help->pos()))
            QToolTip::showText(help->globalPos(), QStringLiteral("%1 (%2)").arg(e->name, e->symbol),
                               this);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}
