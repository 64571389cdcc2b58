#include "ledger/engine/BatchRules.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ValueCodec.h"
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

// Kept by the ledger from the batch's entries and its posting.
const QStringList KeptFields{QStringLiteral("CNTENTER"), QStringLiteral("AMTENTER"),
                             QStringLiteral("CNTLASTITM"), QStringLiteral("POSTSEQNBR")};

// A clerk opens a batch, readies it for posting or deletes it; Posted and Post In Progress are the
// posting's own.
bool isStatusOfClerks(int status) {
    return status == BatchOpen || status == BatchReady || status == BatchDeleted;
}

QString postingOnly(int status) {
    return QStringLiteral("Batch Status \"%1\" (%2) is set only by posting the batch.")
        .arg(status)
        .arg(batchStatusName(status));
}

} // namespace

QString batchStatusName(int status) {
    switch (status) {
    case BatchOpen:
        return QStringLiteral("Open");
    case BatchPosted:
        return QStringLiteral("Posted");
    case BatchDeleted:
        return QStringLiteral("Deleted");
    case BatchPosting:
        return QStringLiteral("Post In Progress");
    case BatchReady:
        return QStringLiteral("Ready To Post");
    default:
        return QString::number(status);
    }
}

QString entryCounter(const QString& paymentCode, qint64 batch) {
    return QStringLiteral("AR0041/%1/%2/entries").arg(paymentCode).arg(batch);
}

void BatchRules::initRecord(ViewCore& view) {
    fillDefaults(view);
}

void BatchRules::checkPut(ViewCore& view, int field, const QVariant& value) {
    ViewRules::checkPut(view, field, value);
    if (view.def().fields[size_t(field)].name == QLatin1String("BATCHSTAT") &&
        (value.toInt() == BatchPosted || value.toInt() == BatchPosting))
        view.errors().fail(postingOnly(value.toInt()));
}

void BatchRules::afterInsert(ViewCore& view) {
    auditBatchCreated(view.store(), view.session().user, textField(view, QStringLiteral("CODEPYMTYP")),
                      wholeField(view, QStringLiteral("CNTBTCH")));
}

void BatchRules::beforeInsert(ViewCore& view) {
    fillDefaults(view);
    const int status = int(wholeField(view, QStringLiteral("BATCHSTAT")));
    if (status != BatchOpen && status != BatchReady)
        view.errors().fail(
            QStringLiteral("A new batch starts Open or Ready To Post, not %1.").arg(batchStatusName(status)));
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
    const qint64 batch = wholeField(view, QStringLiteral("CNTBTCH"));
    const QVariantHash key{{QStringLiteral("CODEPYMTYP"), view.value(QStringLiteral("CODEPYMTYP"))},
                           {QStringLiteral("CNTBTCH"), batch}};
    QStringList fields = KeptFields;
    fields << QStringLiteral("BATCHSTAT");
    const auto stored = readRecordForUpdate(view.store(), QStringLiteral("AR0041"), key, fields);
    if (!stored)
        return; // the update says the record is gone
    const int status = stored->value(QStringLiteral("BATCHSTAT")).toInt();
    if (status == BatchPosted)
        view.errors().fail(
            QStringLiteral("Batch %1 has been posted and can no longer be changed.").arg(batch));
    if (status == BatchPosting)
        view.errors().fail(QStringLiteral("Batch %1 is being posted and cannot be changed now.").arg(batch));
    if (status != BatchOpen && status != BatchReady)
        view.errors().fail(QStringLiteral("Batch %1 is %2 and can no longer be changed.")
                               .arg(batch)
                               .arg(batchStatusName(status)));
    const int wanted = int(wholeField(view, QStringLiteral("BATCHSTAT")));
    if (wanted != status) {
        if (wanted == BatchPosted || wanted == BatchPosting)
            view.errors().fail(postingOnly(wanted));
        if (!isStatusOfClerks(wanted))
            view.errors().fail(QStringLiteral("Batch Status \"%1\" is not a status of a batch.").arg(wanted));
    }
    for (const QString& name : KeptFields) {
        const int index = view.def().fieldIndex(name);
        const FieldDef& field = view.def().fields[size_t(index)];
        if (view.isDirty(index) &&
            toStorage(field, view.value(index)) != toStorage(field, stored->value(name)))
            view.errors().fail(
                QStringLiteral("%1 of batch %2 is kept by the ledger and cannot be put by hand "
                               "(it is %3).")
                    .arg(field.label())
                    .arg(batch)
                    .arg(displayText(field, stored->value(name))));
    }
}

} // namespace tillbook::engine
