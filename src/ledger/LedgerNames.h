#pragma once

// The views and fields the program names above the ledger, as constants. Every constant is checked against
// the schema when a company opens (checkLedgerNames), so a misspelt name fails at once, loudly, rather than
// at the one operation that uses it. A field constant knows its view: used on another view it is refused.

#include <QString>
#include <QStringList>
#include <vector>

namespace tillbook {

struct ViewName {
    const char* id;
    QString text() const { return QString::fromLatin1(id); }
};

struct FieldName {
    ViewName view;
    const char* name;
    QString text() const { return QString::fromLatin1(name); }
};

// The views, as TILLBOOK_VIEW(constant, id).
#define TILLBOOK_LEDGER_VIEWS(TILLBOOK_VIEW)                                                                 \
    TILLBOOK_VIEW(Batches, "AR0041")                                                                         \
    TILLBOOK_VIEW(ReceiptHeaders, "AR0042")                                                                  \
    TILLBOOK_VIEW(ReceiptMiscLines, "AR0043")                                                                \
    TILLBOOK_VIEW(ReceiptDetails, "AR0044")                                                                  \
    TILLBOOK_VIEW(ReceiptDetailSubs, "AR0045")                                                               \
    TILLBOOK_VIEW(ReceiptPost, "AR0061")                                                                     \
    TILLBOOK_VIEW(Documents, "AR0036")                                                                       \
    TILLBOOK_VIEW(Customers, "AR0024")                                                                       \
    TILLBOOK_VIEW(DistributionCodes, "AR0015")                                                               \
    TILLBOOK_VIEW(Accounts, "GL0001")                                                                        \
    TILLBOOK_VIEW(CompanyProfile, "CS0001")                                                                  \
    TILLBOOK_VIEW(FiscalCalendar, "CS0002")                                                                  \
    TILLBOOK_VIEW(Banks, "BK0001")

// The fields, as TILLBOOK_FIELD(constant, view constant, name).
#define TILLBOOK_LEDGER_FIELDS(TILLBOOK_FIELD)                                                               \
    TILLBOOK_FIELD(BatchNumber, Batches, "CNTBTCH")                                                          \
    TILLBOOK_FIELD(BatchEntries, Batches, "CNTENTER")                                                        \
    TILLBOOK_FIELD(BatchTotal, Batches, "AMTENTER")                                                          \
    TILLBOOK_FIELD(BatchBank, Batches, "IDBANK")                                                             \
    TILLBOOK_FIELD(BatchPaymentType, Batches, "CODEPYMTYP")                                                  \
    TILLBOOK_FIELD(BatchDescription, Batches, "BATCHDESC")                                                   \
    TILLBOOK_FIELD(ReceiptDescription, ReceiptHeaders, "TEXTRMIT")                                           \
    TILLBOOK_FIELD(ReceiptType, ReceiptHeaders, "RMITTYPE")                                                  \
    TILLBOOK_FIELD(ReceiptCustomer, ReceiptHeaders, "IDCUST")                                                \
    TILLBOOK_FIELD(ReceiptAmount, ReceiptHeaders, "AMTRMIT")                                                 \
    TILLBOOK_FIELD(ReceiptDate, ReceiptHeaders, "DATERMIT")                                                  \
    TILLBOOK_FIELD(ReceiptFiscalYear, ReceiptHeaders, "FISCYR")                                              \
    TILLBOOK_FIELD(ReceiptFiscalPeriod, ReceiptHeaders, "FISCPER")                                           \
    TILLBOOK_FIELD(ReceiptNumber, ReceiptHeaders, "IDRMIT")                                                  \
    TILLBOOK_FIELD(ReceiptPayer, ReceiptHeaders, "TEXTPAYOR")                                                \
    TILLBOOK_FIELD(ReceiptUnapplied, ReceiptHeaders, "REMUNAPLTC")                                           \
    TILLBOOK_FIELD(ReceiptDocumentNumber, ReceiptHeaders, "DOCNBR")                                          \
    TILLBOOK_FIELD(DetailDocument, ReceiptDetails, "IDINVC")                                                 \
    TILLBOOK_FIELD(PostCustomer, ReceiptPost, "IDCUST")                                                      \
    TILLBOOK_FIELD(PostKey, ReceiptPost, "CNTKEY")                                                           \
    TILLBOOK_FIELD(PostDocumentType, ReceiptPost, "TRXTYPE")                                                 \
    TILLBOOK_FIELD(DocumentAmountDue, Documents, "AMTDUETC")                                                 \
    TILLBOOK_FIELD(CustomerName, Customers, "NAMECUST")                                                      \
    TILLBOOK_FIELD(CustomerNumber, Customers, "IDCUST")                                                      \
    TILLBOOK_FIELD(CustomerStreet1, Customers, "TEXTSTRE1")                                                  \
    TILLBOOK_FIELD(CustomerStreet2, Customers, "TEXTSTRE2")                                                  \
    TILLBOOK_FIELD(CustomerPhone, Customers, "TEXTPHON1")                                                    \
    TILLBOOK_FIELD(DistributionCode, DistributionCodes, "IDDIST")                                            \
    TILLBOOK_FIELD(DistributionRevenueAccount, DistributionCodes, "IDACCTREV")                               \
    TILLBOOK_FIELD(AccountNumber, Accounts, "ACCTID")                                                        \
    TILLBOOK_FIELD(FiscalYear, FiscalCalendar, "FSCYEAR")                                                    \
    TILLBOOK_FIELD(ProfilePeriods, CompanyProfile, "PERDFSC")                                                \
    TILLBOOK_FIELD(BankCode, Banks, "BANK")                                                                  \
    TILLBOOK_FIELD(BatchStatus, Batches, "BATCHSTAT")                                                        \
    TILLBOOK_FIELD(ReceiptEntry, ReceiptHeaders, "CNTITEM")                                                  \
    TILLBOOK_FIELD(ReceiptPaymentType, ReceiptHeaders, "CODEPYMTYP")                                         \
    TILLBOOK_FIELD(ReceiptBank, ReceiptHeaders, "IDBANK")                                                    \
    TILLBOOK_FIELD(ReceiptPostingDate, ReceiptHeaders, "DATEBUS")                                            \
    TILLBOOK_FIELD(ReceiptEnteredBy, ReceiptHeaders, "ENTEREDBY")                                            \
    TILLBOOK_FIELD(ReceiptAuditDate, ReceiptHeaders, "AUDTDATE")                                             \
    TILLBOOK_FIELD(ReceiptAuditTime, ReceiptHeaders, "AUDTTIME")                                             \
    TILLBOOK_FIELD(MiscPaymentCode, ReceiptMiscLines, "CODEPAYM")                                            \
    TILLBOOK_FIELD(MiscDistributionCode, ReceiptMiscLines, "IDDISTCODE")                                     \
    TILLBOOK_FIELD(MiscAccount, ReceiptMiscLines, "IDACCT")                                                  \
    TILLBOOK_FIELD(MiscAmount, ReceiptMiscLines, "AMTDIST")                                                  \
    TILLBOOK_FIELD(MiscReference, ReceiptMiscLines, "GLREF")                                                 \
    TILLBOOK_FIELD(MiscDescription, ReceiptMiscLines, "GLDESC")                                              \
    TILLBOOK_FIELD(DetailLine, ReceiptDetails, "CNTLINE")                                                    \
    TILLBOOK_FIELD(DetailPaymentCode, ReceiptDetails, "CODEPAYM")                                            \
    TILLBOOK_FIELD(DetailDescription, ReceiptDetails, "DESCINVC")                                            \
    TILLBOOK_FIELD(DetailAmount, ReceiptDetails, "AMTPAYM")                                                  \
    TILLBOOK_FIELD(DetailMatchingDocument, ReceiptDetails, "IDDOCMTCH")                                      \
    TILLBOOK_FIELD(DetailSubPaymentCode, ReceiptDetailSubs, "CODEPAYM")                                      \
    TILLBOOK_FIELD(PostPaymentType, ReceiptPost, "PAYMTYPE")                                                 \
    TILLBOOK_FIELD(PostBatch, ReceiptPost, "CNTBTCH")                                                        \
    TILLBOOK_FIELD(PostEntry, ReceiptPost, "CNTITEM")                                                        \
    TILLBOOK_FIELD(PostAmount, ReceiptPost, "AMTRMIT")                                                       \
    TILLBOOK_FIELD(PostApply, ReceiptPost, "APPLY")                                                          \
    TILLBOOK_FIELD(CustomerCity, Customers, "NAMECITY")                                                      \
    TILLBOOK_FIELD(CustomerState, Customers, "CODESTTE")                                                     \
    TILLBOOK_FIELD(CustomerPostal, Customers, "CODEPSTL")                                                    \
    TILLBOOK_FIELD(ProfileName, CompanyProfile, "CONAME")                                                    \
    TILLBOOK_FIELD(ProfileAddress, CompanyProfile, "ADDR01")                                                 \
    TILLBOOK_FIELD(ProfileCity, CompanyProfile, "CITY")                                                      \
    TILLBOOK_FIELD(ProfileState, CompanyProfile, "STATE")                                                    \
    TILLBOOK_FIELD(ProfilePostal, CompanyProfile, "POSTAL")                                                  \
    TILLBOOK_FIELD(PostDocument, ReceiptPost, "IDINVC")                                                      \
    TILLBOOK_FIELD(PostPendingBalance, ReceiptPost, "PENDNGBAL")                                             \
    TILLBOOK_FIELD(PostAppliedAmount, ReceiptPost, "AMTPAYM")                                                \
    TILLBOOK_FIELD(PostDiscountAvailable, ReceiptPost, "OBSDISCAMT")                                         \
    TILLBOOK_FIELD(PostDiscountTaken, ReceiptPost, "DISCAMT")                                                \
    TILLBOOK_FIELD(PostAdjustment, ReceiptPost, "ADJAMT")                                                    \
    TILLBOOK_FIELD(PostNetBalance, ReceiptPost, "AMTNET")                                                    \
    TILLBOOK_FIELD(PostCurrentBalance, ReceiptPost, "AMTDUE")                                                \
    TILLBOOK_FIELD(PostOriginalAmount, ReceiptPost, "ORGDOCAMT")                                             \
    TILLBOOK_FIELD(PostPendingPayments, ReceiptPost, "PNDPAYTOT")                                            \
    TILLBOOK_FIELD(PostPendingDiscounts, ReceiptPost, "PNDDSCTOT")                                           \
    TILLBOOK_FIELD(PostPendingAdjustments, ReceiptPost, "PNDADJTOT")                                         \
    TILLBOOK_FIELD(PostPurchaseOrder, ReceiptPost, "CUSTPO")                                                 \
    TILLBOOK_FIELD(PostSalesOrder, ReceiptPost, "STDOCSTR")                                                  \
    TILLBOOK_FIELD(PostDocumentDate, ReceiptPost, "DATEINVC")                                                \
    TILLBOOK_FIELD(PostDueDate, ReceiptPost, "DATEDUE")                                                      \
    TILLBOOK_FIELD(PostDiscountDate, ReceiptPost, "DATEDISC")                                                \
    TILLBOOK_FIELD(PostPaymentNumber, ReceiptPost, "CNTPAYM")                                                \
    TILLBOOK_FIELD(DocumentNumber, Documents, "IDINVC")                                                      \
    TILLBOOK_FIELD(DocumentReceiptNumber, Documents, "IDRMIT")                                               \
    TILLBOOK_FIELD(DocumentSalesOrder, Documents, "IDORDERNBR")                                              \
    TILLBOOK_FIELD(DocumentPurchaseOrder, Documents, "IDCUSTPO")                                             \
    TILLBOOK_FIELD(DocumentDueDate, Documents, "DATEDUE")                                                    \
    TILLBOOK_FIELD(DocumentTransactionType, Documents, "TRXTYPEID")                                          \
    TILLBOOK_FIELD(DocumentTypeText, Documents, "TRXTYPETXT")                                                \
    TILLBOOK_FIELD(DocumentDate, Documents, "DATEINVC")                                                      \
    TILLBOOK_FIELD(DocumentDiscountDate, Documents, "DATEDISC")                                              \
    TILLBOOK_FIELD(DocumentDiscountDue, Documents, "AMTDISCTC")                                              \
    TILLBOOK_FIELD(DocumentFullyPaid, Documents, "SWPAID")                                                   \
    TILLBOOK_FIELD(DocumentPrepayment, Documents, "IDPREPAID")                                               \
    TILLBOOK_FIELD(DetailPaymentNumber, ReceiptDetails, "CNTPAYM")                                           \
    TILLBOOK_FIELD(DetailNetBalance, ReceiptDetails, "OBSNETBAL")                                            \
    TILLBOOK_FIELD(DetailCurrentBalance, ReceiptDetails, "OBSPAYMAMT")                                       \
    TILLBOOK_FIELD(DetailDiscountAvailable, ReceiptDetails, "OBSDISCAMT")                                    \
    TILLBOOK_FIELD(DetailDiscountTaken, ReceiptDetails, "AMTERNDISC")                                        \
    TILLBOOK_FIELD(DetailAdjustment, ReceiptDetails, "AMTADJTOT")

namespace names {
#define TILLBOOK_VIEW(constant, id) inline constexpr ViewName constant{id};
TILLBOOK_LEDGER_VIEWS(TILLBOOK_VIEW)
#undef TILLBOOK_VIEW
#define TILLBOOK_FIELD(constant, view, name) inline constexpr FieldName constant{view, name};
TILLBOOK_LEDGER_FIELDS(TILLBOOK_FIELD)
#undef TILLBOOK_FIELD
} // namespace names

// Every constant above.
std::vector<ViewName> ledgerViewNames();
std::vector<FieldName> ledgerFieldNames();

// What of `views` and `fields` the schema does not have, one line each ("view XX0000", "field AR0041.NOPE").
QStringList unknownLedgerNames(const std::vector<ViewName>& views, const std::vector<FieldName>& fields);
// Throws ProgrammingError naming every constant above that the schema does not have.
void checkLedgerNames();

} // namespace tillbook
