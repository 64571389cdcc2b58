#include "ledger/engine/PendingApplications.h"

#include "ledger/engine/BatchRules.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::engine {

namespace {

// Lines of ordinary receipts ("1") in batches that are neither posted nor deleted, of entries not posted
// yet (a batch being posted has some of each), grouped by `groupBy`.
QString pendingLinesSql(const QString& columns, const QString& condition, const QString& groupBy) {
    return QStringLiteral(
               "SELECT %4, SUM(d.\"AMTPAYM\"), SUM(d.\"AMTERNDISC\"), SUM(d.\"AMTADJTOT\") "
               "FROM \"%1\" d JOIN \"%2\" b ON b.\"CODEPYMTYP\" = d.\"CODEPAYM\" AND b.\"CNTBTCH\" = "
               "d.\"CNTBTCH\" JOIN \"%3\" h ON h.\"CODEPYMTYP\" = d.\"CODEPAYM\" AND h.\"CNTBTCH\" = "
               "d.\"CNTBTCH\" AND h.\"CNTITEM\" = d.\"CNTITEM\" WHERE d.\"IDCUST\" = ? AND d.\"RMITTYPE\" = "
               "'1' "
               "AND b.\"BATCHSTAT\" <> ? AND b.\"BATCHSTAT\" <> ? AND h.\"DATEBUS\" = 0 AND %5 GROUP BY %6")
        .arg(viewDef(QStringLiteral("AR0044")).table, viewDef(QStringLiteral("AR0041")).table,
             viewDef(QStringLiteral("AR0042")).table, columns, condition, groupBy);
}

} // namespace

QHash<QString, PendingAmounts> pendingApplications(CompanyStore& store, const QString& customer, qint64 batch,
                                                   qint64 entry) {
    const QString sql = pendingLinesSql(QStringLiteral("d.\"IDINVC\""),
                                        QStringLiteral("NOT (d.\"CNTBTCH\" = ? AND d.\"CNTITEM\" = ?)"),
                                        QStringLiteral("d.\"IDINVC\""));
    // Receipt lines, batches and entries only: the customer figures held for the commit cannot be seen here.
    const std::vector<QVariant> cells =
        store.readCells(sql, {customer, int(BatchPosted), int(BatchDeleted), batch, entry}, 4, false);
    QHash<QString, PendingAmounts> pending;
    pending.reserve(qsizetype(cells.size() / 4));
    for (size_t at = 0; at < cells.size(); at += 4) {
        // Amounts are stored in thousandths (three decimals).
        pending.insert(cells[at].toString(),
                       PendingAmounts{Money::fromThousandths(cells[at + 1].toLongLong()),
                                      Money::fromThousandths(cells[at + 2].toLongLong()),
                                      Money::fromThousandths(cells[at + 3].toLongLong())});
    }
    return pending;
}

std::vector<PendingLine> pendingLinesOf(CompanyStore& store, const QString& customer,
                                        const QString& document) {
    const QString sql =
        pendingLinesSql(QStringLiteral("d.\"CNTBTCH\", d.\"CNTITEM\""), QStringLiteral("d.\"IDINVC\" = ?"),
                        QStringLiteral("d.\"CNTBTCH\", d.\"CNTITEM\" ORDER BY d.\"CNTBTCH\", d.\"CNTITEM\""));
    QSqlQuery& query = store.statement(sql);
    store.run(query, {customer, int(BatchPosted), int(BatchDeleted), document});
    std::vector<PendingLine> lines;
    while (query.next())
        lines.push_back({query.value(0).toLongLong(), query.value(1).toLongLong(),
                         Money::fromThousandths(query.value(2).toLongLong() + query.value(3).toLongLong() +
                                                query.value(4).toLongLong())});
    query.finish();
    return lines;
}

} // namespace tillbook::engine
