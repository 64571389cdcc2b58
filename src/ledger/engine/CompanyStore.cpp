#include "ledger/engine/CompanyStore.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/CompanyFile.h"
#include "ledger/engine/CompanyFileUse.h"
#include "ledger/engine/HeldAdditions.h"
#include "ledger/engine/NameOrder.h"
#include "ledger/engine/PasswordHash.h"
#include "ledger/engine/PostgresDatabases.h"
#include "ledger/engine/PostgresRoles.h"
#include "ledger/engine/Schema.h"
#include "ledger/engine/SqliteText.h"
#include "ledger/engine/StoreError.h"
#include "ledger/engine/StoreIntegrity.h"
#include "ledger/engine/Transaction.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>
#include <QUrl>

namespace tillbook::engine {

namespace {

QString quoted(const QString& identifier) {
    return u'"' + identifier + u'"';
}

std::unique_ptr<Dialect> dialectFor(const CompanyLocation& location) {
    return location.postgres ? makePostgresDialect() : makeSqliteDialect();
}

// The database a new company is built in before it takes the company's name; within PostgreSQL's
// 63 characters.
QString buildingDatabaseName(const QString& database) {
    return QStringLiteral("%1_new_%2")
        .arg(database.left(40))
        .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
}

// Removes what a build that did not finish has made; never throws, so the build's own error is the one
// reported.
void discardBuilding(const CompanyLocation& building) noexcept {
    try {
        if (building.postgres)
            dropPostgresDatabase(building, building.database);
        else
            removeCompanyFiles(building.sqlitePath);
    } catch (...) {
    }
}

QString alreadyExists(const CompanyLocation& location) {
    return QStringLiteral("Company \"%1\" already exists (%2).").arg(location.companyId, location.describe());
}

QString notACompany(const CompanyLocation& location, const QString& why) {
    return QStringLiteral("%1 is not a Tillbook company (%2): company \"%3\" cannot be opened.")
        .arg(location.describe(), why, location.companyId);
}

// The customers of the customer list in its order, with every field the list shows: the list is read from
// this index alone, in order, without a sort and without touching the customers' long rows.
QString nameOrderIndex() {
    return QStringLiteral("CREATE INDEX IF NOT EXISTS \"%1\" ON \"ARCUS\" (%2, \"CNTOPENINV\", \"NAMECUST\", "
                          "\"IDCUST\", \"TEXTSTRE1\", \"TEXTSTRE2\", \"TEXTPHON1\")")
        .arg(QLatin1String(NameOrderIndex), QLatin1String(NameOrderExpression));
}

sqlite3* sqliteHandle(const QSqlDatabase& db) {
    const QVariant handle = db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3* const*>(handle.constData());
}

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

QString unknownCompany(const CompanyLocation& location) {
    return QStringLiteral("Company \"%1\" does not exist (%2).").arg(location.companyId, location.describe());
}

} // namespace

CompanyStore::CompanyStore(CompanyLocation location, std::unique_ptr<Dialect> dialect)
    : m_location(std::move(location)), m_dialect(std::move(dialect)),
      m_connectionName(uniqueConnectionName()), m_held(std::make_unique<HeldAdditions>()) {}

CompanyStore::~CompanyStore() {
    while (inTransaction())
        rollback();
    m_statements.clear(); // before the connection they were prepared on goes
    m_sqliteStatements.reset();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
    if (!m_countedFile.isEmpty())
        CompanyFileUse::closed(m_countedFile);
}

bool CompanyStore::exists(const QString& databaseId) {
    const CompanyLocation location = locateCompany(databaseId);
    return location.postgres ? postgresDatabaseExists(location, location.database)
                             : QFileInfo::exists(location.sqlitePath);
}

std::unique_ptr<CompanyStore> CompanyStore::open(const QString& databaseId) {
    CompanyLocation location = locateCompany(databaseId);
    if (!exists(databaseId))
        throw StoreError(unknownCompany(location));
    std::unique_ptr<CompanyStore> store(new CompanyStore(location, dialectFor(location)));
    store->connect(false);
    return store;
}

std::unique_ptr<CompanyStore> CompanyStore::create(const QString& databaseId, bool replace,
                                                   const Filler& fill, bool withIndexes) {
    const CompanyLocation location = locateCompany(databaseId);
    if (!replace && exists(databaseId))
        throw StoreError(alreadyExists(location));
    CompanyLocation building = location;
    if (location.postgres) {
        building.database = buildingDatabaseName(location.database);
        createPostgresDatabase(location, building.database);
    } else {
        building.sqlitePath = createBuildingFile(location.sqlitePath);
    }
    try {
        {
            CompanyStore store(building, dialectFor(building));
            store.connect(true);
            store.createTables(withIndexes);
            if (building.postgres)
                grantClerksAccess(store);
            if (fill)
                fill(store);
            store.detach();
        }
        if (!replace && exists(databaseId)) // made by another till meanwhile
            throw StoreError(alreadyExists(location));
        if (location.postgres) {
            if (replace)
                dropPostgresDatabase(location, location.database);
            renamePostgresDatabase(location, building.database, location.database);
        } else {
            moveIntoPlace(building.sqlitePath, location.sqlitePath);
        }
    } catch (...) {
        discardBuilding(building);
        throw;
    }
    auto made = open(databaseId);
    if (location.postgres)
        dropStaleLogins(*made);
    return made;
}

// `fresh`: the file or database was just made for a company being built, and is ours alone.
void CompanyStore::connect(bool fresh) {
    bool switchJournal = false;
    std::optional<CompanyFileUse> use; // a company file other connections of this process may have open
    if (m_location.postgres) {
        m_db = postgresConnection(m_connectionName, m_location, m_location.database);
    } else {
        m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        m_db.setDatabaseName(m_location.sqlitePath);
        if (!fresh)
            use.emplace(m_location.sqlitePath);
        switchJournal = fresh || prepareSqliteOpen(use->state(), use->firstConnection());
    }
    if (!m_db.open())
        throw StoreError(QStringLiteral("Cannot open company \"%1\" (%2): %3")
                             .arg(m_location.companyId, m_location.describe(), m_db.lastError().text()));
    if (use) {
        use->opened();
        m_countedFile = m_location.sqlitePath;
        use.reset();
    }
    for (const QString& statement : m_dialect->connectionSetup())
        execute(statement);
    if (switchJournal)
        for (const QString& statement : m_dialect->journalSetup())
            execute(statement);
    if (!fresh) {
        checkIsCompany();
        if (!m_readOnly)
            addMissingColumns();
    }
    m_storageVerified = fresh; // a company being built is whole
    prepareNameOrder(fresh);
}

// A company made before a field was added to its view gets the field's column, empty, on its first opening
// by this program; a till that may only read it reads the columns it has.
void CompanyStore::addMissingColumns() {
    for (const ViewDef& view : Schema::instance().views()) {
        QSqlQuery query = prepare(QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(quoted(view.table)));
        run(query, {});
        const QSqlRecord columns = query.record();
        query.finish();
        for (const FieldDef& field : view.fields)
            if (columns.indexOf(field.name) < 0)
                execute(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                            .arg(quoted(view.table), quoted(field.name), m_dialect->columnDefinition(field)));
    }
}

// Gives a SQLite connection the name order that the customers' index is made with, and gives a company
// made before there was such an index its index (once; a till that may not write it, or finds it busy,
// reads the list in order all the same, only slower).
void CompanyStore::prepareNameOrder(bool fresh) {
    if (m_location.postgres)
        return;
    sqlite3* handle = sqliteHandle(m_db);
    if (!handle)
        throw StoreError(
            QStringLiteral("Company \"%1\" (%2) cannot be read: the SQLite driver gives no handle.")
                .arg(m_location.companyId, m_location.describe()));
    registerNameOrder(handle);
    if (fresh || m_readOnly)
        return;
    try {
        execute(nameOrderIndex());
    } catch (const StoreError&) {
    }
}

// Refuses what is no company before SQLite touches it (an empty file would silently become an empty
// database), and opens a company this till cannot write for reading only. True when the file's
// journal mode is still to be set.
bool CompanyStore::prepareSqliteOpen(const CompanyFileState& file, bool firstConnection) {
    const QString& path = m_location.sqlitePath;
    if (file.empty)
        throw StoreError(notACompany(m_location, QStringLiteral("the file is empty")));
    if (!file.sqlite)
        throw StoreError(notACompany(m_location, QStringLiteral("the file is no SQLite database")));
    m_readOnly = !canWriteCompanyFile(path);
    if (!m_readOnly)
        return firstConnection && !file.wal;
    QStringList options{QStringLiteral("QSQLITE_OPEN_READONLY")};
    // Reading a WAL file needs its -shm file, which SQLite cannot make in a folder it cannot write. No
    // till is writing while there is none (a writer keeps it until it closes), so the file is read as
    // it stands.
    if (file.wal && !canWriteFolderOf(path) && !QFileInfo::exists(path + QStringLiteral("-shm"))) {
        options << QStringLiteral("QSQLITE_OPEN_URI");
        m_db.setDatabaseName(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) +
                             QStringLiteral("?immutable=1"));
    }
    m_db.setConnectOptions(options.join(u';'));
    return false;
}

