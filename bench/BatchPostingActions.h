#pragma once

// Posting a batch of a thousand receipts, beside its floor: the same rows written with plain prepared Qt SQL.

#include "ActionsSupport.h"
#include "ledger/Session.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/CompanyStore.h"

#include <QSqlDatabase>
#include <utility>
#include <vector>

namespace tillbook::bench::batch_posting {

// ---- posting a batch of a thousand receipts ----

inline constexpr int BatchEntries = 1000;

// A batch of receipts, each paying one currency unit off one open invoice of a different customer.
inline qint64 makeBatch(qint64 number) {
    QSqlDatabase db = rawConnection(sized().path);
    static std::vector<std::pair<QString, QString>> invoices = [] {
        std::vector<std::pair<QString, QString>> found;
        QSqlQuery query = prepared(QStringLiteral(
            "SELECT \"IDCUST\", MIN(\"IDINVC\") FROM \"AROBL\" WHERE \"TRXTYPETXT\" = 1 AND \"AMTDUETC\" > "
            "100000 GROUP BY \"IDCUST\" ORDER BY \"IDCUST\" LIMIT ?"));
        run(query, {BatchEntries});
        while (query.next())
            found.emplace_back(query.value(0).toString(), query.value(1).toString());
        return found;
    }();
    db.transaction();
    QSqlQuery batch = prepared(QStringLiteral(
        "INSERT INTO \"ARBTA\" (\"CODEPYMTYP\",\"CNTBTCH\",\"BATCHSTAT\",\"CNTENTER\") VALUES ('CA',?,1,?)"));
    run(batch, {number, qint64(invoices.size())});
    QSqlQuery header = prepared(QStringLiteral(
        "INSERT INTO \"ARTCR\" (\"CODEPYMTYP\",\"CNTBTCH\",\"CNTITEM\",\"IDCUST\",\"AMTRMIT\",\"IDRMIT\","
        "\"DATERMIT\",\"TEXTRMIT\",\"RMITTYPE\",\"REMUNAPLTC\") VALUES "
        "('CA',?,?,?,1000,'CHQ',20250314,'R',1,0)"));
    QSqlQuery line = prepared(
        QStringLiteral("INSERT INTO \"ARTCP\" (\"CODEPAYM\",\"CNTBTCH\",\"CNTITEM\",\"CNTLINE\",\"IDCUST\","
                       "\"IDINVC\",\"AMTPAYM\",\"RMITTYPE\") VALUES ('CA',?,?,1,?,?,1000,'1')"));
    qint64 item = 0;
    for (const auto& [customer, invoice] : invoices) {
        ++item;
        run(header, {number, item, customer});
        run(line, {number, item, customer, invoice});
    }
    db.commit();
    return qint64(invoices.size());
}

inline qint64 nextBatchNumber() {
    static qint64 number = 800000;
    return ++number;
}

inline void PostBatch(benchmark::State& state) {
    Session session;
    session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), sized().id, Today);
    auto store = engine::CompanyStore::open(sized().id);
    qint64 entries = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const qint64 number = nextBatchNumber();
        makeBatch(number);
        state.ResumeTiming();
        entries = engine::postBatch(*store, session.errors(), number, Today).entries;
    }
    state.counters["entries"] = double(entries);
}

inline void PostBatchFloor(benchmark::State& state) {
    QSqlDatabase db = rawConnection(sized().path);
    QSqlQuery mark = prepared(QStringLiteral(
        "UPDATE \"ARBTA\" SET \"NBRERRORS\" = 0 WHERE \"CODEPYMTYP\" = 'CA' AND \"CNTBTCH\" = ?"));
    QSqlQuery status = prepared(QStringLiteral(
        "SELECT \"BATCHSTAT\" FROM \"ARBTA\" WHERE \"CODEPYMTYP\" = 'CA' AND \"CNTBTCH\" = ?"));
    QSqlQuery entries = prepared(QStringLiteral(
        "SELECT \"CNTITEM\",\"IDCUST\",\"RMITTYPE\",\"IDRMIT\",\"DATERMIT\",\"REMUNAPLTC\",\"TEXTRMIT\" FROM "
        "\"ARTCR\" WHERE \"CODEPYMTYP\" = 'CA' AND \"CNTBTCH\" = ? ORDER BY \"CNTITEM\""));
    QSqlQuery lines = prepared(QStringLiteral(
        "SELECT \"IDINVC\",\"IDDOCMTCH\",\"AMTPAYM\",\"AMTERNDISC\",\"AMTADJTOT\" FROM \"ARTCP\" WHERE "
        "\"CODEPAYM\" = 'CA' AND \"CNTBTCH\" = ? AND \"CNTITEM\" = ? ORDER BY \"CNTLINE\""));
    QSqlQuery document = prepared(QStringLiteral(
        "SELECT \"AMTDUETC\",\"CNTTOTPAYM\" FROM \"AROBL\" WHERE \"IDCUST\" = ? AND \"IDINVC\" = ?"));
    QSqlQuery pay = prepared(QStringLiteral(
        "UPDATE \"AROBL\" SET \"AMTDUETC\" = ?, \"AMTDUEHC\" = ?, \"SWPAID\" = ?, \"DATELSTACT\" = ?, "
        "\"CNTTOTPAYM\" = ? WHERE \"IDCUST\" = ? AND \"IDINVC\" = ?"));
    QSqlQuery balance = prepared(QStringLiteral(
        "UPDATE \"ARCUS\" SET \"AMTBALDUET\" = \"AMTBALDUET\" + ?, \"AMTBALDUEH\" = \"AMTBALDUEH\" + ? WHERE "
        "\"IDCUST\" = ?"));
    QSqlQuery posted = prepared(
        QStringLiteral("UPDATE \"ARBTA\" SET \"BATCHSTAT\" = 3, \"POSTSEQNBR\" = ?, \"DATELSTEDT\" = ? WHERE "
                       "\"CODEPYMTYP\" = 'CA' AND \"CNTBTCH\" = ?"));
    for (auto _ : state) {
        state.PauseTiming();
        const qint64 number = nextBatchNumber();
        makeBatch(number);
        state.ResumeTiming();
        db.exec(QStringLiteral("BEGIN IMMEDIATE"));
        run(mark, {number});
        run(status, {number});
        status.next();
        status.finish();
        run(entries, {number});
        std::vector<std::pair<qint64, QString>> items;
        while (entries.next())
            items.emplace_back(entries.value(0).toLongLong(), entries.value(1).toString());
        for (const auto& [item, customer] : items) {
            run(lines, {number, item});
            std::vector<std::pair<QString, qint64>> paid;
            while (lines.next())
                paid.emplace_back(lines.value(0).toString(), lines.value(2).toLongLong());
            for (const auto& [invoice, amount] : paid) {
                run(document, {customer, invoice});
                document.next();
                const qint64 after = document.value(0).toLongLong() - amount;
                const qint64 count = document.value(1).toLongLong() + 1;
                document.finish();
                run(pay, {after, after, after == 0 ? 1 : 0, 20250314, count, customer, invoice});
                run(balance, {-amount, -amount, customer});
            }
        }
        run(posted, {number, 20250314, number});
        db.exec(QStringLiteral("COMMIT"));
    }
}

} // namespace tillbook::bench::batch_posting
