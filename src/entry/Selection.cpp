// The receipt window: batches, entries and customers chosen, and the First/Previous/Next/Last menus.
#include "entry/ApplyRules.h"
#include "entry/CustomerInfo.h"
#include "entry/ReceiptDesk.h"
#include "entry/dialogs/frmBank.h"
#include "entry/frmCR.h"
#include "fetching/Batches.h"
#include "fetching/CustomerList.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "settings/Registry.h"
#include "ui/Events.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

#include <QSignalBlocker>

namespace tillbook {

void frmCR::connectSelection() {
    connect(ui->cboBatch, &ComboBox::Click, this, &frmCR::cboBatch_Click);
    onGotFocus(ui->cboBatch, [this] { cboBatch_GotFocus(); });
    connect(ui->cmdNewBatch, &QPushButton::clicked, this, &frmCR::cmdNewBatch_Click);
    connect(ui->mnuBatchNew, &QAction::triggered, this, &frmCR::mnuBatchNew_Click);
    connect(ui->cboEntry, &ComboBox::Click, this, &frmCR::cboEntry_Click);
    onLostFocus(ui->cboEntry, [this] { cboEntry_LostFocus(); });
    connect(ui->cmdNewEntry, &QPushButton::clicked, this, &frmCR::cmdNewEntry_Click);
    connect(ui->mnuEntryNew, &QAction::triggered, this, &frmCR::mnuEntryNew_Click);
    connect(ui->cboCustomers, &ComboBox::Click, this, &frmCR::cboCustomers_Click);
    connect(ui->mnuBatchFirst, &QAction::triggered, this, &frmCR::mnuBatchFirst_Click);
    connect(ui->mnuBatchPrevious, &QAction::triggered, this, &frmCR::mnuBatchPrevious_Click);
    connect(ui->mnuBatchNext, &QAction::triggered, this, &frmCR::mnuBatchNext_Click);
    connect(ui->mnuBatchLast, &QAction::triggered, this, &frmCR::mnuBatchLast_Click);
    connect(ui->mnuEntryFirst, &QAction::triggered, this, &frmCR::mnuEntryFirst_Click);
    connect(ui->mnuEntryPrevious, &QAction::triggered, this, &frmCR::mnuEntryPrevious_Click);
    connect(ui->mnuEntryNext, &QAction::triggered, this, &frmCR::mnuEntryNext_Click);
    connect(ui->mnuEntryLast, &QAction::triggered, this, &frmCR::mnuEntryLast_Click);
    connect(ui->mnuCustomerFirst, &QAction::triggered, this, &frmCR::mnuCustomerFirst_Click);
    connect(ui->mnuCustomerPrevious, &QAction::triggered, this, &frmCR::mnuCustomerPrevious_Click);
    connect(ui->mnuCustomerNext, &QAction::triggered, this, &frmCR::mnuCustomerNext_Click);
    connect(ui->mnuCustomerLast, &QAction::triggered, this, &frmCR::mnuCustomerLast_Click);
}

void frmCR::Select_Customer(const QString& customerNumber, int receiptType) {
    if (receiptType == 5) {
        ui->cboCustomers->setListIndex(-1);
        return;
    }
    const int position = Find_Customer(Desk().Customers, customerNumber);
    if (position >= 0)
        ui->cboCustomers->setListIndex(position);
}

// ---- Batches ----

void frmCR::showBatchFigures(const QString& entries, const QString& total, const QString& bank) {
    ui->txtBatchEntries->setText(QStringLiteral("Entries:  ") + entries);
    ui->txtBatchTotal->setText(QStringLiteral("Total:  ") + total);
    ui->txtBank->setText(QStringLiteral("Bank Code:  ") + bank);
    // Show the captions, not the ends of the texts.
    for (QLineEdit* display : {ui->txtBatchEntries, ui->txtBatchTotal, ui->txtBank})
        display->setCursorPosition(0);
}

void frmCR::Load_Batches() {
    try {
        ui->cboBatch->addItems(Read_OpenBatches(Desk()));
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The receipt batches could not be read."), error.description());
    }
}

void frmCR::Get_BatchNumber() {
    Load_Batches();
    Load_BatchInfo(Desk());
    const QString rememberedBatch = Desk().CurrentBatch;
    const int position = Int16Of(Desk().BatchListIndex);
    if (Desk().BatchListIndex != u"-1" && position >= 0 && position < ui->cboBatch->ListCount()) {
        ui->cboBatch->setListIndex(position);
        if (ui->cboBatch->currentText() == rememberedBatch) {
            // The batch click has read the batch's figures and its entries.
            return;
        }
    }
    ui->cboBatch->setListIndex(-1);
    showBatchFigures(QString(), QString(), QString());
    setNewEntryEnabled(false);
}

void frmCR::cboBatch_Click() {
    Clear_Entry();
    lockUntilEntryChosen();
    if (ui->cboBatch->ListIndex() < 0)
        return;
    Desk().CurrentBatch = ui->cboBatch->currentText();
    Desk().BatchListIndex = QString::number(ui->cboBatch->ListIndex());
    try {
        const QString entries = Count_BatchEntries(Desk(), Desk().CurrentBatch);
        const QString total = Get_BatchTotal(Desk(), Desk().CurrentBatch);
        Desk().BankCode = Get_BatchBank(Desk(), Desk().CurrentBatch);
        Load_EntryList(Int16Of(entries));
        ui->cboEntry->setListIndex(-1);
        showBatchFigures(entries, total, Desk().BankCode);
    } catch (const LedgerError& error) {
        // Nothing of the previous batch stays on show, and no entry can be started in a batch not read.
        ui->cboEntry->clear();
        Desk().EntryIsNew.clear();
        showBatchFigures(QString(), QString(), QString());
        setNewEntryEnabled(false);
        reportLedgerError(QStringLiteral("Batch %1 could not be read.").arg(Desk().CurrentBatch),
                          error.description());
        return;
    }
    setNewEntryEnabled(true);
}

void frmCR::setNewEntryEnabled(bool enabled) {
    ui->cmdNewEntry->setEnabled(enabled);
    ui->mnuEntryNew->setEnabled(enabled);
}

void frmCR::cboBatch_GotFocus() {
    if (!Desk().EntryDirty)
        lockUntilEntryChosen();
}

void frmCR::lockUntilEntryChosen() {
    Lock_Entry();
    ui->cmdPrint->setEnabled(false);
}

void frmCR::cmdNewBatch_Click() {
    qint64 number = 0;
    try {
        number = Create_Batch(Desk(), Today());
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("A new batch could not be created."), error.description());
        return;
    }
    Desk().CurrentBatch = QString::number(number);
    QStringList banks;
    try {
        banks = Load_BankCodes(*Desk().LedgerSession);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The bank codes could not be read."), error.description());
    }
    frmBank bank(
        Desk().CurrentBatch, banks,
        [batch = Desk().CurrentBatch](const QString& code) { Set_BatchBank(Desk(), batch, code); }, this);
    bank.exec();
    Desk().BankCode = bank.BankCode();
    if (Desk().BankCode.isEmpty()) {
        MsgBox(
            QStringLiteral("Batch %1 has no bank code. Choose it again with a new batch, or give it one in "
                           "the ledger before posting.")
                .arg(Desk().CurrentBatch),
            vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Bank"));
    }
    Desk().CurrentEntry = QStringLiteral("0");
    showBatchFigures(QStringLiteral("0"), QStringLiteral("0.00"), Desk().BankCode);
    // The open batches are added again behind those already listed, the new one among them.
    Load_Batches();
    ui->cboBatch->setListIndex(ui->cboBatch->ListCount() - 1);
    ui->cboEntry->setFocus(Qt::OtherFocusReason);
}

void frmCR::mnuBatchNew_Click() {
    cmdNewBatch_Click();
}

// ---- Entries ----

void frmCR::Load_EntryList(int count) {
    ui->cboEntry->clear();
    QStringList numbers;
    for (int i = 1; i <= count; ++i)
        numbers << QString::number(i);
    ui->cboEntry->addItems(numbers);
    Desk().EntryIsNew.assign(static_cast<size_t>(std::max(count, 0)), false);
}

void frmCR::cboEntry_Click() {
    const int position = ui->cboEntry->ListIndex();
    if (position < 0 || Desk().EntryIsNew.empty() || position >= static_cast<int>(Desk().EntryIsNew.size()))
        return;
    if (!Desk().EntryIsNew[static_cast<size_t>(position)]) {
        // The entry being keyed is asked about before another is shown, while it is still the one on show.
        if (Desk().EntryDirty && Prompt_SaveEntry() == vbYes) {
            const QSignalBlocker quiet(ui->cboEntry);
            // Not saved: it stays on show for the clerk to correct; saved: the list, rebuilt, shows the
            // choice.
            ui->cboEntry->setCurrentIndex(m_lastPosting.PostOK ? position : ui->cboEntry->ListCount() - 1);
            if (!m_lastPosting.PostOK)
                return;
        }
        Desk().CurrentEntry = QString::number(position + 1);
        Load_Receipt();
        Lock_Entry();
        ui->cmdPrint->setEnabled(true);
        ui->mnuFilePrint->setEnabled(true);
    } else {
        Unlock_Entry();
    }
}

void frmCR::cboEntry_LostFocus() {
    const int position = ui->cboEntry->ListIndex();
    if (position >= 0 && position < static_cast<int>(Desk().EntryIsNew.size()) &&
        Desk().EntryIsNew[static_cast<size_t>(position)])
        Unlock_Entry();
}

void frmCR::cmdNewEntry_Click() {
    Desk().EntryDirty = false;
    if (ui->cboEntry->ListCount() == 0 || Desk().EntryIsNew.empty() || !Desk().EntryIsNew.back()) {
        Unlock_Entry();
        Desk().EntryIsNew.push_back(true);
        Desk().CurrentEntry = QString::number(Desk().EntryIsNew.size());
        ui->cboEntry->addItem(Desk().CurrentEntry);
        ui->cboEntry->setListIndex(ui->cboEntry->ListCount() - 1);
        ui->cboTransType->setListIndex(0);
        Clear_Entry();
    } else {
        // Only one new entry at a time stands at the end of the list.
        setNewEntryEnabled(false);
    }
}

void frmCR::mnuEntryNew_Click() {
    cmdNewEntry_Click();
}

void frmCR::setEntryFieldsEnabled(bool enabled) {
    const QList<QWidget*> fields = {
        ui->cmdNewInvoice,  ui->cmdSearch, ui->txtEntDesc,   ui->cboTransType,    ui->cboCustomers,
        ui->txtCustInfo,    ui->txtAmount, ui->txtDate,      ui->cboYear,         ui->cboPeriod,
        ui->txtReceiptNum,  ui->txtPayer,  ui->txtUnapplied, ui->txtDistribution, ui->txtPrePay,
        ui->txtPrePayDocNo, ui->txtFloat};
    for (QWidget* field : fields)
        field->setEnabled(enabled);
    if (m_transType == 2) {
        // The finders fill a line: none before the first line is started.
        ui->cmdDist->setEnabled(enabled && Desk().DistLines > 0);
        ui->cmdAccount->setEnabled(enabled && Desk().DistLines > 0);
    }
}

void frmCR::Lock_Entry() {
    setEntryFieldsEnabled(false);
    m_entryLocked = true;
    ui->cmdPrint->setEnabled(true);
}

void frmCR::Unlock_Entry() {
    setEntryFieldsEnabled(true);
    m_entryLocked = false;
    ui->cmdPrint->setEnabled(false);
}

// ---- Customers ----

void frmCR::cboCustomers_Click() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0)
        return;
    Set_GridHeaders();
    if (m_transType == 0) {
        Show_CustomerInfo(position);
        if (Val(ui->txtAmount->text()) > 0)
            ui->cmdSearch->setEnabled(true);
    } else if (m_transType == 1) {
        Load_CustomerDocuments();
        Show_CustomerInfo(position);
    }
    // What was applied for the customer before is gone with the grid: the new one is offered the whole
    // amount.
    if (m_transType == 0 && Desk().ApplyCount > 0) {
        AppliedRows{Desk().ApplyKeys, Desk().AppliedMarks}.reset();
        ui->txtUnapplied->setText(ui->txtAmount->text());
        Desk().EntryDirty = false;
        setSaveEnabled(false);
    }
    Desk().ApplyCount = 0;
}

