// The receipt window: the grid's column sets and the loaders of its rows, and a saved entry shown again.
#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "fetching/CodeChecks.h"
#include "fetching/CustomerList.h"
#include "fetching/OpenDocuments.h"
#include "fetching/ReceiptRecall.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/FlexGrid.h"
#include "ui_frmCR.h"

#include <QScrollBar>

namespace tillbook {

// ---- The grid ----

void frmCR::Set_GridHeaders() {
    FlexGrid* grid = ui->MSFlexGrid1;
    grid->Clear();
    switch (ui->cboTransType->ListIndex()) {
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

void frmCR::showGridFromStart() {
    // A new column set or a new load starts at its first column and row, where Apply and the document are.
    ui->MSFlexGrid1->horizontalScrollBar()->setValue(0);
    ui->MSFlexGrid1->verticalScrollBar()->setValue(0);
}

void frmCR::Load_OpenDocuments() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    // The rows are gathered and written in one change of the grid: a customer may have a thousand documents.
    // Those read before a failure are written all the same.
    std::vector<QStringList> rows;
    std::vector<int> alignments;
    const auto write = [&] {
        if (rows.empty())
            return;
        ui->MSFlexGrid1->setRows(1);
        ui->MSFlexGrid1->AddRows(rows, alignments);
        showGridFromStart();
    };
    try {
        Read_OpenDocuments(
            Desk(), Desk().Customers[static_cast<size_t>(position)].Id, ApplyGridFields,
            [&](QStringList row) {
                row[0] = ApplyMarkText(row[0]);
                row[1] = DocumentTypeText(row[1]);
                alignments.clear();
                rows.push_back(gridRowCells(row, ui->MSFlexGrid1->Cols() - 1, GridRowReceipt, alignments));
            });
    } catch (const LedgerError& error) {
        write();
        reportLedgerError(QStringLiteral("The customer's open documents could not be read."),
                          error.description());
        return;
    }
    write();
}

void frmCR::Load_CustomerDocuments() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    int rows = 0;
    try {
        Read_CustomerDocuments(Desk(), Desk().Customers[static_cast<size_t>(position)].Id,
                               CustomerDocumentsFields, [&](QStringList row) {
                                   row[5] = TransactionTypeText(row[5]);
                                   row[6] = DocumentTypeText(row[6]);
                                   row[9] = FormatAmount(ValMoney(row[9]));
                                   row[10] = FormatAmount(ValMoney(row[10]));
                                   row[11] = FullyPaidText(row[11]);
                                   Add_GridRow(row, ++rows, static_cast<int>(row.size()) - 1, GridRowReceipt);
                               });
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The customer's documents could not be read."), error.description());
    }
    showGridFromStart();
}

QStringList frmCR::gridRowCells(const QStringList& values, int lastColumn, int kind,
                                std::vector<int>& alignments) const {
    const int mode = ui->cboTransType->ListIndex();
    QStringList cells;
    for (int c = 0; c <= lastColumn && c < values.size(); ++c) {
        const QString& value = values[c];
        // Amounts of the receipt's own column sets are formatted and right-aligned; every other cell is left
        // as text, its alignment set too so that nothing of an earlier column set lingers.
        const bool amount = mode == 0 && (kind == GridRowAppliedDocument ? c >= 2 : (c >= 3 && c <= 13));
        if (mode == 1 || mode == 2)
            cells << value;
        else
            cells << (amount ? FormatAmount(ValMoney(value)) : value.trimmed());
        alignments.push_back(amount ? flexAlignRightCenter : flexAlignLeftCenter);
    }
    return cells;
}

void frmCR::Add_GridRow(const QStringList& values, int row, int lastColumn, int kind) {
    FlexGrid* grid = ui->MSFlexGrid1;
    grid->setRows(row + 1);
    std::vector<int> alignments;
    const QStringList cells = gridRowCells(values, lastColumn, kind, alignments);
    for (int c = 0; c < cells.size(); ++c) {
        grid->setTextMatrix(row, c, cells[c]);
        grid->setCellAlignment(row, c, alignments[static_cast<size_t>(c)]);
    }
}

bool frmCR::Is_GridCellEmpty(int row, int column) const {
    return ui->MSFlexGrid1->TextMatrix(row, column).isEmpty();
}

// ---- A saved entry ----

void frmCR::Load_Receipt() {
    RecalledReceipt receipt;
    try {
        receipt = Read_Receipt(Desk(), Desk().CurrentBatch, Desk().CurrentEntry);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("Entry %1 of batch %2 could not be read.")
                              .arg(Desk().CurrentEntry, Desk().CurrentBatch),
                          error.description());
        return;
    }
    // The mode switch empties the entry: the saved values are put in after it.
    ui->cboTransType->setListIndex(Get_ReceiptTypeIndex(receipt.receiptType));
    ui->txtEntDesc->setText(receipt.description);
    ui->txtAmount->setText(FormatAmount(receipt.amount.roundedToCentsBankers()));
    ui->txtDate->setText(receipt.date);
    int year = ui->cboYear->findText(receipt.fiscalYear);
    if (year < 0) {
        ui->cboYear->addItem(receipt.fiscalYear);
        year = ui->cboYear->ListCount() - 1;
    }
    ui->cboYear->setListIndex(year);
    // A period that is not listed leaves the selection as it was.
    if (const int period = ui->cboPeriod->findText(receipt.fiscalPeriod); period >= 0)
        ui->cboPeriod->setListIndex(period);
    ui->txtReceiptNum->setText(receipt.receiptNumber);
    ui->txtPrePay->setText(receipt.documentNumber);
    ui->txtPrePayDocNo->setText(receipt.firstLineNumber);
    Select_Customer(receipt.customerNumber, receipt.receiptType);
    // Choosing the customer fills the payer and the unapplied amount afresh; the entry shows what was saved.
    ui->txtPayer->setText(receipt.payer);
    const QString unapplied = FormatAmount(receipt.unapplied.roundedToCentsBankers());
    ui->txtUnapplied->setText(unapplied);
    ui->txtDistribution->setText(unapplied);
    Load_ReceiptLines(receipt.receiptType);
}

