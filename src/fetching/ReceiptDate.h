#pragma once

// The receipt date handed to the kept receipt header view as the clerk leaves the date field.

#include "ledger/ErrorList.h"

#include <QVariant>

namespace tillbook {

struct ReceiptViews;

// A verified put of "DATERMIT" on the receipt header view: a date, or text the ledger reads as one. Throws
// LedgerError when the ledger refuses it (an impossible date among them). Does nothing while no company is
// open. Returns the ledger's warnings.
Warnings Put_ReceiptDate(ReceiptViews& views, const QVariant& date);

} // namespace tillbook
