#include "ledger/engine/Dialect.h"

namespace tillbook::engine {

namespace {

bool isTextColumn(const FieldDef& field) {
    return field.kind == FieldKind::Text || field.kind == FieldKind::Opaque;
}

class SqliteDialect final : public Dialect {
public:
    QString driverName() const override { return QStringLiteral("QSQLITE"); }
    bool isPostgres() const override { return false; }
    QString columnDefinition(const FieldDef& field) const override {
        return isTextColumn(field) ? QStringLiteral("TEXT NOT NULL DEFAULT ''")
                                   : QStringLiteral("INTEGER NOT NULL DEFAULT 0");
    }
    QStringList connectionSetup() const override {
        // LIKE compares case-sensitively, as it does on PostgreSQL.
        return {QStringLiteral("PRAGMA case_sensitive_like=ON"),
                QStringLiteral("PRAGMA busy_timeout=%1").arg(lockWaitMilliseconds()),
                QStringLiteral("PRAGMA synchronous=NORMAL"),
                // A write within a write (a savepoint) copies the pages it changes aside, to take them
                // back: in memory, not into a temporary file for every line of an import.
                QStringLiteral("PRAGMA temp_store=MEMORY")};
    }
    // WAL lets tills read while one writes.
    QStringList journalSetup() const override { return {QStringLiteral("PRAGMA journal_mode=WAL")}; }
    // BEGIN IMMEDIATE takes the one write lock, so what a write transaction reads cannot change under it.
    QString beginWrite() const override { return QStringLiteral("BEGIN IMMEDIATE"); }
    QString lockForUpdate() const override { return QString(); }
    // SQLITE_BUSY and SQLITE_LOCKED, with or without their extended codes.
    bool isBusy(const QString& nativeErrorCode) const override {
        bool number = false;
        const int code = nativeErrorCode.toInt(&number) & 0xff;
        return number && (code == 5 || code == 6);
    }
};

class PostgresDialect final : public Dialect {
public:
    QString driverName() const override { return QStringLiteral("QPSQL"); }
    bool isPostgres() const override { return true; }
    QString columnDefinition(const FieldDef& field) const override {
        // Byte order ("C") makes text keys sort and compare exactly as SQLite's BINARY collation does.
        return isTextColumn(field) ? QStringLiteral("TEXT COLLATE \"C\" NOT NULL DEFAULT ''")
                                   : QStringLiteral("BIGINT NOT NULL DEFAULT 0");
    }
    QStringList connectionSetup() const override {
        return {QStringLiteral("SET client_min_messages TO WARNING"),
                QStringLiteral("SET lock_timeout = %1").arg(lockWaitMilliseconds())};
    }
    QStringList journalSetup() const override { return {}; }
    // Counter rows are locked by the UPDATE that takes the next number, so a plain BEGIN is enough.
    QString beginWrite() const override { return QStringLiteral("BEGIN"); }
    QString lockForUpdate() const override { return QStringLiteral(" FOR UPDATE"); }
    // lock_not_available (lock_timeout ran out) and deadlock_detected: both pass when tried again.
    bool isBusy(const QString& nativeErrorCode) const override {
        return nativeErrorCode == QLatin1String("55P03") || nativeErrorCode == QLatin1String("40P01");
    }
};

} // namespace

int lockWaitMilliseconds() {
    bool number = false;
    const int configured = qEnvironmentVariableIntValue("TILLBOOK_LOCK_WAIT_MS", &number);
    return number && configured > 0 ? configured : 10000;
}

std::unique_ptr<Dialect> makeSqliteDialect() {
    return std::make_unique<SqliteDialect>();
}
std::unique_ptr<Dialect> makePostgresDialect() {
    return std::make_unique<PostgresDialect>();
}

} // namespace tillbook::engine
