#pragma once

// What the action benchmarks share: the session date of their companies and plain prepared Qt SQL for the
// floors that write.

#include "SizedCompany.h"

#include <QDate>
#include <QSqlError>
#include <QSqlQuery>
#include <benchmark/benchmark.h>

namespace tillbook::bench {

inline const QDate Today(2025, 3, 14);

inline void require(benchmark::State& state, bool ok, const char* what) {
    if (!ok)
        state.SkipWithError(what);
}

inline QSqlQuery prepared(const QString& sql) {
    QSqlQuery query(rawConnection(sized().path));
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        qFatal("floor statement refused: %s", qPrintable(query.lastError().text()));
    return query;
}

inline void run(QSqlQuery& query, const QVariantList& values) {
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    if (!query.exec())
        qFatal("floor statement failed: %s", qPrintable(query.lastError().text()));
}

} // namespace tillbook::bench
