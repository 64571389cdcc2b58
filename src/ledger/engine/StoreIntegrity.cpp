#include "ledger/engine/StoreIntegrity.h"

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/PostgresRoles.h"

#include <QFile>
#include <QSaveFile>

namespace tillbook::engine {

namespace {

// More reports than this say nothing more to whoever has to repair the file.
constexpr int MostReports = 20;

StoreIntegrity sqliteIntegrity(CompanyStore& store) {
    StoreIntegrity result{true, QStringLiteral("SQLite integrity check"), {}};
    QSqlQuery query = store.prepare(QStringLiteral("PRAGMA integrity_check(%1)").arg(MostReports));
    try {
        store.run(query);
    } catch (const LedgerError& e) { // a malformed file may fail the check itself
        result.damage << e.description();
        return result;
    }
    while (query.next())
        for (const QString& line : query.value(0).toString().split(u'\n', Qt::SkipEmptyParts))
            if (line != QLatin1String("ok") && !line.startsWith(QLatin1String("*** ")))
                result.damage << line;
    return result;
}

StoreIntegrity postgresIntegrity(CompanyStore& store) {
    QSqlQuery present = store.prepare(QStringLiteral("SELECT 1 FROM pg_extension WHERE extname = 'amcheck'"));
    store.run(present);
    if (!present.next())
        return {false,
                QStringLiteral("PostgreSQL's amcheck extension is not installed in this company's database, "
                               "so its indexes were not checked (as a superuser: CREATE EXTENSION amcheck)"),
                {}};
    present.finish();
    // A clerk's login may run it only when granted: without, every index would fail as if damaged.
    QSqlQuery allowed = store.prepare(
        QStringLiteral("SELECT has_function_privilege('bt_index_check(regclass, boolean)', 'EXECUTE')"));
    store.run(allowed);
    if (!allowed.next() || !allowed.value(0).toBool())
        return {
            false,
            QStringLiteral("This login may not run PostgreSQL's amcheck, so the company's indexes were not "
                           "checked (as its owner: GRANT EXECUTE ON FUNCTION bt_index_check(regclass, "
                           "boolean) TO %1)")
                .arg(clerksRole(store.location().companyId)),
            {}};
    allowed.finish();
    StoreIntegrity result{true, QStringLiteral("PostgreSQL amcheck of the company's indexes"), {}};
    QSqlQuery indexes = store.prepare(
        QStringLiteral("SELECT c.oid, c.relname FROM pg_index i JOIN pg_class c ON c.oid = i.indexrelid "
                       "JOIN pg_am a ON a.oid = c.relam JOIN pg_namespace n ON n.oid = c.relnamespace "
                       "WHERE a.amname = 'btree' AND n.nspname = current_schema() ORDER BY c.relname"));
    store.run(indexes);
    std::vector<std::pair<qint64, QString>> names;
    while (indexes.next())
        names.emplace_back(indexes.value(0).toLongLong(), indexes.value(1).toString());
    for (const auto& [oid, name] : names) {
        try {
            QSqlQuery check = store.prepare(QStringLiteral("SELECT bt_index_check(?::oid, true)"));
            store.run(check, {oid});
        } catch (const LedgerError& e) {
            result.damage << QStringLiteral("index %1: %2").arg(name, e.description());
            if (result.damage.size() >= MostReports)
                break;
        }
    }
    return result;
}

// Beside a SQLite company: the first damage its last integrity check found. A full check reads every page
// (about a second for ten thousand customers, minutes for a million), too slow for a till's first save, so a
// till only looks for this mark before it writes; the check leaves it or takes it away.
QString damageMarkPath(const CompanyLocation& location) {
    return location.sqlitePath + QStringLiteral(".damaged");
}

void markDamage(const CompanyLocation& location, const QStringList& damage) {
    const QString mark = damageMarkPath(location);
    if (damage.isEmpty()) {
        QFile::remove(mark);
        return;
    }
    QSaveFile file(mark);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(damage.front().toUtf8());
        file.commit();
    }
}

} // namespace

StoreIntegrity checkStoreIntegrity(CompanyStore& store) {
    if (store.dialect().isPostgres())
        return postgresIntegrity(store);
    StoreIntegrity result = sqliteIntegrity(store);
    markDamage(store.location(), result.damage);
    return result;
}

QString knownDamage(const CompanyLocation& location) {
    if (location.postgres)
        return {};
    QFile file(damageMarkPath(location));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString first = QString::fromUtf8(file.readAll()).trimmed();
    return first.isEmpty() ? QStringLiteral("damage found by the last check") : first;
}

QString damagedCompanyMessage(const QString& companyId, const QString& firstReport) {
    return QStringLiteral("Company \"%1\" is damaged in its storage (%2), so nothing is written into it. "
                          "Restore the company from a backup, or run tillbook-ledger check %1 and have "
                          "whoever keeps the ledger repair it.")
        .arg(companyId, firstReport);
}

} // namespace tillbook::engine
