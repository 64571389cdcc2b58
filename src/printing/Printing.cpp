#include "printing/Printing.h"

#include "ledger/LedgerError.h"
#include "ledger/Session.h"
#include "printing/Printers.h"
#include "printing/ReceiptPage.h"
#include "printing/Report.h"
#include "printing/data/ReceiptData.h"
#include "ui/Forms.h"
#include "ui/ProgramData.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>

namespace tillbook {

namespace {

// The copies of a style when its template does not name them.
QStringList defaultCopies(bool threePart) {
    return threePart
               ? QStringList{QStringLiteral("Customer"), QStringLiteral("Office"), QStringLiteral("File")}
               : QStringList{QStringLiteral("Customer"), QStringLiteral("Office")};
}

// Every sub-report, at any depth, prints from the same data set as the receipt itself.
void bindAll(Report& report, const std::shared_ptr<const DataSet>& data, QStringList& problems) {
    report.setDataSource(data);
    for (const QString& name : report.subreportNames()) {
        try {
            bindAll(report.subreport(name), data, problems);
        } catch (const InputError& error) {
            problems << error.message();
        }
    }
}

// The finished HTML of every copy; empty after a failure, which is among the problems.
QStringList renderCopies(const Report& report, bool threePart, QStringList& problems) {
    QStringList labels = report.copyLabels();
    if (labels.isEmpty())
        labels = defaultCopies(threePart);
    QStringList copies;
    try {
        for (const QString& label : labels)
            copies << report.render(label);
    } catch (const InputError& error) {
        problems << error.message();
        return {};
    }
    return copies;
}

// The printer of the "Printer" settings, or the default one; a stored printer that is no longer installed is
// reported among the problems and the default printer used.
QPrinterInfo choosePrinter(QStringList& problems) {
    const PrinterSettings settings = Load_PrinterSettings();
    if (!Uses_DefaultPrinter(settings)) {
        const QPrinterInfo chosen = QPrinterInfo::printerInfo(settings.name);
        if (!chosen.isNull())
            return chosen;
        problems << QStringLiteral(
                        "The printer \"%1\" is not installed. The receipt is printed on the default "
                        "printer.")
                        .arg(settings.name);
    }
    return QPrinterInfo::defaultPrinter();
}

bool printToPdf(const QString& file, const QStringList& copies, const QString& title, QStringList& problems) {
    // A receipt names a customer and what they paid: readable by its owner only, as every file of ours.
    const QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const QString unwritable = QStringLiteral("The receipt could not be written to %1.").arg(file);
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate, ownerOnly) || !out.setPermissions(ownerOnly)) {
        problems << unwritable;
        return false;
    }
    QPdfWriter writer(&out);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("Tillbook"));
    writer.setResolution(600);
    writer.setPageSize(ReceiptPaper());
    writer.setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
    QPainter painter;
    if (!painter.begin(&writer)) {
        problems << unwritable;
        return false;
    }
    Paint_ReceiptPage(painter, writer, copies);
    return painter.end();
}

// Returns false when nothing was printed; a cancelled print is not reported.
bool printOn(const QPrinterInfo& info, const QStringList& copies, const QString& title,
             QStringList& problems) {
    if (info.isNull()) {
        problems << QStringLiteral(
            "No printer is installed. Choose a printer with Select Printer in the File menu.");
        return false;
    }
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setDocName(title);
    printer.setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
    QPainter painter;
    if (!painter.begin(&printer)) {
        if (printer.printerState() != QPrinter::Aborted)
            problems << QStringLiteral("The printer \"%1\" could not be started.").arg(info.printerName());
        return false;
    }
    Paint_ReceiptPage(painter, printer, copies);
    const bool done = painter.end();
    if (!done && printer.printerState() != QPrinter::Aborted)
        problems << QStringLiteral("The receipt could not be printed on \"%1\".").arg(info.printerName());
    return done;
}

} // namespace

QString ReceiptTemplateName(ReceiptKind kind, bool threePart) {
    const QString style = threePart ? QStringLiteral("_3P.html") : QStringLiteral("_2P.html");
    switch (kind) {
    case ReceiptKind::Prepayment:
        return QStringLiteral("PrePay_Receipt") + style;
    case ReceiptKind::Misc:
        return QStringLiteral("Misc_Receipt") + style;
    case ReceiptKind::Receipt:
        break;
    }
    return QStringLiteral("Receipt") + style;
}

QString ReceiptPdfPath(const QString& folder, int batch, int entry) {
    const QDir dir(folder);
    const QString stem = QStringLiteral("Receipt batch %1 entry %2").arg(batch).arg(entry);
    QString path = dir.filePath(stem + QStringLiteral(".pdf"));
    for (int copy = 2; QFileInfo::exists(path); ++copy)
        path = dir.filePath(stem + QStringLiteral(" copy %1.pdf").arg(copy));
    return path;
}

PrintOutcome Print_Receipt(Session* session, const PrintRequest& request) {
    PrintOutcome outcome;
    QStringList& problems = outcome.problems;
    if (!session || !session->isOpen()) {
        problems << QStringLiteral("No company is open: there is no receipt to print.");
        return outcome;
    }
    auto data = std::make_shared<DataSet>();
    try {
        *data = Read_ReceiptData(*session, request);
    } catch (const LedgerError& error) {
        problems << error.description();
        session->errors().clear(); // handed on: not to be reported again by the next procedure
        return outcome;
    }

    const QString folder =
        request.reportFolder.isEmpty() ? ProgramDataFolder(QStringLiteral("Reports")) : request.reportFolder;
    std::unique_ptr<Report> report;
    try {
        report = Report::open(QDir(folder).filePath(ReceiptTemplateName(request.kind, request.threePart)));
    } catch (const InputError& error) {
        problems << error.message();
        return outcome;
    }
    bindAll(*report, data, problems);

    const QStringList copies = renderCopies(*report, request.threePart, problems);
    if (copies.isEmpty())
        return outcome;
    const QString title =
        QStringLiteral("Receipt %1").arg(data->header.value(data->column(QStringLiteral("Receipt Number"))));

    const QString pdfFolder = qEnvironmentVariable("TILLBOOK_PDF_DIR");
    if (!pdfFolder.isEmpty()) {
        QDir().mkpath(pdfFolder);
        outcome.pdfFile = ReceiptPdfPath(pdfFolder, request.batch, request.entry);
        outcome.printed = printToPdf(outcome.pdfFile, copies, title, problems);
        return outcome;
    }
    const QPrinterInfo printer = choosePrinter(problems);
    outcome.printer = printer.printerName();
    outcome.printed = printOn(printer, copies, title, problems);
    return outcome;
}

} // namespace tillbook