void frmCR::Show_CustomerInfo(int position) {
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    const CustomerRecord& customer = Desk().Customers[static_cast<size_t>(position)];
    ui->txtPayer->setText(customer.Name);
    ui->txtCustInfo->setPlainText(CustomerInfoText(customer));
}

// ---- First, Previous, Next and Last over the three lists ----

namespace {

void selectFirst(ComboBox* list) {
    list->setListIndex(0);
}
void selectLast(ComboBox* list) {
    list->setListIndex(list->ListCount() - 1);
}
void selectNext(ComboBox* list) {
    if (list->ListIndex() < list->ListCount() - 1)
        list->setListIndex(list->ListIndex() + 1);
}
void selectPrevious(ComboBox* list) {
    if (list->ListIndex() >= 1)
        list->setListIndex(list->ListIndex() - 1);
}

} // namespace

void frmCR::mnuBatchFirst_Click() {
    selectFirst(ui->cboBatch);
}
void frmCR::mnuBatchPrevious_Click() {
    selectPrevious(ui->cboBatch);
}
void frmCR::mnuBatchNext_Click() {
    selectNext(ui->cboBatch);
}
void frmCR::mnuBatchLast_Click() {
    selectLast(ui->cboBatch);
}
void frmCR::mnuEntryFirst_Click() {
    selectFirst(ui->cboEntry);
}
void frmCR::mnuEntryPrevious_Click() {
    selectPrevious(ui->cboEntry);
}
void frmCR::mnuEntryNext_Click() {
    selectNext(ui->cboEntry);
}
void frmCR::mnuEntryLast_Click() {
    selectLast(ui->cboEntry);
}
void frmCR::mnuCustomerFirst_Click() {
    if (!m_entryLocked) // a saved entry on show keeps its customer
        selectFirst(ui->cboCustomers);
}
void frmCR::mnuCustomerPrevious_Click() {
    if (!m_entryLocked) // a saved entry on show keeps its customer
        selectPrevious(ui->cboCustomers);
}
void frmCR::mnuCustomerNext_Click() {
    if (!m_entryLocked) // a saved entry on show keeps its customer
        selectNext(ui->cboCustomers);
}
void frmCR::mnuCustomerLast_Click() {
    if (!m_entryLocked) // a saved entry on show keeps its customer
        selectLast(ui->cboCustomers);
}

} // namespace tillbook
