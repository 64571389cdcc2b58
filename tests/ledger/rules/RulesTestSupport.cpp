#include "RulesTestSupport.h"

#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {

namespace {

QVariant amount(const char* text) {
    return QVariant::fromValue(*Money::parse(QString::fromLatin1(text)));
}

void addCompany(engine::CompanyStore& s) {
    using engine::insertRecord;
    insertRecord(s, QStringLiteral("CS0001"),
                 {{"ORGID", "RULES"}, {"CONAME", "Rules Inc."}, {"PERDFSC", 12}});
    for (int year : {2023, 2025}) {
        QVariantHash calendar{
            {"FSCYEAR", QString::number(year)}, {"PERIODS", 12}, {"ACTIVE", year == 2025 ? 1 : 0}};
        for (int p = 1; p <= 12; ++p) {
            calendar.insert(QStringLiteral("BGNDATE%1").arg(p), QDate(year, p, 1));
            calendar.insert(QStringLiteral("ENDDATE%1").arg(p), QDate(year, p, 1).addMonths(1).addDays(-1));
        }
        insertRecord(s, QStringLiteral("CS0002"), calendar);
    }
    insertRecord(s, QStringLiteral("GL0001"), {{"ACCTID", "4000"}, {"ACCTFMTTD", "4000"}, {"ACTIVESW", 1}});
    insertRecord(s, QStringLiteral("GL0001"),
                 {{"ACCTID", "4100100"}, {"ACCTFMTTD", "4100-100"}, {"ACTIVESW", 1}});
    insertRecord(s, QStringLiteral("AR0015"), {{"IDDIST", "RETAIL"}, {"IDACCTREV", "4000"}, {"SWACTV", 1}});
    insertRecord(s, QStringLiteral("BK0001"), {{"BANK", "TDOPER"}, {"NAME", "Operating"}});
    insertRecord(s, QStringLiteral("AR0024"),
                 {{"IDCUST", "C1"}, {"NAMECUST", "First"}, {"AMTBALDUET", amount("120")}, {"CNTOPENINV", 3}});
    insertRecord(s, QStringLiteral("AR0024"),
                 {{"IDCUST", "C2"}, {"NAMECUST", "Second"}, {"AMTBALDUET", amount("80")}, {"CNTOPENINV", 1}});
    const auto document = [&](const char* customer, const char* number, int type, const char* due,
                              const char* discount, QDate discountDate) {
        insertRecord(s, QStringLiteral("AR0036"),
                     {{"IDCUST", customer},
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
}

} // namespace

Money money(const QVariant& v) {
    return engine::moneyOf(v);
}

void RulesTest::SetUp() {
    EngineTest::SetUp();
    if (IsSkipped())
        return;
    m_company = engine::CompanyStore::open(m_id);
    addCompany(*m_company);
}

void RulesTest::TearDown() {
    m_company.reset();
    EngineTest::TearDown();
}

engine::CompanyStore& RulesTest::store() {
    return *m_company;
}

std::optional<QVariantHash> RulesTest::record(const QString& viewId, const QVariantHash& key,
                                              const QStringList& fields) {
    return engine::readRecord(*m_company, viewId, key, fields);
}

int RulesTest::count(const QString& viewId, const QVariantHash& equal) {
    const engine::ViewDef& def = engine::viewDef(viewId);
    QStringList key;
    for (int field : def.primaryKey().fields)
        key << def.fields[size_t(field)].name;
    return int(engine::readRecords(*m_company, viewId, equal, key, key).size());
}

Till::Till(Session& session) : m_session(session) {
    for (const char* id : {"AR0041", "AR0042", "AR0044", "AR0045", "AR0043", "AR0061", "AR0036"})
        m_views[QLatin1String(id)] = session.openView(QLatin1String(id), QStringLiteral("AR"));
    const auto compose = [&](const char* id, std::initializer_list<const char*> others) {
        std::vector<View*> list;
        for (const char* other : others)
            list.push_back(&view(QLatin1String(other)));
        view(QLatin1String(id)).compose(list);
    };
    compose("AR0041", {"AR0042"});
    compose("AR0042", {"AR0041", "AR0043", "AR0044"});
    compose("AR0044", {"AR0042", "AR0045"});
    compose("AR0045", {"AR0044"});
    compose("AR0043", {"AR0042"});
    compose("AR0061", {"AR0041", "AR0042", "AR0043", "AR0044", "AR0045"});
}

qint64 Till::newBatch() {
    field("AR0041", "CODEPYMTYP").putWithoutVerification("CA");
    field("AR0041", "CNTBTCH").putWithoutVerification("0");
    field("AR0041", "BATCHDESC").setValue("ORVA - 20250314");
    view("AR0041").insert();
    return field("AR0041", "CNTBTCH").value().toLongLong();
}

void Till::positionHeader(qint64 batch) {
    field("AR0041", "CODEPYMTYP").putWithoutVerification("CA");
    field("AR0041", "CNTBTCH").putWithoutVerification(QString::number(batch));
    view("AR0041").read();
    field("AR0042", "CNTITEM").putWithoutVerification("0");
    view("AR0042").browse(QStringLiteral("(CNTBTCH  = %1      )").arg(batch), true);
    view("AR0042").fetch();
    view("AR0061").init();
    view("AR0044").order(0);
}

void Till::postReceipt(qint64 batch, qint64 expectedEntry, const QString& customer, double amount,
                       const std::vector<int>& keys) {
    positionHeader(batch);
    field("AR0042", "CNTITEM").putWithoutVerification("0");
    view("AR0042").init();
    view("AR0061").init();
    view("AR0061").init();
    field("AR0042", "TEXTRMIT").setValue("Receipt");
    field("AR0042", "IDCUST").setValue(customer);
    view("AR0061").init();
    field("AR0042", "DATERMIT").setValue(QDate(2025, 3, 14));
    field("AR0042", "IDRMIT").setValue("CHQ");
    field("AR0042", "AMTRMIT").setValue(QString::number(amount, 'g', 15));
    field("AR0042", "FISCPER").setValue("03");
    field("AR0042", "FISCYR").setValue("2025");
    View& post = view("AR0061");
    const auto link = [&] {
        field("AR0061", "PAYMTYPE").putWithoutVerification("CA");
        field("AR0061", "CNTBTCH").putWithoutVerification(QString::number(batch));
        field("AR0061", "CNTITEM").putWithoutVerification(QString::number(expectedEntry));
    };
    link();
    field("AR0061", "IDCUST").putWithoutVerification(customer);
    field("AR0061", "AMTRMIT").putWithoutVerification(QString::number(amount, 'g', 15));
    post.process();
    post.order(0);
    for (int key : keys) {
        link();
        field("AR0061", "CNTKEY").putWithoutVerification(QString::number(key));
        post.read();
        field("AR0061", "APPLY").setValue("Y");
        post.update(); // a warning is shown and the posting goes on
    }
    view("AR0042").insert();
}

void Till::postPrepayment(qint64 batch, const QString& customer, const QString& keyedAmount,
                          const QString& applyTo) {
    field("AR0042", "RMITTYPE").putWithoutVerification("2");
    positionHeader(batch);
    field("AR0042", "CNTITEM").putWithoutVerification("0");
    view("AR0042").init();
    field("AR0042", "DATERMIT").setValue(QDate(2025, 3, 14));
    field("AR0042", "IDCUST").setValue(customer);
    field("AR0042", "RMITTYPE").setValue("2");
    field("AR0044", "CNTLINE").putWithoutVerification(short(1));
    view("AR0044").browse(QStringLiteral("CODEPAYM = \"CA\" AND CNTBTCH = %1 AND CNTITEM =0").arg(batch),
                          true);
    view("AR0044").fetch();
    field("AR0042", "AMTRMIT").setValue(keyedAmount);
    field("AR0042", "DOCNBR").setValue(applyTo);
    view("AR0042").insert();
}

void Till::postMiscReceipt(qint64 batch, double amount, const std::vector<Line>& lines) {
    positionHeader(batch);
    field("AR0042", "CNTITEM").putWithoutVerification("0");
    view("AR0042").init();
    field("AR0042", "RMITTYPE").setValue("5");
    field("AR0042", "AMTRMIT").setValue(QString::number(amount, 'g', 15));
    for (const Line& line : lines) {
        view("AR0043").init();
        field("AR0043", "IDDISTCODE").setValue(line.code);
        field("AR0043", "IDACCT").setValue(line.account);
        field("AR0043", "AMTDIST").setValue(line.amount);
        view("AR0043").insert();
    }
    view("AR0042").insert();
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

} // namespace tillbook::test
