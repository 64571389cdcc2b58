#include "Company.h"

#include "PostgresServer.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/SampleCompany.h"
#include "ledger/engine/Transaction.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QProcess>

namespace tillbook::test {

ScopedEnv::ScopedEnv(const char* name, const std::optional<QByteArray>& value)
    : m_name(name), m_old(qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt) {
    value ? qputenv(name, *value) : qunsetenv(name);
}

ScopedEnv::~ScopedEnv() {
    m_old ? qputenv(m_name, *m_old) : qunsetenv(m_name);
}

QString storeName(StoreKind kind) {
    return kind == StoreKind::Sqlite ? QStringLiteral("SQLite") : QStringLiteral("PostgreSQL");
}

namespace {

// The throwaway server's address for companies on PostgreSQL, once it runs.
std::optional<QByteArray> ledgerUrl(StoreKind kind) {
    if (kind != StoreKind::Postgres || !PostgresServer::shared().isRunning())
        return std::nullopt;
    return PostgresServer::shared().urlTemplate().toUtf8();
}

} // namespace

TestStore::TestStore(StoreKind kind)
    : m_data("TILLBOOK_DATA", m_dir.path().toUtf8()), m_url("TILLBOOK_LEDGER_URL", ledgerUrl(kind)) {
    if (kind == StoreKind::Postgres && !PostgresServer::shared().isRunning())
        m_unavailable = PostgresServer::shared().failure();
}

QString TestStore::uniqueId(const QString& stem) {
    static QAtomicInt counter;
    return QStringLiteral("%1%2P%3")
        .arg(stem)
        .arg(counter.fetchAndAddRelaxed(1))
        .arg(QCoreApplication::applicationPid());
}

CompanyBuilder& CompanyBuilder::id(const QString& databaseId) {
    m_id = databaseId;
    return *this;
}

CompanyBuilder& CompanyBuilder::sample(int customers, int documents, const QDate& today) {
    m_sample = {customers, documents};
    m_sampleToday = today;
    return *this;
}

CompanyBuilder& CompanyBuilder::user(const QString& name, const QString& password) {
    m_users.append({name, password});
    return *this;
}

CompanyBuilder& CompanyBuilder::record(const QString& viewId, const QVariantHash& values) {
    m_records.append({viewId, values});
    return *this;
}

CompanyBuilder& CompanyBuilder::script(const QString& path, const QString& date) {
    m_scripts.append({path, date});
    return *this;
}

namespace {

QVariant amount(Money m) {
    return QVariant::fromValue(m);
}

QVariant amount(const char* text) {
    return amount(*Money::parse(QString::fromLatin1(text)));
}

} // namespace

CompanyBuilder& CompanyBuilder::record(const QString& viewId, const QStringList& fields,
                                       const QVariantList& values) {
    QVariantHash record;
    for (qsizetype i = 0; i < fields.size(); ++i)
        record.insert(fields[i], values[i]);
    return this->record(viewId, record);
}

CompanyBuilder& CompanyBuilder::known() {
    record("CS0001", {{"ORGID", "RULES"}, {"CONAME", "Rules Inc."}, {"PERDFSC", 12}});
    for (int year : {2023, 2025}) {
        QVariantHash calendar{{"FSCYEAR", QString::number(year)}, {"PERIODS", 12}, {"ACTIVE", year == 2025}};
        for (int p = 1; p <= 12; ++p) {
            calendar.insert(QStringLiteral("BGNDATE%1").arg(p), QDate(year, p, 1));
            calendar.insert(QStringLiteral("ENDDATE%1").arg(p), QDate(year, p, 1).addMonths(1).addDays(-1));
        }
        record("CS0002", calendar);
    }
    record("GL0001", {{"ACCTID", "4000"}, {"ACCTFMTTD", "4000"}, {"ACTIVESW", 1}});
    record("GL0001", {{"ACCTID", "4100100"}, {"ACCTFMTTD", "4100-100"}, {"ACTIVESW", 1}});
    record("AR0015", {{"IDDIST", "RETAIL"}, {"IDACCTREV", "4000"}, {"SWACTV", 1}});
    record("BK0001", {{"BANK", "TDOPER"}, {"NAME", "Operating"}});
    for (const auto& [customer, name, due, open] :
         {std::tuple{"C1", "First", "120", 3}, {"C2", "Second", "80", 1}})
        record("AR0024", {"IDCUST", "NAMECUST", "AMTBALDUET", "CNTOPENINV"},
               {customer, name, amount(due), open});
    for (const auto& [customer, number, due, discount] : {std::tuple{"C1", "IN1", "100", "2"},
                                                          {"C1", "IN2", "50", "0"},
                                                          {"C1", "CN1", "-30", "0"},
                                                          {"C1", "IN0", "0", "0"},
                                                          {"C2", "IN3", "80", "0"}}) {
        const bool credit = *due == '-';
        record("AR0036",
               {"IDCUST", "IDINVC", "TRXTYPETXT", "TRXTYPEID", "DESCINVC", "AMTINVCTC", "AMTDUETC",
                "AMTDUEHC", "AMTDISCTC", "DATEDISC", "SWPAID"},
               {customer, number, credit ? 3 : 1, credit ? 31 : 11, QStringLiteral("Document %1").arg(number),
                amount(due), amount(due), amount(due), amount(discount),
                *discount == '0' ? QDate() : QDate(2025, 3, 20), *due == '0'});
    }
    return *this;
}

QString customerNumber(int i) {
    return QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0'));
}

CompanyBuilder& CompanyBuilder::customers(int count) {
    for (int i = 1; i <= count; ++i)
        record("AR0024", {"IDCUST", "NAMECUST", "TEXTSNAM", "CNTOPENINV", "AMTBALDUEH"},
               {customerNumber(i), QStringLiteral("Customer %1").arg(i),
                QStringLiteral("S%1").arg(count - i, 4, 10, QLatin1Char('0')), i % 3 == 0 ? 0 : i % 7 + 1,
                amount(Money::fromCents(i * 1001))});
    return *this;
}

QString documentOf(const QString& customer, int n) {
    return QStringLiteral("%1-%2").arg(customer).arg(n);
}

CompanyBuilder& CompanyBuilder::documents(const QString& customer, int count, Money each) {
    for (int n = 1; n <= count; ++n)
        record(
            "AR0036",
            {"IDCUST", "IDINVC", "TRXTYPETXT", "TRXTYPEID", "DATEINVC", "AMTINVCTC", "AMTDUETC", "AMTDUEHC"},
            {customer, documentOf(customer, n), 1, 11, QDate(2025, 2, 1), amount(each), amount(each),
             amount(each)});
    return record("AR0024", {"IDCUST", "NAMECUST", "AMTBALDUET", "CNTOPENINV"},
                  {customer, QStringLiteral("Customer %1").arg(customer),
                   amount(Money::fromThousandths(each.thousandths() * count)), count});
}

CompanyBuilder& CompanyBuilder::batch(qint64 batch, const std::vector<Payment>& payments) {
    Money total;
    qint64 item = 0;
    for (const Payment& p : payments) {
        total += p.amount;
        const QVariant paid = amount(p.amount);
        record("AR0042",
               {"CODEPYMTYP", "CNTBTCH", "CNTITEM", "IDCUST", "RMITTYPE", "DOCTYPE", "DATERMIT", "AMTRMIT",
                "AMTRMITTC", "AMTPAYMTC", "CNTLSTLINE"},
               {"CA", batch, ++item, p.customer, 1, 1, QDate(2025, 3, 14), paid, paid, paid, 1});
        record("AR0044",
               {"CODEPAYM", "CNTBTCH", "CNTITEM", "CNTLINE", "IDCUST", "IDINVC", "RMITTYPE", "TRXTYPE",
                "AMTPAYM"},
               {"CA", batch, item, 1, p.customer, p.document, "1", 51, paid});
    }
    return record(
        "AR0041",
        {"CODEPYMTYP", "CNTBTCH", "DATEBTCH", "BATCHSTAT", "BATCHTYPE", "CNTENTER", "CNTLASTITM", "AMTENTER"},
        {"CA", batch, QDate(2025, 3, 14), 1, 1, item, item, amount(total)});
}

namespace {

// A script may end with refusals it makes on purpose (exit code 1); a script the tool cannot read (2) or a
// crash leaves the company unfinished, which no test can use.
void runScript(const QString& id, const QString& path, const QString& date) {
    QProcess tool;
    tool.start(QStringLiteral(TILLBOOK_LEDGER_TOOL),
               {QStringLiteral("run"), id, path, QStringLiteral("--date"), date});
    if (!tool.waitForFinished(300000) || tool.exitStatus() != QProcess::NormalExit || tool.exitCode() > 1)
        qFatal("the script %s did not run on %s: %s", qPrintable(path), qPrintable(id),
               tool.readAllStandardError().constData());
}

} // namespace

Company::Company(const CompanyBuilder& builder)
    : m_store(builder.m_kind),
      m_id(!builder.m_id.isEmpty()                 ? builder.m_id
           : builder.m_kind == StoreKind::Postgres ? TestStore::uniqueId(QStringLiteral("T"))
                                                   : QStringLiteral("SAMINC")) {
    if (!ready())
        return;
    if (builder.m_sample) {
        engine::SampleOptions options;
        options.customers = builder.m_sample->first;
        options.documents = builder.m_sample->second;
        options.seed = 7;
        options.today = builder.m_sampleToday;
        engine::createSampleCompany(m_id, options, true);
    } else {
        engine::CompanyStore::create(m_id, true, [](engine::CompanyStore& store) {
            store.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), true);
        });
    }
    for (const auto& [name, password] : builder.m_users)
        addUser(name, password);
    addRecords(builder.m_records);
    for (const auto& [path, date] : builder.m_scripts)
        runScript(m_id, path, date);
}

