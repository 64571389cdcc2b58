#include "ledger/engine/RecordAccess.h"

#include "ledger/LedgerError.h"
#include "ledger/engine/HeldAdditions.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/TableAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

#include <algorithm>
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

namespace {

std::optional<QVariantHash> readOne(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                                    const QStringList& fields, bool forUpdate) {
    const ViewDef& def = viewDef(viewId);
    const std::vector<int> columns = indexes(def, fields);
    const std::optional<Row> row = TableAccess(store, def).read(columns, stored(def, key), forUpdate);
    if (!row)
        return std::nullopt;
    return named(def, columns, row->data());
}

PageRequest pageRequest(const ViewDef& def, const QVariantHash& equal, const QStringList& fields,
                        const QStringList& orderBy, const QString& where, int limit) {
    PageRequest request;
    request.limit = limit;
    request.columns = indexes(def, fields);
    request.order = indexes(def, orderBy);
    request.equal = stored(def, equal);
    request.where = where;
    return request;
}

Page readPage(CompanyStore& store, const ViewDef& def, const QVariantHash& equal, const QStringList& fields,
              const QStringList& orderBy, const QString& where, int limit, PageRequest& request) {
    request = pageRequest(def, equal, fields, orderBy, where, limit);
    return TableAccess(store, def).page(request);
}

} // namespace

std::optional<QVariantHash> readRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                                       const QStringList& fields) {
    return readOne(store, viewId, key, fields, false);
}

std::optional<QVariantHash> readRecordForUpdate(CompanyStore& store, const QString& viewId,
                                                const QVariantHash& key, const QStringList& fields) {
    return readOne(store, viewId, key, fields, true);
}

std::vector<QVariantHash> readRecords(CompanyStore& store, const QString& viewId, const QVariantHash& equal,
                                      const QStringList& fields, const QStringList& orderBy,
                                      const QString& where, int limit) {
    const ViewDef& def = viewDef(viewId);
    PageRequest request;
    const Page page = readPage(store, def, equal, fields, orderBy, where, limit, request);
    std::vector<QVariantHash> records;
    for (size_t i = 0; i < page.rows(); ++i)
        records.push_back(named(def, request.columns, page.row(i)));
    return records;
}

