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
        return {QStringLiteral("PRAGMA case_sensitive_like=ON"), QStringLiteral("PRAGMA busy_timeout=10000"),
                QStringLiteral("PRAGMA synchronous=NORMAL")};
    }
    // WAL lets tills read while one writes.
    QStringList journalSetup() const override { return {QStringLiteral("PRAGMA journal_mode=WAL")}; }
    QString beginWrite() const override { return QStringLiteral("BEGIN IMMEDIATE"); }
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
        return {QStringLiteral("SET client_min_messages TO WARNING")};
    }
    QStringList journalSetup() const override { return {}; }
    // Counter rows are locked by the UPDATE that takes the next number, so a plain BEGIN is enough.
    QString beginWrite() const override { return QStringLiteral("BEGIN"); }
};

} // namespace

std::unique_ptr<Dialect> makeSqliteDialect() {
    return std::make_unique<SqliteDialect>();
}
std::unique_ptr<Dialect> makePostgresDialect() {
    return std::make_unique<PostgresDialect>();
}

} // namespace tillbook::engine
