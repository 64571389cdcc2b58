#include "ledger/engine/RecordAccess.h"

#include "ledger/engine/TableAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

#include <stdexcept>

namespace tillbook::engine {

namespace {

int fieldIndex(const ViewDef& def, const QString& name) {
    const int index = def.fieldIndex(name);
    if (index < 0)
        throw std::logic_error(QStringLiteral("view %1 has no field %2").arg(def.id, name).toStdString());
    return index;
}

FieldValues stored(const ViewDef& def, const QVariantHash& values) {
    FieldValues result;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        const int field = fieldIndex(def, it.key());
        result.emplace_back(field, toStorage(def.fields[size_t(field)], it.value()));
    }
    return result;
}

std::vector<int> indexes(const ViewDef& def, const QStringList& names) {
    std::vector<int> result;
    for (const QString& name : names)
        result.push_back(fieldIndex(def, name));
    return result;
}

QVariantHash named(const ViewDef& def, const std::vector<int>& columns, const QVariant* row) {
    QVariantHash record;
    for (size_t k = 0; k < columns.size(); ++k)
        record.insert(def.fields[size_t(columns[k])].name,
                      fromStorage(def.fields[size_t(columns[k])], row[k]));
    return record;
}

QString quoted(const QString& name) {
    return u'"' + name + u'"';
}

QString keyCondition(const ViewDef& def, const QVariantHash& key, QVariantList& parameters) {
    QStringList conditions;
    for (const auto& [field, value] : stored(def, key)) {
        conditions << quoted(def.fields[size_t(field)].name) + QStringLiteral(" = ?");
        parameters << value;
    }
    return conditions.join(QStringLiteral(" AND "));
}

} // namespace

const ViewDef& viewDef(const QString& viewId) {
    const ViewDef* def = Schema::instance().view(viewId);
    if (!def)
        throw std::logic_error(QStringLiteral("no view %1").arg(viewId).toStdString());
    return *def;
}

ViewCore* composedView(ViewCore& view, const QString& viewId) {
    const auto matches = [&](ViewCore* other) {
        return other && other->def().id.compare(viewId, Qt::CaseInsensitive) == 0;
    };
    for (ViewCore* other : view.composedWith())
        if (matches(other))
            return other;
    for (ViewCore* other : view.details())
        if (matches(other))
            return other;
    return matches(view.header()) ? view.header() : nullptr;
}

Money moneyOf(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<Money>())
        return value.value<Money>();
    return Money::fromWhole(value.toLongLong());
}

Money moneyField(ViewCore& view, const QString& field) {
    return moneyOf(view.value(field));
}

qint64 wholeField(ViewCore& view, const QString& field) {
    return view.value(field).toLongLong();
}

QString textField(ViewCore& view, const QString& field) {
    return view.value(field).toString().trimmed();
}

std::optional<QVariantHash> readRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                                       const QStringList& fields) {
    const ViewDef& def = viewDef(viewId);
    const std::vector<int> columns = indexes(def, fields);
    TableAccess table(store, def);
    const std::optional<Row> row = table.read(columns, stored(def, key));
    if (!row)
        return std::nullopt;
    return named(def, columns, row->data());
}

std::optional<QVariantHash> readRecordForUpdate(CompanyStore& store, const QString& viewId,
                                                const QVariantHash& key, const QStringList& fields) {
    const ViewDef& def = viewDef(viewId);
    const std::vector<int> columns = indexes(def, fields);
    QStringList names;
    for (int column : columns)
        names << quoted(def.fields[size_t(column)].name);
    QVariantList parameters;
    const QString condition = keyCondition(def, key, parameters);
    QSqlQuery query = store.prepare(
        QStringLiteral("SELECT %1 FROM %2 WHERE %3%4")
            .arg(names.join(u','), quoted(def.table), condition, store.dialect().lockForUpdate()));
    store.run(query, parameters);
    std::optional<QVariantHash> record;
    if (query.next()) {
        Row row;
        for (int i = 0; i < int(columns.size()); ++i)
            row.push_back(query.value(i));
        record = named(def, columns, row.data());
    }
    query.finish();
    return record;
}

std::vector<QVariantHash> readRecords(CompanyStore& store, const QString& viewId, const QVariantHash& equal,
                                      const QStringList& fields, const QStringList& orderBy,
                                      const QString& where, int limit) {
    const ViewDef& def = viewDef(viewId);
    PageRequest request;
    request.limit = limit;
    request.columns = indexes(def, fields);
    request.order = indexes(def, orderBy);
    request.equal = stored(def, equal);
    request.where = where;
    TableAccess table(store, def);
    std::vector<QVariantHash> records;
    const Page page = table.page(request);
    for (size_t i = 0; i < page.rows(); ++i)
        records.push_back(named(def, request.columns, page.row(i)));
    return records;
}

void insertRecord(CompanyStore& store, const QString& viewId, const QVariantHash& values) {
    const ViewDef& def = viewDef(viewId);
    std::vector<int> columns;
    Row row;
    for (int i = 0; i < int(def.fields.size()); ++i) {
        const FieldDef& field = def.fields[size_t(i)];
        const auto given = values.constFind(field.name);
        columns.push_back(i);
        row.push_back(toStorage(field, given != values.constEnd() ? given.value() : defaultValue(field)));
    }
    TableAccess(store, def).insert(columns, row);
}

bool updateRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                  const QVariantHash& changes) {
    const ViewDef& def = viewDef(viewId);
    return TableAccess(store, def).update(stored(def, key), stored(def, changes));
}

bool addToRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                 const QVariantHash& amounts) {
    const ViewDef& def = viewDef(viewId);
    QStringList assignments;
    QVariantList parameters;
    for (const auto& [field, value] : stored(def, amounts)) {
        const QString column = quoted(def.fields[size_t(field)].name);
        assignments << column + QStringLiteral(" = ") + column + QStringLiteral(" + ?");
        parameters << value;
    }
    const QString condition = keyCondition(def, key, parameters);
    QSqlQuery query = store.prepare(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                                        .arg(quoted(def.table), assignments.join(u','), condition));
    store.run(query, parameters);
    return query.numRowsAffected() > 0;
}

Money sumOf(CompanyStore& store, const QString& viewId, const QString& field, const QVariantHash& equal) {
    const ViewDef& def = viewDef(viewId);
    QVariantList parameters;
    const QString condition = keyCondition(def, equal, parameters);
    QSqlQuery query = store.prepare(QStringLiteral("SELECT COALESCE(SUM(%1), 0) FROM %2 WHERE %3")
                                        .arg(quoted(field.toUpper()), quoted(def.table), condition));
    store.run(query, parameters);
    const qint64 total = query.next() ? query.value(0).toLongLong() : 0;
    query.finish();
    const FieldDef& f = def.fields[size_t(fieldIndex(def, field))];
    return moneyOf(fromStorage(f, total));
}

} // namespace tillbook::engine
