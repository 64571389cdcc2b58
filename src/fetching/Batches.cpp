#include "fetching/Batches.h"

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"

namespace tillbook {

namespace {

// Moves the batch view onto one batch.
Field& batchField(ReceiptViews& views, const QString& filter, const FieldName& field) {
    views.BatchView->browse(filter, true);
    views.BatchView->fetch();
    return views.BatchView->fields().item(field);
}

} // namespace

QStringList Read_OpenBatches(ReceiptViews& views) {
    QStringList batches;
    views.BatchView->browse(QStringLiteral("(BATCHSTAT=1 and CODEPYMTYP=CA)"), true);
    Field& number = views.BatchView->fields().item(names::BatchNumber);
    while (views.BatchView->fetch())
        batches << number.value().toString();
    return batches;
}

QString Count_BatchEntries(ReceiptViews& views, const QString& batchNumber) {
    return batchField(views, QStringLiteral("(CNTBTCH=") + batchNumber + u')', names::BatchEntries)
        .value()
        .toString();
}

QString Get_BatchTotal(ReceiptViews& views, const QString& batchNumber) {
    const QVariant total =
        batchField(views, QStringLiteral("CNTBTCH=") + batchNumber, names::BatchTotal).value();
    const Money amount = total.canConvert<Money>() ? total.value<Money>() : Strip_Commas(total.toString());
    return FormatAmount(amount.roundedToCentsBankers());
}

QString Get_BatchBank(ReceiptViews& views, const QString& batchNumber) {
    return batchField(views, QStringLiteral("CNTBTCH=") + batchNumber, names::BatchBank).value().toString();
}

qint64 Create_Batch(ReceiptViews& views, const QDate& today) {
    FieldCollection& fields = views.BatchView->fields();
    views.BatchView->init();
    fields.item(names::BatchPaymentType).putWithoutVerification(QStringLiteral("CA"));
    fields.item(names::BatchNumber).putWithoutVerification(QStringLiteral("0"));
    fields.item(names::BatchDescription).setValue(QStringLiteral("ORVA - ") + FormatDateCompact(today));
    views.BatchView->insert();
    return fields.item(names::BatchNumber).value().toLongLong();
}

Warnings Set_BatchBank(ReceiptViews& views, const QString& batchNumber, const QString& bankCode) {
    Warnings warnings = batchField(views, QStringLiteral("CNTBTCH=") + batchNumber, names::BatchBank)
                            .putWithoutVerification(bankCode);
    warnings.entries += views.BatchView->update().entries;
    return warnings;
}

QStringList Load_BankCodes(Session& session) {
    const std::unique_ptr<View> banks = session.openView(names::Banks);
    Field& bank = banks->fields().item(names::BankCode);
    QStringList codes;
    while (banks->fetch())
        codes << bank.value().toString();
    return codes;
}

} // namespace tillbook
