#pragma once

// A view field's current value as the forms use it: text (amounts without trailing zeros, dates in the short
// date form) or exact money.

#include "ledger/LedgerNames.h"
#include "ledger/Money.h"

#include <QString>

namespace tillbook {

class View;

QString FieldText(View& view, const QString& field);
Money FieldMoney(View& view, const QString& field);
QString FieldText(View& view, const FieldName& field);
Money FieldMoney(View& view, const FieldName& field);

} // namespace tillbook
