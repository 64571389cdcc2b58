#pragma once

// Posting a receipt batch: every entry's details are taken off the documents they apply to (amounts
// due fall, documents paid in full are marked so, the customers' balances and open-document counts
// follow), what a receipt leaves unapplied and every prepayment become documents of their own, and the
// batch is marked Posted. One transaction: all of it, or nothing and an error.

#include "ledger/ErrorList.h"
#include "ledger/engine/CompanyStore.h"

#include <QDate>

namespace tillbook::engine {

struct PostingSummary {
    qint64 entries = 0;
    qint64 documentsPaid = 0;    // documents whose amount due reached zero
    qint64 documentsCreated = 0; // unapplied cash and prepayments
    qint64 postingSequence = 0;
};

// Fails through `errors` for a batch that does not exist or is not open.
PostingSummary postBatch(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& postingDate);

} // namespace tillbook::engine
