#pragma once

// Reads a saved entry back from the ledger into the data set its receipt is printed from.

#include "printing/data/DataSet.h"
#include "printing/data/PrintRequest.h"

namespace tillbook {

class Session;

// The field names of a kind's data set, in column order.
QStringList ReceiptFields(ReceiptKind kind);

// The entry's data set: one row per detail line (none when the entry has no line), every header, customer and
// company value repeated on each row; amounts as the ledger's text, the date as "mmmm dd, yyyy". Reads
// through views of its own on the session, so that no other view's record moves. Throws LedgerError.
DataSet Read_ReceiptData(Session& session, const PrintRequest& request);

} // namespace tillbook
