#include "ledger/engine/TableAccess.h"

#include <QStringList>

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

Page TableAccess::page(const PageRequest& request) {
    QStringList conditions;
    QVariantList parameters;
    if (!request.where.isEmpty()) {
        conditions << u'(' + request.where + u')';
        parameters << request.whereParameters;
    }
    conditions << equalities(request.equal, parameters);
    QStringList order;
    QStringList orderColumns;
    for (int field : request.order) {
        orderColumns << column(field);
        order << column(field) + (request.ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    }
    if (!request.after.isEmpty()) {
        // Row values continue exactly after the last row read, on an index, however far into the table.
        conditions << QStringLiteral("(%1) %2 (%3)")
                          .arg(orderColumns.join(u','),
                               request.ascending ? QStringLiteral(">") : QStringLiteral("<"),
                               placeholders(size_t(request.after.size())));
        parameters << request.after;
    }
    QString sql =
        QStringLiteral("SELECT %1 FROM \"%2\"").arg(columns(request.columns).join(u','), m_view.table);
    if (!conditions.isEmpty())
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY ") + order.join(u',');
    if (request.limit > 0)
        sql += QStringLiteral(" LIMIT %1").arg(request.limit);

    std::vector<int> named = request.columns;
    named.insert(named.end(), request.order.begin(), request.order.end());
    for (const auto& equal : request.equal)
        named.push_back(equal.first);
    m_store.settleHeld(m_view, named, !request.where.isEmpty());
    QSqlQuery& query = cached(sql);
    m_store.runPastHeld(query, parameters);
    Page result;
    result.width = request.columns.size();
    if (request.limit > 0)
        result.cells.reserve(size_t(request.limit) * result.width);
    const int width = int(result.width);
    while (query.next())
        for (int i = 0; i < width; ++i)
            result.cells.push_back(query.value(i));
    query.finish();
    return result;
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
