#include "aids/PeriodicTablePanel.h"

#include "controls/Look.h"
#include "controls/PeriodicTableView.h"

#include <QApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The "no" sign of the close button: a red circle with a bar.
QIcon noSignIcon() {
    QPixmap pm(20, 20);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0xc6, 0x28, 0x28), 2.5));
    p.setBrush(Qt::white);
    p.drawEllipse(QRectF(2, 2, 16, 16));
    p.drawLine(QPointF(5.5, 14.5), QPointF(14.5, 5.5));
    return QIcon(pm);
}

// The key to the colours of the table. It sits in the empty corner above
// the transition metals, where printed school tables keep theirs.
class ColourLegend final : public QWidget {
public:
    explicit ColourLegend(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("PSE_Legende"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    static constexpr int kColumns = 3;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        QFont f = font();
        f.setPixelSize(11);
        p.setFont(f);
        const QStringList names = PeriodicTableView::categories();
        const int rows = (int(names.size()) + kColumns - 1) / kColumns;
        const qreal w = width() / qreal(kColumns);
        const qreal h = height() / qreal(qMax(1, rows));
        for (int i = 0; i < names.size(); ++i) {
            const QRectF cell((i % kColumns) * w, (i / kColumns) * h, w, h);
            const QRectF swatch(cell.left() + 2, cell.center().y() - 6, 12, 12);
            p.setPen(QPen(QColor(0xb0, 0xbe, 0xc5), 1));
            p.setBrush(PeriodicTableView::categoryColour(names[i]));
            p.drawRoundedRect(swatch, 2, 2);
            p.setPen(Look::ink());
            p.drawText(cell.adjusted(19, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, names[i]);
        }
    }
};

} // namespace

PeriodicTablePanel::PeriodicTablePanel(QWidget* parent) : RoundPanel(parent) {
    setObjectName(QStringLiteral("frm_PSE"));
    setBox({Qt::white, Look::accentDark(), 2, 6});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(0);

    m_title = new QWidget(this);
    m_title->setObjectName(QStringLiteral("bar_PSETitle"));
    Look::setFill(m_title, Look::accentDark());
    Look::setText(m_title, 14, QFont::Bold, Qt::white);
    m_title->setCursor(Qt::SizeAllCursor);
    m_title->installEventFilter(this);
    auto* row = new QHBoxLayout(m_title);
    row->setContentsMargins(10, 3, 4, 3);
    row->addWidget(new QLabel(QStringLiteral("Periodensystem"), m_title));
    row->addStretch(1);
    m_close = new QToolButton(m_title);
    m_close->setObjectName(QStringLiteral("but_PSEHide"));
    m_close->setIcon(noSignIcon());
    m_close->setAutoRaise(true);
    m_close->setToolTip(QStringLiteral("Periodensystem schließen"));
    m_close->setAccessibleName(m_close->toolTip());
    m_close->setCursor(Qt::ArrowCursor);
    row->addWidget(m_close);
    layout->addWidget(m_title);

    m_view = new PeriodicTableView(this);
    layout->addWidget(m_view);
    auto* legend = new ColourLegend(m_view);
    legend->setGeometry(
        m_view->cellRect({2, 0}).united(m_view->cellRect({11, 2})).adjusted(6, 2, 0, -2));
    connect(m_close, &QToolButton::clicked, this, &PeriodicTablePanel::putAway);
    adjustSize();
    hide();
}

void PeriodicTablePanel::ShowPeriodicTable() {
    if (isVisible())
        return;
    if (!m_homeSet) {
        // First opening: over the upper part of the window, centred.
        m_home = QPoint(qMax(0, (parentWidget()->width() - width()) / 2), 40);
        m_homeSet = true;
    }
    show();
    move(m_home);
    raise();
    m_focusBefore = QApplication::focusWidget();
    m_view->setFocus(Qt::OtherFocusReason);
}

void PeriodicTablePanel::putAway() {
    hide();
    if (m_focusBefore && m_focusBefore->isVisible())
        m_focusBefore->setFocus(Qt::OtherFocusReason);
}

void PeriodicTablePanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        putAway();
        event->accept();
        return;
    }
    RoundPanel::keyPressEvent(event);
}

void PeriodicTablePanel::HidePeriodicTable() {
    if (!isVisible())
        return;
    m_home = pos();
    m_homeSet = true;
    hide();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize far = screen ? screen->size() : QSize(4000, 4000);
    move(far.width(), far.height());
}

void PeriodicTablePanel::beginDrag(QPoint globalPointer) {
    m_dragPanel = pos();
    m_dragPointer = globalPointer;
    m_dragging = true;
}

void PeriodicTablePanel::dragTo(QPoint globalPointer) {
    if (!m_dragging || m_dragBusy)
        return;
    m_dragBusy = true;
    int left = m_dragPanel.x() + (globalPointer.x() - m_dragPointer.x());
    int top = m_dragPanel.y() + (globalPointer.y() - m_dragPointer.y());
    const QWidget* area = parentWidget();
    // At most half the panel may leave on the left, none at the top, and at
    // least 50 pixels of it stay inside on the right and at the bottom.
    if (left < -(width() / 2))
        left = -(width() / 2);
    if (top < 0)
        top = 0;
    if (top > area->height() - 50)
        top = area->height() - 50;
    if (left > area->width() - 50)
        left = area->width() - 50;
    move(left, top);
    m_dragBusy = false;
}

bool PeriodicTablePanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_title) {
        if (event->type() == QEvent::MouseButtonPress) {
            beginDrag(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        }
        if (event->type() == QEvent::MouseMove) {
            auto* move = static_cast<QMouseEvent*>(event);
            if (move->buttons() != Qt::NoButton)
                dragTo(move->globalPosition().toPoint());
            return true;
        }
        if (event->type() == QEvent::MouseButtonRelease) {
            m_dragging = false;
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}
