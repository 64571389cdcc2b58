#include "ledger/engine/BatchRules.h"

#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

const QString CashReceipts = QStringLiteral("CA");

void fillDefaults(ViewCore& view) {
    if (textField(view, QStringLiteral("CODEPYMTYP")).isEmpty())
        view.set(QStringLiteral("CODEPYMTYP"), CashReceipts);
    if (!view.value(QStringLiteral("DATEBTCH")).toDate().isValid())
        view.set(QStringLiteral("DATEBTCH"), view.session().sessionDate);
    if (wholeField(view, QStringLiteral("BATCHSTAT")) == 0)
        view.set(QStringLiteral("BATCHSTAT"), int(BatchOpen));
    if (wholeField(view, QStringLiteral("BATCHTYPE")) == 0)
        view.set(QStringLiteral("BATCHTYPE"), 1); // entered at a till
}

} // namespace

QString entryCounter(const QString& paymentCode, qint64 batch) {
    return QStringLiteral("AR0041/%1/%2/entries").arg(paymentCode).arg(batch);
}

void BatchRules::initRecord(ViewCore& view) {
    fillDefaults(view);
}

void BatchRules::beforeInsert(ViewCore& view) {
    fillDefaults(view);
    const QString code = textField(view, QStringLiteral("CODEPYMTYP"));
    // A new batch has no entries whatever was put; its entries bring their count and total.
    view.set(QStringLiteral("CNTENTER"), qlonglong(0));
    view.set(QStringLiteral("AMTENTER"), QVariant::fromValue(Money()));
    view.set(QStringLiteral("CNTLASTITM"), qlonglong(0));
    if (wholeField(view, QStringLiteral("CNTBTCH")) != 0)
        return;
    // Numbers from the company's counter; one a batch imported under that number already holds is skipped.
    // The counter's row is locked until commit; a batch inserted meanwhile under the same number by hand
    // is refused by the primary key.
    for (;;) {
        const qint64 number = view.store().nextNumber(QStringLiteral("AR0041/%1/batches").arg(code));
        if (!readRecord(view.store(), QStringLiteral("AR0041"),
                        {{QStringLiteral("CODEPYMTYP"), code}, {QStringLiteral("CNTBTCH"), number}},
                        {QStringLiteral("CNTBTCH")})) {
            view.set(QStringLiteral("CNTBTCH"), qlonglong(number));
            return;
        }
    }
}

// The status is read for update: a posting cannot begin between this check and the change.
void BatchRules::beforeUpdate(ViewCore& view) {
    const auto stored =
        readRecordForUpdate(view.store(), QStringLiteral("AR0041"),
                            {{QStringLiteral("CODEPYMTYP"), view.value(QStringLiteral("CODEPYMTYP"))},
                             {QStringLiteral("CNTBTCH"), view.value(QStringLiteral("CNTBTCH"))}},
                            {QStringLiteral("BATCHSTAT")});
    const int status = stored ? stored->value(QStringLiteral("BATCHSTAT")).toInt() : 0;
    if (status == BatchPosted)
        view.errors().fail(QStringLiteral("Batch %1 has been posted and can no longer be changed.")
                               .arg(wholeField(view, QStringLiteral("CNTBTCH"))));
    if (status == BatchPosting)
        view.errors().fail(QStringLiteral("Batch %1 is being posted and cannot be changed now.")
                               .arg(wholeField(view, QStringLiteral("CNTBTCH"))));
}

} // namespace tillbook::engine
