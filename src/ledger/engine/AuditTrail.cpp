#include "ledger/engine/AuditTrail.h"

#include "ledger/engine/CompanyStore.h"

#include <QDateTime>
#include <QMutex>
#include <QSet>

namespace tillbook::engine {

namespace {

const QString BatchCreated = QStringLiteral("batch created");
const QString EntrySaved = QStringLiteral("entry saved");
const QString BatchPostedRow = QStringLiteral("batch posted");
const QString MasterDataImported = QStringLiteral("master data imported");

// A company made before the trail gets its table on its first audited write; once a process. On
// PostgreSQL the owner makes it (a clerk's login may make no table): with the company, or with its logins.
void ensureTable(CompanyStore& store) {
    if (store.location().postgres)
        return;
    static QMutex mutex;
    static QSet<QString> ready;
    const QString where = store.location().describe();
    {
        QMutexLocker lock(&mutex);
        if (ready.contains(where))
            return;
    }
    createAuditTable(store);
    QMutexLocker lock(&mutex);
    ready.insert(where);
}

} // namespace

void createAuditTable(CompanyStore& store) {
    store.execute(QStringLiteral(
        "CREATE TABLE IF NOT EXISTS \"TB_AUDIT\" (\"AT\" TEXT NOT NULL, \"WHO\" TEXT NOT NULL, \"WHAT\" TEXT "
        "NOT NULL, \"CODE\" TEXT NOT NULL, \"BATCH\" BIGINT NOT NULL, \"ENTRY\" BIGINT NOT NULL, \"AMOUNT\" "
        "BIGINT NOT NULL)"));
}

namespace {

void addRow(CompanyStore& store, const QString& who, const QString& what, const QString& code, qint64 batch,
            qint64 entry, Money amount) {
    ensureTable(store);
    store.execute(QStringLiteral("INSERT INTO \"TB_AUDIT\" (\"AT\", \"WHO\", \"WHAT\", \"CODE\", \"BATCH\", "
                                 "\"ENTRY\", \"AMOUNT\") VALUES (?, ?, ?, ?, ?, ?, ?)"),
                  {QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs),
                   // A posting started by no signed-in user (the engine called directly) is still recorded.
                   who.trimmed().isEmpty() ? QStringLiteral("(none)") : who.trimmed().toUpper(), what, code,
                   batch, entry, qlonglong(amount.thousandths())});
}

} // namespace

void auditBatchCreated(CompanyStore& store, const QString& who, const QString& code, qint64 batch) {
    addRow(store, who, BatchCreated, code, batch, 0, Money());
}

void auditEntrySaved(CompanyStore& store, const QString& who, const QString& code, qint64 batch, qint64 entry,
                     Money amount) {
    addRow(store, who, EntrySaved, code, batch, entry, amount);
}

void auditBatchPosted(CompanyStore& store, const QString& who, const QString& code, qint64 batch) {
    addRow(store, who, BatchPostedRow, code, batch, 0, Money());
}

void auditImported(CompanyStore& store, const QString& who, const QStringList& views, qint64 lines) {
    addRow(store, who, MasterDataImported, views.join(u','), 0, lines, Money());
}

QHash<QString, AuditedBatch> auditedBatches(CompanyStore& store) {
    QHash<QString, AuditedBatch> batches;
    try {
        QSqlQuery query = store.prepare(QStringLiteral(
            "SELECT \"WHAT\", \"CODE\", \"BATCH\", \"AMOUNT\" FROM \"TB_AUDIT\" ORDER BY \"BATCH\""));
        store.run(query);
        while (query.next()) {
            const QString key =
                QStringLiteral("%1/%2").arg(query.value(1).toString()).arg(query.value(2).toLongLong());
            if (query.value(0).toString() == BatchCreated) {
                batches[key];
            } else if (query.value(0).toString() == EntrySaved) {
                AuditedBatch& batch = batches[key];
                ++batch.entries;
                batch.total += Money::fromThousandths(query.value(3).toLongLong());
            }
        }
    } catch (const LedgerError&) {
        // No trail yet: a company nothing has been written into since it was kept.
    }
    return batches;
}

} // namespace tillbook::engine
