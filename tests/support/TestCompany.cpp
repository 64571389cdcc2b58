#include "TestCompany.h"

#include "PostgresServer.h"
#include "ledger/engine/CompanyStore.h"

#include <QAtomicInt>
#include <QCoreApplication>

namespace tillbook::test {

namespace {

std::optional<QByteArray> take(const char* name) {
    return qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
}

void restore(const char* name, const std::optional<QByteArray>& value) {
    value ? qputenv(name, *value) : qunsetenv(name);
}

} // namespace

QString storeName(StoreKind kind) {
    return kind == StoreKind::Sqlite ? QStringLiteral("SQLite") : QStringLiteral("PostgreSQL");
}

TestStore::TestStore(StoreKind kind)
    : m_savedData(take("TILLBOOK_DATA")), m_savedUrl(take("TILLBOOK_LEDGER_URL")) {
    qputenv("TILLBOOK_DATA", m_dir.path().toUtf8());
    qunsetenv("TILLBOOK_LEDGER_URL");
    if (kind == StoreKind::Postgres) {
        PostgresServer& server = PostgresServer::shared();
        if (server.isRunning())
            qputenv("TILLBOOK_LEDGER_URL", server.urlTemplate().toUtf8());
        else
            m_unavailable = server.failure();
    }
}

TestStore::~TestStore() {
    restore("TILLBOOK_DATA", m_savedData);
    restore("TILLBOOK_LEDGER_URL", m_savedUrl);
}

QString TestStore::uniqueId(const QString& stem) {
    static QAtomicInt counter;
    return QStringLiteral("%1%2P%3")
        .arg(stem)
        .arg(counter.fetchAndAddRelaxed(1))
        .arg(QCoreApplication::applicationPid());
}

void TestStore::createEmptyCompany(const QString& id) {
    engine::CompanyStore::create(id, true, [](engine::CompanyStore& store) {
        store.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), true);
    });
}

} // namespace tillbook::test
