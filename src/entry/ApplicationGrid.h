#pragma once

// The receipt window's grid outside the distribution lines: its column set for each kind of entry, the
// customer's open documents a receipt is applied to (applying and unapplying, the search), the documents a
// prepayment picks from, and the receipt number.

#include "entry/ReceiptForm.h"

#include <QStringList>
#include <vector>

namespace tillbook {

// Kinds of rows written by Add_GridRow.
constexpr int GridRowReceipt = 0;         // the apply grid of a receipt
constexpr int GridRowAppliedDocument = 1; // the applied documents of a saved receipt

class ApplicationGrid {
public:
    ApplicationGrid(Ui::frmCR& ui, EntryFields& entry);

    // The column set of the kind chosen in the list, emptied.
    void Set_GridHeaders();
    // A new column set or a new load shows its first column and row.
    void showGridFromStart();
    void Load_OpenDocuments();
    void Load_CustomerDocuments();
    void Add_GridRow(const QStringList& values, int row, int lastColumn, int kind);
    bool Is_GridCellEmpty(int row, int column) const;

    // The document under the grid's cursor chosen (a double-click, Space or Enter): a receipt applies it or
    // gives it back, a prepayment takes it as its document.
    void chooseDocument();
    void Apply_Document(int row);
    void Unapply_Document(int row);
    // A new search of the customer's open documents, with the whole amount unapplied again.
    void searchDocuments();
    // The applications made for the customer before are gone with the grid.
    void forgetApplications();
    void Make_ReceiptNumber();

private:
    // A grid row's cell texts as Add_GridRow writes them, with each cell's alignment appended to
    // `alignments`.
    QStringList gridRowCells(const QStringList& values, int lastColumn, int kind,
                             std::vector<int>& alignments) const;
    // Marks a row's Apply cell as applied, or takes the mark away.
    void markApplyCell(int row, bool applied);

    Ui::frmCR& ui;
    EntryFields& m_entry;
};

} // namespace tillbook
