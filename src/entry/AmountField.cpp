// The receipt window: the amount field, and the remaining amount that follows it.
#include "entry/AmountKeys.h"
#include "entry/frmCR.h"
#include "ledger/Formats.h"
#include "settings/Globals.h"
#include "ui/Events.h"
#include "ui_frmCR.h"

namespace tillbook {

void frmCR::connectAmountAndDate() {
    onGotFocus(ui->txtAmount, [this] { txtAmount_GotFocus(); });
    onKeyPress(ui->txtAmount, [this](int& keyAscii) { txtAmount_KeyPress(keyAscii); });
    onLostFocus(ui->txtAmount, [this] { txtAmount_LostFocus(); });

    // The date is keyed only: a paste from the context menu or a drop would go round its mask.
    ui->txtDate->setContextMenuPolicy(Qt::NoContextMenu);
    ui->txtDate->setAcceptDrops(false);
    onGotFocus(ui->txtDate, [this] { txtDate_GotFocus(); });
    connect(ui->txtDate, &QLineEdit::textChanged, this, &frmCR::txtDate_Change);
    onKeyPress(ui->txtDate, [this](int& keyAscii) { txtDate_KeyPress(keyAscii); });
    onKeyUp(ui->txtDate, [this](int keyCode, int shift) { txtDate_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtDate, [this] { txtDate_LostFocus(); });
}

void frmCR::txtAmount_GotFocus() {
    m_amountOnFocus = Strip_Commas(ui->txtAmount->text());
}

void frmCR::txtAmount_KeyPress(int& keyAscii) {
    keyAscii = FilterAmountKey(keyAscii, ui->txtAmount->text(), DecimalTyped);
    // A changed amount must be applied again before a receipt is saved; a prepayment's pick stands.
    const bool prepaymentPicked = !ui->txtPrePay->text().isEmpty();
    ui->cmdSave->setEnabled(prepaymentPicked);
    ui->mnuFileSave->setEnabled(prepaymentPicked);
}

QString frmCR::Adjust_Remaining(bool distribution) {
    const Money amount = Strip_Commas(ui->txtAmount->text());
    const Money remaining = Strip_Commas((distribution ? ui->txtDistribution : ui->txtUnapplied)->text());
    return FormatAmount(AdjustedRemaining(amount, m_amountOnFocus, remaining));
}

void frmCR::txtAmount_LostFocus() {
    const Money amount = Strip_Commas(ui->txtAmount->text());
    ReceiptAmount = amount;
    if (m_transType == 0) {
        ui->txtUnapplied->setText(Adjust_Remaining(false));
        if (ui->cboCustomers->ListIndex() >= 0)
            ui->cmdSearch->setEnabled(true);
    } else if (m_transType == 2) {
        ui->txtDistribution->setText(Adjust_Remaining(true));
        ui->cmdNewInvoice->setEnabled(true);
    }
    ui->txtAmount->setText(FormatAmount(amount));
    if (ui->txtAmount->text() == u"0.00" || ui->txtAmount->text().isEmpty()) {
        ui->txtAmount->setText(QStringLiteral("0.00"));
        ui->cmdSave->setEnabled(false);
        ui->mnuFileSave->setEnabled(false);
        ui->cmdNewInvoice->setEnabled(false);
        ui->cmdSearch->setEnabled(false);
    }
}

} // namespace tillbook
