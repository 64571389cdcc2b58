// The receipt window: a saved entry read back from the ledger and shown again as it was keyed.
#include "entry/ApplicationGrid.h"
#include "entry/EntryFields.h"
#include "entry/EntrySelection.h"
#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "fetching/CodeChecks.h"
#include "fetching/ReceiptRecall.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/FlexGrid.h"
#include "ui_frmCR.h"

namespace tillbook {

void EntrySelection::Load_Receipt() {
    RecalledReceipt receipt;
    try {
        receipt =
            Read_Receipt(Desk(), QString::number(Desk().CurrentBatch), QString::number(Desk().CurrentEntry));
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("Entry %1 of batch %2 could not be read.")
                              .arg(Desk().CurrentEntry)
                              .arg(Desk().CurrentBatch),
                          error.description());
        return;
    }
    // The mode switch empties the entry: the saved values are put in after it.
    ui.cboTransType->setListIndex(Get_ReceiptTypeIndex(receipt.receiptType));
    ui.txtEntDesc->setText(receipt.description);
    ui.txtAmount->setText(FormatAmount(receipt.amount.roundedToCentsBankers()));
    ui.txtDate->setText(receipt.date);
    int year = ui.cboYear->findText(receipt.fiscalYear);
    if (year < 0) {
        ui.cboYear->addItem(receipt.fiscalYear);
        year = ui.cboYear->ListCount() - 1;
    }
    ui.cboYear->setListIndex(year);
    // A period that is not listed leaves the selection as it was.
    if (const int period = ui.cboPeriod->findText(receipt.fiscalPeriod); period >= 0)
        ui.cboPeriod->setListIndex(period);
    ui.txtReceiptNum->setText(receipt.receiptNumber);
    ui.txtPrePay->setText(receipt.documentNumber);
    ui.txtPrePayDocNo->setText(receipt.firstLineNumber);
    Select_Customer(receipt.customerNumber, receipt.receiptType);
    // Choosing the customer fills the payer and the unapplied amount afresh; the entry shows what was saved.
    ui.txtPayer->setText(receipt.payer);
    const QString unapplied = FormatAmount(receipt.unapplied.roundedToCentsBankers());
    ui.txtUnapplied->setText(unapplied);
    ui.txtDistribution->setText(unapplied);
    Load_ReceiptLines(receipt.receiptType);
}

void EntrySelection::Load_ReceiptLines(int receiptType) {
    switch (receiptType) {
    case 1:
        Load_AppliedDocuments();
        ui.MSFlexGrid1->setRows(10);
        break;
    case 2:
        m_grid.Load_CustomerDocuments();
        break;
    case 5:
        Load_Distributions();
        ui.MSFlexGrid1->setRows(10);
        ui.MSFlexGrid1->setCol(0);
        break;
    default:
        break;
    }
}

void EntrySelection::loadEntryLines(View& detailView, int cols, const QString& format,
                                    const std::vector<FieldName>& fields, int kind, const QString& what) {
    FlexGrid* grid = ui.MSFlexGrid1;
    grid->Clear();
    grid->setCols(cols);
    grid->setFormatString(format);
    try {
        int row = 0;
        for (const QStringList& line : Read_EntryLines(detailView, QString::number(Desk().CurrentBatch),
                                                       QString::number(Desk().CurrentEntry), fields))
            m_grid.Add_GridRow(line, ++row, static_cast<int>(line.size()) - 1, kind);
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The entry's %1 could not be read.").arg(what), error.description());
    }
    m_grid.showGridFromStart();
}

void EntrySelection::Load_AppliedDocuments() {
    loadEntryLines(*Desk().ReceiptDetailView, 8, AppliedDocumentsFormat, AppliedDocumentsFields,
                   GridRowAppliedDocument, QStringLiteral("applied documents"));
}

void EntrySelection::Load_Distributions() {
    loadEntryLines(*Desk().ReceiptMiscView, 5, DistributionFormat, DistributionFields, GridRowReceipt,
                   QStringLiteral("distribution lines"));
}

} // namespace tillbook
