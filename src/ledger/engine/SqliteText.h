#pragma once

// A read of many rows of text straight through SQLite's own interface: each cell's UTF-8 copied once
// into the rows' block, with no value object made on the way.

#include "ledger/TextRows.h"
#include "ledger/engine/StoredRow.h"

#include <QHash>
#include <QString>
#include <QVariantList>
#include <vector>

class QSqlDatabase;
struct sqlite3;
struct sqlite3_stmt;

namespace tillbook::engine {

// The SQLite connection under a Qt connection; nullptr when it is no SQLite connection.
sqlite3* sqliteHandle(const QSqlDatabase& db);

// Runs `sql` with `parameters` bound in order and returns its rows, `width` cells each. Throws LedgerError
// with SQLite's message.
TextRows readSqliteText(sqlite3* db, const QString& sql, const QVariantList& parameters, int width);

// The statements of one SQLite connection, each prepared on its first use and kept until this goes, which
// must be before the connection closes.
class SqliteStatements {
public:
    explicit SqliteStatements(sqlite3* db) : m_db(db) {}
    ~SqliteStatements();
    SqliteStatements(const SqliteStatements&) = delete;
    SqliteStatements& operator=(const SqliteStatements&) = delete;

    // The rows of `sql` with `parameters` bound in order, `width` cells a row, cell after cell in one block,
    // as the Qt driver gives them: whole numbers as qlonglong, real ones as double, text as QString, bytes as
    // QByteArray and NULL as a null QString. Throws LedgerError with SQLite's message.
    std::vector<QVariant> readCells(const QString& sql, const QVariantList& parameters, int width);
    // The same rows, each handed to `each` as SQLite holds it.
    void readEach(const QString& sql, const QVariantList& parameters, const RowReader& each);

private:
    sqlite3_stmt* prepared(const QString& sql);
    // The statement of `sql` with `parameters` bound, ready to step.
    sqlite3_stmt* started(const QString& sql, const QVariantList& parameters);

    sqlite3* m_db;
    QHash<QString, sqlite3_stmt*> m_statements;
};

} // namespace tillbook::engine
