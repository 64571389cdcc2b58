#include "fetching/FieldValues.h"

#include "ledger/Formats.h"
#include "ledger/View.h"

namespace tillbook {

namespace {

template <typename Name> QString textOf(View& view, const Name& field) {
    return VariantText(view.fields().item(field).value());
}

template <typename Name> Money moneyOf(View& view, const Name& field) {
    const QVariant value = view.fields().item(field).value();
    return value.canConvert<Money>() ? value.value<Money>() : Strip_Commas(value.toString());
}

} // namespace

QString FieldText(View& view, const QString& field) {
    return textOf(view, field);
}
Money FieldMoney(View& view, const QString& field) {
    return moneyOf(view, field);
}
QString FieldText(View& view, const FieldName& field) {
    return textOf(view, field);
}
Money FieldMoney(View& view, const FieldName& field) {
    return moneyOf(view, field);
}

} // namespace tillbook
