#pragma once

// What the receipt window hands to the printing: the entry on show and how to print it. A plain value, so
// that a receipt can be printed without the window.

#include "fetching/ReceiptKind.h"

#include <QString>

namespace tillbook {

struct PrintRequest {
    int batch = 0; // the saved entry's batch number
    int entry = 0; // and its number in the batch
    ReceiptKind kind = ReceiptKind::Receipt;
    bool threePart = true; // the "3 panel Voucher" style is ticked; otherwise two-part
    QString reportFolder;  // the templates' folder; empty = the program's "Reports"
};

} // namespace tillbook
