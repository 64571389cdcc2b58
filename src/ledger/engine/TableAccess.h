#pragma once

// The SQL of one view's table: pages of records in key order, one record by key, insert, update and
// existence. Values here are column values (see ValueCodec: toStorage/fromStorage). Additions the store
// holds for the commit are written first where a statement names the fields they change.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Schema.h"

#include <QHash>
#include <QVariantList>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace tillbook::engine {

using Row = std::vector<QVariant>;
using FieldValues = std::vector<std::pair<int, QVariant>>; // field index, column value

// Rows of one page, cell after cell in one block (no allocation per row).
struct Page {
    size_t width = 0;
    std::vector<QVariant> cells;
    size_t rows() const { return width ? cells.size() / width : 0; }
    const QVariant* row(size_t i) const { return cells.data() + i * width; }
    QVariant* row(size_t i) { return cells.data() + i * width; }
};

struct PageRequest {
    std::vector<int> columns; // the fields to read
    std::vector<int> order;   // the fields of the key followed, unique together
    bool ascending = true;
    QString where; // a compiled filter, '?' placeholders, or empty
    QVariantList whereParameters;
    FieldValues equal;  // fields that must equal a value (a detail's header key)
    QVariantList after; // the order values of the last row already read; empty = from the start
    int limit = 0;
};

class TableAccess {
public:
    TableAccess(CompanyStore& store, const ViewDef& view) : m_store(store), m_view(view) {}

    Page page(const PageRequest& request);
    // The rows of page(request), each handed to `each` as it is read (columns in the order of
    // request.columns, as the store holds them).
    void each(const PageRequest& request, const RowReader& each);
    // Every row `request` selects (its limit and `after` aside), its columns as text, in key order; or,
    // with `collatedBy` a field, in the order of that field's text as customer names are ordered
    // (NameOrder.h), names that compare equal in no set order.
    TextRows text(const PageRequest& request, int collatedBy = -1);
    // `forUpdate`: the record stays locked until the transaction ends, where the store locks records.
    std::optional<Row> read(const std::vector<int>& columns, const FieldValues& key, bool forUpdate = false);
    // As read, as the table holds the record, whatever is held for it: for HeldAdditions itself.
    std::optional<Row> readAsStored(const std::vector<int>& columns, const FieldValues& key);
    void insert(const std::vector<int>& columns, const Row& values);
    // Changes `changes` in the record whose key is `key`; false when there is no such record.
    bool update(const FieldValues& key, const FieldValues& changes);
    // Whether some record has `value` in any of `fields` (and matches `also`).
    bool exists(const std::vector<int>& fields, const QVariant& value, const FieldValues& also = {});

private:
    QString column(int field) const;
    QString conditions(const PageRequest& request, QVariantList& parameters) const;
    // The SELECT of a page request, its values appended to `parameters`; held additions it may see are
    // written first.
    QString pageSelect(const PageRequest& request, QVariantList& parameters);
    QStringList columns(const std::vector<int>& fields) const;
    QStringList equalities(const FieldValues& values, QVariantList& parameters) const;
    QSqlQuery& cached(const QString& sql); // the connection's kept statement
    // Marks in a statement's shape: what it does, then its fields, then those of its condition.
    enum ShapeMark { Insert = -1, Read = -2, ReadForUpdate = -3, Where = -4 };
    QSqlQuery& cached(const std::vector<int>& shape, const std::function<QString()>& make);
    std::optional<Row> readRow(const std::vector<int>& columns, const FieldValues& key, bool forUpdate);

    CompanyStore& m_store;
    const ViewDef& m_view;
    std::map<std::vector<int>, QString> m_sqlByShape;
};

} // namespace tillbook::engine
