// The receipt window: batches, entries and customers chosen, and the First/Previous/Next/Last menus.
#include "entry/ApplicationGrid.h"
#include "entry/CustomerInfo.h"
#include "entry/CustomerListModel.h"
#include "entry/EntryFields.h"
#include "entry/EntrySelection.h"
#include "entry/ReceiptDesk.h"
#include "entry/dialogs/frmBank.h"
#include "fetching/Batches.h"
#include "fetching/CodeChecks.h"
#include "fetching/CustomerList.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "settings/Registry.h"
#include "ui/Platform.h"
#include "ui/frmWorking.h"
#include "ui_frmCR.h"

#include <QSignalBlocker>

namespace tillbook {

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

// A batch's entry count as the ledger writes it: a plain whole number.
int wholeNumberOf(const QString& text) {
    return text.trimmed().toInt();
}

} // namespace

EntrySelection::EntrySelection(QWidget& window, Ui::frmCR& form, EntryFields& entry, ApplicationGrid& grid)
    : m_window(window), ui(form), m_entry(entry), m_grid(grid) {}

void EntrySelection::connectControls() {
    const auto moves = [this](QAction* first, QAction* previous, QAction* next, QAction* last, ComboBox* list,
                              bool keptWhileLocked) {
        const auto guarded = [this, list, keptWhileLocked](void (*move)(ComboBox*)) {
            return [this, list, keptWhileLocked, move] {
                // A saved entry on show keeps its customer.
                if (!keptWhileLocked || !m_entry.EntryLocked())
                    move(list);
            };
        };
        QObject::connect(first, &QAction::triggered, list, guarded(selectFirst));
        QObject::connect(previous, &QAction::triggered, list, guarded(selectPrevious));
        QObject::connect(next, &QAction::triggered, list, guarded(selectNext));
        QObject::connect(last, &QAction::triggered, list, guarded(selectLast));
    };
    moves(ui.mnuBatchFirst, ui.mnuBatchPrevious, ui.mnuBatchNext, ui.mnuBatchLast, ui.cboBatch, false);
    moves(ui.mnuEntryFirst, ui.mnuEntryPrevious, ui.mnuEntryNext, ui.mnuEntryLast, ui.cboEntry, false);
    moves(ui.mnuCustomerFirst, ui.mnuCustomerPrevious, ui.mnuCustomerNext, ui.mnuCustomerLast,
          ui.cboCustomers, true);
}

// ---- Customers ----

void EntrySelection::Read_CustomersAhead() {
    readCustomers({});
}

void EntrySelection::readCustomers(const TaskProgress& progress) {
    m_customersAhead.reset();
    m_customersProblem.clear();
    try {
        m_customersAhead = Read_Customers(*Desk().LedgerSession, progress);
    } catch (const LedgerError& error) {
        m_customersProblem = error.description();
    }
}

void EntrySelection::Load_Customers() {
    if (!m_customersAhead && m_customersProblem.isEmpty())
        readCustomers(frmWorking::ShownProgress());
    std::optional<CustomerList> customers = std::exchange(m_customersAhead, std::nullopt);
    const QString problem = std::exchange(m_customersProblem, QString());
    if (!customers) {
        ReportLedgerError(QStringLiteral("The customer list could not be read."), problem);
        return;
    }
    Desk().Customers = std::move(*customers);
    Fill_CustomerCombo(static_cast<int>(Desk().Customers.size()));
}

void EntrySelection::Fill_CustomerCombo(int count) {
    ShowCustomers(ui.cboCustomers, Desk().Customers, count);
}

void EntrySelection::Select_Customer(const QString& customerNumber, int receiptType) {
    if (receiptType == 5) {
        ui.cboCustomers->setListIndex(-1);
        return;
    }
    const int position = Find_Customer(Desk().Customers, customerNumber);
    if (position >= 0)
        ui.cboCustomers->setListIndex(position);
}

void EntrySelection::Show_CustomerInfo(int position) {
    if (position < 0 || position >= static_cast<int>(Desk().Customers.size()))
        return;
    const CustomerRecord& customer = Desk().Customers[static_cast<size_t>(position)];
    ui.txtPayer->setText(customer.Name);
    ui.txtCustInfo->setPlainText(CustomerInfoText(customer));
}

