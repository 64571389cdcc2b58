#include "ledger/engine/SavedEntries.h"

#include "ledger/engine/BatchRules.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

const QString Batches = QStringLiteral("AR0041");
const QString Entries = QStringLiteral("AR0042");

// Entries name their payment code CODEPYMTYP, lines CODEPAYM.
QString paymentCode(ViewCore& view) {
    const QString name = view.def().fieldIndex(QStringLiteral("CODEPYMTYP")) >= 0
                             ? QStringLiteral("CODEPYMTYP")
                             : QStringLiteral("CODEPAYM");
    const QString code = textField(view, name);
    return code.isEmpty() ? QStringLiteral("CA") : code;
}

bool isLine(const ViewCore& view) {
    return view.def().fieldIndex(QStringLiteral("CNTLINE")) >= 0;
}

} // namespace

QString entryName(ViewCore& view) {
    const QString entry = QStringLiteral("entry %1 of batch %2")
                              .arg(wholeField(view, QStringLiteral("CNTITEM")))
                              .arg(wholeField(view, QStringLiteral("CNTBTCH")));
    if (!isLine(view))
        return entry;
    return QStringLiteral("line %1 of %2").arg(wholeField(view, QStringLiteral("CNTLINE"))).arg(entry);
}

void requireOpenBatchForChange(ViewCore& view, const QString& what) {
    const qint64 batch = wholeField(view, QStringLiteral("CNTBTCH"));
    const QVariantHash key{{QStringLiteral("CODEPYMTYP"), paymentCode(view)},
                           {QStringLiteral("CNTBTCH"), batch}};
    addToRecord(view.store(), Batches, key, {{QStringLiteral("CNTENTER"), 0}}); // the lock
    const auto stored = readRecord(view.store(), Batches, key, {QStringLiteral("BATCHSTAT")});
    const int status = stored ? stored->value(QStringLiteral("BATCHSTAT")).toInt() : 0;
    if (status != BatchOpen)
        view.errors().fail(QStringLiteral("Batch %1 is %2: %3 can no longer be changed.")
                               .arg(batch)
                               .arg(stored ? batchStatusName(status) : QStringLiteral("missing"), what));
}

void refuseFixedChanges(ViewCore& view, const QSet<QString>& changeable, const QString& what) {
    QStringList names;
    for (int i = 0; i < int(view.def().fields.size()); ++i) {
        const FieldDef& field = view.def().fields[size_t(i)];
        if (view.isDirty(i) && !changeable.contains(field.name) && field.kind != FieldKind::Opaque)
            names << field.name;
    }
    if (names.isEmpty())
        return;
    QVariantHash key;
    for (int field : view.def().primaryKey().fields)
        key.insert(view.def().fields[size_t(field)].name, view.value(field));
    const auto stored = readRecord(view.store(), view.def().id, key, names);
    if (!stored)
        return; // gone: the update itself says so
    for (const QString& name : names) {
        const FieldDef& field = view.def().fields[size_t(view.def().fieldIndex(name))];
        const QVariant now = view.value(name);
        if (toStorage(field, now) == toStorage(field, stored->value(name)))
            continue;
        view.errors().fail(
            QStringLiteral("%1 of saved %2 cannot be changed (from \"%3\" to \"%4\"): the "
                           "batch's totals, the applications and the printed receipt stand on "
                           "it. Enter a new entry instead.")
                .arg(field.label(), what, displayText(field, stored->value(name)), displayText(field, now)));
    }
}

void refuseLineOutsideItsEntry(ViewCore& line) {
    // A line composed with an entry belongs to that entry, whatever its own key fields hold.
    ViewCore* header = line.header();
    ViewCore& keys = header && header->def().id == Entries ? *header : line;
    const qint64 batch = wholeField(keys, QStringLiteral("CNTBTCH"));
    const qint64 item = wholeField(keys, QStringLiteral("CNTITEM"));
    const QVariantHash key{{QStringLiteral("CODEPYMTYP"), paymentCode(keys)},
                           {QStringLiteral("CNTBTCH"), batch},
                           {QStringLiteral("CNTITEM"), item}};
    const QString entry = QStringLiteral("Entry %1 of batch %2").arg(item).arg(batch);
    const QString lines = QStringLiteral("%1 (%2) lines").arg(line.def().title, line.def().id);
    if (!readRecord(line.store(), Entries, key, {QStringLiteral("CNTITEM")}))
        line.errors().fail(QStringLiteral("%1 does not exist: %2 are written with their entry; insert them "
                                          "into a new entry, then insert the entry.")
                               .arg(entry, lines));
    line.errors().fail(QStringLiteral("%1 is saved: %2 cannot be added to it afterwards, as its amounts "
                                      "stand on the lines it was saved with. Enter a new entry instead.")
                           .arg(entry, lines));
}

} // namespace tillbook::engine
