#include "fetching/FieldValues.h"

#include "ledger/Formats.h"
#include "ledger/View.h"

namespace tillbook {

QString FieldText(View& view, const QString& field) {
    return VariantText(view.fields().item(field).value());
}

Money FieldMoney(View& view, const QString& field) {
    const QVariant value = view.fields().item(field).value();
    return value.canConvert<Money>() ? value.value<Money>() : ValMoney(value.toString());
}

} // namespace tillbook
