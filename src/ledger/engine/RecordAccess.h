#pragma once

// Records of other views as the rules of a view need them: read, write and add to a record by its key,
// with field names and callers' values (Money, QDate, QString, integers). Runs inside the caller's
// transaction when there is one.

#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Schema.h"
#include "ledger/engine/TableAccess.h"

#include <QVariantHash>
#include <optional>
#include <vector>

namespace tillbook::engine {

class ViewCore;

const ViewDef& viewDef(const QString& viewId);

// The open view of `viewId` that `view` is composed with (directly, as header or detail), or nullptr.
ViewCore* composedView(ViewCore& view, const QString& viewId);

Money moneyOf(const QVariant& value);
Money moneyField(ViewCore& view, const QString& field);
qint64 wholeField(ViewCore& view, const QString& field);
QString textField(ViewCore& view, const QString& field);

// The named fields of the record whose key fields equal `key`; nothing when there is none.
std::optional<QVariantHash> readRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                                       const QStringList& fields);
// The same, locked until the caller's transaction ends, for a write that depends on what was read
// (SELECT ... FOR UPDATE where the store locks rows; under SQLite's write lock a plain read).
std::optional<QVariantHash> readRecordForUpdate(CompanyStore& store, const QString& viewId,
                                                const QVariantHash& key, const QStringList& fields);
// Every record matching `equal` (and the SQL condition `where`, of this folder's own making), in the order
// of `orderBy`; the first `limit` of them when it is above 0.
std::vector<QVariantHash> readRecords(CompanyStore& store, const QString& viewId, const QVariantHash& equal,
                                      const QStringList& fields, const QStringList& orderBy,
                                      const QString& where = QString(), int limit = 0);
// As readRecords, each record handed to `each` as the store holds it, its values in the order of `fields`
// (see ValueCodec: storedMoney, storedDate): for a reader that decodes it straight into its own values.
void readEachRow(CompanyStore& store, const QString& viewId, const QVariantHash& equal,
                 const QStringList& fields, const QStringList& orderBy, const QString& where,
                 const RowReader& each);
// A new record: the fields given, every other one its default.
void insertRecord(CompanyStore& store, const QString& viewId, const QVariantHash& values);
bool updateRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                  const QVariantHash& changes);
// Changes `changes` in every record matching `equal` whose `field` lies from `first` to `last` and that
// matches the SQL condition `where` (of this folder's own making): one statement for a run of records.
void updateRun(CompanyStore& store, const QString& viewId, const QVariantHash& equal, const QString& field,
               const QVariant& first, const QVariant& last, const QVariantHash& changes,
               const QString& where);
// Adds `amounts` to numeric fields in one statement, so that tills adding at once never lose an addition.
bool addToRecord(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                 const QVariantHash& amounts);
// As addToRecord, in the view's stored values, the additions in field order.
bool addStoredAmounts(CompanyStore& store, const ViewDef& def, const FieldValues& key,
                      const FieldValues& additions);
// As addToRecord, but inside a transaction the additions are held and written once a record before the
// commit (see HeldAdditions): for figures that many writes of one transaction move.
bool addToRecordAtCommit(CompanyStore& store, const QString& viewId, const QVariantHash& key,
                         const QVariantHash& amounts);
// The sum of a numeric field over the records matching `equal`.
Money sumOf(CompanyStore& store, const QString& viewId, const QString& field, const QVariantHash& equal);

} // namespace tillbook::engine
