// The receipt window: saving the entry through posting, and turning the window over to the saved entry.
#include "entry/ApplyRules.h"
#include "entry/frmCR.h"
#include "fetching/Batches.h"
#include "fetching/CustomerList.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "settings/Globals.h"
#include "ui/FlexGrid.h"
#include "ui_frmCR.h"

namespace tillbook {

void frmCR::connectSaving() {
    connect(ui->cmdSave, &QPushButton::clicked, this, &frmCR::cmdSave_Click);
    connect(ui->mnuFileSave, &QAction::triggered, this, &frmCR::mnuFileSave_Click);
}

void frmCR::mnuFileSave_Click() {
    cmdSave_Click();
}

PostingInput frmCR::postingInput() const {
    PostingInput input;
    input.batch = CurrentBatch;
    input.entry = CurrentEntry;
    const int customer = ui->cboCustomers->ListIndex();
    if (customer >= 0 && customer < static_cast<int>(Customers.size()))
        input.customer = Customers[static_cast<size_t>(customer)].Id;
    input.txtEntDesc = ui->txtEntDesc->text();
    input.txtDate = ui->txtDate->text();
    input.txtReceiptNum = ui->txtReceiptNum->text();
    input.cboPeriod = ui->cboPeriod->currentText();
    input.cboYear = ui->cboYear->currentText();
    input.txtPayer = ui->txtPayer->text();
    input.txtAmount = ui->txtAmount->text();
    input.txtPrePay = ui->txtPrePay->text();
    input.receiptAmount = ReceiptAmount;
    input.applyKeys.assign(ApplyKeys.begin(),
                           ApplyKeys.begin() + std::min<qsizetype>(ApplyCount, ApplyKeys.size()));
    input.row = ui->MSFlexGrid1->Row();
    const FlexGrid* grid = ui->MSFlexGrid1;
    for (int row = 1; row <= DistLines && row < grid->Rows(); ++row)
        input.distributions.push_back({grid->TextMatrix(row, 0), grid->TextMatrix(row, 1),
                                       grid->TextMatrix(row, 2), grid->TextMatrix(row, 3),
                                       grid->TextMatrix(row, 4)});
    return input;
}

void frmCR::cmdSave_Click() {
    // One save at a time, and never of an entry that is already in the ledger: a second click, a held Enter
    // or a message box shown while posting cannot write the entry twice.
    if (m_saving || m_entryLocked)
        return;
    m_saving = true;
    setSaveEnabled(false);
    // The amount as the clerk sees it, also when the field has not been left before saving.
    ReceiptAmount = Strip_Commas(ui->txtAmount->text());

    PostOK = true;
    const PostingInput input = postingInput();
    // Saved as the kind it was keyed in, also when the list has already moved to another mode.
    switch (m_transType) {
    case 0:
        Post_Receipt(input);
        ApplyCount = 0;
        AppliedRows{ApplyKeys, AppliedMarks}.reset();
        break;
    case 1: {
        QString documentNumber = ui->txtPrePayDocNo->text();
        Post_Prepayment(input, documentNumber);
        ui->txtPrePayDocNo->setText(documentNumber);
        break;
    }
    case 2:
        Post_MiscReceipt(input);
        break;
    default:
        break;
    }

    if (PostOK)
        showSavedEntry();
    else
        reloadAfterFailedSave();
    m_saving = false;
}

void frmCR::showSavedEntry() {
    // Read first: the batch's figures are read through views of their own, the entry's number from the one
    // that wrote it.
    const int saved = Int16Of(Posted_EntryNumber());
    QString entries;
    try {
        entries = Count_BatchEntries(CurrentBatch);
        ui->txtBatchEntries->setText(QStringLiteral("Entries:  ") + entries);
        ui->txtBatchTotal->setText(QStringLiteral("Total:  ") + Get_BatchTotal(CurrentBatch));
    } catch (const LedgerError& error) {
        reportLedgerError(
            QStringLiteral("The entry is saved, but batch %1 could not be read again.").arg(CurrentBatch),
            error.description());
    }
    CurrentEntry = QString::number(Int16Of(CurrentEntry) + 1);
    if (!EntryIsNew.empty())
        EntryIsNew.back() = false;
    EntryDirty = false;
    setNewEntryEnabled(true);
    ui->cmdPrint->setEnabled(true);
    ui->mnuFilePrint->setEnabled(true);
    setSaveEnabled(false);
    if (!entries.isEmpty())
        Load_EntryList(Int16Of(entries));
    // Choosing the saved entry, by the number the ledger gave it (other tills may have added entries to the
    // batch meanwhile), reads it back from the ledger, locked and ready to print.
    ui->cboEntry->setListIndex(saved > 0 ? saved - 1 : Int16Of(CurrentEntry) - 2);
    if (m_transType == 1)
        ui->MSFlexGrid1->setVisible(false);
}

void frmCR::reloadAfterFailedSave() {
    EntryDirty = false;
    switch (m_transType) {
    case 0:
        Load_OpenDocuments();
        ui->txtUnapplied->setText(ui->txtAmount->text());
        break;
    case 1:
        Load_CustomerDocuments();
        // The chosen document is still in txtPrePay: the clerk may save again at once.
        setSaveEnabled(true);
        break;
    case 2:
        cmdNewInvoice_Click();
        break;
    default:
        break;
    }
}

} // namespace tillbook
