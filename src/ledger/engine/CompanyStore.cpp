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
#include "ledger/engine/StoreFailure.h"
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
        throw storeFailure(unknownCompany(location));
    std::unique_ptr<CompanyStore> store(new CompanyStore(location, dialectFor(location)));
    store->connect(false);
    return store;
}

std::unique_ptr<CompanyStore> CompanyStore::create(const QString& databaseId, bool replace,
                                                   const Filler& fill, bool withIndexes) {
    const CompanyLocation location = locateCompany(databaseId);
    if (!replace && exists(databaseId))
        throw storeFailure(alreadyExists(location));
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
            throw storeFailure(alreadyExists(location));
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
        throw storeFailure(QStringLiteral("Cannot open company \"%1\" (%2): %3")
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
        throw storeFailure(
            QStringLiteral("Company \"%1\" (%2) cannot be read: the SQLite driver gives no handle.")
                .arg(m_location.companyId, m_location.describe()));
    registerNameOrder(handle);
    if (fresh || m_readOnly)
        return;
    try {
        execute(nameOrderIndex());
    } catch (const LedgerError&) {
    }
}

// Refuses what is no company before SQLite touches it (an empty file would silently become an empty
// database), and opens a company this till cannot write for reading only. True when the file's
// journal mode is still to be set.
bool CompanyStore::prepareSqliteOpen(const CompanyFileState& file, bool firstConnection) {
    const QString& path = m_location.sqlitePath;
    if (file.empty)
        throw storeFailure(notACompany(m_location, QStringLiteral("the file is empty")));
    if (!file.sqlite)
        throw storeFailure(notACompany(m_location, QStringLiteral("the file is no SQLite database")));
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
    } catch (const LedgerError&) {
        throw storeFailure(notACompany(m_location, QStringLiteral("it has no ledger tables")));
    }
}

// Leaves a company being built ready to take its name: on SQLite, everything written is moved out of
// the write-ahead log into the file itself, which then stands alone.
void CompanyStore::detach() {
    if (!m_location.postgres)
        execute(QStringLiteral("PRAGMA journal_mode=DELETE"));
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
