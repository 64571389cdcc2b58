#pragma once

// The fields of a receipt-batch view as the engine would describe them: columns are the field names, but for
// ACTIVE, kept in column SWACTV.

#include "ledger/filter/Filter.h"

#include <QHash>

namespace tillbook::filter {

inline FieldResolver receiptView() {
    static const QHash<QString, FieldRef> fields{
        {"CNTBTCH", {"CNTBTCH", FieldType::Decimal, 0}},
        {"CNTITEM", {"CNTITEM", FieldType::Decimal, 0}},
        {"CNTOPENINV", {"CNTOPENINV", FieldType::Decimal, 0}},
        {"BATCHSTAT", {"BATCHSTAT", FieldType::Integer}},
        {"RMITTYPE", {"RMITTYPE", FieldType::Integer}},
        {"CODEPYMTYP", {"CODEPYMTYP", FieldType::Text}},
        {"CODEPAYM", {"CODEPAYM", FieldType::Text}},
        {"IDCUST", {"IDCUST", FieldType::Text}},
        {"ORGID", {"ORGID", FieldType::Text}},
        {"NAMECUST", {"NAMECUST", FieldType::Text}},
        {"ACTIVE", {"SWACTV", FieldType::Boolean}},
        {"AMT", {"AMT", FieldType::Decimal, 3}},
        {"AMTDISC", {"AMTDISC", FieldType::Decimal, 2}},
        {"DATEBTCH", {"DATEBTCH", FieldType::Date}},
        {"DATEDUE", {"DATEDUE", FieldType::Date}},
    };
    return [](const QString& name) -> std::optional<FieldRef> {
        const auto it = fields.constFind(name.toUpper());
        return it == fields.cend() ? std::nullopt : std::optional<FieldRef>(*it);
    };
}

} // namespace tillbook::filter
