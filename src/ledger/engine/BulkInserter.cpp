#include "ledger/engine/BulkInserter.h"

#include "ledger/engine/StoreFailure.h"

namespace tillbook::engine {

BulkInserter::BulkInserter(CompanyStore& store, const ViewDef& view, const QStringList& fieldNames)
    : m_store(store), m_view(view) {
    for (const QString& name : fieldNames) {
        if (view.fieldIndex(name) < 0)
            throw storeFailure(QStringLiteral("View %1 has no field %2.").arg(view.id, name));
        m_columns << u'"' + name + u'"';
    }
    // Well under both stores' limits on parameters in one statement.
    m_rowsPerStatement = std::max(1, 4000 / int(fieldNames.size()));
    m_full = m_store.prepare(statement(m_rowsPerStatement));
}

QString BulkInserter::statement(int rows) const {
    QStringList marks;
    for (int i = 0; i < m_columns.size(); ++i)
        marks << QStringLiteral("?");
    const QString one = u'(' + marks.join(u',') + u')';
    QStringList all;
    for (int r = 0; r < rows; ++r)
        all << one;
    return QStringLiteral("INSERT INTO \"%1\" (%2) VALUES %3")
        .arg(m_view.table, m_columns.join(u','), all.join(u','));
}

void BulkInserter::add(const QVariantList& values) {
    m_pending << values;
    if (++m_pendingRows == m_rowsPerStatement) {
        m_store.run(m_full, m_pending);
        m_written += m_pendingRows;
        m_pending.clear();
        m_pendingRows = 0;
    }
}

void BulkInserter::flush() {
    if (m_pendingRows == 0)
        return;
    QSqlQuery rest = m_store.prepare(statement(m_pendingRows));
    m_store.run(rest, m_pending);
    m_written += m_pendingRows;
    m_pending.clear();
    m_pendingRows = 0;
}

} // namespace tillbook::engine
