#include "printing/Printers.h"

#if defined(TILLBOOK_HAVE_CUPS)
#include <cups/cups.h>
#endif

namespace tillbook {

namespace {

// Where the printer's output goes: the CUPS device URI, or the port Qt reports elsewhere.
QString printerPort(const QPrinterInfo& printer) {
#if defined(TILLBOOK_HAVE_CUPS)
    const QByteArray queue = printer.printerName().toUtf8();
    cups_dest_t* dest = cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.constData(), nullptr);
    if (dest) {
        const char* uri = cupsGetOption("device-uri", dest->num_options, dest->options);
        const QString port = uri ? QString::fromUtf8(uri) : QString();
        cupsFreeDests(1, dest);
        if (!port.isEmpty())
            return port;
    }
#endif
    return printer.location();
}

} // namespace

QStringList Installed_Printers() {
    return QPrinterInfo::availablePrinterNames();
}

PrinterSettings Printer_Identity(const QPrinterInfo& printer) {
    PrinterSettings identity;
    identity.useDefault = false;
    if (printer.isNull())
        return identity;
    identity.name = printer.printerName();
    identity.driver = printer.makeAndModel();
    identity.port = printerPort(printer);
    // A queue without a model or device still has to be found again by its name.
    if (identity.driver.isEmpty())
        identity.driver = identity.name;
    if (identity.port.isEmpty())
        identity.port = identity.name;
    return identity;
}

bool Uses_DefaultPrinter(const PrinterSettings& settings) {
    return settings.useDefault || settings.driver.isEmpty() || settings.name.isEmpty() ||
           settings.port.isEmpty();
}

} // namespace tillbook
