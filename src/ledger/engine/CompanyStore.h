#pragma once

// One company's ledger in its store: the connection, the tables of the views, its users and its
// counters. All SQL of the engine runs through here.

#include "ledger/engine/CompanyLocation.h"
#include "ledger/engine/Dialect.h"
#include "ledger/engine/StoreError.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariantList>
#include <memory>

namespace tillbook::engine {

class CompanyStore {
public:
    // Opens an existing company; throws StoreError naming the company when there is none.
    static std::unique_ptr<CompanyStore> open(const QString& databaseId);
    // Makes a new, empty company (tables, no records, no users). Refuses an existing one unless `replace`.
    // A bulk load asks for no secondary indexes and makes them after the rows are in.
    static std::unique_ptr<CompanyStore> create(const QString& databaseId, bool replace,
                                                bool withIndexes = true);
    static bool exists(const QString& databaseId);

    ~CompanyStore();
    CompanyStore(const CompanyStore&) = delete;
    CompanyStore& operator=(const CompanyStore&) = delete;

    const CompanyLocation& location() const { return m_location; }
    const Dialect& dialect() const { return *m_dialect; }

    // A prepared statement; throws StoreError when the store refuses it.
    QSqlQuery prepare(const QString& sql);
    // Binds `values` in order and runs; throws StoreError with the statement's error.
    void run(QSqlQuery& query, const QVariantList& values = {});
    void execute(const QString& sql, const QVariantList& values = {});

    // Transactions, counted so that an inner one joins the outer one.
    void beginWrite();
    void commit();
    void rollback() noexcept;
    bool inTransaction() const { return m_depth > 0; }

    // The next free number of a named counter, safe when several tills take numbers at once.
    qint64 nextNumber(const QString& counter);

    // Users: the name is case-insensitive, the password is not.
    void setUser(const QString& name, const QString& password);
    bool hasUser(const QString& name);
    bool checkPassword(const QString& name, const QString& password);

    // Indexes of the views' other keys; a bulk load creates them after the rows are in.
    void createSecondaryIndexes();

private:
    CompanyStore(CompanyLocation location, std::unique_ptr<Dialect> dialect);
    void connect();
    void createTables(bool withIndexes);
    StoreError failure(const QString& what, const QSqlError& error) const;

    CompanyLocation m_location;
    std::unique_ptr<Dialect> m_dialect;
    QString m_connectionName;
    QSqlDatabase m_db;
    int m_depth = 0;
};

} // namespace tillbook::engine
