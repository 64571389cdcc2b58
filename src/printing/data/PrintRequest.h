#pragma once

// What the receipt window hands to the printing: the entry on show and how to print it. A plain value, so
// that a receipt can be printed without the window.

#include <QString>

namespace tillbook {

// The three kinds of entry, by the position of the transaction-type list.
enum class ReceiptKind { Receipt = 0, Prepayment = 1, Misc = 2 };

struct PrintRequest {
    QString batch; // the batch list's text: the batch number
    QString entry; // the entry list's text: the entry number
    ReceiptKind kind = ReceiptKind::Receipt;
    bool threePart = true; // the "3 panel Voucher" style is ticked; otherwise two-part
    QString reportFolder;  // the templates' folder; empty = the program's "Reports"
};

} // namespace tillbook
