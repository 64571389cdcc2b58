#pragma once

// The entry being keyed, as a plain value: what the receipt window read from its controls, in the types the
// ledger keeps (numbers as integers, amounts as Money, the date as a date). Posting writes it; nothing in it
// knows of a widget.

#include "fetching/ReceiptKind.h"
#include "ledger/Money.h"

#include <QDate>
#include <QString>
#include <vector>

namespace tillbook {

struct DistributionLine { // one line of a miscellaneous receipt
    QString distCode, account;
    Money amount;
    QString reference, description;
};

struct ReceiptDraft {
    ReceiptKind kind = ReceiptKind::Receipt;
    int batch = 0;    // CurrentBatch
    int entry = 0;    // CurrentEntry: the number the entry will have in its batch
    QString customer; // the chosen customer's number; empty for a miscellaneous receipt
    Money amount;     // ReceiptAmount

    QDate receiptDate;
    // The date field's text, kept only for a date that is no date: the ledger then refuses it quoting what
    // was typed.
    QString receiptDateTyped;
    int fiscalYear = 0; // 0 when none is chosen
    int fiscalPeriod = 0;

    QString receiptNumber, payer, description; // as keyed, blanks and all

    std::vector<int> applyKeys; // ApplyKeys: the CNTKEY of each applied document, in the order applied
    QString prepaidDocument;    // a prepayment: the document it is to be applied to
    int prepaymentLine = 0;     // a prepayment: the grid row the document was picked on, its line number
    std::vector<DistributionLine> distributions; // a miscellaneous receipt's lines, in order
};

} // namespace tillbook
