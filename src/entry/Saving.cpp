// The receipt window: saving the entry through posting, and turning the window over to the saved entry.
#include "entry/ApplyRules.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "fetching/Batches.h"
#include "fetching/CustomerList.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/FlexGrid.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

namespace tillbook {

void frmCR::connectSaving() {
    connect(ui->cmdSave, &QPushButton::clicked, this, &frmCR::cmdSave_Click);
    connect(ui->mnuFileSave, &QAction::triggered, this, &frmCR::mnuFileSave_Click);
}

void frmCR::mnuFileSave_Click() {
    cmdSave_Click();
}

ReceiptDraft frmCR::receiptDraft() const {
    ReceiptDraft draft;
    draft.kind = m_transType == 1   ? ReceiptKind::Prepayment
                 : m_transType == 2 ? ReceiptKind::Misc
                                    : ReceiptKind::Receipt;
    draft.batch = Desk().CurrentBatch.toInt();
    draft.entry = Desk().CurrentEntry.toInt();
    const int customer = ui->cboCustomers->ListIndex();
    if (draft.kind != ReceiptKind::Misc && customer >= 0 &&
        customer < static_cast<int>(Desk().Customers.size()))
        draft.customer = Desk().Customers[static_cast<size_t>(customer)].Id;
    draft.amount = Desk().ReceiptAmount;
    draft.receiptDate = ParseShortDate(ui->txtDate->text());
    if (!draft.receiptDate.isValid())
        draft.receiptDateTyped = ui->txtDate->text();
    draft.fiscalYear = ui->cboYear->currentText().trimmed().toInt();
    draft.fiscalPeriod = ui->cboPeriod->currentText().trimmed().toInt();
    draft.receiptNumber = ui->txtReceiptNum->text();
    draft.payer = ui->txtPayer->text();
    draft.description = ui->txtEntDesc->text();
    switch (draft.kind) {
    case ReceiptKind::Receipt:
        draft.applyKeys.assign(Desk().ApplyKeys.begin(),
                               Desk().ApplyKeys.begin() +
                                   std::min<qsizetype>(Desk().ApplyCount, Desk().ApplyKeys.size()));
        break;
    case ReceiptKind::Prepayment:
        draft.prepaidDocument = ui->txtPrePay->text();
        draft.prepaymentLine = ui->MSFlexGrid1->Row();
        break;
    case ReceiptKind::Misc: {
        const FlexGrid* grid = ui->MSFlexGrid1;
        for (int row = 1; row <= Desk().DistLines && row < grid->Rows(); ++row)
            draft.distributions.push_back({grid->TextMatrix(row, 0), grid->TextMatrix(row, 1),
                                           Strip_Commas(grid->TextMatrix(row, 2)), grid->TextMatrix(row, 3),
                                           grid->TextMatrix(row, 4)});
        break;
    }
    }
    return draft;
}

void frmCR::cmdSave_Click() {
    // One save at a time, and never of an entry that is already in the ledger: a second click, a held Enter
    // or a message box shown while posting cannot write the entry twice.
    if (m_saving || m_entryLocked)
        return;
    m_saving = true;
    setSaveEnabled(false);
    // The amount as the clerk sees it, also when the field has not been left before saving.
    Desk().ReceiptAmount = Strip_Commas(ui->txtAmount->text());

    const ReceiptDraft draft = receiptDraft();
    // Saved as the kind it was keyed in, also when the list has already moved to another mode.
    switch (m_transType) {
    case 0:
        m_lastPosting = Post_Receipt(Desk(), draft);
        Desk().ApplyCount = 0;
        AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.reset();
        break;
    case 1:
        m_lastPosting = Post_Prepayment(Desk(), draft);
        if (m_lastPosting.PostOK)
            ui->txtPrePayDocNo->setText(m_lastPosting.prepaymentNumber);
        break;
    case 2:
        m_lastPosting = Post_MiscReceipt(Desk(), draft);
        break;
    default:
        m_lastPosting = PostingOutcome();
        break;
    }
    showPostingProblems(m_lastPosting);
    if (m_lastPosting.PostOK)
        showSavedEntry();
    else
        reloadAfterFailedSave();
    m_saving = false;
}

void frmCR::showPostingProblems(const PostingOutcome& outcome) {
    for (const PostingProblem& problem : outcome.problems)
        MsgBox(problem.error.description, problem.critical ? vbOKOnly + vbCritical : vbOKOnly);
}

void frmCR::showSavedEntry() {
    // Read first: the batch's figures are read through views of their own, the entry's number from the one
    // that wrote it.
    const int saved = Int16Of(Posted_EntryNumber(Desk()));
    QString entries;
    try {
        entries = Count_BatchEntries(Desk(), Desk().CurrentBatch);
        ui->txtBatchEntries->setText(QStringLiteral("Entries:  ") + entries);
        ui->txtBatchTotal->setText(QStringLiteral("Total:  ") + Get_BatchTotal(Desk(), Desk().CurrentBatch));
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The entry is saved, but batch %1 could not be read again.")
                              .arg(Desk().CurrentBatch),
                          error.description());
    }
    Desk().CurrentEntry = QString::number(Int16Of(Desk().CurrentEntry) + 1);
    if (!Desk().EntryIsNew.empty())
        Desk().EntryIsNew.back() = false;
    Desk().EntryDirty = false;
    setNewEntryEnabled(true);
    ui->cmdPrint->setEnabled(true);
    ui->mnuFilePrint->setEnabled(true);
    setSaveEnabled(false);
    if (!entries.isEmpty())
        Load_EntryList(Int16Of(entries));
    // Choosing the saved entry, by the number the ledger gave it (other tills may have added entries to the
    // batch meanwhile), reads it back from the ledger, locked and ready to print.
    ui->cboEntry->setListIndex(saved > 0 ? saved - 1 : Int16Of(Desk().CurrentEntry) - 2);
    if (m_transType == 1)
        ui->MSFlexGrid1->setVisible(false);
}

void frmCR::reloadAfterFailedSave() {
    Desk().EntryDirty = false;
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
