#pragma once

// One company's ledger in its store: the connection, the tables of the views, its users and its
// counters. All SQL of the engine runs through here.

#include "ledger/TextRows.h"
#include "ledger/engine/CompanyFile.h"
#include "ledger/engine/CompanyLocation.h"
#include "ledger/engine/Dialect.h"
#include "ledger/engine/PasswordHash.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/StoredRow.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariantList>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <vector>

namespace tillbook::engine {

class HeldAdditions;
class SqliteStatements;
struct ViewDef;

// A password being compared with a user's hash on a thread of its own (see CompanyStore::startPasswordCheck).
struct PasswordCheck {
    std::future<bool> matches;
    bool outdated = false; // the user's hash is of an older scheme or cost
};

class CompanyStore {
public:
    // Opens an existing company; throws LedgerError naming the company when there is none, or when what
    // is there is no Tillbook company. A company this till may not write (a read-only file or folder) is
    // opened for reading: every write then fails with a LedgerError that says so.
    static std::unique_ptr<CompanyStore> open(const QString& databaseId);
    // Makes a new company, all or nothing: its tables, then what `fill` adds (users, records), are built
    // under a temporary name (a file beside the company's, or a database of its own) that becomes the
    // company's only when all of it is in. A failure or a kill on the way leaves no new company, and an
    // existing one as it was. Refuses an existing company unless `replace`. A bulk load asks for no
    // secondary indexes and makes them after the rows are in. Returns the company, opened.
    using Filler = std::function<void(CompanyStore&)>;
    static std::unique_ptr<CompanyStore> create(const QString& databaseId, bool replace,
                                                const Filler& fill = {}, bool withIndexes = true);
    static bool exists(const QString& databaseId);
    // Opens the company as `user` works in it: on PostgreSQL connected as the user's own login, the
    // server checking the password; on SQLite as open() does, the password checked against the user's
    // hash. nullptr for an unknown user or a wrong password alike. Throws as open() does.
    static std::unique_ptr<CompanyStore> signIn(const QString& databaseId, const QString& user,
                                                const QString& password);
    // signIn in two halves, so that the caller may read the store while the password is checked: on SQLite
    // the store is opened and the password's check set going; on PostgreSQL it is all done at the start.
    // finishSignIn waits for the check and gives the store, or nullptr for an unknown user or a wrong
    // password; what was read meanwhile is then to be thrown away unseen.
    struct StartedSignIn {
        std::unique_ptr<CompanyStore> store; // nullptr: refused already
        std::optional<PasswordCheck> check;  // none: nothing left to check
    };
    static StartedSignIn startSignIn(const QString& databaseId, const QString& user, const QString& password);
    static std::unique_ptr<CompanyStore> finishSignIn(StartedSignIn& started, const QString& user,
                                                      const QString& password);

    ~CompanyStore();
    CompanyStore(const CompanyStore&) = delete;
    CompanyStore& operator=(const CompanyStore&) = delete;

    const CompanyLocation& location() const { return m_location; }
    const Dialect& dialect() const { return *m_dialect; }
    const QSqlDatabase& connection() const { return m_db; }

    // A prepared statement; throws LedgerError when the store refuses it.
    QSqlQuery prepare(const QString& sql);
    // The prepared statement of this text, prepared on the connection's first use of it and kept for its
    // life: statements run again and again are parsed once. Finish a query's reading before running it again.
    QSqlQuery& statement(const QString& sql);
    // Binds `values` in order and runs; throws LedgerError with the statement's error. Additions held
    // for the commit are written first: the statement may read them.
    void run(QSqlQuery& query, const QVariantList& values = {});
    // As run, for a statement its caller knows cannot see the held additions (see settleHeld).
    void runPastHeld(QSqlQuery& query, const QVariantList& values = {});
    // Writes the held additions when a statement on `view`'s table naming `fields` (or, with
    // `anyField`, a condition that may name any field) could see them.
    void settleHeld(const ViewDef& view, const std::vector<int>& fields, bool anyField = false);
    HeldAdditions& heldAdditions() { return *m_held; }
    void execute(const QString& sql, const QVariantList& values = {});
    // The rows of a SELECT of `width` text columns, in one block; on SQLite straight through its own
    // interface, which reads a long list in half the time. Additions held for the commit are written first.
    // Throws LedgerError.
    TextRows readText(const QString& sql, const QVariantList& values, int width);
    // The rows of a SELECT of `width` columns, cell after cell in one block, as a statement() gives them;
    // on SQLite straight through its own interface, with no row record made on the way. Additions held for
    // the commit are written first unless `settle` is false (the caller has settled what the read can see).
    // Throws LedgerError.
    std::vector<QVariant> readCells(const QString& sql, const QVariantList& values, int width,
                                    bool settle = true);
    // The rows of a SELECT handed to `each` one by one, to be decoded where they are read; as readCells
    // otherwise.
    void readEach(const QString& sql, const QVariantList& values, const RowReader& each, bool settle = true);

