// The receipt window: applying a receipt to the customer's open documents, picking the document of a
// prepayment, the document search and the receipt number.
#include "entry/ApplicationGrid.h"

#include "entry/ApplyRules.h"
#include "entry/EntryFields.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
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

ApplicationGrid::ApplicationGrid(Ui::frmCR& form, EntryFields& entry) : ui(form), m_entry(entry) {}

void ApplicationGrid::chooseDocument() {
    if (m_entry.EntryLocked())
        return;
    FlexGrid* grid = ui.MSFlexGrid1;
    const int row = grid->Row();
    switch (ui.cboTransType->ListIndex()) {
    case KindReceipt:
        // Only the Apply column of a row that holds a document applies or unapplies.
        if (grid->Col() != ApplyColumn || grid->TextMatrix(row, DocumentNumberColumn).isEmpty())
            return;
        if (grid->TextMatrix(row, ApplyColumn) != AppliedText) {
            if (!(Strip_Commas(ui.txtUnapplied->text()) > Money())) {
                MsgBox(QStringLiteral("The unapplied amount must be greater than $0.00."), vbOKOnly,
                       QStringLiteral("Invalid Entry"));
                return;
            }
            Apply_Document(row);
            Desk().EntryDirty = true;
            ++Desk().ApplyCount;
            m_entry.setSaveEnabled(true);
        } else {
            Unapply_Document(row);
            --Desk().ApplyCount;
            if (Desk().ApplyCount < 1) {
                Desk().EntryDirty = false;
                m_entry.setSaveEnabled(false);
            }
        }
        break;
    case KindPrepayment: {
        const QString amount = ui.txtAmount->text();
        if (amount == u"0.00" || amount.isEmpty())
            return;
        Make_ReceiptNumber();
        m_entry.setSaveEnabled(true);
        ui.txtPrePay->setText(grid->Text());
        Desk().EntryDirty = true;
        break;
    }
    default:
        break;
    }
}

void ApplicationGrid::Apply_Document(int row) {
    FlexGrid* grid = ui.MSFlexGrid1;
    const Application result = ApplyToDocument(Strip_Commas(ui.txtUnapplied->text()),
                                               Strip_Commas(grid->TextMatrix(row, NetBalanceColumn)));
    ui.txtUnapplied->setText(FormatAmount(result.unapplied));
    grid->setTextMatrix(row, AppliedAmountColumn, FormatAmount(result.applied));
    grid->setTextMatrix(row, NetBalanceColumn, FormatAmount(result.net));
    AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.add(Desk().ApplyCount, row,
                                                           grid->TextMatrix(row, ApplyColumn));
    grid->setTextMatrix(row, ApplyColumn, AppliedText);
    markApplyCell(row, true);
}

void ApplicationGrid::Unapply_Document(int row) {
    FlexGrid* grid = ui.MSFlexGrid1;
    const Application result = UnapplyFromDocument(Strip_Commas(ui.txtUnapplied->text()),
                                                   Strip_Commas(grid->TextMatrix(row, AppliedAmountColumn)),
                                                   Strip_Commas(grid->TextMatrix(row, NetBalanceColumn)));
    grid->setTextMatrix(row, AppliedAmountColumn, QStringLiteral("0.00"));
    // The restored net balance is written as a plain number, unlike the other amounts.
    grid->setTextMatrix(row, NetBalanceColumn, FormatPlain(result.net));
    ui.txtUnapplied->setText(FormatAmount(result.unapplied));
    const QString mark = AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.remove(Desk().ApplyCount, row);
    grid->setTextMatrix(row, ApplyColumn, mark);
    markApplyCell(row, false);
}

void ApplicationGrid::markApplyCell(int row, bool applied) {
    ui.MSFlexGrid1->setCellLook(row, ApplyColumn, applied, applied ? QColor(0xc8, 0xe6, 0xc9) : QColor());
}

void ApplicationGrid::Make_ReceiptNumber() {
    ui.txtReceiptNum->setText(ReceiptNumberText(Desk().CurrentBatch, Desk().CurrentEntry, Today()));
}

void ApplicationGrid::forgetApplications() {
    AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.reset();
    ui.txtUnapplied->setText(ui.txtAmount->text());
    Desk().EntryDirty = false;
    m_entry.setSaveEnabled(false);
}

void ApplicationGrid::searchDocuments() {
    // A new search starts the applications afresh: the receipt's whole amount is unapplied again.
    if (Desk().ApplyCount > 0) {
        Desk().ApplyCount = 0;
        forgetApplications();
    }
    Load_OpenDocuments();
    Make_ReceiptNumber();
}

} // namespace tillbook
