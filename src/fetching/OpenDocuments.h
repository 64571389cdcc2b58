#pragma once

// The documents that the receipt window's grid lists for a customer, read row by row from the kept receipt
// views. Each row is handed over as soon as it is read, so that rows read before a failure are kept.

#include "ledger/ErrorList.h"
#include "ledger/LedgerNames.h"

#include <QStringList>
#include <functional>

namespace tillbook {

struct ReceiptViews;

using DocumentRowSink = std::function<void(const QStringList& values)>;

// The customer's open documents from the open-document list (AR0061), in CNTKEY order from 1: the
// values of `fields` in order; the receipt header view is cleared for a document whose APPLY is "X" or "N".
// Positions the batch family on an open receipt batch first. Returns the warnings of building the list.
// Throws LedgerError.
Warnings Read_OpenDocuments(ReceiptViews& views, const QString& customer,
                            const std::vector<FieldName>& fields, const DocumentRowSink& row);

// The customer's documents (AR0036) with an amount due above zero, the values of `fields` in order.
// Throws LedgerError.
void Read_CustomerDocuments(ReceiptViews& views, const QString& customer,
                            const std::vector<FieldName>& fields, const DocumentRowSink& row);

} // namespace tillbook