    // Transactions, counted so that an inner one joins the outer one; an inner one is a savepoint, rolled
    // back alone.
    void beginWrite();
    void commit();
    void rollback() noexcept;
    bool inTransaction() const { return m_depth > 0; }
    // Which transaction of this connection is open: what one has found stays so until it ends, as no
    // other till writes meanwhile (SQLite's write lock) or writes what it holds (PostgreSQL's).
    qint64 transactionNumber() const { return m_depth > 0 ? m_transactions : -1; }

    // The next free number of a named counter, safe when several tills take numbers at once.
    qint64 nextNumber(const QString& counter);

    bool isReadOnly() const { return m_readOnly; }

    // Users: the name is case-insensitive, the password is not.
    // Adds the user or gives them a new password; `administrator` set makes them one (or not), unset
    // keeps an existing user's standing and makes a new user a clerk. On PostgreSQL the password goes to
    // the user's login (see PostgresRoles.h), and the table keeps no hash.
    void setUser(const QString& name, const QString& password, std::optional<bool> administrator = {});
    void setUserHash(const QString& name, const PasswordHash& hash, std::optional<bool> administrator = {});
    bool hasUser(const QString& name);
    // Whether the user may add users and change other users' passwords.
    bool isAdministrator(const QString& name);
    // The user's stored hash; nullopt for an unknown user.
    std::optional<PasswordHash> userHash(const QString& name);
    // True when the user exists and the password is theirs (on PostgreSQL, when their login signs in with
    // it). Takes as long for an unknown user as for a known one. A good password stored by an older scheme or
    // at a lower cost is stored anew at today's.
    bool checkPassword(const QString& name, const QString& password);
    // checkPassword in two halves (SQLite only): the hash worked out on a thread of its own, then waited for.
    PasswordCheck startPasswordCheck(const QString& name, const QString& password);
    bool passwordChecked(PasswordCheck& check, const QString& name, const QString& password);

    // Indexes of the views' other keys, and the customers in name order; a bulk load creates them after
    // the rows are in.
    void createSecondaryIndexes();

private:
    CompanyStore(CompanyLocation location, std::unique_ptr<Dialect> dialect);
    void connect(bool fresh);
    SqliteStatements* sqliteStatements();
    bool prepareSqliteOpen(const CompanyFileState& file, bool firstConnection);
    void checkIsCompany();
    void addMissingColumns();
    void prepareNameOrder(bool fresh);
    void createTables(bool withIndexes);
    void detach();
    void requireWholeStorage();
    bool hasAdministratorColumn();
    void addAdministratorColumn();
    LedgerError failure(const QString& what, const QSqlError& error) const;

    CompanyLocation m_location;
    std::unique_ptr<Dialect> m_dialect;
    QString m_connectionName;
    QSqlDatabase m_db;
    QHash<QString, QSqlQuery> m_statements;               // see statement()
    std::unique_ptr<SqliteStatements> m_sqliteStatements; // see readCells()
    std::unique_ptr<HeldAdditions> m_held;
    int m_depth = 0;
    qint64 m_transactions = 0;
    bool m_readOnly = false;
    bool m_storageVerified = false; // the store's integrity check passed on this connection
    QString m_countedFile;          // counted in CompanyFileUse while this connection is open
};

} // namespace tillbook::engine
