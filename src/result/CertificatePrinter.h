#pragma once

#include <QString>

class QWidget;

// Puts the certificate on paper: one page, scaled to fit, no dialog. It goes
// to the default printer, or into the PDF file LABQUIZ_PRINT_TO names, or,
// where no printer is installed, into a PDF in the documents folder.
class CertificatePrinter final {
public:
    struct Target {
        enum class Kind { Printer, PdfFile };
        Kind kind = Kind::Printer;
        QString file;                  // for a PDF file
        bool forLackOfPrinter = false; // the candidate must be told where it went
    };

    static Target chooseTarget(const QString& printTo, bool printerInstalled,
                               const QString& documentsFolder, const QString& name,
                               const QString& testDate);
    // "Laborix-Urkunde <Name> <dd.mm.yyyy>.pdf", with the name made safe for
    // every file system: no reserved characters, no control characters, not
    // too long, no blanks or dots at its ends.
    static QString fileNameFor(const QString& name, const QString& testDate);
    // folder/fileName, or "<base> (2).pdf" and so on when that exists.
    static QString freePath(const QString& folder, const QString& fileName);

    static bool printerInstalled();
    static QString documentsFolder();

    // Prints the widget as it looks now; a German problem text, empty when
    // the page went out.
    static QString print(QWidget* certificate, const Target& target);
};
