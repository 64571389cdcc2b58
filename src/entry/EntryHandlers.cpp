// The receipt window's handlers of the batch, entry and customer lists, the application grid, the amount and
// date fields and the distribution lines: each reads the controls and hands the work to the part that owns
// it.
#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "fetching/FinderRecords.h"
#include "ledger/Formats.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

namespace tillbook {

// ---- Batches, entries and customers ----

void frmCR::cboBatch_Click() {
    m_selection->chooseBatch();
}

void frmCR::cboBatch_GotFocus() {
    m_selection->batchFocused();
}

void frmCR::cmdNewBatch_Click() {
    m_selection->newBatch();
}

void frmCR::mnuBatchNew_Click() {
    cmdNewBatch_Click();
}

void frmCR::cboEntry_Click() {
    m_selection->chooseEntry([this]() -> std::optional<bool> {
        if (m_entry->Prompt_SaveEntry([this] { cmdSave_Click(); }) != vbYes)
            return std::nullopt;
        return m_lastPosting.PostOK;
    });
}

void frmCR::cboEntry_LostFocus() {
    m_selection->entryLeft();
}

void frmCR::cmdNewEntry_Click() {
    m_selection->newEntry();
}

void frmCR::mnuEntryNew_Click() {
    cmdNewEntry_Click();
}

void frmCR::cboCustomers_Click() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0)
        return;
    m_grid->Set_GridHeaders();
    if (TransType() == KindReceipt) {
        m_selection->Show_CustomerInfo(position);
        if (Strip_Commas(ui->txtAmount->text()) > Money())
            ui->cmdSearch->setEnabled(true);
    } else if (TransType() == KindPrepayment) {
        m_grid->Load_CustomerDocuments();
        m_selection->Show_CustomerInfo(position);
    }
    // What was applied for the customer before is gone with the grid: the new one is offered the whole
    // amount.
    if (TransType() == KindReceipt && Desk().ApplyCount > 0)
        m_grid->forgetApplications();
    Desk().ApplyCount = 0;
}

// ---- The application grid ----

void frmCR::MSFlexGrid1_DblClick() {
    m_grid->chooseDocument();
}

void frmCR::cmdSearch_Click() {
    m_grid->searchDocuments();
}

// ---- The amount and date fields ----

void frmCR::txtAmount_GotFocus() {
    m_amountDate->amountGotFocus();
}

void frmCR::txtAmount_KeyPress(int& keyAscii) {
    m_amountDate->amountKeyPress(keyAscii);
}

void frmCR::txtAmount_LostFocus() {
    m_amountDate->amountLeft(TransType());
}

void frmCR::txtDate_GotFocus() {}

void frmCR::txtDate_Change() {}

void frmCR::txtDate_KeyPress(int& keyAscii) {
    m_amountDate->dateKeyPress(keyAscii);
}

void frmCR::txtDate_KeyUp(int keyCode, int shift) {
    m_amountDate->dateKeyUp(keyCode, shift);
}

void frmCR::txtDate_LostFocus() {
    m_amountDate->dateLeft();
}

// ---- The distribution lines ----

void frmCR::cmdNewInvoice_Click() {
    m_lines->newLine();
}

void frmCR::MSFlexGrid1_EnterCell() {
    m_lines->enterCell();
}

void frmCR::MSFlexGrid1_LeaveCell() {
    m_lines->leaveCell();
}

void frmCR::MSFlexGrid1_Click() {
    m_lines->clickCell();
}

void frmCR::txtFloat_KeyDown(int& keyCode, int shift) {
    m_lines->editorKeyDown(keyCode, shift);
}

void frmCR::txtFloat_Change() {
    m_lines->editorChanged();
}

void frmCR::txtFloat_KeyUp(int keyCode, int) {
    m_lines->editorKeyUp(keyCode);
}

void frmCR::txtDistribution_LostFocus() {
    m_lines->undistributedLeft();
}

void frmCR::cmdDist_Click() {
    m_lines->chooseFromFinder(FinderDistCodes);
}

void frmCR::cmdAccount_Click() {
    m_lines->chooseFromFinder(FinderAccounts);
}

} // namespace tillbook
