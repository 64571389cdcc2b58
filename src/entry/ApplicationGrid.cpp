// The receipt window: applying a receipt to the customer's open documents, picking the document of a
// prepayment, the document search and the receipt number.
#include "entry/ApplyRules.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "ledger/Formats.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

namespace tillbook {

namespace {

constexpr int ApplyColumn = 0;
constexpr int DocumentNumberColumn = 2;
constexpr int AppliedAmountColumn = 4;
constexpr int NetBalanceColumn = 8;

const QString AppliedText = QStringLiteral("Yes");

} // namespace

void frmCR::connectApplicationGrid() {
    connect(ui->MSFlexGrid1, &FlexGrid::DblClick, this, &frmCR::MSFlexGrid1_DblClick);
    connect(ui->cmdSearch, &QPushButton::clicked, this, &frmCR::cmdSearch_Click);
    // From the keyboard: Space or Enter on a document does what a double-click does.
    onKeyDown(ui->MSFlexGrid1, [this](int& keyCode, int shift) {
        if ((keyCode == vbKeySpace || keyCode == vbKeyReturn) && shift == 0 && m_transType != 2) {
            keyCode = 0;
            MSFlexGrid1_DblClick();
        }
    });
}

void frmCR::setSaveEnabled(bool enabled) {
    ui->cmdSave->setEnabled(enabled);
    ui->mnuFileSave->setEnabled(enabled);
}

void frmCR::MSFlexGrid1_DblClick() {
    if (m_entryLocked)
        return;
    FlexGrid* grid = ui->MSFlexGrid1;
    const int row = grid->Row();
    switch (ui->cboTransType->ListIndex()) {
    case 0:
        // Only the Apply column of a row that holds a document applies or unapplies.
        if (grid->Col() != ApplyColumn || grid->TextMatrix(row, DocumentNumberColumn).isEmpty())
            return;
        if (grid->TextMatrix(row, ApplyColumn) != AppliedText) {
            if (!(Strip_Commas(ui->txtUnapplied->text()) > Money())) {
                MsgBox(QStringLiteral("The unapplied amount must be greater than $0.00."), vbOKOnly,
                       QStringLiteral("Invalid Entry"));
                return;
            }
            Apply_Document(row);
            Desk().EntryDirty = true;
            ++Desk().ApplyCount;
            setSaveEnabled(true);
        } else {
            Unapply_Document(row);
            --Desk().ApplyCount;
            if (Desk().ApplyCount < 1) {
                Desk().EntryDirty = false;
                setSaveEnabled(false);
            }
        }
        break;
    case 1: {
        const QString amount = ui->txtAmount->text();
        if (amount == u"0.00" || amount.isEmpty())
            return;
        Make_ReceiptNumber();
        setSaveEnabled(true);
        ui->txtPrePay->setText(grid->Text());
        Desk().EntryDirty = true;
        break;
    }
    default:
        break;
    }
}

void frmCR::Apply_Document(int row) {
    FlexGrid* grid = ui->MSFlexGrid1;
    const Application result = ApplyToDocument(Strip_Commas(ui->txtUnapplied->text()),
                                               Strip_Commas(grid->TextMatrix(row, NetBalanceColumn)));
    ui->txtUnapplied->setText(FormatAmount(result.unapplied));
    grid->setTextMatrix(row, AppliedAmountColumn, FormatAmount(result.applied));
    grid->setTextMatrix(row, NetBalanceColumn, FormatAmount(result.net));
    AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.add(Desk().ApplyCount, row,
                                                           grid->TextMatrix(row, ApplyColumn));
    grid->setTextMatrix(row, ApplyColumn, AppliedText);
    markApplyCell(row, true);
}

void frmCR::Unapply_Document(int row) {
    FlexGrid* grid = ui->MSFlexGrid1;
    const Application result = UnapplyFromDocument(Strip_Commas(ui->txtUnapplied->text()),
                                                   Strip_Commas(grid->TextMatrix(row, AppliedAmountColumn)),
                                                   Strip_Commas(grid->TextMatrix(row, NetBalanceColumn)));
    grid->setTextMatrix(row, AppliedAmountColumn, QStringLiteral("0.00"));
    // The restored net balance is written as a plain number, unlike the other amounts.
    grid->setTextMatrix(row, NetBalanceColumn, FormatPlain(result.net));
    ui->txtUnapplied->setText(FormatAmount(result.unapplied));
    const QString mark = AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.remove(Desk().ApplyCount, row);
    grid->setTextMatrix(row, ApplyColumn, mark);
    markApplyCell(row, false);
}

void frmCR::markApplyCell(int row, bool applied) {
    ui->MSFlexGrid1->setCellLook(row, ApplyColumn, applied, applied ? QColor(0xc8, 0xe6, 0xc9) : QColor());
}

void frmCR::Make_ReceiptNumber() {
    ui->txtReceiptNum->setText(ReceiptNumberText(Desk().CurrentBatch, Desk().CurrentEntry, Today()));
}

void frmCR::cmdSearch_Click() {
    // A new search starts the applications afresh: the receipt's whole amount is unapplied again.
    if (Desk().ApplyCount > 0) {
        Desk().ApplyCount = 0;
        AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.reset();
        Desk().EntryDirty = false;
        setSaveEnabled(false);
        ui->txtUnapplied->setText(ui->txtAmount->text());
    }
    Load_OpenDocuments();
    Make_ReceiptNumber();
}

} // namespace tillbook
