#include "entry/EntryFields.h"

#include "entry/AmountDateFields.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

namespace tillbook {

void ReportLedgerError(const QString& what, const QString& description) {
    if (Desk().LedgerSession)
        Desk().LedgerSession->errors().clear();
    MsgBox(what + u'\n' + description, vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Receipt Entry"));
}

EntryFields::EntryFields(QWidget& window, Ui::frmCR& form, AmountDateFields& amountDate)
    : m_window(window), ui(form), m_amountDate(amountDate) {}

void EntryFields::switchKind(int kind) {
    Clear_Entry();
    m_amountDate.forgetAmountOnFocus();
    setModeControls(kind);
    m_transType = kind;
}

void EntryFields::setModeControls(int mode) {
    const bool receipt = mode == KindReceipt;
    const bool prepayment = mode == KindPrepayment;
    const bool misc = mode == KindMisc;

    ui.cmdSearch->setVisible(receipt);
    if (receipt)
        ui.cmdSearch->setEnabled(false);
    if (!misc) {
        // A miscellaneous receipt leaves the unapplied amount and the floating editor as they were.
        ui.lblUnapplied->setVisible(receipt);
        ui.txtUnapplied->setVisible(receipt);
        ui.txtFloat->setVisible(false);
    }
    ui.lblPrePay->setVisible(prepayment);
    ui.txtPrePay->setVisible(prepayment);
    ui.lblPrePayDocNo->setVisible(prepayment);
    ui.txtPrePayDocNo->setVisible(prepayment);
    ui.cboCustomers->setVisible(!misc);
    ui.lblCustomers->setVisible(!misc);
    ui.txtCustInfo->setVisible(!misc);
    ui.lblDistribution->setVisible(misc);
    ui.txtDistribution->setVisible(misc);
    ui.cmdNewInvoice->setVisible(misc);
    ui.cmdDist->setVisible(misc);
    ui.cmdAccount->setVisible(misc);
    if (misc) {
        ui.cmdNewInvoice->setEnabled(false);
        ui.cmdDist->setEnabled(false);
        ui.cmdAccount->setEnabled(false);
        Desk().DistLines = 0;
    }

    if (prepayment)
        m_window.setWindowTitle(QStringLiteral("Tillbook - PrePayment Entry"));
    else if (misc)
        m_window.setWindowTitle(QStringLiteral("Tillbook - Misc. Receipt Entry"));
    else
        m_window.setWindowTitle(QStringLiteral("Tillbook - Receipt Entry"));
}

void EntryFields::Clear_Entry() {
    ui.txtEntDesc->clear();
    ui.cboCustomers->setListIndex(-1);
    ui.txtCustInfo->clear();
    m_amountDate.resetDate(Today());
    ui.txtAmount->clear();
    Desk().DecimalTyped = false;
    ui.txtReceiptNum->clear();
    ui.txtPayer->clear();
    ui.txtUnapplied->clear();
    ui.txtDistribution->clear();
    ui.cmdSearch->setEnabled(false);
    ui.txtPrePayDocNo->clear();
    ui.txtPrePay->clear();
    ui.cmdSave->setEnabled(false);
    ui.mnuFileSave->setEnabled(false);
    ui.cmdPrint->setEnabled(false);
    ui.mnuFilePrint->setEnabled(false);
    ui.txtFloat->clear();
}

int EntryFields::Prompt_SaveEntry(const std::function<void()>& save) {
    if (!Desk().EntryDirty)
        return 0;
    const int answer = MsgBox(QStringLiteral("Do you want to save the current entry?"),
                              vbYesNo + vbExclamation, QStringLiteral("Unsaved Entry"));
    if (answer == vbYes) {
        save();
    } else {
        Desk().EntryDirty = false;
        ui.txtUnapplied->setText(ui.txtAmount->text());
    }
    return answer;
}

void EntryFields::setEntryFieldsEnabled(bool enabled) {
    const QList<QWidget*> fields = {ui.cmdNewInvoice, ui.cmdSearch,       ui.txtEntDesc,    ui.cboTransType,
                                    ui.cboCustomers,  ui.txtCustInfo,     ui.txtAmount,     ui.txtDate,
                                    ui.cboYear,       ui.cboPeriod,       ui.txtReceiptNum, ui.txtPayer,
                                    ui.txtUnapplied,  ui.txtDistribution, ui.txtPrePay,     ui.txtPrePayDocNo,
                                    ui.txtFloat};
    for (QWidget* field : fields)
        field->setEnabled(enabled);
    if (m_transType == KindMisc) {
        // The finders fill a line: none before the first line is started.
        ui.cmdDist->setEnabled(enabled && Desk().DistLines > 0);
        ui.cmdAccount->setEnabled(enabled && Desk().DistLines > 0);
    }
}

void EntryFields::Lock_Entry() {
    setEntryFieldsEnabled(false);
    m_entryLocked = true;
    ui.cmdPrint->setEnabled(true);
}

void EntryFields::Unlock_Entry() {
    setEntryFieldsEnabled(true);
    m_entryLocked = false;
    ui.cmdPrint->setEnabled(false);
}

void EntryFields::lockUntilEntryChosen() {
    Lock_Entry();
    ui.cmdPrint->setEnabled(false);
}

void EntryFields::setSaveEnabled(bool enabled) {
    ui.cmdSave->setEnabled(enabled);
    ui.mnuFileSave->setEnabled(enabled);
}

void EntryFields::setNewEntryEnabled(bool enabled) {
    ui.cmdNewEntry->setEnabled(enabled);
    ui.mnuEntryNew->setEnabled(enabled);
}

} // namespace tillbook