void readEachRow(CompanyStore& store, const QString& viewId, const QVariantHash& equal,
                 const QStringList& fields, const QStringList& orderBy, const QString& where,
                 const RowReader& each) {
    const ViewDef& def = viewDef(viewId);
    TableAccess(store, def).each(pageRequest(def, equal, fields, orderBy, where, 0), each);
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

void updateRun(CompanyStore& store, const QString& viewId, const QVariantHash& equal, const QString& field,
               const QVariant& first, const QVariant& last, const QVariantHash& changes,
               const QString& where) {
    const ViewDef& def = viewDef(viewId);
    QStringList assignments;
    QVariantList parameters;
    for (const auto& [index, value] : stored(def, changes)) {
        assignments << quoted(def.fields[size_t(index)].name) + QStringLiteral(" = ?");
        parameters << value;
    }
    QString condition = keyCondition(def, equal, parameters);
    const int ranged = fieldIndex(def, field);
    const FieldDef& rangedDef = def.fields[size_t(ranged)];
    condition += QStringLiteral(" AND %1 BETWEEN ? AND ?").arg(quoted(rangedDef.name));
    parameters << toStorage(rangedDef, first) << toStorage(rangedDef, last);
    if (!where.isEmpty())
        condition += QStringLiteral(" AND (%1)").arg(where);
    QSqlQuery& query = store.statement(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                                           .arg(quoted(def.table), assignments.join(u','), condition));
    store.run(query, parameters);
    query.finish();
}

// Each addition carries its own bound: the row changes only when every sum stays within its field's
// capacity, so the store never computes a sum it cannot hold (SQLite would turn it into a REAL,
// PostgreSQL refuse it as out of range). When the row stays as it was, the record is read to tell a
// missing record from a sum that would not fit.
bool addToRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                 const QVariantHash& amounts) {
    const ViewDef& def = viewDef(viewId);
    FieldValues additions = stored(def, amounts);
    // In the view's order, so that of several sums that would not fit the same one is named every time.
    std::sort(additions.begin(), additions.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    return addStoredAmounts(store, def, stored(def, key), additions);
}

bool addToRecordAtCommit(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                         const QVariantHash& amounts) {
    if (!store.inTransaction())
        return addToRecord(store, viewId, key, amounts);
    const ViewDef& def = viewDef(viewId);
    FieldValues additions = stored(def, amounts);
    std::sort(additions.begin(), additions.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    return store.heldAdditions().add(store, def, stored(def, key), additions);
}

bool addStoredAmounts(CompanyStore& store, const ViewDef& def, const FieldValues& key,
                      const FieldValues& additions) {
    QStringList assignments;
    QStringList bounds;
    QVariantList parameters;
    QVariantList boundParameters;
    for (const auto& [field, value] : additions) {
        const QString column = quoted(def.fields[size_t(field)].name);
        assignments << column + QStringLiteral(" = ") + column + QStringLiteral(" + ?");
        parameters << value;
        // value is within the field's capacity (toStorage saw to that), so neither bound overflows.
        const qint64 add = value.toLongLong();
        const qint64 capacity = storedCapacity(def.fields[size_t(field)]);
        if (add > 0) {
            bounds << column + QStringLiteral(" <= ?");
            boundParameters << qlonglong(capacity - add);
        } else if (add < 0) {
            bounds << column + QStringLiteral(" >= ?");
            boundParameters << qlonglong(-capacity - add);
        }
    }
    QStringList keyTerms;
    for (const auto& [field, value] : key) {
        keyTerms << quoted(def.fields[size_t(field)].name) + QStringLiteral(" = ?");
        parameters << value;
    }
    QString condition = keyTerms.join(QStringLiteral(" AND "));
    parameters << boundParameters;
    if (!bounds.isEmpty())
        condition += QStringLiteral(" AND ") + bounds.join(QStringLiteral(" AND "));
    QSqlQuery& query = store.statement(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                                           .arg(quoted(def.table), assignments.join(u','), condition));
    std::vector<int> columns;
    for (const auto& addition : additions)
        columns.push_back(addition.first);
    // Another till may change the record between the refused update and the read that explains it; the
    // addition is then tried again on what it holds now.
    for (int attempt = 0; attempt < 3; ++attempt) {
        store.run(query, parameters);
        const bool changed = query.numRowsAffected() > 0;
        query.finish();
        if (changed)
            return true;
        if (bounds.isEmpty())
            return false;
        const std::optional<Row> now = TableAccess(store, def).read(columns, key);
        if (!now)
            return false;
        for (size_t k = 0; k < additions.size(); ++k) {
            const FieldDef& field = def.fields[size_t(additions[k].first)];
            const qint64 sum = (*now)[k].toLongLong() + additions[k].second.toLongLong();
            if (!fitsField(field, sum))
                throw InputError(tooLargeMessage(field, formatStored(field, sum)));
        }
    }
    throw storeFailure(
        QStringLiteral("%1: the record kept changing while it was being added to.").arg(def.title));
}

// Added up here, with Money's checked arithmetic, so that no sum can wrap round whatever the store.
Money sumOf(CompanyStore& store, const QString& viewId, const QString& field, const QVariantHash& equal) {
    const ViewDef& def = viewDef(viewId);
    QStringList key;
    for (int f : def.primaryKey().fields)
        key << def.fields[size_t(f)].name;
    Money total;
    for (const QVariantHash& record : readRecords(store, viewId, equal, {field.toUpper()}, key))
        total += moneyOf(record.value(field.toUpper()));
    return total;
}

} // namespace tillbook::engine
