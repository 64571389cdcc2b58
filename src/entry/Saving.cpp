// The receipt window: saving the entry through posting, and turning the window over to the saved entry.
#include "entry/ApplyRules.h"
#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "fetching/Batches.h"
#include "fetching/CustomerList.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/FlexGrid.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

namespace tillbook {

void frmCR::mnuFileSave_Click() {
    cmdSave_Click();
}

ReceiptDraft frmCR::receiptDraft() const {
    ReceiptDraft draft;
    draft.kind = TransType() == 1   ? ReceiptKind::Prepayment
                 : TransType() == 2 ? ReceiptKind::Misc
                                    : ReceiptKind::Receipt;
    draft.batch = Desk().CurrentBatch;
    draft.entry = Desk().CurrentEntry;
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
    if (m_saving || EntryLocked())
        return;
    m_saving = true;
    m_entry->setSaveEnabled(false);
    // The amount as the clerk sees it, also when the field has not been left before saving.
    Desk().ReceiptAmount = Strip_Commas(ui->txtAmount->text());

    const ReceiptDraft draft = receiptDraft();
    // Saved as the kind it was keyed in, also when the list has already moved to another mode.
    switch (TransType()) {
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
    for (const PostingProblem& problem : m_lastPosting.problems)
        MsgBox(problem.error.description, problem.critical ? vbOKOnly + vbCritical : vbOKOnly);
    if (m_lastPosting.PostOK)
        m_selection->showSavedEntry(Posted_EntryNumber(Desk()).toInt());
    else
        reloadAfterFailedSave();
    m_saving = false;
}

void frmCR::reloadAfterFailedSave() {
    Desk().EntryDirty = false;
    switch (TransType()) {
    case 0:
        m_grid->Load_OpenDocuments();
        ui->txtUnapplied->setText(ui->txtAmount->text());
        break;
    case 1:
        m_grid->Load_CustomerDocuments();
        // The chosen document is still in txtPrePay: the clerk may save again at once.
        m_entry->setSaveEnabled(true);
        break;
    case 2:
        cmdNewInvoice_Click();
        break;
    default:
        break;
    }
}

} // namespace tillbook
