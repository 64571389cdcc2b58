#pragma once

// Writing one keyed entry into the current receipt batch through the kept receipt views: an ordinary
// receipt with its applications, a prepayment, or a miscellaneous receipt with its distribution lines.
// Posting knows nothing of the window: the caller hands it the receipt views and the draft of the entry, and
// gets back an outcome: whether the entry is written and every problem the ledger reported on the way, in
// order, for the window to show. Warnings and messages do not stop a posting.

#include "ledger/ErrorList.h"
#include "posting/ReceiptDraft.h"

#include <QString>
#include <vector>

namespace tillbook {

struct ReceiptViews;

struct PostingProblem {
    ErrorEntry error;      // the text shown and its priority
    bool critical = false; // shown with the critical icon: the posting could not start
};

struct PostingOutcome {
    bool PostOK = true;                   // the entry is written
    std::vector<PostingProblem> problems; // every problem met, in order; shown even when the entry is written
    QString prepaymentNumber;             // a written prepayment: the document number the ledger gave
};

PostingOutcome Post_Receipt(ReceiptViews& views, const ReceiptDraft& draft);
PostingOutcome Post_Prepayment(ReceiptViews& views, const ReceiptDraft& draft);
PostingOutcome Post_MiscReceipt(ReceiptViews& views, const ReceiptDraft& draft);

// The number the ledger gave the entry that a posting has just written (its CNTITEM); other tills may have
// added entries to the batch since the window counted them. Empty when no receipt view is open.
QString Posted_EntryNumber(const ReceiptViews& views);

// The prepayment's header values as they are put, in that order.
struct ReceiptHeader {
    QString receiptNumber, description; // as keyed, not trimmed
    Money amount;
    QString fiscalYear, fiscalPeriod;
    QString applyTo, payer; // as keyed, not trimmed
};
ReceiptHeader Save_ReceiptHeader(const ReceiptDraft& draft);

// The misc. receipt's lines as they are put, in order.
std::vector<DistributionLine> Load_DistributionArray(const ReceiptDraft& draft);

} // namespace tillbook
