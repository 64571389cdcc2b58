#pragma once

#include "entry/DistributionRules.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Money.h"
#include "posting/Posting.h"

#include <QMainWindow>
#include <QStringList>
#include <memory>
#include <vector>

namespace Ui {
class frmCR;
}

namespace tillbook {

class View;

// The receipt window's fixed size.
constexpr int FormWidthTwips = 10050;
constexpr int FormHeightTwips = 8535;

// The receipt-entry window, where the clerk chooses a batch, an entry and a customer and keys receipts of
// three kinds: receipts applied to open documents, prepayments and miscellaneous receipts.
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

    int TransType() const { return m_transType; }
    bool EntryLocked() const { return m_entryLocked; }
    QString DateMask() const { return m_dateMask; }

public slots:
    void cboTransType_Click();
    void mnuTransReceipt_Click();
    void mnuTransPrePay_Click();
    void mnuTransMisc_Click();
    void cmdClose_Click();
    void mnuFileClose_Click();
    void cmdSave_Click();
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();
    void Form_Resize();

    void Clear_Entry();
    // The unsaved-entry question; returns the answer (vbYes, vbNo), or 0 when there was nothing to ask.
    int Prompt_SaveEntry();

    // ---- Printing: the entry on show, its receipt style and the printer ----
    void cmdPrint_Click();
    void mnuFilePrint_Click();
    void mnuFileReceipt2V_Click();
    void mnuFileReceipt3V_Click();
    void mnuFileSelectPrinter_Click();

private:
    void connectPrinting();

public slots:
    // ---- end of printing ----

    // The customer list.
    void Load_Customers();
    void Fill_CustomerCombo(int count);
    void Select_Customer(const QString& customerNumber, int receiptType);

    // The grid's column sets and loaders.
    void Set_GridHeaders();
    void Load_OpenDocuments();
    void Load_CustomerDocuments();
    void Add_GridRow(const QStringList& values, int row, int lastColumn, int kind);
    bool Is_GridCellEmpty(int row, int column) const;

    // The fiscal year and period lists for a date.
    void Load_FiscalYears(const QDate& date);
    void Load_FiscalPeriods(const QDate& date);

    // Batches, entries and customers.
    void Get_BatchNumber();
    void Load_Batches();
    void Load_EntryList(int count);
    void Lock_Entry();
    void Unlock_Entry();
    void Show_CustomerInfo(int position);
    void cboBatch_Click();
    void cboBatch_GotFocus();
    void cmdNewBatch_Click();
    void mnuBatchNew_Click();
    void cboEntry_Click();
    void cboEntry_LostFocus();
    void cmdNewEntry_Click();
    void mnuEntryNew_Click();
    void cboCustomers_Click();
    void mnuBatchFirst_Click();
    void mnuBatchPrevious_Click();
    void mnuBatchNext_Click();
    void mnuBatchLast_Click();
    void mnuEntryFirst_Click();
    void mnuEntryPrevious_Click();
    void mnuEntryNext_Click();
    void mnuEntryLast_Click();
    void mnuCustomerFirst_Click();
    void mnuCustomerPrevious_Click();
    void mnuCustomerNext_Click();
    void mnuCustomerLast_Click();

    // The application grid: applying and unapplying, the prepayment's document, the search.
    void MSFlexGrid1_DblClick();
    void Apply_Document(int row);
    void Unapply_Document(int row);
    void Make_ReceiptNumber();
    void cmdSearch_Click();

    // Saving an entry.
    void mnuFileSave_Click();

    // A saved entry shown again.
    void Load_Receipt();
    void Load_ReceiptLines(int receiptType);
    void Load_AppliedDocuments();
    void Load_Distributions();