// ---- Batches ----

void EntrySelection::showBatchFigures(const QString& entries, const QString& total, const QString& bank) {
    ui.txtBatchEntries->setText(QStringLiteral("Entries:  ") + entries);
    ui.txtBatchTotal->setText(QStringLiteral("Total:  ") + total);
    ui.txtBank->setText(QStringLiteral("Bank Code:  ") + bank);
    // Show the captions, not the ends of the texts.
    for (QLineEdit* display : {ui.txtBatchEntries, ui.txtBatchTotal, ui.txtBank})
        display->setCursorPosition(0);
}

void EntrySelection::Load_Batches() {
    try {
        ui.cboBatch->addItems(Read_OpenBatches(Desk()));
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The receipt batches could not be read."), error.description());
    }
}

void EntrySelection::Get_BatchNumber() {
    Load_Batches();
    Load_BatchInfo(Desk());
    const int rememberedBatch = Desk().CurrentBatch;
    const int position = Desk().BatchListIndex;
    if (position >= 0 && position < ui.cboBatch->ListCount()) {
        ui.cboBatch->setListIndex(position);
        if (ui.cboBatch->currentText() == QString::number(rememberedBatch)) {
            // The batch click has read the batch's figures and its entries.
            return;
        }
    }
    ui.cboBatch->setListIndex(-1);
    showBatchFigures(QString(), QString(), QString());
    m_entry.setNewEntryEnabled(false);
}

void EntrySelection::chooseBatch() {
    m_entry.Clear_Entry();
    m_entry.lockUntilEntryChosen();
    if (ui.cboBatch->ListIndex() < 0)
        return;
    Desk().CurrentBatch = ui.cboBatch->currentText().toInt();
    Desk().BatchListIndex = ui.cboBatch->ListIndex();
    const QString batch = ui.cboBatch->currentText();
    try {
        const QString entries = Count_BatchEntries(Desk(), batch);
        const QString total = Get_BatchTotal(Desk(), batch);
        Desk().BankCode = Get_BatchBank(Desk(), batch);
        Load_EntryList(wholeNumberOf(entries));
        ui.cboEntry->setListIndex(-1);
        showBatchFigures(entries, total, Desk().BankCode);
    } catch (const LedgerError& error) {
        // Nothing of the previous batch stays on show, and no entry can be started in a batch not read.
        ui.cboEntry->clear();
        Desk().EntryIsNew.clear();
        showBatchFigures(QString(), QString(), QString());
        m_entry.setNewEntryEnabled(false);
        ReportLedgerError(QStringLiteral("Batch %1 could not be read.").arg(batch), error.description());
        return;
    }
    m_entry.setNewEntryEnabled(true);
}

void EntrySelection::batchFocused() {
    if (!Desk().EntryDirty)
        m_entry.lockUntilEntryChosen();
}

void EntrySelection::newBatch() {
    qint64 number = 0;
    try {
        number = Create_Batch(Desk(), Today());
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("A new batch could not be created."), error.description());
        return;
    }
    Desk().CurrentBatch = static_cast<int>(number);
    const QString batch = QString::number(number);
    QStringList banks;
    try {
        banks = Load_BankCodes(*Desk().LedgerSession);
    } catch (const LedgerError& error) {
        ReportLedgerError(QStringLiteral("The bank codes could not be read."), error.description());
    }
    frmBank bank(
        batch, banks, [batch](const QString& code) { Set_BatchBank(Desk(), batch, code); }, &m_window);
    bank.exec();
    Desk().BankCode = bank.BankCode();
    if (Desk().BankCode.isEmpty()) {
        MsgBox(
            QStringLiteral("Batch %1 has no bank code. Choose it again with a new batch, or give it one in "
                           "the ledger before posting.")
                .arg(batch),
            vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Bank"));
    }
    Desk().CurrentEntry = 0;
    showBatchFigures(QStringLiteral("0"), QStringLiteral("0.00"), Desk().BankCode);
    // The open batches are added again behind those already listed, the new one among them.
    Load_Batches();
    ui.cboBatch->setListIndex(ui.cboBatch->ListCount() - 1);
    ui.cboEntry->setFocus(Qt::OtherFocusReason);
}

