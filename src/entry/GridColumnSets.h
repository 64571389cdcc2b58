#pragma once

// The column sets of the receipt window's grid: each set's format string (the blanks in a header set its
// column's width and are kept exactly) and the ledger fields of its columns.

#include <QString>
#include <QStringList>

namespace tillbook {

// Documents to apply a receipt to (receipt mode), read from the open-document list.
inline const QString ApplyGridFormat = QStringLiteral(
    "^Apply |^ Document Type |^ Document Number |^ Pending Balance |^ Applied Amount |^ Discount Available|^ "
    "Discount Taken |^Adjustment Amount|^Net Balance|^Current Balance |^Original Amount|^Pending Payment "
    "Total|^Pending Discount Amount|^Pending Adjustment Total|^PO Number |^Sales Order Number|^ Document "
    "Date |^ "
    "Due Date |^Discount Date |^ Payment Number");
inline const QStringList ApplyGridFields = {
    QStringLiteral("APPLY"),     QStringLiteral("DOCTYPE"),   QStringLiteral("IDINVC"),
    QStringLiteral("PENDNGBAL"), QStringLiteral("AMTPAYM"),   QStringLiteral("OBSDISCAMT"),
    QStringLiteral("DISCAMT"),   QStringLiteral("ADJAMT"),    QStringLiteral("AMTNET"),
    QStringLiteral("AMTDUE"),    QStringLiteral("ORGDOCAMT"), QStringLiteral("PNDPAYTOT"),
    QStringLiteral("PNDDSCTOT"), QStringLiteral("PNDADJTOT"), QStringLiteral("CUSTPO"),
    QStringLiteral("STDOCSTR"),  QStringLiteral("DATEINVC"),  QStringLiteral("DATEDUE"),
    QStringLiteral("DATEDISC"),  QStringLiteral("CNTPAYM")};

// The customer's documents (prepayment mode).
inline const QString CustomerDocumentsFormat = QStringLiteral(
    "^ Document Number |^ Check/Receipt No. |^     Sales Order No     |^       PO Number       |^  Due Date  "
    "|^     "
    "      Transaction Type           |^    Document Type   |^   Document Date   |^  Discount Date  |^  "
    "Cust. "
    "Currency Amount Due  |^  Cust. Currency Discount Amount  |^Fully Paid|^ Prepayment Number");
inline const QStringList CustomerDocumentsFields = {
    QStringLiteral("IDINVC"),     QStringLiteral("IDRMIT"),    QStringLiteral("IDORDERNBR"),
    QStringLiteral("IDCUSTPO"),   QStringLiteral("DATEDUE"),   QStringLiteral("TRXTYPEID"),
    QStringLiteral("TRXTYPETXT"), QStringLiteral("DATEINVC"),  QStringLiteral("DATEDISC"),
    QStringLiteral("AMTDUETC"),   QStringLiteral("AMTDISCTC"), QStringLiteral("SWPAID"),
    QStringLiteral("IDPREPAID")};

// Distribution lines (miscellaneous receipt mode).
inline const QString DistributionFormat =
    QStringLiteral("^  Dist Code             |^         Account                    |^    Amount         |^   "
                   "           Reference "
                   "             |^              Description                  ");
inline const QStringList DistributionFields = {QStringLiteral("IDDISTCODE"), QStringLiteral("IDACCT"),
                                               QStringLiteral("AMTDIST"), QStringLiteral("GLREF"),
                                               QStringLiteral("GLDESC")};

// The applied documents of a saved receipt.
inline const QString AppliedDocumentsFormat = QStringLiteral(
    "^ Document Number |^Payment Number|^ Net Balance |^ Current Balance |^Discount Available|^Applied "
    "Amount|^Discount Taken|^Adjustment Amount");
inline const QStringList AppliedDocumentsFields = {QStringLiteral("IDINVC"),     QStringLiteral("CNTPAYM"),
                                                   QStringLiteral("OBSNETBAL"),  QStringLiteral("OBSPAYMAMT"),
                                                   QStringLiteral("OBSDISCAMT"), QStringLiteral("AMTPAYM"),
                                                   QStringLiteral("AMTERNDISC"), QStringLiteral("AMTADJTOT")};

// The texts of coded values.
QString ApplyMarkText(const QString& apply);      // "X" Pend, "Y" Yes, "N" No
QString TransactionTypeText(const QString& code); // 11 "Invoice - Item Issued", ...; others keep their number
QString DocumentTypeText(const QString& code);    // 1 "Invoice", 2 "Debit Note", 3 "Credit Note", 4 "Invoice"
QString FullyPaidText(const QString& code);       // 1 "Yes", 0 "No"

} // namespace tillbook
