#pragma once

// The platform's printers as the program keeps them: driver, device name and port, so that a stored choice
// finds its printer again.

#include "settings/Registry.h"

#include <QPrinterInfo>
#include <QStringList>

namespace tillbook {

// The installed printers' names, in the platform's order.
QStringList Installed_Printers();

// A printer's driver, name and port: on CUPS its make and model, queue name and device URI.
PrinterSettings Printer_Identity(const QPrinterInfo& printer);

// Whether a stored choice falls back to the default printer: unless "Default" is false and the driver, name
// and port are all given.
bool Uses_DefaultPrinter(const PrinterSettings& settings);

} // namespace tillbook
