#pragma once

// Prints the customer's receipt of a saved entry: read back from the ledger, bound to the template of its
// kind and style, and printed on the chosen printer, the default printer, or into a PDF file in
// TILLBOOK_PDF_DIR.

#include "printing/data/PrintRequest.h"

#include <QString>
#include <QStringList>

namespace tillbook {

class Session;

struct PrintOutcome {
    bool printed = false;
    QString pdfFile;      // the file written when printing into TILLBOOK_PDF_DIR
    QString printer;      // the printer's name otherwise
    QStringList problems; // what went wrong, in order, for the window to show
};

// The template's file name for a kind and style: "Receipt_3P.html", "Misc_Receipt_2P.html", ...
QString ReceiptTemplateName(ReceiptKind kind, bool threePart);

// A file in `folder` named for the batch and entry; a reprint gets the next free copy number:
// "Receipt batch 12 entry 3.pdf", "Receipt batch 12 entry 3 copy 2.pdf", ...
QString ReceiptPdfPath(const QString& folder, int batch, int entry);

// Every failure is handed back among the problems. A missing or broken template or an unreadable entry prints
// nothing; a failing sub-report binding or printer choice is shown and the print goes on. A print the user
// cancels ends without a message. The entry is read through views of the printing's own on `session` (none
// when no company is open), so the receipt window's views stay where they are.
PrintOutcome Print_Receipt(Session* session, const PrintRequest& request);

} // namespace tillbook
