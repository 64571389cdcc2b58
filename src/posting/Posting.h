#pragma once

// Writing one keyed entry into the current receipt batch through the kept receipt views: an ordinary
// receipt with its applications, a prepayment, or a miscellaneous receipt with its distribution lines.
// Posting knows nothing of the window: the caller hands it the receipt views and what it read from the
// controls, and gets back an outcome: whether the entry is written and every problem the ledger reported on
// the way, in order, for the window to show. Warnings and messages do not stop a posting.

#include "ledger/ErrorList.h"
#include "ledger/Money.h"

#include <QString>
#include <array>
#include <vector>

namespace tillbook {

struct ReceiptViews;

struct DistributionRow { // one distribution line as the grid shows it (cell texts)
    QString distCode, account, amount, reference, description;
};

struct PostingInput {     // what posting reads from the receipt window
    QString batch, entry; // CurrentBatch, CurrentEntry
    QString customer;     // the chosen customer's number; "" when none
    QString txtEntDesc, txtDate, txtReceiptNum, cboPeriod, cboYear, txtPayer, txtAmount, txtPrePay; // .Text
    Money receiptAmount;                        // ReceiptAmount
    std::vector<int> applyKeys;                 // the CNTKEY of each applied document, in order
    int row = 0;                                // prepayment: the grid's current row
    std::vector<DistributionRow> distributions; // misc. receipt: grid rows 1..DistLines
};

struct PostingProblem {
    ErrorEntry error;      // the text shown and its priority
    bool critical = false; // shown with the critical icon: the posting could not start
};

struct PostingOutcome {
    bool PostOK = true;                   // the entry is written
    std::vector<PostingProblem> problems; // every problem met, in order; shown even when the entry is written
    QString prepaymentNumber;             // a written prepayment: the document number the ledger gave
};

PostingOutcome Post_Receipt(ReceiptViews& views, const PostingInput& input);
PostingOutcome Post_Prepayment(ReceiptViews& views, const PostingInput& input);
PostingOutcome Post_MiscReceipt(ReceiptViews& views, const PostingInput& input);

// The number the ledger gave the entry that a posting has just written (its CNTITEM); other tills may have
// added entries to the batch since the window counted them. Empty when no receipt view is open.
QString Posted_EntryNumber(const ReceiptViews& views);

// The prepayment's header values as keyed, 1-based: receipt number, description, amount as typed, fiscal
// year, fiscal period, document to apply to, payer; [0] stays empty.
std::array<QString, 8> Save_ReceiptHeader(const PostingInput& input);

// The misc. receipt's lines, [r][c] for rows 1..DistLines and columns 0..4 (code, account, amount,
// reference, description); row 0 stays empty.
std::vector<std::array<QString, 5>> Load_DistributionArray(const PostingInput& input);

} // namespace tillbook
