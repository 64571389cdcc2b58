#pragma once

#include "entry/ReceiptDesk.h"
#include "entry/ReceiptForm.h"
#include "posting/Posting.h"

#include <QMainWindow>
#include <memory>

namespace tillbook {

struct ReceiptWindowParts;

// The receipt window's fixed size.
constexpr int FormWidthTwips = 10050;
constexpr int FormHeightTwips = 8535;

// The receipt-entry window, where the clerk chooses a batch, an entry and a customer and keys receipts of
// three kinds: receipts applied to open documents, prepayments and miscellaneous receipts. Its handlers read
// the controls and hand the work to the parts that own it: the entry's fields and kind, the amount and date,
// the batch/entry/customer lists, the application grid and the distribution lines.
class frmCR : public QMainWindow {
    Q_OBJECT

public:
    explicit frmCR(QWidget* parent = nullptr);
    ~frmCR() override;

    // Opens the ledger with the signed-in values and the password the clerk typed, and fills the window. On a
    // ledger failure the clerk is told what went wrong and false is returned; the window is then not to be
    // shown.
    bool Form_Load(const QString& password);
    // What the last save met in the ledger: whether the entry is written, and the problems shown.
    const PostingOutcome& LastPosting() const { return m_lastPosting; }
    // The kind of the entry on show (0 receipt, 1 prepayment, 2 miscellaneous), and whether it is a saved
    // entry, locked.
    int TransType() const;
    bool EntryLocked() const;
    // The parts the handlers hand their work to.
    ReceiptWindowParts& Parts() { return *m_parts; }

public slots:
    void cboTransType_Click();
    void mnuTransReceipt_Click();
    void mnuTransPrePay_Click();
    void mnuTransMisc_Click();
    void cmdClose_Click();
    void mnuFileClose_Click();
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();
    void Form_Resize();

    // Printing: the entry on show, its receipt style and the printer.
    void cmdPrint_Click();
    void mnuFilePrint_Click();
    void mnuFileReceipt2V_Click();
    void mnuFileReceipt3V_Click();
    void mnuFileSelectPrinter_Click();

    // Batches, entries and customers.
    void cboBatch_Click();
    void cboBatch_GotFocus();
    void cmdNewBatch_Click();
    void mnuBatchNew_Click();
    void cboEntry_Click();
    void cboEntry_LostFocus();
    void cmdNewEntry_Click();
    void mnuEntryNew_Click();
    void cboCustomers_Click();

    // The application grid and the search.
    void MSFlexGrid1_DblClick();
    void cmdSearch_Click();

    // Saving an entry.
    void cmdSave_Click();
    void mnuFileSave_Click();

    // The amount and date fields.
    void txtAmount_GotFocus();
    void txtAmount_KeyPress(int& keyAscii);
    void txtAmount_LostFocus();
    void txtDate_GotFocus();
    void txtDate_Change();
    void txtDate_KeyPress(int& keyAscii);
    void txtDate_KeyUp(int keyCode, int shift);
    void txtDate_LostFocus();

    // The distribution lines of a miscellaneous receipt and their floating editor.
    void cmdNewInvoice_Click();
    void MSFlexGrid1_EnterCell();
    void MSFlexGrid1_LeaveCell();
    void MSFlexGrid1_Click();
    void txtFloat_KeyDown(int& keyCode, int shift);
    void txtFloat_Change();
    void txtFloat_KeyUp(int keyCode, int shift);
    void txtDistribution_LostFocus();
    void cmdDist_Click();
    void cmdAccount_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectHandlers();
    void connectPrinting();
    // The entry as keyed: what posting writes.
    ReceiptDraft receiptDraft() const;
    // After a failed save: the grid loaded again so that the clerk can correct the entry.
    void reloadAfterFailedSave();

    std::unique_ptr<Ui::frmCR> ui;
    std::unique_ptr<ReceiptWindowParts> m_parts;
    // Short names of the parts for the handlers.
    AmountDateFields* m_amountDate = nullptr;
    EntryFields* m_entry = nullptr;
    ApplicationGrid* m_grid = nullptr;
    EntrySelection* m_selection = nullptr;
    DistributionLines* m_lines = nullptr;
    bool m_closing = false;
    bool m_saving = false; // a save is under way: a second one must not start
    PostingOutcome m_lastPosting;
};

} // namespace tillbook