void CompanyStore::checkIsCompany() {
    try {
        execute(QStringLiteral("SELECT 1 FROM \"TB_USERS\" WHERE 1 = 0"));
    } catch (const StoreError&) {
        throw StoreError(notACompany(m_location, QStringLiteral("it has no ledger tables")));
    }
}

// Leaves a company being built ready to take its name: on SQLite, everything written is moved out of
// the write-ahead log into the file itself, which then stands alone.
void CompanyStore::detach() {
    if (!m_location.postgres)
        execute(QStringLiteral("PRAGMA journal_mode=DELETE"));
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

std::vector<QVariant> CompanyStore::readCells(const QString& sql, const QVariantList& values, int width,
                                              bool settle) {
    if (settle && !m_held->empty())
        m_held->write(*this);
    if (!m_location.postgres) {
        if (!m_sqliteStatements)
            if (sqlite3* handle = sqliteHandle(m_db))
                m_sqliteStatements = std::make_unique<SqliteStatements>(handle);
        if (m_sqliteStatements)
            return m_sqliteStatements->readCells(sql, values, width);
    }
    QSqlQuery& query = statement(sql);
    run(query, values);
    std::vector<QVariant> cells;
    while (query.next())
        for (int i = 0; i < width; ++i)
            cells.push_back(query.value(i));
    query.finish();
    return cells;
}

void CompanyStore::beginWrite() {
    if (m_readOnly)
        throw StoreError(
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
        throw StoreError(damagedCompanyMessage(m_location.companyId, damage));
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
        throw StoreError(QStringLiteral("Counter %1 could not be advanced.").arg(counter));
    const qint64 value = query.value(0).toLongLong();
    query.finish();
    transaction.commit();
    return value;
}

void CompanyStore::setUser(const QString& name, const QString& password, std::optional<bool> administrator) {
    if (!m_location.postgres) {
        setUserHash(name, PasswordHash::make(password), administrator);
        return;
    }
    setCompanyLogin(*this, name, password, administrator);
}

// A new hash keeps the user's standing; `administrator` changes it, and a new user is a clerk unless
// told otherwise.
void CompanyStore::setUserHash(const QString& name, const PasswordHash& hash,
                               std::optional<bool> administrator) {
    addAdministratorColumn();
    const QString key = name.trimmed().toUpper();
    Transaction transaction(*this);
    {
        QSqlQuery& update = statement(QStringLiteral(
            "UPDATE \"TB_USERS\" SET \"SALT\" = ?, \"ROUNDS\" = ?, \"HASH\" = ? WHERE \"NAME\" = ?"));
        run(update, {hash.storedSalt(), hash.rounds, hash.storedHash(), key});
        const bool existed = update.numRowsAffected() > 0;
        update.finish();
        if (!existed)
            execute(QStringLiteral("INSERT INTO \"TB_USERS\" (\"NAME\", \"SALT\", \"ROUNDS\", \"HASH\", "
                                   "\"ADMIN\") VALUES (?, ?, ?, ?, ?)"),
                    {key, hash.storedSalt(), hash.rounds, hash.storedHash(),
                     administrator.value_or(false) ? 1 : 0});
        else if (administrator)
            execute(QStringLiteral("UPDATE \"TB_USERS\" SET \"ADMIN\" = ? WHERE \"NAME\" = ?"),
                    {*administrator ? 1 : 0, key});
    }
    transaction.commit();
}

bool CompanyStore::hasAdministratorColumn() {
    QSqlQuery query = prepare(QStringLiteral("SELECT * FROM \"TB_USERS\" WHERE 1 = 0"));
    run(query);
    return query.record().indexOf(QStringLiteral("ADMIN")) >= 0;
}

// Companies made before users had a standing get it on their first change of a user: ADMIN, the user
// every company is made with, administers.
void CompanyStore::addAdministratorColumn() {
    if (hasAdministratorColumn())
        return;
    Transaction transaction(*this);
    execute(QStringLiteral("ALTER TABLE \"TB_USERS\" ADD COLUMN \"ADMIN\" INTEGER NOT NULL DEFAULT 0"));
    execute(QStringLiteral("UPDATE \"TB_USERS\" SET \"ADMIN\" = 1 WHERE \"NAME\" = 'ADMIN'"));
    transaction.commit();
}

bool CompanyStore::isAdministrator(const QString& name) {
    if (!hasAdministratorColumn())
        return name.trimmed().compare(QLatin1String("ADMIN"), Qt::CaseInsensitive) == 0;
    QSqlQuery query = prepare(QStringLiteral("SELECT \"ADMIN\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    return query.next() && query.value(0).toInt() == 1;
}

bool CompanyStore::hasUser(const QString& name) {
    QSqlQuery query = prepare(QStringLiteral("SELECT 1 FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    return query.next();
}

std::optional<PasswordHash> CompanyStore::userHash(const QString& name) {
    QSqlQuery query =
        prepare(QStringLiteral("SELECT \"SALT\", \"ROUNDS\", \"HASH\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    if (!query.next())
        return std::nullopt;
    return PasswordHash::fromStored(query.value(0).toString(), query.value(1).toInt(),
                                    query.value(2).toString());
}

bool CompanyStore::checkPassword(const QString& name, const QString& password) {
    if (m_location.postgres) // the server's to say: can the user's login sign in with it
        return signIn(m_location.companyId, name, password) != nullptr;
    const std::optional<PasswordHash> stored = userHash(name);
    if (!stored) {
        // The same work as for a user, so the time taken does not tell that there is none.
        (void)PasswordHash::standIn().matches(password);
        return false;
    }
    if (!stored->matches(password))
        return false;
    if (stored->isOutdated() && !m_readOnly && !inTransaction()) {
        try {
            setUser(name, password);
        } catch (const StoreError&) {
            // Kept as it is (the company may be busy); the next good sign-in tries again.
        }
    }
    return true;
}

void CompanyStore::createTables(bool withIndexes) {
    Transaction transaction(*this);
    {
        execute(
            QStringLiteral("CREATE TABLE \"TB_USERS\" (\"NAME\" TEXT PRIMARY KEY, \"SALT\" TEXT NOT NULL, "
                           "\"ROUNDS\" INTEGER NOT NULL, \"HASH\" TEXT NOT NULL, \"ADMIN\" INTEGER NOT NULL "
                           "DEFAULT 0)"));
        createAuditTable(*this);
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
    if (!m_location.postgres)
        execute(nameOrderIndex());
}

} // namespace tillbook::engine
