#include "ledger/engine/CompanyStore.h"

#include "ledger/engine/PasswordHash.h"
#include "ledger/engine/Schema.h"
#include "ledger/engine/StoreError.h"
#include "ledger/engine/Transaction.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>

namespace tillbook::engine {

namespace {

QString quoted(const QString& identifier) {
    return u'"' + identifier + u'"';
}

QString newConnectionName() {
    static QAtomicInt counter;
    return QStringLiteral("tillbook-ledger-%1").arg(counter.fetchAndAddRelaxed(1));
}

std::unique_ptr<Dialect> dialectFor(const CompanyLocation& location) {
    return location.postgres ? makePostgresDialect() : makeSqliteDialect();
}

QSqlDatabase postgresConnection(const QString& name, const CompanyLocation& location,
                                const QString& database) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    db.setHostName(location.host);
    db.setPort(location.port);
    db.setUserName(location.user);
    db.setPassword(location.password);
    db.setDatabaseName(database);
    return db;
}

// Runs `work` on a short-lived connection to the server's maintenance database.
template <typename Work> void withMaintenanceConnection(const CompanyLocation& location, Work work) {
    const QString name = newConnectionName();
    {
        QSqlDatabase db = postgresConnection(name, location, QStringLiteral("postgres"));
        if (!db.open())
            throw StoreError(QStringLiteral("Cannot reach the ledger server at %1:%2: %3")
                                 .arg(location.host)
                                 .arg(location.port)
                                 .arg(db.lastError().text()));
        work(db);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

bool postgresDatabaseExists(const CompanyLocation& location) {
    bool found = false;
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        QSqlQuery query(db);
        query.prepare(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = ?"));
        query.addBindValue(location.database);
        found = query.exec() && query.next();
    });
    return found;
}

void createPostgresDatabase(const CompanyLocation& location, bool replace) {
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        QSqlQuery query(db);
        if (replace &&
            !query.exec(
                QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(quoted(location.database))))
            throw StoreError(query.lastError().text());
        if (!query.exec(QStringLiteral("CREATE DATABASE %1 ENCODING 'UTF8' TEMPLATE template0")
                            .arg(quoted(location.database))))
            throw StoreError(QStringLiteral("Cannot create the company database %1: %2")
                                 .arg(location.database, query.lastError().text()));
    });
}

QString unknownCompany(const CompanyLocation& location) {
    return QStringLiteral("Company \"%1\" does not exist (%2).").arg(location.companyId, location.describe());
}

} // namespace

CompanyStore::CompanyStore(CompanyLocation location, std::unique_ptr<Dialect> dialect)
    : m_location(std::move(location)), m_dialect(std::move(dialect)), m_connectionName(newConnectionName()) {}

