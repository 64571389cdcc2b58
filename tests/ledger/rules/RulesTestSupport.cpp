#include "RulesTestSupport.h"

#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {

namespace {

QVariant amount(const char* text) {
    return QVariant::fromValue(amountOf(text));
}

} // namespace

CompanyBuilder rulesCompany(StoreKind kind) {
    CompanyBuilder company(kind);
    company.record("CS0001", {{"ORGID", "RULES"}, {"CONAME", "Rules Inc."}, {"PERDFSC", 12}});
    for (int year : {2023, 2025}) {
        QVariantHash calendar{
            {"FSCYEAR", QString::number(year)}, {"PERIODS", 12}, {"ACTIVE", year == 2025 ? 1 : 0}};
        for (int p = 1; p <= 12; ++p) {
            calendar.insert(QStringLiteral("BGNDATE%1").arg(p), QDate(year, p, 1));
            calendar.insert(QStringLiteral("ENDDATE%1").arg(p), QDate(year, p, 1).addMonths(1).addDays(-1));
        }
        company.record("CS0002", calendar);
    }
    company.record("GL0001", {{"ACCTID", "4000"}, {"ACCTFMTTD", "4000"}, {"ACTIVESW", 1}})
        .record("GL0001", {{"ACCTID", "4100100"}, {"ACCTFMTTD", "4100-100"}, {"ACTIVESW", 1}})
        .record("AR0015", {{"IDDIST", "RETAIL"}, {"IDACCTREV", "4000"}, {"SWACTV", 1}})
        .record("BK0001", {{"BANK", "TDOPER"}, {"NAME", "Operating"}})
        .record("AR0024",
                {{"IDCUST", "C1"}, {"NAMECUST", "First"}, {"AMTBALDUET", amount("120")}, {"CNTOPENINV", 3}})
        .record("AR0024",
                {{"IDCUST", "C2"}, {"NAMECUST", "Second"}, {"AMTBALDUET", amount("80")}, {"CNTOPENINV", 1}});
    const auto document = [&](const char* customer, const char* number, int type, const char* due,
                              const char* discount, QDate discountDate) {
        company.record("AR0036", {{"IDCUST", customer},
                                  {"IDINVC", number},
                                  {"TRXTYPETXT", type},
                                  {"TRXTYPEID", type == 3 ? 31 : 11},
                                  {"DESCINVC", QStringLiteral("Document %1").arg(QLatin1String(number))},
                                  {"AMTINVCTC", amount(due)},
                                  {"AMTDUETC", amount(due)},
                                  {"AMTDUEHC", amount(due)},
                                  {"AMTDISCTC", amount(discount)},
                                  {"DATEDISC", discountDate},
                                  {"SWPAID", QString::fromLatin1(due) == QLatin1String("0") ? 1 : 0}});
    };
    document("C1", "IN1", 1, "100", "2", QDate(2025, 3, 20));
    document("C1", "IN2", 1, "50", "0", QDate());
    document("C1", "CN1", 3, "-30", "0", QDate());
    document("C1", "IN0", 1, "0", "0", QDate());
    document("C2", "IN3", 1, "80", "0", QDate());
    return company;
}

Money money(const QVariant& v) {
    return engine::moneyOf(v);
}

engine::CompanyStore& RulesTest::store() {
    if (!m_open)
        m_open = m_company->store();
    return *m_open;
}

std::optional<QVariantHash> RulesTest::record(const QString& viewId, const QVariantHash& key,
                                              const QStringList& fields) {
    return engine::readRecord(store(), viewId, key, fields);
}

int RulesTest::count(const QString& viewId, const QVariantHash& equal) {
    const engine::ViewDef& def = engine::viewDef(viewId);
    QStringList key;
    for (int field : def.primaryKey().fields)
        key << def.fields[size_t(field)].name;
    return int(engine::readRecords(store(), viewId, equal, key, key).size());
}

Till::Till(std::unique_ptr<Session> session) {
    m_views.LedgerSession = std::move(session);
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
    switch (draft.kind) {
    case ReceiptKind::Prepayment:
        return Post_Prepayment(m_views, draft);
    case ReceiptKind::Misc:
        return Post_MiscReceipt(m_views, draft);
    case ReceiptKind::Receipt:
        break;
    }
    return Post_Receipt(m_views, draft);
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

Money amountOf(const char* text) {
    return *Money::parse(QString::fromLatin1(text));
}

namespace {

ReceiptDraft keyed(ReceiptKind kind, qint64 batch, const char* amount) {
    ReceiptDraft draft;
    draft.kind = kind;
    draft.batch = int(batch);
    draft.amount = amountOf(amount);
    draft.receiptDate = QDate(2025, 3, 12);
    draft.fiscalYear = 2025;
    draft.fiscalPeriod = 3;
    draft.receiptNumber = QStringLiteral(" CHQ ");
    draft.description = QStringLiteral("  Receipt ");
    draft.payer = QStringLiteral(" Ann Payer ");
    return draft;
}

} // namespace

ReceiptDraft receiptDraft(qint64 batch, int entry, const QString& customer, const char* amount,
                          const std::vector<int>& keys) {
    ReceiptDraft draft = keyed(ReceiptKind::Receipt, batch, amount);
    draft.entry = entry;
    draft.customer = customer;
    draft.applyKeys = keys;
    return draft;
}

ReceiptDraft prepaymentDraft(qint64 batch, const QString& customer, const char* amount,
                             const QString& applyTo) {
    ReceiptDraft draft = keyed(ReceiptKind::Prepayment, batch, amount);
    draft.customer = customer;
    draft.prepaidDocument = applyTo;
    draft.prepaymentLine = 1;
    return draft;
}

ReceiptDraft miscDraft(qint64 batch, const char* amount, const std::vector<DistributionLine>& lines) {
    ReceiptDraft draft = keyed(ReceiptKind::Misc, batch, amount);
    draft.distributions = lines;
    return draft;
}

QStringList messages(const PostingOutcome& outcome) {
    QStringList texts;
    for (const PostingProblem& problem : outcome.problems)
        texts << problem.error.description;
    return texts;
}

} // namespace tillbook::test
