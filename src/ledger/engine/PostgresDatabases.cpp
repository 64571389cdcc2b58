#include "ledger/engine/PostgresDatabases.h"

#include "ledger/engine/StoreFailure.h"

#include <QAtomicInt>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

namespace tillbook::engine {

namespace {

QString quoted(const QString& identifier) {
    return u'"' + QString(identifier).replace(u'"', QLatin1String("\"\"")) + u'"';
}

// Runs `work` on a short-lived connection to the server's maintenance database.
template <typename Work> void withMaintenanceConnection(const CompanyLocation& location, Work work) {
    const QString name = uniqueConnectionName();
    {
        QSqlDatabase db = postgresConnection(name, location, QStringLiteral("postgres"));
        if (!db.open())
            throw storeFailure(QStringLiteral("Cannot reach the ledger server at %1:%2: %3")
                                   .arg(location.host)
                                   .arg(location.port)
                                   .arg(db.lastError().text()));
        work(db);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

// Throws "`failure`: the server's reason" when the statement fails.
void runOrThrow(QSqlDatabase& db, const QString& statement, const QString& failure) {
    QSqlQuery query(db);
    if (!query.exec(statement))
        throw storeFailure(failure + QStringLiteral(": ") + query.lastError().text());
}

} // namespace

QString uniqueConnectionName() {
    static QAtomicInt counter;
    return QStringLiteral("tillbook-ledger-%1").arg(counter.fetchAndAddRelaxed(1));
}

QSqlDatabase postgresConnection(const QString& name, const CompanyLocation& location,
                                const QString& database) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    db.setHostName(location.host);
    db.setPort(location.port);
    db.setUserName(location.user);
    db.setPassword(location.password);
    db.setDatabaseName(database);
    // The server's notices ("database ... does not exist, skipping") are no business of a till's user.
    db.setConnectOptions(QStringLiteral("options='-c client_min_messages=warning'"));
    return db;
}

bool postgresDatabaseExists(const CompanyLocation& location, const QString& database) {
    bool found = false;
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        QSqlQuery query(db);
        query.prepare(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = ?"));
        query.addBindValue(database);
        found = query.exec() && query.next();
    });
    return found;
}

void createPostgresDatabase(const CompanyLocation& location, const QString& database) {
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        runOrThrow(
            db, QStringLiteral("CREATE DATABASE %1 ENCODING 'UTF8' TEMPLATE template0").arg(quoted(database)),
            QStringLiteral("Cannot create the company database %1").arg(database));
    });
}

void dropPostgresDatabase(const CompanyLocation& location, const QString& database) {
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        runOrThrow(db, QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(quoted(database)),
                   QStringLiteral("Cannot remove the company database %1").arg(database));
    });
}

void renamePostgresDatabase(const CompanyLocation& location, const QString& from, const QString& to) {
    withMaintenanceConnection(location, [&](QSqlDatabase& db) {
        const QString statement =
            QStringLiteral("ALTER DATABASE %1 RENAME TO %2").arg(quoted(from), quoted(to));
        // The server ends the session of a connection just closed a moment after the close; until it has,
        // the database counts as in use (SQLSTATE 55006).
        for (int attempt = 0;; ++attempt) {
            QSqlQuery query(db);
            if (query.exec(statement))
                return;
            if (query.lastError().nativeErrorCode() != QLatin1String("55006") || attempt == 100)
                throw storeFailure(QStringLiteral("Cannot name the company database %1: %2")
                                       .arg(to, query.lastError().text()));
            QThread::msleep(50);
        }
    });
}

} // namespace tillbook::engine
