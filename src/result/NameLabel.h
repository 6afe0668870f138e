#pragma once

#include <QLabel>

// The candidate's name on the certificate. A name may be long or one
// unbroken word; the label keeps its place and shrinks the font (down to a
// floor) and breaks inside words when it must, so the whole name stays
// readable on screen and on paper. text() is the name as given.
class NameLabel final : public QLabel {
    Q_OBJECT
public:
    explicit NameLabel(QWidget* parent = nullptr);

    // The pixel size the name is drawn with in the current size.
    int fittedPixelSize() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int fit(int* flags) const;
};
