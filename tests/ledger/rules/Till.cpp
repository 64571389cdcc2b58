#include "Till.h"

namespace tillbook::test {

Till::Till(const Company& company) {
    m_views.LedgerSession = company.signIn(QDate(2025, 3, 14));
    Open_ReceiptViews(m_views);
}

Till::~Till() {
    Close_Ledger(m_views);
}

View& Till::view(const QString& id) {
    const std::map<QString, std::unique_ptr<View> ReceiptViews::*> byId{
        {"AR0041", &ReceiptViews::BatchView},         {"AR0042", &ReceiptViews::ReceiptHeaderView},
        {"AR0044", &ReceiptViews::ReceiptDetailView}, {"AR0045", &ReceiptViews::ReceiptDetailSubView},
        {"AR0043", &ReceiptViews::ReceiptMiscView},   {"AR0061", &ReceiptViews::ReceiptPostView},
        {"AR0036", &ReceiptViews::DocumentView}};
    return *(m_views.*byId.at(id));
}

qint64 Till::newBatch() {
    field("AR0041", "CODEPYMTYP").putWithoutVerification("CA");
    field("AR0041", "CNTBTCH").putWithoutVerification("0");
    field("AR0041", "BATCHDESC").setValue("ORVA - 20250314");
    view("AR0041").insert();
    return field("AR0041", "CNTBTCH").value().toLongLong();
}

PostingOutcome Till::post(const ReceiptDraft& draft) {
    return draft.kind == ReceiptKind::Prepayment ? Post_Prepayment(m_views, draft)
           : draft.kind == ReceiptKind::Misc     ? Post_MiscReceipt(m_views, draft)
                                                 : Post_Receipt(m_views, draft);
}

bool Till::openDocument(const QString& customer, int key) {
    view("AR0041").browse(QStringLiteral("CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)"), true);
    view("AR0041").fetch();
    view("AR0061").clear();
    field("AR0061", "IDCUST").putWithoutVerification(customer);
    view("AR0061").process();
    field("AR0061", "CNTKEY").putWithoutVerification(QString::number(key));
    return view("AR0061").read();
}

namespace {

ReceiptDraft keyed(ReceiptKind kind, qint64 batch, const QString& customer, const char* amount) {
    ReceiptDraft draft;
    draft.kind = kind;
    draft.batch = int(batch);
    draft.customer = customer;
    draft.amount = *Money::parse(QString::fromLatin1(amount));
    draft.receiptDate = QDate(2025, 3, 12);
    draft.fiscalYear = 2025;
    draft.fiscalPeriod = 3;
    draft.receiptNumber = QStringLiteral(" CHQ ");
    draft.description = QStringLiteral("  Receipt ");
    draft.payer = QStringLiteral(" Ann Payer ");
    return draft;
}

} // namespace

ReceiptDraft receipt(qint64 batch, int entry, const QString& customer, const char* amount,
                     const std::vector<int>& keys) {
    ReceiptDraft draft = keyed(ReceiptKind::Receipt, batch, customer, amount);
    draft.entry = entry;
    draft.applyKeys = keys;
    return draft;
}

ReceiptDraft prepayment(qint64 batch, const QString& customer, const char* amount, const QString& applyTo,
                        int line, int period) {
    ReceiptDraft draft = keyed(ReceiptKind::Prepayment, batch, customer, amount);
    draft.prepaidDocument = applyTo;
    draft.prepaymentLine = line;
    draft.fiscalPeriod = period;
    return draft;
}

ReceiptDraft misc(qint64 batch, const char* amount, const std::vector<DistributionLine>& lines) {
    ReceiptDraft draft = keyed(ReceiptKind::Misc, batch, QString(), amount);
    draft.distributions = lines;
    return draft;
}

} // namespace tillbook::test
