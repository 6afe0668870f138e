#include "result/CertificatePrinter.h"

#include "result/FinalGrade.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPicture>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QWidget>
#include <memory>

namespace {

// Bytes, not characters, limit a file name (255 on most systems); the name
// part stays well below so that prefix, date and a " (n)" still fit.
constexpr int kNameBytes = 120;

bool isReserved(QChar c) {
    return c.unicode() < 0x20 || c.unicode() == 0x7f || QStringView(u"<>:\"/\\|?*").contains(c) ||
           c.category() == QChar::Other_Format || c.category() == QChar::Separator_Line ||
           c.category() == QChar::Separator_Paragraph;
}

QString safeName(const QString& name) {
    QString clean;
    for (QChar c : name.normalized(QString::NormalizationForm_C))
        clean += isReserved(c) ? QChar(u' ') : c;
    clean = clean.simplified();
    while (clean.startsWith(u'.') || clean.startsWith(u' '))
        clean.remove(0, 1);
    while (clean.toUtf8().size() > kNameBytes) {
        clean.chop(1);
        if (!clean.isEmpty() && clean.back().isHighSurrogate())
            clean.chop(1);
    }
    while (clean.endsWith(u'.') || clean.endsWith(u' '))
        clean.chop(1);
    return clean;
}

bool looksLikePdf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() < 64)
        return false;
    if (!file.read(5).startsWith("%PDF-"))
        return false;
    file.seek(file.size() - 32);
    return file.read(32).contains("%%EOF");
}

} // namespace

QString CertificatePrinter::fileNameFor(const QString& name, const QString& testDate) {
    QStringList parts{QStringLiteral("Laborix-Urkunde")};
    const QString clean = safeName(name);
    if (!clean.isEmpty())
        parts << clean;
    const QString date = FinalGrade::germanDate(testDate);
    static const QRegularExpression dateForm(QStringLiteral("^\\d\\d\\.\\d\\d\\.\\d{4}$"));
    if (dateForm.match(date).hasMatch())
        parts << date;
    return parts.join(u' ') + QStringLiteral(".pdf");
}

QString CertificatePrinter::freePath(const QString& folder, const QString& fileName) {
    const QDir dir(folder);
    QString path = dir.filePath(fileName);
    const QString base = QFileInfo(fileName).completeBaseName();
    for (int n = 2; QFileInfo::exists(path) && n < 1000; ++n)
        path = dir.filePath(QStringLiteral("%1 (%2).pdf").arg(base).arg(n));
    return path;
}

CertificatePrinter::Target CertificatePrinter::chooseTarget(const QString& printTo,
                                                            bool printerInstalled,
                                                            const QString& documentsFolder,
                                                            const QString& name,
                                                            const QString& testDate) {
    Target t;
    if (!printTo.isEmpty()) {
        t.kind = Target::Kind::PdfFile;
        t.file = printTo;
    } else if (!printerInstalled) {
        t.kind = Target::Kind::PdfFile;
        t.file = freePath(documentsFolder, fileNameFor(name, testDate));
        t.forLackOfPrinter = true;
    }
    return t;
}

bool CertificatePrinter::printerInstalled() {
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

QString CertificatePrinter::documentsFolder() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty())
        folder = QDir::homePath();
    return folder;
}

QString CertificatePrinter::print(QWidget* certificate, const Target& target) {
    std::unique_ptr<QPrinter> printer;
    if (target.kind == Target::Kind::Printer) {
        QPrinterInfo info = QPrinterInfo::defaultPrinter();
        if (info.isNull() && !QPrinterInfo::availablePrinters().isEmpty())
            info = QPrinterInfo::availablePrinters().constFirst();
        printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    } else {
        if (target.forLackOfPrinter)
            QDir().mkpath(QFileInfo(target.file).absolutePath());
        printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(target.file);
        printer->setPageSize(QPageSize(QPageSize::A4));
    }
    printer->setDocName(QStringLiteral("Laborix-Urkunde"));
    printer->setCreator(QStringLiteral("Laborix Test"));
    printer->setPageOrientation(certificate->width() > certificate->height()
                                    ? QPageLayout::Landscape
                                    : QPageLayout::Portrait);

    const QString where =
        target.kind == Target::Kind::Printer
            ? QStringLiteral("Der Drucker „%1“ meldet einen Fehler.").arg(printer->printerName())
            : QStringLiteral("Die Datei %1 kann nicht geschrieben werden. Ist "
                             "der Datenträger voll oder schreibgeschützt?")
                  .arg(QDir::toNativeSeparators(target.file));
    const QString failed = QStringLiteral("Die Urkunde konnte nicht gedruckt werden.\n\n") + where;

    // Recorded first and played onto the page: a widget rendered straight onto
    // a printer goes through one huge bitmap, a recording stays lines and text.
    QPicture picture;
    {
        QPainter recorder(&picture);
        certificate->render(&recorder, QPoint(), QRegion(),
                            QWidget::DrawWindowBackground | QWidget::DrawChildren);
    }
    QPainter painter;
    if (!painter.begin(printer.get()))
        return failed;
    const QRectF page = painter.viewport();
    const qreal scale =
        qMin(page.width() / certificate->width(), page.height() / certificate->height());
    painter.translate(page.x() + (page.width() - certificate->width() * scale) / 2,
                      page.y() + (page.height() - certificate->height() * scale) / 2);
    // Playing a recording scales it from the screen's resolution to the
    // printer's by itself; only the fit to the page is left to do.
    const qreal played = qreal(printer->logicalDpiX()) / picture.logicalDpiX();
    painter.scale(scale / played, scale / played);
    painter.drawPicture(0, 0, picture);
    const bool ended = painter.end();
    if (!ended || printer->printerState() == QPrinter::Error)
        return failed;
    if (target.kind == Target::Kind::PdfFile && !looksLikePdf(target.file))
        return failed;
    return {};
}
