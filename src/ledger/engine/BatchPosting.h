#pragma once

// Posting a receipt batch: every entry's details are taken off the documents they apply to (amounts
// due fall, documents paid in full are marked so, the customers' balances and open-document counts
// follow), what a receipt leaves unapplied and every prepayment become documents of their own, and the
// batch is marked Posted.
//
// A large batch is posted in steps of a bounded number of entries, each one transaction, so that the
// tills writing at the same time wait at most one step. The batch shows "Post In Progress" from the
// first step to the last; an entry is marked posted (its posting date, DATEBUS) in the step that posts
// it, so a posting that stopped half-way (killed, failed) is resumed by posting the batch again, and
// no entry is ever posted twice. Two postings of one batch at once share the work the same way.

#include "ledger/ErrorList.h"
#include "ledger/engine/CompanyStore.h"

#include <QDate>
#include <functional>

namespace tillbook::engine {

struct PostingSummary {
    qint64 entries = 0;          // posted by this call
    qint64 documentsPaid = 0;    // documents whose amount due reached zero
    qint64 documentsCreated = 0; // unapplied cash and prepayments
    qint64 postingSequence = 0;  // 0 when another posting of the batch finished it
};

struct PostingOptions {
    int entriesPerStep = 200;
    QString user; // who posts, for the audit trail
    // Called after each step has committed; what it throws stops the posting there, to be resumed.
    std::function<void(const PostingSummary& soFar)> afterStep;
};

// Fails through `errors` for a batch that does not exist or is neither open nor being posted.
PostingSummary postBatch(CompanyStore& store, ErrorList& errors, qint64 batch, const QDate& postingDate,
                         const PostingOptions& options = {});

} // namespace tillbook::engine
