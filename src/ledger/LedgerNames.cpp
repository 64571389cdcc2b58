#include "ledger/LedgerNames.h"

#include "ledger/LedgerError.h"
#include "ledger/engine/Schema.h"

namespace tillbook {

std::vector<ViewName> ledgerViewNames() {
#define TILLBOOK_VIEW(constant, id) names::constant,
    return {TILLBOOK_LEDGER_VIEWS(TILLBOOK_VIEW)};
#undef TILLBOOK_VIEW
}

std::vector<FieldName> ledgerFieldNames() {
#define TILLBOOK_FIELD(constant, view, name) names::constant,
    return {TILLBOOK_LEDGER_FIELDS(TILLBOOK_FIELD)};
#undef TILLBOOK_FIELD
}

QStringList unknownLedgerNames(const std::vector<ViewName>& views, const std::vector<FieldName>& fields) {
    const engine::Schema& schema = engine::Schema::instance();
    QStringList unknown;
    for (const ViewName& view : views)
        if (!schema.view(view.text()))
            unknown << QStringLiteral("view %1").arg(view.text());
    for (const FieldName& field : fields) {
        const engine::ViewDef* view = schema.view(field.view.text());
        // Exactly as spelt: a constant is the stored name, not a spelling a caller may use.
        if (!view || !view->byUpperName.contains(field.text()))
            unknown << QStringLiteral("field %1.%2").arg(field.view.text(), field.text());
    }
    return unknown;
}

void checkLedgerNames() {
    const QStringList unknown = unknownLedgerNames(ledgerViewNames(), ledgerFieldNames());
    if (!unknown.isEmpty())
        throw ProgrammingError(
            QStringLiteral("The schema has no %1.").arg(unknown.join(QStringLiteral(", "))));
}

} // namespace tillbook
