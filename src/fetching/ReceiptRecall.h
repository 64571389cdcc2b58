#pragma once

// Reads a saved receipt entry back from the kept receipt views, to show it on the receipt window.

#include "ledger/LedgerNames.h"
#include "ledger/Money.h"

#include <QDate>
#include <QStringList>
#include <vector>

namespace tillbook {

struct ReceiptViews;
class View;
} // namespace tillbook

namespace tillbook {

struct RecalledReceipt {
    QString description;     // TEXTRMIT
    int receiptType = 1;     // RMITTYPE: 1 receipt, 2 prepayment, 5 miscellaneous
    QString customerNumber;  // IDCUST
    Money amount;            // AMTRMIT
    QString date;            // DATERMIT as the forms show a date
    QString fiscalYear;      // FISCYR
    QString fiscalPeriod;    // FISCPER
    QString receiptNumber;   // IDRMIT
    QString payer;           // TEXTPAYOR
    Money unapplied;         // REMUNAPLTC
    QString documentNumber;  // DOCNBR
    QString firstLineNumber; // IDINVC of the entry's first detail line
};

// The filter of one entry and its lines.
QString EntryFilter(const QString& batch, const QString& entry);

// The entry `entry` of batch `batch`. Throws LedgerError.
RecalledReceipt Read_Receipt(ReceiptViews& views, const QString& batch, const QString& entry);

// The entry's lines in a detail view (applied documents or distribution lines), the named fields of each line
// as text. Throws LedgerError.
std::vector<QStringList> Read_EntryLines(View& detailView, const QString& batch, const QString& entry,
                                         const std::vector<FieldName>& fields);

} // namespace tillbook