std::unique_ptr<Session> Company::signIn(const QDate& date, const QString& user,
                                         const QString& password) const {
    auto session = std::make_unique<Session>();
    session->open(user, password, m_id, date);
    return session;
}

void Company::addUser(const QString& name, const QString& password) const {
    store()->setUser(name, password);
}

void Company::addRecords(const QList<std::pair<QString, QVariantHash>>& records) const {
    if (records.isEmpty())
        return;
    const auto company = store();
    engine::Transaction transaction(*company);
    for (const auto& [viewId, values] : records)
        engine::insertRecord(*company, viewId, values);
    transaction.commit();
}

QStringList Company::records(const QString& viewId, const QVariantHash& equal, const QStringList& fields,
                             QStringList order) const {
    if (order.isEmpty()) {
        const engine::ViewDef& def = engine::viewDef(viewId);
        for (int field : def.primaryKey().fields)
            order << def.fields[size_t(field)].name;
    }
    QStringList texts;
    for (const QVariantHash& r :
         engine::readRecords(*store(), viewId, equal, fields.isEmpty() ? order : fields, order)) {
        QStringList values;
        for (const QString& field : fields) {
            const QVariant& v = r.value(field);
            values << (v.metaType() == QMetaType::fromType<Money>() ? v.value<Money>().toLedgerString()
                                                                    : v.toString());
        }
        texts << values.join(u' ');
    }
    return texts;
}

QString sourceFile(const QString& relative) {
    return QStringLiteral(TILLBOOK_SOURCE_DIR "/") + relative;
}

std::string storeTestName(const ::testing::TestParamInfo<StoreKind>& info) {
    return storeName(info.param).toStdString();
}

void Company::script(const QString& path, const QString& date) const {
    test::runScript(m_id, path, date);
}

void StoreTest::start(const CompanyBuilder& builder) {
    m_session.reset();
    m_company.reset(); // first: a company points the program at its store while it lives
    m_company = std::make_unique<Company>(builder);
    TILLBOOK_SKIP_UNLESS_READY(*m_company);
    m_id = m_company->id();
    m_session = signIn();
}

} // namespace tillbook::test
