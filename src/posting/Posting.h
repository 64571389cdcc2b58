#pragma once

// Writing one keyed entry into the current receipt batch through the kept receipt views: an ordinary
// receipt with its applications, a prepayment, or a miscellaneous receipt with its distribution lines.
// Posting knows nothing of the window: the caller hands it what it read from the controls. The caller sets
// PostOK true first; a posting procedure clears it when the ledger refuses the entry. Every error the
// ledger reports is shown in a message box; warnings and messages are shown and the posting goes on.

#include "ledger/Money.h"

#include <QString>
#include <array>
#include <vector>

namespace tillbook {

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

void Post_Receipt(const PostingInput& input);
void Post_Prepayment(const PostingInput& input, QString& txtPrePayDocNo); // sets the assigned IDINVC
void Post_MiscReceipt(const PostingInput& input);

// The number the ledger gave the entry that a posting has just written (its CNTITEM); other tills may have
// added entries to the batch since the window counted them. Empty when no receipt view is open.
QString Posted_EntryNumber();

// The prepayment's header values as keyed, 1-based: receipt number, description, amount as typed, fiscal
// year, fiscal period, document to apply to, payer. Refilled by every Save_ReceiptHeader.
inline std::array<QString, 8> ReceiptHeader;
void Save_ReceiptHeader(const PostingInput& input);

// The misc. receipt's lines, Distributions[r][c] for rows 1..DistLines and columns 0..4 (code, account,
// amount, reference, description); row 0 stays empty. Refilled by every Load_DistributionArray.
inline std::vector<std::array<QString, 5>> Distributions;
void Load_DistributionArray(const PostingInput& input);

} // namespace tillbook
