#pragma once

// Everything that differs between SQLite and PostgreSQL, in one place: column types, connection set-up,
// how a write transaction begins, how a record is locked for writing and how a lock wait that ran out
// is told. Everything else is the same SQL on both.

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
    // Appended to a SELECT of a record that the transaction will write from what it read: the record is
    // locked until commit where the store locks rows, and nothing where the write lock is the store's.
    virtual QString lockForUpdate() const = 0;
    // Whether a failed statement's native error code means a lock was not had within the wait.
    virtual bool isBusy(const QString& nativeErrorCode) const = 0;
};

// How long a statement waits for another till's lock before it fails as busy: 10 s, or
// TILLBOOK_LOCK_WAIT_MS.
int lockWaitMilliseconds();

std::unique_ptr<Dialect> makeSqliteDialect();
std::unique_ptr<Dialect> makePostgresDialect();

} // namespace tillbook::engine
