#pragma once

// What the filter tests share: the fields of a receipt-batch view as the engine would describe them (columns
// are the field names, but for ACTIVE, kept in column SWACTV), and ways to make filters at the limits.

#include "ledger/filter/Filter.h"

#include <QHash>
#include <QStringList>
#include <QThread>
#include <functional>
#include <memory>

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

// Runs `work` on a thread with a 1 MB stack, as a Windows main thread has: no filter may need more.
inline void onSmallStack(const std::function<void()>& work) {
    std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(1024 * 1024);
    thread->start();
    thread->wait();
}

// `n` pieces joined, for filters at and beyond the limits.
inline QString times(int n, const QString& piece, const QString& separator = {}) {
    return QStringList(n, piece).join(separator);
}

// A OR B AND C OR B AND C ...: each AND after an OR brackets everything before it.
inline QString impliedBrackets(int depth) {
    return "CNTBTCH=1" + times(depth, " OR CNTBTCH=2 AND CNTITEM=3");
}

} // namespace tillbook::filter
