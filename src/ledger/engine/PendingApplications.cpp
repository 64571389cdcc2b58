#include "ledger/engine/PendingApplications.h"

#include "ledger/engine/BatchRules.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::engine {

QHash<QString, PendingAmounts> pendingApplications(CompanyStore& store, const QString& customer, qint64 batch,
                                                   qint64 entry) {
    // Lines of ordinary receipts ("1") in batches that are neither posted nor deleted, of entries not
    // posted yet (a batch being posted has some of each).
    const QString sql =
        QStringLiteral(
            "SELECT d.\"IDINVC\", SUM(d.\"AMTPAYM\"), SUM(d.\"AMTERNDISC\"), SUM(d.\"AMTADJTOT\") "
            "FROM \"%1\" d JOIN \"%2\" b ON b.\"CODEPYMTYP\" = d.\"CODEPAYM\" AND b.\"CNTBTCH\" = "
            "d.\"CNTBTCH\" JOIN \"%3\" h ON h.\"CODEPYMTYP\" = d.\"CODEPAYM\" AND h.\"CNTBTCH\" = "
            "d.\"CNTBTCH\" AND h.\"CNTITEM\" = d.\"CNTITEM\" WHERE d.\"IDCUST\" = ? AND d.\"RMITTYPE\" = '1' "
            "AND b.\"BATCHSTAT\" <> ? AND b.\"BATCHSTAT\" <> ? AND h.\"DATEBUS\" = 0 "
            "AND NOT (d.\"CNTBTCH\" = ? AND d.\"CNTITEM\" = ?) GROUP BY d.\"IDINVC\"")
            .arg(viewDef(QStringLiteral("AR0044")).table, viewDef(QStringLiteral("AR0041")).table,
                 viewDef(QStringLiteral("AR0042")).table);
    QSqlQuery& query = store.statement(sql);
    store.run(query, {customer, int(BatchPosted), int(BatchDeleted), batch, entry});
    QHash<QString, PendingAmounts> pending;
    while (query.next()) {
        // Amounts are stored in thousandths (three decimals).
        pending.insert(query.value(0).toString(),
                       PendingAmounts{Money::fromThousandths(query.value(1).toLongLong()),
                                      Money::fromThousandths(query.value(2).toLongLong()),
                                      Money::fromThousandths(query.value(3).toLongLong())});
    }
    query.finish();
    return pending;
}

} // namespace tillbook::engine