CompanyStore::~CompanyStore() {
    rollback();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool CompanyStore::exists(const QString& databaseId) {
    const CompanyLocation location = locateCompany(databaseId);
    return location.postgres ? postgresDatabaseExists(location) : QFileInfo::exists(location.sqlitePath);
}

std::unique_ptr<CompanyStore> CompanyStore::open(const QString& databaseId) {
    CompanyLocation location = locateCompany(databaseId);
    if (!exists(databaseId))
        throw StoreError(unknownCompany(location));
    std::unique_ptr<CompanyStore> store(new CompanyStore(location, dialectFor(location)));
    store->connect();
    return store;
}

std::unique_ptr<CompanyStore> CompanyStore::create(const QString& databaseId, bool replace,
                                                   bool withIndexes) {
    CompanyLocation location = locateCompany(databaseId);
    if (!replace && exists(databaseId))
        throw StoreError(QStringLiteral("Company \"%1\" already exists (%2).")
                             .arg(location.companyId, location.describe()));
    if (location.postgres) {
        createPostgresDatabase(location, replace);
    } else {
        QDir().mkpath(QFileInfo(location.sqlitePath).absolutePath());
        for (const QString& suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(location.sqlitePath + suffix);
    }
    std::unique_ptr<CompanyStore> store(new CompanyStore(location, dialectFor(location)));
    store->connect();
    store->createTables(withIndexes);
    return store;
}

void CompanyStore::connect() {
    if (m_location.postgres) {
        m_db = postgresConnection(m_connectionName, m_location, m_location.database);
    } else {
        m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        m_db.setDatabaseName(m_location.sqlitePath);
    }
    if (!m_db.open())
        throw StoreError(QStringLiteral("Cannot open company \"%1\" (%2): %3")
                             .arg(m_location.companyId, m_location.describe(), m_db.lastError().text()));
    for (const QString& statement : m_dialect->connectionSetup())
        execute(statement);
}

// A lock not had within the wait is told as such: the clerk can try again, and the driver's text would
// not say so.
StoreError CompanyStore::failure(const QString& what, const QSqlError& error) const {
    if (m_dialect->isBusy(error.nativeErrorCode()))
        return StoreError(QStringLiteral("The company is busy. Try again in a moment."));
    return StoreError(what.arg(error.text()));
}

QSqlQuery CompanyStore::prepare(const QString& sql) {
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw failure(QStringLiteral("The ledger refused a statement: %1"), query.lastError());
    return query;
}

void CompanyStore::run(QSqlQuery& query, const QVariantList& values) {
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    if (!query.exec())
        throw failure(QStringLiteral("The ledger could not complete the operation: %1"), query.lastError());
}

void CompanyStore::execute(const QString& sql, const QVariantList& values) {
    if (values.isEmpty()) {
        // Not prepared: PostgreSQL prepares neither SET nor transaction control.
        QSqlQuery query(m_db);
        if (!query.exec(sql))
            throw failure(QStringLiteral("The ledger could not complete the operation: %1"),
                          query.lastError());
        return;
    }
    QSqlQuery query = prepare(sql);
    run(query, values);
}

void CompanyStore::beginWrite() {
    if (m_depth == 0)
        execute(m_dialect->beginWrite());
    ++m_depth;
}

void CompanyStore::commit() {
    if (m_depth == 1)
        execute(QStringLiteral("COMMIT"));
    m_depth = std::max(0, m_depth - 1);
}

void CompanyStore::rollback() noexcept {
    if (m_depth == 0)
        return;
    m_depth = 0;
    QSqlQuery query(m_db);
    query.exec(QStringLiteral("ROLLBACK"));
}

qint64 CompanyStore::nextNumber(const QString& counter) {
    Transaction transaction(*this);
    execute(QStringLiteral("INSERT INTO \"TB_COUNTERS\" (\"NAME\", \"VALUE\") VALUES (?, 0) ON CONFLICT "
                           "(\"NAME\") DO NOTHING"),
            {counter});
    // The UPDATE locks the counter's row (PostgreSQL) inside the write lock (SQLite) until commit.
    QSqlQuery query = prepare(QStringLiteral(
        "UPDATE \"TB_COUNTERS\" SET \"VALUE\" = \"VALUE\" + 1 WHERE \"NAME\" = ? RETURNING \"VALUE\""));
    run(query, {counter});
    if (!query.next())
        throw StoreError(QStringLiteral("Counter %1 could not be advanced.").arg(counter));
    const qint64 value = query.value(0).toLongLong();
    query.finish();
    transaction.commit();
    return value;
}

void CompanyStore::setUser(const QString& name, const QString& password) {
    const PasswordHash hash = PasswordHash::make(password);
    Transaction transaction(*this);
    {
        execute(QStringLiteral("DELETE FROM \"TB_USERS\" WHERE \"NAME\" = ?"), {name.trimmed().toUpper()});
        execute(
            QStringLiteral(
                "INSERT INTO \"TB_USERS\" (\"NAME\", \"SALT\", \"ROUNDS\", \"HASH\") VALUES (?, ?, ?, ?)"),
            {name.trimmed().toUpper(), hash.salt, hash.rounds, hash.hash});
    }
    transaction.commit();
}

bool CompanyStore::hasUser(const QString& name) {
    QSqlQuery query = prepare(QStringLiteral("SELECT 1 FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    return query.next();
}

bool CompanyStore::checkPassword(const QString& name, const QString& password) {
    QSqlQuery query =
        prepare(QStringLiteral("SELECT \"SALT\", \"ROUNDS\", \"HASH\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    if (!query.next())
        return false;
    const PasswordHash stored{query.value(0).toString(), query.value(1).toInt(), query.value(2).toString()};
    return stored.matches(password);
}

void CompanyStore::createTables(bool withIndexes) {
    Transaction transaction(*this);
    {
        execute(
            QStringLiteral("CREATE TABLE \"TB_USERS\" (\"NAME\" TEXT PRIMARY KEY, \"SALT\" TEXT NOT NULL, "
                           "\"ROUNDS\" INTEGER NOT NULL, \"HASH\" TEXT NOT NULL)"));
        execute(QStringLiteral(
            "CREATE TABLE \"TB_COUNTERS\" (\"NAME\" TEXT PRIMARY KEY, \"VALUE\" BIGINT NOT NULL)"));
        for (const ViewDef& view : Schema::instance().views()) {
            QStringList columns;
            for (const FieldDef& field : view.fields)
                columns << quoted(field.name) + u' ' + m_dialect->columnDefinition(field);
            QStringList key;
            for (int index : view.primaryKey().fields)
                key << quoted(view.fields[size_t(index)].name);
            columns << QStringLiteral("PRIMARY KEY (%1)").arg(key.join(u','));
            execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(quoted(view.table), columns.join(u',')));
        }
    }
    transaction.commit();
    if (withIndexes)
        createSecondaryIndexes();
}

void CompanyStore::createSecondaryIndexes() {
    for (const ViewDef& view : Schema::instance().views()) {
        for (size_t k = 1; k < view.keys.size(); ++k) {
            QStringList columns;
            for (int index : view.keys[k].fields)
                columns << quoted(view.fields[size_t(index)].name);
            execute(QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)")
                        .arg(quoted(QStringLiteral("%1_KEY%2").arg(view.table).arg(k)), quoted(view.table),
                             columns.join(u',')));
        }
    }
}

} // namespace tillbook::engine
