#include "fetching/Batches.h"

#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"

namespace tillbook {

namespace {

// Moves the batch view onto one batch.
Field& batchField(const QString& filter, const QString& field) {
    BatchView->browse(filter, true);
    BatchView->fetch();
    return BatchView->fields().item(field);
}

} // namespace

QStringList Read_OpenBatches() {
    QStringList batches;
    BatchView->browse(QStringLiteral("(BATCHSTAT=1 and CODEPYMTYP=CA)"), true);
    Field& number = BatchView->fields().item(QStringLiteral("CNTBTCH"));
    while (BatchView->fetch())
        batches << number.value().toString();
    return batches;
}

QString Count_BatchEntries(const QString& batchNumber) {
    return batchField(QStringLiteral("(CNTBTCH=") + batchNumber + u')', QStringLiteral("CNTENTER"))
        .value()
        .toString();
}

QString Get_BatchTotal(const QString& batchNumber) {
    const QVariant total =
        batchField(QStringLiteral("CNTBTCH=") + batchNumber, QStringLiteral("AMTENTER")).value();
    const Money amount = total.canConvert<Money>() ? total.value<Money>() : ValMoney(total.toString());
    return FormatAmount(amount.roundedToCentsBankers());
}

QString Get_BatchBank(const QString& batchNumber) {
    return batchField(QStringLiteral("CNTBTCH=") + batchNumber, QStringLiteral("IDBANK")).value().toString();
}

qint64 Create_Batch(const QDate& today) {
    FieldCollection& fields = BatchView->fields();
    BatchView->init();
    fields.item(QStringLiteral("CODEPYMTYP")).putWithoutVerification(QStringLiteral("CA"));
    fields.item(QStringLiteral("CNTBTCH")).putWithoutVerification(QStringLiteral("0"));
    fields.item(QStringLiteral("BATCHDESC")).setValue(QStringLiteral("ORVA - ") + FormatDateCompact(today));
    BatchView->insert();
    return fields.item(QStringLiteral("CNTBTCH")).value().toLongLong();
}

void Set_BatchBank(const QString& batchNumber, const QString& bankCode) {
    batchField(QStringLiteral("CNTBTCH=") + batchNumber, QStringLiteral("IDBANK"))
        .putWithoutVerification(bankCode);
    BatchView->update();
}

QStringList Load_BankCodes(Session& session) {
    const std::unique_ptr<View> banks = session.openView(QStringLiteral("BK0001"), QStringLiteral("BK"));
    Field& bank = banks->fields().item(QStringLiteral("BANK"));
    QStringList codes;
    while (banks->fetch())
        codes << bank.value().toString();
    return codes;
}

} // namespace tillbook
