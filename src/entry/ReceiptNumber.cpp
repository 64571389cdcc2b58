// The receipt window: the receipt number of a new entry, as the first distribution line makes it.
#include "entry/frmCR.h"
#include "ledger/Formats.h"
#include "settings/Globals.h"
#include "ui_frmCR.h"

namespace tillbook {

namespace {

// Batch "0000", entry "000" and the date "yyyymmdd", joined by "-".
QString receiptNumberText(const QString& batch, const QString& entry, const QDate& date) {
    const auto whole = [](const QString& number) { return static_cast<std::int64_t>(Val(number)); };
    return FormatDigits(whole(batch), 4) + u'-' + FormatDigits(whole(entry), 3) + u'-' +
           FormatDateCompact(date);
}

} // namespace

void frmCR::Make_ReceiptNumber() {
    ui->txtReceiptNum->setText(receiptNumberText(CurrentBatch, CurrentEntry, Today()));
}

} // namespace tillbook
