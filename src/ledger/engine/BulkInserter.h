#pragma once

// Loads many records into one table fast: rows gathered and written many to a statement, inside the
// caller's transaction. Columns not named keep their defaults.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Schema.h"

#include <QVariantList>

namespace tillbook::engine {

class BulkInserter {
public:
    BulkInserter(CompanyStore& store, const ViewDef& view, const QStringList& fieldNames);
    // One row of column values, in the order of `fieldNames`.
    void add(const QVariantList& values);
    void flush();
    qint64 written() const { return m_written; }

private:
    QString statement(int rows) const;

    CompanyStore& m_store;
    const ViewDef& m_view;
    QStringList m_columns;
    int m_rowsPerStatement;
    QSqlQuery m_full;
    QVariantList m_pending;
    int m_pendingRows = 0;
    qint64 m_written = 0;
};

} // namespace tillbook::engine
