#include "ledger/engine/PostedTotalsRules.h"

#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

// A new record has no documents yet: its figures start at nothing and follow the documents loaded for it.
void PostedTotalsRules::beforeInsert(ViewCore& view) {
    for (const QString& name : m_kept) {
        const int index = view.def().fieldIndex(name);
        const FieldDef& field = view.def().fields[size_t(index)];
        if (toStorage(field, view.value(index)).toLongLong() != 0)
            view.errors().fail(
                QStringLiteral(
                    "%1 of new %2 record \"%3\" is kept by the ledger from its documents and starts at "
                    "0, not %4; load documents and what is due on them with tillbook-ledger import.")
                    .arg(field.label(), view.def().title, textField(view, view.def().fields.front().name),
                         displayText(field, view.value(index))));
    }
}

void PostedTotalsRules::beforeUpdate(ViewCore& view) {
    QStringList changed;
    for (const QString& name : m_kept)
        if (view.isDirty(view.def().fieldIndex(name)))
            changed << name;
    if (changed.isEmpty())
        return;
    QVariantHash key;
    QStringList shownKey;
    for (int field : view.def().primaryKey().fields) {
        key.insert(view.def().fields[size_t(field)].name, view.value(field));
        shownKey << displayText(view.def().fields[size_t(field)], view.value(field));
    }
    const auto stored = readRecord(view.store(), view.def().id, key, changed);
    if (!stored)
        return; // the update says the record is gone
    for (const QString& name : changed) {
        const FieldDef& field = view.def().fields[size_t(view.def().fieldIndex(name))];
        if (toStorage(field, view.value(name)) != toStorage(field, stored->value(name)))
            view.errors().fail(
                QStringLiteral("%1 of %2 record \"%3\" is kept by posting and cannot be put by "
                               "hand (it is %4).")
                    .arg(field.label(), view.def().title, shownKey.join(QStringLiteral(", ")),
                         displayText(field, stored->value(name))));
    }
}

QStringList customerFigures() {
    return {QStringLiteral("AMTBALDUET"), QStringLiteral("AMTBALDUEH"), QStringLiteral("CNTOPENINV"),
            QStringLiteral("CNTINVPAID"), QStringLiteral("CNTPPDINVC"), QStringLiteral("AMTPPDINVT"),
            QStringLiteral("AMTPPDINVH")};
}

std::unique_ptr<ViewRules> PostedTotalsRules::forCustomers() {
    return std::make_unique<PostedTotalsRules>(customerFigures());
}

} // namespace tillbook::engine