void frmCR::Load_ReceiptLines(int receiptType) {
    switch (receiptType) {
    case 1:
        Load_AppliedDocuments();
        ui->MSFlexGrid1->setRows(10);
        break;
    case 2:
        Load_CustomerDocuments();
        break;
    case 5:
        Load_Distributions();
        ui->MSFlexGrid1->setRows(10);
        ui->MSFlexGrid1->setCol(0);
        break;
    default:
        break;
    }
}

void frmCR::fillGridLines(const std::vector<QStringList>& lines, int kind) {
    int row = 0;
    for (const QStringList& line : lines)
        Add_GridRow(line, ++row, static_cast<int>(line.size()) - 1, kind);
}

void frmCR::loadEntryLines(View& detailView, int cols, const QString& format, const QStringList& fields,
                           int kind, const QString& what) {
    FlexGrid* grid = ui->MSFlexGrid1;
    grid->Clear();
    grid->setCols(cols);
    grid->setFormatString(format);
    try {
        fillGridLines(Read_EntryLines(detailView, Desk().CurrentBatch, Desk().CurrentEntry, fields), kind);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The entry's %1 could not be read.").arg(what), error.description());
    }
    showGridFromStart();
}

void frmCR::Load_AppliedDocuments() {
    loadEntryLines(*Desk().ReceiptDetailView, 8, AppliedDocumentsFormat, AppliedDocumentsFields,
                   GridRowAppliedDocument, QStringLiteral("applied documents"));
}

void frmCR::Load_Distributions() {
    loadEntryLines(*Desk().ReceiptMiscView, 5, DistributionFormat, DistributionFields, GridRowReceipt,
                   QStringLiteral("distribution lines"));
}

} // namespace tillbook
