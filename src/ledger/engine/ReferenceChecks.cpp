#include "ledger/engine/ReferenceChecks.h"

#include "ledger/engine/TableAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

// A fiscal period exists when its year does and it is one of that year's periods.
void checkPeriod(ViewCore& view, const FieldDef& field, const QVariant& value) {
    const ViewDef& calendars = *Schema::instance().view(QStringLiteral("CS0002"));
    const int yearField = view.def().fieldIndex(QStringLiteral("FISCYR"));
    const QString year = yearField >= 0 ? view.value(yearField).toString() : QString();
    const int period = value.toString().toInt();
    if (year.isEmpty()) {
        if (period < 1 || period > 13)
            view.errors().fail(
                QStringLiteral("%1 \"%2\" does not exist.").arg(field.label(), value.toString()));
        return;
    }
    TableAccess table(view.store(), calendars);
    const auto row = table.read({calendars.fieldIndex(QStringLiteral("PERIODS"))},
                                {{calendars.fieldIndex(QStringLiteral("FSCYEAR")), year}});
    if (!row || period < 1 || period > row->front().toInt())
        view.errors().fail(QStringLiteral("%1 \"%2\" does not exist in fiscal year %3.")
                               .arg(field.label(), value.toString(), year));
}

} // namespace

void checkReference(ViewCore& view, int fieldIndex, const QVariant& value) {
    const FieldDef& field = view.def().fields[size_t(fieldIndex)];
    if (field.referencedView.isEmpty() || displayText(field, value).isEmpty())
        return;
    if (field.name == QLatin1String("FISCPER")) {
        checkPeriod(view, field, value);
        return;
    }
    const ViewDef* target = Schema::instance().view(field.referencedView);
    if (!target)
        return;
    std::vector<int> candidates{target->primaryKey().fields.front()};
    // Accounts are typed formatted ("4000-100") or not ("4000100"); either names the account.
    const int formatted = target->fieldIndex(QStringLiteral("ACCTFMTTD"));
    if (formatted >= 0)
        candidates.push_back(formatted);
    TableAccess table(view.store(), *target);
    if (!table.exists(candidates, toStorage(target->fields[size_t(candidates.front())], value)))
        view.errors().fail(
            QStringLiteral("%1 \"%2\" does not exist.").arg(field.label(), displayText(field, value)));
}

} // namespace tillbook::engine
