#pragma once

#include <QWidget>

// The shape beside a mark's colour: a round badge with a tick for right and
// a cross for wrong, sitting inside the marked field's right edge. A student
// who cannot tell the two fill colours apart, and a greyscale print, still
// read the verdict from the shape; a screen reader reads it as the badge's
// name. The badge takes no clicks and no focus.
class MarkSign final : public QWidget {
    Q_OBJECT
public:
    // Room a field keeps free at its right edge for the badge.
    static constexpr int kRoom = 24;

    // Shows the badge on field (replacing one already there); top puts it
    // at the top edge, for fields taller than a line such as lists.
    static MarkSign* attach(QWidget* field, bool right, bool top = false);
    static void detach(QWidget* field);
    // The badge a field carries, or nullptr.
    static MarkSign* of(const QWidget* field);

    bool isRight() const { return m_right; }
    QSize sizeHint() const override { return {20, 20}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MarkSign(QWidget* field, bool right, bool top);
    void place();

    bool m_right;
    bool m_top;
};
