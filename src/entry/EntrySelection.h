#pragma once

// The receipt window's batch, entry and customer lists: the open batches and a new one with its bank, the
// entries of the chosen batch and a new one, the customers, First/Previous/Next/Last over the three lists,
// and a saved entry shown again, locked, as the ledger holds it.

#include "entry/ReceiptForm.h"
#include "fetching/CustomerList.h"
#include "ledger/LedgerNames.h"

#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace tillbook {

class View;

class EntrySelection {
public:
    EntrySelection(QWidget& window, Ui::frmCR& ui, EntryFields& entry, ApplicationGrid& grid);
    // The First/Previous/Next/Last menus of the batches, entries and customers.
    void connectControls();

    // The customer list. Read ahead, Load_Customers only shows what was read (or why it could not be).
    void Read_CustomersAhead();
    void Load_Customers();
    void Fill_CustomerCombo(int count);
    void Select_Customer(const QString& customerNumber, int receiptType);
    void Show_CustomerInfo(int position);

    // Batches.
    void Load_Batches();
    // The open batches, with the one remembered for the company chosen again.
    void Get_BatchNumber();
    void chooseBatch();
    void batchFocused();
    void newBatch();

    // Entries. `saveFirst` asks about the entry being keyed, when there is one: nothing when the clerk
    // answered No, else whether it was saved.
    void Load_EntryList(int count);
    void chooseEntry(const std::function<std::optional<bool>()>& saveFirst);
    void entryLeft();
    void newEntry();
    // After a save: the batch's figures, the entry list, and the saved entry (number `saved` as the ledger
    // gave it, 0 when unknown) read back and locked.
    void showSavedEntry(int saved);

    // A saved entry shown again.
    void Load_Receipt();
    void Load_ReceiptLines(int receiptType);
    void Load_AppliedDocuments();
    void Load_Distributions();

private:
    // Into the list read ahead, or the problem that stopped it.
    void readCustomers(const TaskProgress& progress);
    void showBatchFigures(const QString& entries, const QString& total, const QString& bank);
    // Shows an entry's lines from a detail view in the grid, with the given column set.
    void loadEntryLines(View& detailView, int cols, const QString& format,
                        const std::vector<FieldName>& fields, int kind, const QString& what);

    QWidget& m_window;
    Ui::frmCR& ui;
    EntryFields& m_entry;
    ApplicationGrid& m_grid;
    std::optional<CustomerList> m_customersAhead;
    QString m_customersProblem; // why the list read ahead could not be read
};

} // namespace tillbook
