#pragma once

// The column sets of the receipt window's grid: each set's format string (the blanks in a header set its
// column's width and are kept exactly) and the ledger fields of its columns.

#include "ledger/LedgerNames.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace tillbook {

// Documents to apply a receipt to (receipt mode), read from the open-document list.
inline const QString ApplyGridFormat = QStringLiteral(
    "^Apply |^ Document Type |^ Document Number |^ Pending Balance |^ Applied Amount |^ Discount Available|^ "
    "Discount Taken |^Adjustment Amount|^Net Balance|^Current Balance |^Original Amount|^Pending Payment "
    "Total|^Pending Discount Amount|^Pending Adjustment Total|^PO Number |^Sales Order Number|^ Document "
    "Date |^ "
    "Due Date |^Discount Date |^ Payment Number");
inline const std::vector<FieldName> ApplyGridFields = {names::PostApply,
                                                       names::PostDocumentType,
                                                       names::PostDocument,
                                                       names::PostPendingBalance,
                                                       names::PostAppliedAmount,
                                                       names::PostDiscountAvailable,
                                                       names::PostDiscountTaken,
                                                       names::PostAdjustment,
                                                       names::PostNetBalance,
                                                       names::PostCurrentBalance,
                                                       names::PostOriginalAmount,
                                                       names::PostPendingPayments,
                                                       names::PostPendingDiscounts,
                                                       names::PostPendingAdjustments,
                                                       names::PostPurchaseOrder,
                                                       names::PostSalesOrder,
                                                       names::PostDocumentDate,
                                                       names::PostDueDate,
                                                       names::PostDiscountDate,
                                                       names::PostPaymentNumber};

// The customer's documents (prepayment mode).
inline const QString CustomerDocumentsFormat = QStringLiteral(
    "^ Document Number |^ Check/Receipt No. |^     Sales Order No     |^       PO Number       |^  Due Date  "
    "|^     "
    "      Transaction Type           |^    Document Type   |^   Document Date   |^  Discount Date  |^  "
    "Cust. "
    "Currency Amount Due  |^  Cust. Currency Discount Amount  |^Fully Paid|^ Prepayment Number");
inline const std::vector<FieldName> CustomerDocumentsFields = {
    names::DocumentNumber,        names::DocumentReceiptNumber, names::DocumentSalesOrder,
    names::DocumentPurchaseOrder, names::DocumentDueDate,       names::DocumentTransactionType,
    names::DocumentTypeText,      names::DocumentDate,          names::DocumentDiscountDate,
    names::DocumentAmountDue,     names::DocumentDiscountDue,   names::DocumentFullyPaid,
    names::DocumentPrepayment};

// Distribution lines (miscellaneous receipt mode).
inline const QString DistributionFormat =
    QStringLiteral("^  Dist Code             |^         Account                    |^    Amount         |^   "
                   "           Reference "
                   "             |^              Description                  ");
inline const std::vector<FieldName> DistributionFields = {names::MiscDistributionCode, names::MiscAccount,
                                                          names::MiscAmount, names::MiscReference,
                                                          names::MiscDescription};

// The applied documents of a saved receipt.
inline const QString AppliedDocumentsFormat = QStringLiteral(
    "^ Document Number |^Payment Number|^ Net Balance |^ Current Balance |^Discount Available|^Applied "
    "Amount|^Discount Taken|^Adjustment Amount");
inline const std::vector<FieldName> AppliedDocumentsFields = {
    names::DetailDocument,       names::DetailPaymentNumber,     names::DetailNetBalance,
    names::DetailCurrentBalance, names::DetailDiscountAvailable, names::DetailAmount,
    names::DetailDiscountTaken,  names::DetailAdjustment};

// The texts of coded values.
QString ApplyMarkText(const QString& apply);      // "X" Pend, "Y" Yes, "N" No
QString TransactionTypeText(const QString& code); // 11 "Invoice - Item Issued", ...; others keep their number
QString DocumentTypeText(const QString& code);    // 1 "Invoice", 2 "Debit Note", 3 "Credit Note", 4 "Invoice"
QString FullyPaidText(const QString& code);       // 1 "Yes", 0 "No"

} // namespace tillbook
