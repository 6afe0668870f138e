#pragma once

#include <QIcon>
#include <QWidget>

class QPainter;

// The drawings of the certificate: the OK sign of the frame, the seal
// (Image1), the molecule border (Picture1) and the two button icons. They
// are painted, not loaded, so that the printout stays sharp at any scale.
class CertificateArt final : public QWidget {
    Q_OBJECT
public:
    enum class Kind { OkSign, Seal, Molecules, Printer, Loudspeaker };

    explicit CertificateArt(Kind kind, QWidget* parent = nullptr);

    Kind kind() const { return m_kind; }
    static void paint(QPainter& p, const QRectF& area, Kind kind);
    static QIcon icon(Kind kind, const QColor& colour);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Kind m_kind;
};
