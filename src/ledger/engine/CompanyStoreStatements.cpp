#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/HeldAdditions.h"
#include "ledger/engine/SqliteText.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/StoreIntegrity.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::engine {

namespace {

// Savepoints come and go with every line of an import: on SQLite their statements are prepared once.
// PostgreSQL prepares no transaction control.
void runLevelStatement(CompanyStore& store, const QString& sql) {
    if (store.location().postgres) {
        store.execute(sql);
        return;
    }
    QSqlQuery& query = store.statement(sql);
    store.runPastHeld(query);
    query.finish();
}

} // namespace

// A lock not had within the wait is told as such: the clerk can try again, and the driver's text would
// not say so.
LedgerError CompanyStore::failure(const QString& what, const QSqlError& error) const {
    if (m_dialect->isBusy(error.nativeErrorCode()))
        return storeFailure(QStringLiteral("The company is busy. Try again in a moment."));
    return storeFailure(what.arg(error.text()));
}

QSqlQuery CompanyStore::prepare(const QString& sql) {
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw failure(QStringLiteral("The ledger refused a statement: %1"), query.lastError());
    return query;
}

QSqlQuery& CompanyStore::statement(const QString& sql) {
    auto it = m_statements.find(sql);
    if (it == m_statements.end())
        it = m_statements.insert(sql, prepare(sql));
    return it.value();
}

void CompanyStore::run(QSqlQuery& query, const QVariantList& values) {
    if (!m_held->empty())
        m_held->write(*this);
    runPastHeld(query, values);
}

void CompanyStore::settleHeld(const ViewDef& view, const std::vector<int>& fields, bool anyField) {
    if (!m_held->empty() && m_held->touches(view, fields, anyField))
        m_held->write(*this);
}

void CompanyStore::runPastHeld(QSqlQuery& query, const QVariantList& values) {
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
    QSqlQuery& query = statement(sql);
    run(query, values);
    query.finish();
}

TextRows CompanyStore::readText(const QString& sql, const QVariantList& values, int width) {
    if (!m_held->empty())
        m_held->write(*this);
    if (sqlite3* handle = m_location.postgres ? nullptr : sqliteHandle(m_db))
        return readSqliteText(handle, sql, values, width);
    QSqlQuery& query = statement(sql);
    run(query, values);
    TextRows rows(width);
    while (query.next())
        for (int i = 0; i < width; ++i)
            rows.append(query.value(i).toString().toUtf8());
    query.finish();
    return rows;
}

// The connection's statements run through SQLite's own interface; nullptr on PostgreSQL.
SqliteStatements* CompanyStore::sqliteStatements() {
    if (!m_location.postgres && !m_sqliteStatements)
        if (sqlite3* handle = sqliteHandle(m_db))
            m_sqliteStatements = std::make_unique<SqliteStatements>(handle);
    return m_sqliteStatements.get();
}

std::vector<QVariant> CompanyStore::readCells(const QString& sql, const QVariantList& values, int width,
                                              bool settle) {
    if (settle && !m_held->empty())
        m_held->write(*this);
    if (SqliteStatements* direct = sqliteStatements())
        return direct->readCells(sql, values, width);
    QSqlQuery& query = statement(sql);
    run(query, values);
    std::vector<QVariant> cells;
    while (query.next())
        for (int i = 0; i < width; ++i)
            cells.push_back(query.value(i));
    query.finish();
    return cells;
}

void CompanyStore::readEach(const QString& sql, const QVariantList& values, const RowReader& each,
                            bool settle) {
    if (settle && !m_held->empty())
        m_held->write(*this);
    if (SqliteStatements* direct = sqliteStatements())
        return direct->readEach(sql, values, each);
    class QueryRow final : public StoredRow {
    public:
        explicit QueryRow(const QSqlQuery& query) : m_query(query) {}
        qint64 integer(int column) const override { return m_query.value(column).toLongLong(); }
        QString text(int column) const override { return m_query.value(column).toString(); }

    private:
        const QSqlQuery& m_query;
    };
    QSqlQuery& query = statement(sql);
    run(query, values);
    const QueryRow row(query);
    while (query.next())
        each(row);
    query.finish();
}

void CompanyStore::beginWrite() {
    if (m_readOnly)
        throw storeFailure(
            QStringLiteral("Company \"%1\" can only be read here: %2 or its folder is read-only, so "
                           "nothing can be changed.")
                .arg(m_location.companyId, m_location.describe()));
    if (m_depth == 0) {
        requireWholeStorage();
        execute(m_dialect->beginWrite());
        ++m_transactions;
    } else {
        // A write within a write: what it does is taken back alone when it fails, and the one around
        // it goes on (an import refuses a line and checks the next).
        runLevelStatement(*this, QStringLiteral("SAVEPOINT tb_level%1").arg(m_depth));
        m_held->beginLevel();
    }
    ++m_depth;
}

// SQLite writes into a damaged file without a word and spreads the damage, so a connection refuses its
// first write into a company whose last check found damage. PostgreSQL's own checks (page checksums,
// amcheck) are the server's business; tillbook-ledger check runs amcheck there.
void CompanyStore::requireWholeStorage() {
    if (m_storageVerified || m_location.postgres)
        return;
    const QString damage = knownDamage(m_location);
    if (!damage.isEmpty())
        throw storeFailure(damagedCompanyMessage(m_location.companyId, damage));
    m_storageVerified = true;
}

void CompanyStore::commit() {
    if (m_depth == 1) {
        m_held->write(*this);
        execute(QStringLiteral("COMMIT"));
    } else if (m_depth > 1) {
        runLevelStatement(*this, QStringLiteral("RELEASE SAVEPOINT tb_level%1").arg(m_depth - 1));
        m_held->keepLevel();
    }
    m_depth = std::max(0, m_depth - 1);
}

void CompanyStore::rollback() noexcept {
    if (m_depth == 0)
        return;
    QSqlQuery query(m_db);
    if (m_depth > 1) {
        --m_depth;
        const QString level = QStringLiteral("tb_level%1").arg(m_depth);
        if (query.exec(QStringLiteral("ROLLBACK TO SAVEPOINT ") + level) &&
            query.exec(QStringLiteral("RELEASE SAVEPOINT ") + level)) {
            m_held->rollBackLevel();
            return;
        }
        // The level cannot be taken back alone: nothing of the transaction may last.
    }
    m_depth = 0;
    m_held->drop();
    query.exec(QStringLiteral("ROLLBACK"));
}

qint64 CompanyStore::nextNumber(const QString& counter) {
    Transaction transaction(*this);
    execute(QStringLiteral("INSERT INTO \"TB_COUNTERS\" (\"NAME\", \"VALUE\") VALUES (?, 0) ON CONFLICT "
                           "(\"NAME\") DO NOTHING"),
            {counter});
    // The UPDATE locks the counter's row (PostgreSQL) inside the write lock (SQLite) until commit.
    QSqlQuery& query = statement(QStringLiteral(
        "UPDATE \"TB_COUNTERS\" SET \"VALUE\" = \"VALUE\" + 1 WHERE \"NAME\" = ? RETURNING \"VALUE\""));
    run(query, {counter});
    if (!query.next())
        throw storeFailure(QStringLiteral("Counter %1 could not be advanced.").arg(counter));
    const qint64 value = query.value(0).toLongLong();
    query.finish();
    transaction.commit();
    return value;
}

} // namespace tillbook::engine
