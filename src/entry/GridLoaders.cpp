// The receipt window: the grid's column sets and the loaders of its rows.
#include "entry/ApplicationGrid.h"
#include "entry/EntryFields.h"
#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "fetching/CustomerList.h"
#include "fetching/OpenDocuments.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/FlexGrid.h"
#include "ui_frmCR.h"

#include <QScrollBar>

namespace tillbook {

// ---- The grid ----

void ApplicationGrid::Set_GridHeaders() {
    FlexGrid* grid = ui.MSFlexGrid1;
    grid->Clear();
    switch (ui.cboTransType->ListIndex()) {
    case 0:
        grid->setCols(20);
        grid->setFormatString(ApplyGridFormat);
        break;
    case 1:
        grid->setCols(13);
        grid->setFormatString(CustomerDocumentsFormat);
        break;
    case 2:
        grid->setCols(5);
        grid->setFormatString(DistributionFormat);
        break;
    default:
        break;
    }
    grid->setRows(10);
    showGridFromStart();
}

void ApplicationGrid::showGridFromStart() {
    // A new column set or a new load starts at its first column and row, where Apply and the document are.
    ui.MSFlexGrid1->horizontalScrollBar()->setValue(0);
    ui.MSFlexGrid1->verticalScrollBar()->setValue(0);
}

void ApplicationGrid::Load_OpenDocuments() {
    const int position = ui.cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    // The rows are gathered and written in one change of the grid: a customer may have a thousand documents.
    // Those read before a failure are written all the same.
    std::vector<QStringList> rows;
    std::vector<int> alignments;
    const auto write = [&] {
        if (rows.empty())
            return;
        ui.MSFlexGrid1->setRows(1);
        ui.MSFlexGrid1->AddRows(rows, alignments);
        showGridFromStart();
    };
    try {
        Read_OpenDocuments(Desk(), Desk().Customers[static_cast<size_t>(position)].Id, ApplyGridFields,
                           [&](QStringList row) {
                               row[0] = ApplyMarkText(row[0]);
                               row[1] = DocumentTypeText(row[1]);
                               alignments.clear();
                               rows.push_back(
                                   gridRowCells(row, ui.MSFlexGrid1->Cols() - 1, GridRowReceipt, alignments));
                           });
    } catch (const LedgerError& error) {
        write();
        ReportLedgerError(QStringLiteral("The customer's open documents could not be read."),
                          error.description());
        return;
    }
    write();
}

void ApplicationGrid::Load_CustomerDocuments() {
    const int position = ui.cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    int rows = 0;
    try {
        Read_CustomerDocuments(Desk(), Desk().Customers[static_cast<size_t>(position)].Id,
                               CustomerDocumentsFields, [&](QStringList row) {
                                   row[5] = TransactionTypeText(row[5]);
                                   row[6] = DocumentTypeText(row[6]);
                                   row[9] = FormatAmount(Strip_Commas(row[9]));
                                   row[10] = FormatAmount(Strip_Commas(row[10]));
                                   row[11] = FullyPaidText(row[11]);
                                   Add_GridRow(row, ++rows, static_cast<int>(row.size()) - 1, GridRowReceipt);
                               });
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The customer's documents could not be read."), error.description());
    }
    showGridFromStart();
}

QStringList ApplicationGrid::gridRowCells(const QStringList& values, int lastColumn, int kind,
                                          std::vector<int>& alignments) const {
    const int mode = ui.cboTransType->ListIndex();
    QStringList cells;
    for (int c = 0; c <= lastColumn && c < values.size(); ++c) {
        const QString& value = values[c];
        // Amounts of the receipt's own column sets are formatted and right-aligned; every other cell is left
        // as text, its alignment set too so that nothing of an earlier column set lingers.
        const bool amount = mode == 0 && (kind == GridRowAppliedDocument ? c >= 2 : (c >= 3 && c <= 13));
        if (mode == 1 || mode == 2)
            cells << value;
        else
            cells << (amount ? FormatAmount(Strip_Commas(value)) : value.trimmed());
        alignments.push_back(amount ? flexAlignRightCenter : flexAlignLeftCenter);
    }
    return cells;
}

void ApplicationGrid::Add_GridRow(const QStringList& values, int row, int lastColumn, int kind) {
    FlexGrid* grid = ui.MSFlexGrid1;
    grid->setRows(row + 1);
    std::vector<int> alignments;
    const QStringList cells = gridRowCells(values, lastColumn, kind, alignments);
    for (int c = 0; c < cells.size(); ++c) {
        grid->setTextMatrix(row, c, cells[c]);
        grid->setCellAlignment(row, c, alignments[static_cast<size_t>(c)]);
    }
}

bool ApplicationGrid::Is_GridCellEmpty(int row, int column) const {
    return ui.MSFlexGrid1->TextMatrix(row, column).isEmpty();
}

} // namespace tillbook
