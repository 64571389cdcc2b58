#include "ledger/engine/TableAccess.h"

#include "ledger/engine/NameOrder.h"

#include <QStringList>
#include <algorithm>
#include <numeric>

namespace tillbook::engine {

namespace {

QString placeholders(size_t count) {
    QStringList marks;
    for (size_t i = 0; i < count; ++i)
        marks << QStringLiteral("?");
    return marks.join(u',');
}

} // namespace

QStringList TableAccess::columns(const std::vector<int>& fields) const {
    QStringList names;
    for (int field : fields)
        names << column(field);
    return names;
}

// "COL = ?" for each field, its value appended to `parameters`.
QStringList TableAccess::equalities(const FieldValues& values, QVariantList& parameters) const {
    QStringList terms;
    for (const auto& [field, value] : values) {
        terms << column(field) + QStringLiteral(" = ?");
        parameters << value;
    }
    return terms;
}

QString TableAccess::column(int field) const {
    return u'"' + m_view.fields[size_t(field)].name + u'"';
}

QSqlQuery& TableAccess::cached(const QString& sql) {
    return m_store.statement(sql);
}

// The statement of a shape this table was asked for before, without making its text again: a view
// that inserts or reads record after record asks for the same few.
QSqlQuery& TableAccess::cached(const std::vector<int>& shape, const std::function<QString()>& make) {
    auto it = m_sqlByShape.find(shape);
    if (it == m_sqlByShape.end())
        it = m_sqlByShape.emplace(shape, make()).first;
    return m_store.statement(it->second);
}

// The WHERE clause of a request's filter and header key (empty when none), its values appended to
// `parameters`.
QString TableAccess::conditions(const PageRequest& request, QVariantList& parameters) const {
    QStringList conditions;
    if (!request.where.isEmpty()) {
        conditions << u'(' + request.where + u')';
        parameters << request.whereParameters;
    }
    conditions << equalities(request.equal, parameters);
    return conditions.isEmpty() ? QString()
                                : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
}

TextRows TableAccess::text(const PageRequest& request, int collatedBy) {
    QVariantList parameters;
    QString sql =
        QStringLiteral("SELECT %1 FROM \"%2\"").arg(columns(request.columns).join(u','), m_view.table) +
        conditions(request, parameters);
    const bool sqlOrdersNames = collatedBy >= 0 && !m_store.dialect().isPostgres();
    QStringList order;
    if (sqlOrdersNames)
        order << QStringLiteral("tb_namekey(%1)").arg(column(collatedBy));
    else
        for (int field : request.order)
            order << column(field) + (request.ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    sql += QStringLiteral(" ORDER BY ") + order.join(u',');
    TextRows rows = m_store.readText(sql, parameters, int(request.columns.size()));
    if (collatedBy < 0 || sqlOrdersNames)
        return rows;
    // PostgreSQL knows no such order: the rows are put in it here, by each name's key.
    const int at =
        int(std::find(request.columns.begin(), request.columns.end(), collatedBy) - request.columns.begin());
    std::vector<QByteArray> keys(rows.rows());
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i] = nameOrderKey(rows.text(i, at));
    std::vector<std::uint32_t> order32(rows.rows());
    std::iota(order32.begin(), order32.end(), 0u);
    std::sort(order32.begin(), order32.end(),
              [&keys](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
    return rows.reordered(order32);
}

QString TableAccess::pageSelect(const PageRequest& request, QVariantList& parameters) {
    QString where = conditions(request, parameters);
    QStringList order;
    QStringList orderColumns;
    for (int field : request.order) {
        orderColumns << column(field);
        order << column(field) + (request.ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    }
    if (!request.after.isEmpty()) {
        // Row values continue exactly after the last row read, on an index, however far into the table.
        where +=
            (where.isEmpty() ? QStringLiteral(" WHERE ") : QStringLiteral(" AND ")) +
            QStringLiteral("(%1) %2 (%3)")
                .arg(orderColumns.join(u','), request.ascending ? QStringLiteral(">") : QStringLiteral("<"),
                     placeholders(size_t(request.after.size())));
        parameters << request.after;
    }
    QString sql =
        QStringLiteral("SELECT %1 FROM \"%2\"").arg(columns(request.columns).join(u','), m_view.table) +
        where;
    sql += QStringLiteral(" ORDER BY ") + order.join(u',');
    if (request.limit > 0)
        sql += QStringLiteral(" LIMIT %1").arg(request.limit);

    std::vector<int> named = request.columns;
    named.insert(named.end(), request.order.begin(), request.order.end());
    for (const auto& equal : request.equal)
        named.push_back(equal.first);
    m_store.settleHeld(m_view, named, !request.where.isEmpty());
    return sql;
}

Page TableAccess::page(const PageRequest& request) {
    QVariantList parameters;
    const QString sql = pageSelect(request, parameters);
    Page result;
    result.width = request.columns.size();
    result.cells = m_store.readCells(sql, parameters, int(result.width), false);
    return result;
}

void TableAccess::each(const PageRequest& request, const RowReader& each) {
    QVariantList parameters;
    const QString sql = pageSelect(request, parameters);
    m_store.readEach(sql, parameters, each, false);
}

std::optional<Row> TableAccess::read(const std::vector<int>& fields, const FieldValues& key, bool forUpdate) {
    std::vector<int> named = fields;
    for (const auto& part : key)
        named.push_back(part.first);
    m_store.settleHeld(m_view, named);
    return readRow(fields, key, forUpdate);
}

std::optional<Row> TableAccess::readAsStored(const std::vector<int>& fields, const FieldValues& key) {
    return readRow(fields, key, false);
}

std::optional<Row> TableAccess::readRow(const std::vector<int>& fields, const FieldValues& key,
                                        bool forUpdate) {
    std::vector<int> shape{forUpdate ? ReadForUpdate : Read};
    shape.insert(shape.end(), fields.begin(), fields.end());
    shape.push_back(Where);
    QVariantList parameters;
    for (const auto& [field, value] : key) {
        shape.push_back(field);
        parameters << value;
    }
    QSqlQuery& query = cached(shape, [&] {
        QVariantList unused;
        return QStringLiteral("SELECT %1 FROM \"%2\" WHERE %3%4")
            .arg(columns(fields).join(u','), m_view.table,
                 equalities(key, unused).join(QStringLiteral(" AND ")),
                 forUpdate ? m_store.dialect().lockForUpdate() : QString());
    });
    m_store.runPastHeld(query, parameters);
    std::optional<Row> row;
    if (query.next()) {
        row.emplace();
        for (int i = 0; i < int(fields.size()); ++i)
            row->push_back(query.value(i));
    }
    query.finish();
    return row;
}

void TableAccess::insert(const std::vector<int>& fields, const Row& values) {
    std::vector<int> shape{Insert};
    shape.insert(shape.end(), fields.begin(), fields.end());
    QSqlQuery& query = cached(shape, [&] {
        return QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)")
            .arg(m_view.table, columns(fields).join(u','), placeholders(fields.size()));
    });
    // A new record: nothing is held for it.
    m_store.runPastHeld(query, QVariantList(values.begin(), values.end()));
    query.finish();
}

bool TableAccess::update(const FieldValues& key, const FieldValues& changes) {
    if (changes.empty())
        return bool(read({key.front().first}, key));
    std::vector<int> named;
    for (const auto& change : changes)
        named.push_back(change.first);
    for (const auto& part : key)
        named.push_back(part.first);
    m_store.settleHeld(m_view, named);
    QVariantList parameters;
    const QStringList assignments = equalities(changes, parameters);
    const QStringList conditions = equalities(key, parameters);
    QSqlQuery& query =
        cached(QStringLiteral("UPDATE \"%1\" SET %2 WHERE %3")
                   .arg(m_view.table, assignments.join(u','), conditions.join(QStringLiteral(" AND "))));
    m_store.runPastHeld(query, parameters);
    const bool changed = query.numRowsAffected() > 0;
    query.finish();
    return changed;
}

bool TableAccess::exists(const std::vector<int>& fields, const QVariant& value, const FieldValues& also) {
    std::vector<int> named = fields;
    for (const auto& part : also)
        named.push_back(part.first);
    m_store.settleHeld(m_view, named);
    QStringList alternatives;
    QVariantList parameters;
    for (int field : fields) {
        alternatives << column(field) + QStringLiteral(" = ?");
        parameters << value;
    }
    QStringList conditions{u'(' + alternatives.join(QStringLiteral(" OR ")) + u')'};
    conditions << equalities(also, parameters);
    QSqlQuery& query = cached(QStringLiteral("SELECT 1 FROM \"%1\" WHERE %2 LIMIT 1")
                                  .arg(m_view.table, conditions.join(QStringLiteral(" AND "))));
    m_store.runPastHeld(query, parameters);
    const bool found = query.next();
    query.finish();
    return found;
}

} // namespace tillbook::engine
