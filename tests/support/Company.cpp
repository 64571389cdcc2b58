#include "Company.h"

#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/SampleCompany.h"
#include "ledger/engine/Transaction.h"

#include <QProcess>

namespace tillbook::test {

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
        m_store.createEmptyCompany(m_id);
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

QString sourceFile(const QString& relative) {
    return QStringLiteral(TILLBOOK_SOURCE_DIR "/") + relative;
}

std::string storeTestName(const ::testing::TestParamInfo<StoreKind>& info) {
    return storeName(info.param).toStdString();
}

void Company::script(const QString& path, const QString& date) const {
    test::runScript(m_id, path, date);
}

} // namespace tillbook::test
