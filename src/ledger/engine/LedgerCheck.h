#pragma once

// What a company's receipt ledger must hold whatever happened to it (several tills at once, postings
// stopped half-way): every batch's entries numbered 1..N once each with the batch's count and total,
// every line with its entry and every entry with its batch, every entry's lines adding up to it, no
// document paid beyond what it owed or applied beyond what is left, every posted payment counted on its
// document, every posted entry's unapplied cash or prepayment a document once, and every customer's
// balance and open-document count those of its documents.

#include "ledger/engine/CompanyStore.h"

#include <QStringList>

namespace tillbook::engine {

struct LedgerCheckResult {
    qint64 batches = 0;
    qint64 entries = 0;
    qint64 documents = 0;
    qint64 customers = 0;
    QStringList violations; // one sentence each; empty when the ledger holds
};

LedgerCheckResult checkLedger(CompanyStore& store);

} // namespace tillbook::engine