// ---- Entries ----

void EntrySelection::Load_EntryList(int count) {
    ui.cboEntry->clear();
    QStringList numbers;
    for (int i = 1; i <= count; ++i)
        numbers << QString::number(i);
    ui.cboEntry->addItems(numbers);
    Desk().EntryIsNew.assign(static_cast<size_t>(std::max(count, 0)), false);
}

void EntrySelection::chooseEntry(const std::function<std::optional<bool>()>& saveFirst) {
    const int position = ui.cboEntry->ListIndex();
    if (position < 0 || Desk().EntryIsNew.empty() || position >= static_cast<int>(Desk().EntryIsNew.size()))
        return;
    if (Desk().EntryIsNew[static_cast<size_t>(position)]) {
        m_entry.Unlock_Entry();
        return;
    }
    // The entry being keyed is asked about before another is shown, while it is still the one on show.
    if (Desk().EntryDirty) {
        if (const std::optional<bool> saved = saveFirst()) {
            const QSignalBlocker quiet(ui.cboEntry);
            // Not saved: it stays on show for the clerk to correct; saved: the list, rebuilt, shows the
            // choice.
            ui.cboEntry->setCurrentIndex(*saved ? position : ui.cboEntry->ListCount() - 1);
            if (!*saved)
                return;
        }
    }
    Desk().CurrentEntry = position + 1;
    Load_Receipt();
    m_entry.Lock_Entry();
    ui.cmdPrint->setEnabled(true);
    ui.mnuFilePrint->setEnabled(true);
}

void EntrySelection::entryLeft() {
    const int position = ui.cboEntry->ListIndex();
    if (position >= 0 && position < static_cast<int>(Desk().EntryIsNew.size()) &&
        Desk().EntryIsNew[static_cast<size_t>(position)])
        m_entry.Unlock_Entry();
}

void EntrySelection::newEntry() {
    Desk().EntryDirty = false;
    if (ui.cboEntry->ListCount() == 0 || Desk().EntryIsNew.empty() || !Desk().EntryIsNew.back()) {
        m_entry.Unlock_Entry();
        Desk().EntryIsNew.push_back(true);
        Desk().CurrentEntry = static_cast<int>(Desk().EntryIsNew.size());
        ui.cboEntry->addItem(QString::number(Desk().CurrentEntry));
        ui.cboEntry->setListIndex(ui.cboEntry->ListCount() - 1);
        ui.cboTransType->setListIndex(KindReceipt);
        m_entry.Clear_Entry();
    } else {
        // Only one new entry at a time stands at the end of the list.
        m_entry.setNewEntryEnabled(false);
    }
}

void EntrySelection::showSavedEntry(int saved) {
    // The batch's figures are read through views of their own.
    const QString batch = QString::number(Desk().CurrentBatch);
    QString entries;
    try {
        entries = Count_BatchEntries(Desk(), batch);
        ui.txtBatchEntries->setText(QStringLiteral("Entries:  ") + entries);
        ui.txtBatchTotal->setText(QStringLiteral("Total:  ") + Get_BatchTotal(Desk(), batch));
    } catch (const LedgerError& error) {
        ReportLedgerError(
            QStringLiteral("The entry is saved, but batch %1 could not be read again.").arg(batch),
            error.description());
    }
    ++Desk().CurrentEntry;
    if (!Desk().EntryIsNew.empty())
        Desk().EntryIsNew.back() = false;
    Desk().EntryDirty = false;
    m_entry.setNewEntryEnabled(true);
    ui.cmdPrint->setEnabled(true);
    ui.mnuFilePrint->setEnabled(true);
    m_entry.setSaveEnabled(false);
    if (!entries.isEmpty())
        Load_EntryList(wholeNumberOf(entries));
    // Choosing the saved entry, by the number the ledger gave it (other tills may have added entries to the
    // batch meanwhile), reads it back from the ledger, locked and ready to print.
    ui.cboEntry->setListIndex(saved > 0 ? saved - 1 : Desk().CurrentEntry - 2);
    if (m_entry.TransType() == KindPrepayment)
        ui.MSFlexGrid1->setVisible(false);
}

} // namespace tillbook
