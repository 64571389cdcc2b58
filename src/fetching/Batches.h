#pragma once

// The receipt batches as the receipt window uses them, all through the kept batch view: the open batches, one
// batch's figures, a new batch and its bank code, and the company's bank codes.

#include "ledger/Money.h"
#include "ledger/Session.h"

#include <QDate>
#include <QStringList>

namespace tillbook {

struct ReceiptViews;

// The numbers of the open cash-receipt batches, in the view's order. Throws LedgerError.
QStringList Read_OpenBatches(ReceiptViews& views);

// A batch's number of entries as text, its total rounded to cents and formatted "#,###,##0.00", and its bank
// code. Each throws LedgerError.
QString Count_BatchEntries(ReceiptViews& views, const QString& batchNumber);
QString Get_BatchTotal(ReceiptViews& views, const QString& batchNumber);
QString Get_BatchBank(ReceiptViews& views, const QString& batchNumber);

// Inserts a new cash-receipt batch described "ORVA - yyyymmdd" and returns the number the ledger gave it.
qint64 Create_Batch(ReceiptViews& views, const QDate& today);

// Writes the bank code into the batch and returns the ledger's warnings. Throws LedgerError.
Warnings Set_BatchBank(ReceiptViews& views, const QString& batchNumber, const QString& bankCode);

// The company's bank codes, in the view's order. Throws LedgerError.
QStringList Load_BankCodes(Session& session);

} // namespace tillbook
