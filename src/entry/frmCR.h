#pragma once

#include "entry/DistributionRules.h"
#include "ledger/Money.h"

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

    // Opens the ledger with the signed-in values and fills the window. On a ledger failure the clerk is told
    // what went wrong and false is returned; the window is then not to be shown.
    bool Form_Load();

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
    void Form_Resize();

    void Clear_Entry();
    void Prompt_SaveEntry();

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

    // A saved entry shown again.
    void Load_Receipt();
    void Load_ReceiptLines(int receiptType);
    void Load_AppliedDocuments();
    void Load_Distributions();

    // ---- Distribution lines of a miscellaneous receipt and their floating editor ----
public:
    // The stored amount of each line, index n for line n (index 0 unused).
    const std::vector<Money>& DistAmounts() const { return m_distAmounts; }

public slots:
    void cmdNewInvoice_Click();
    void Make_ReceiptNumber();
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

    std::vector<Money> m_distAmounts;
    QString m_leftCellText; // the text, row and column of the cell last left
    int m_leftCellRow = 0;
    int m_leftCellCol = 0;
    int m_keyDownCol = 0;          // the column the editor's last key was pressed in
    bool m_editorFloating = false; // the editor lies over a line's cell

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectHandlers();
    void connectSelection();
    void setModeControls(int mode);
    // Shows a ledger failure to the clerk and clears the session's error list.
    void reportLedgerError(const QString& what, const QString& description);
    void setNewEntryEnabled(bool enabled);
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
};

// Kinds of rows written by Add_GridRow.
constexpr int GridRowReceipt = 0;         // the apply grid of a receipt
constexpr int GridRowAppliedDocument = 1; // the applied documents of a saved receipt

} // namespace tillbook