    // ---- The amount and date fields ----
public:
    Money AmountOnFocus() const { return m_amountOnFocus; }
    int DatePos() const { return m_datePos; }
    bool DateTyping() const { return m_dateTyping; }

public slots:
    void txtAmount_GotFocus();
    void txtAmount_KeyPress(int& keyAscii);
    void txtAmount_LostFocus();
    // The remaining amount (undistributed when `distribution`, else unapplied) after the amount changed since
    // the field took the focus, formatted for the screen.
    QString Adjust_Remaining(bool distribution);
    void txtDate_GotFocus();
    void txtDate_Change();
    void txtDate_KeyPress(int& keyAscii);
    void txtDate_KeyUp(int keyCode, int shift);
    void txtDate_LostFocus();

private:
    void connectAmountAndDate();
    // Text pasted or dropped into the amount, keyed character by character through its key filter.
    void typeIntoAmount(const QString& text);
    Money m_amountOnFocus;     // the amount when its field last took the focus
    int m_datePos = 0;         // characters of the date field filled; the caret stands after them
    bool m_dateTyping = false; // the last key in the date field was a digit, not Backspace
    // ---- end of the amount and date fields ----
    // ---- Distribution lines of a miscellaneous receipt and their floating editor ----
public:
    // The stored amount of each line, index n for line n (index 0 unused).
    const std::vector<Money>& DistAmounts() const { return m_distAmounts; }

public slots:
    void cmdNewInvoice_Click();
    void Position_FloatEditor();
    void MSFlexGrid1_EnterCell();
    void MSFlexGrid1_LeaveCell();
    void MSFlexGrid1_Click();
    void txtFloat_KeyDown(int& keyCode, int shift);
    void txtFloat_Change();
    void txtFloat_KeyUp(int keyCode, int shift);
    bool Check_DistAmount();
    void Recalc_Undistributed();
    void txtDistribution_LostFocus();
    void cmdDist_Click();
    void cmdAccount_Click();

private:
    void connectDistributions();
    bool editingDistributions() const;
    // Checks the text of a line's cell by its column as the clerk leaves it; tells the clerk when it is
    // refused.
    bool checkDistCell(int row, int col, const QString& text, RefusedBy by);
    bool distAmountFits(int row, const QString& text) const;
    void storeDistAmount(int row, Money amount);
    void refuseDistAmount();
    void showFinder(int kind);
    void putFinderChoice(int kind, const QString& code, const QString& account);
    void followScrolledCell();
    void followUndistributed();
    // Takes a line out of the grid; the lines below move up and the undistributed amount follows.
    void removeDistLine(int line);
    void showLineMenu(const QPoint& at);

    std::vector<Money> m_distAmounts;
    QString m_leftCellText; // the text, row and column of the cell last left
    int m_leftCellRow = 0;
    int m_leftCellCol = 0;
    int m_keyDownCol = 0;          // the column the editor's last key was pressed in
    bool m_editorFloating = false; // the editor lies over a line's cell
    QString m_codeOnEnter;         // the code cell's text when the editor last entered it

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectHandlers();
    void connectSelection();
    void connectApplicationGrid();
    void connectSaving();
    void setSaveEnabled(bool enabled);
    // A grid row's cell texts as Add_GridRow writes them, with each cell's alignment appended to
    // `alignments`.
    QStringList gridRowCells(const QStringList& values, int lastColumn, int kind,
                             std::vector<int>& alignments) const;
    // Marks a row's Apply cell as applied, or takes the mark away.
    void markApplyCell(int row, bool applied);
    // The entry as keyed: what posting writes.
    ReceiptDraft receiptDraft() const;
    // Shows the problems a posting met, in order.
    void showPostingProblems(const PostingOutcome& outcome);
    // After a save: the batch's figures, the entry list, and the saved entry read back and locked.
    void showSavedEntry();
    // After a failed save: the grid loaded again so that the clerk can correct the entry.
    void reloadAfterFailedSave();
    void setModeControls(int mode);
    void showGridFromStart();
    // Shows a ledger failure to the clerk and clears the session's error list.
    void reportLedgerError(const QString& what, const QString& description);
    void setNewEntryEnabled(bool enabled);
    // The entry fields locked, with nothing to print, until an entry is started or chosen.
    void lockUntilEntryChosen();
    void showBatchFigures(const QString& entries, const QString& total, const QString& bank);
    void setEntryFieldsEnabled(bool enabled);
    void fillGridLines(const std::vector<QStringList>& lines, int kind);
    // Shows an entry's lines from a detail view in the grid, with the given column set.
    void loadEntryLines(View& detailView, int cols, const QString& format, const QStringList& fields,
                        int kind, const QString& what);

    std::unique_ptr<Ui::frmCR> ui;
    int m_transType = 0;
    QString m_dateMask;
    bool m_closing = false;
    bool m_entryLocked = false;
    bool m_saving = false; // a save is under way: a second one must not start
    PostingOutcome m_lastPosting;
};

// Kinds of rows written by Add_GridRow.
constexpr int GridRowReceipt = 0;         // the apply grid of a receipt
constexpr int GridRowAppliedDocument = 1; // the applied documents of a saved receipt

} // namespace tillbook
