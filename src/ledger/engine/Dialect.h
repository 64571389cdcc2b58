#pragma once

// Everything that differs between SQLite and PostgreSQL, in one place: column types, connection set-up
// and how a write transaction begins. Everything else is the same SQL on both.

#include "ledger/engine/Schema.h"

#include <QString>
#include <QStringList>
#include <memory>

namespace tillbook::engine {

class Dialect {
public:
    virtual ~Dialect() = default;
    virtual QString driverName() const = 0;
    virtual bool isPostgres() const = 0;
    // The column definition of a field: its type, NOT NULL and the default of a new record.
    virtual QString columnDefinition(const FieldDef& field) const = 0;
    // Statements run once on every new connection.
    virtual QStringList connectionSetup() const = 0;
    // Statements that put a company file into the journal mode tills share it in. Run only where the
    // file is writable and not in that mode yet: switching needs a write, and an exclusive lock.
    virtual QStringList journalSetup() const = 0;
    // Starts a transaction that will write, taking the write lock at once where the store has one, so
    // that two tills taking a next number never both read the same one.
    virtual QString beginWrite() const = 0;
};

std::unique_ptr<Dialect> makeSqliteDialect();
std::unique_ptr<Dialect> makePostgresDialect();

} // namespace tillbook::engine
