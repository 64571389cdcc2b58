#include "entry/frmCR.h"

#include "app/SignIn.h"
#include "entry/CustomerInfo.h"
#include "entry/EntryState.h"
#include "entry/GridColumnSets.h"
#include "ledger/Batches.h"
#include "ledger/CodeChecks.h"
#include "ledger/CustomerList.h"
#include "ledger/FiscalPeriods.h"
#include "ledger/LedgerError.h"
#include "ledger/ReceiptRecall.h"
#include "ledger/ReceiptViews.h"
#include "ledger/dialogs/frmBank.h"
#include "settings/Globals.h"
#include "settings/Registry.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui/Formats.h"
#include "ui/Forms.h"
#include "ui/Help.h"
#include "ui/Platform.h"
#include "ui/frmWorking.h"
#include "ui_frmCR.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QRegularExpression>

namespace tillbook {

namespace {

const QString FilterOpenReceiptBatches =
    QStringLiteral("CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)");

QString fieldText(View& view, const QString& name) {
    return VariantText(view.fields().item(name).value());
}

} // namespace

frmCR::frmCR(QWidget* parent) : QMainWindow(parent), ui(std::make_unique<Ui::frmCR>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmCR"));
    FixFormSize(this, 10050, 8535);
    // A long customer list must not be measured item by item to size the box.
    ui->cboCustomers->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ui->cmdNewBatch->setIcon(style()->standardIcon(QStyle::SP_FileDialogNewFolder));
    ui->cmdNewEntry->setIcon(style()->standardIcon(QStyle::SP_FileIcon));
    ui->cmdDist->setIcon(style()->standardIcon(QStyle::SP_FileDialogContentsView));
    ui->cmdAccount->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    // The grid's design-time columns are the distribution lines'.
    ui->MSFlexGrid1->setFormatString(DistributionFormat);
    connectHandlers();
}

frmCR::~frmCR() = default;

void frmCR::connectHandlers() {
    connect(ui->cboTransType, &ComboBox::Click, this, &frmCR::cboTransType_Click);
    connect(ui->mnuTransReceipt, &QAction::triggered, this, &frmCR::mnuTransReceipt_Click);
    connect(ui->mnuTransPrePay, &QAction::triggered, this, &frmCR::mnuTransPrePay_Click);
    connect(ui->mnuTransMisc, &QAction::triggered, this, &frmCR::mnuTransMisc_Click);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmCR::cmdClose_Click);
    connect(ui->mnuFileClose, &QAction::triggered, this, &frmCR::mnuFileClose_Click);
    connect(ui->mnuHelpContents, &QAction::triggered, this, [] { ShowHelp(); });

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

bool frmCR::Form_Load() {
    CentreForm(this);
    try {
        LedgerSession = std::make_unique<Session>();
        LedgerSession->open(SignInUser, SignInPassword, SignInDatabaseID, Today(), 0);
        Open_ReceiptViews();
    } catch (const LedgerError& error) {
        const QString description = error.description();
        Close_Ledger();
        MsgBox(QStringLiteral("The company %1 could not be opened.").arg(SignInDatabaseID) + u'\n' +
                   description,
               vbOKOnly + vbCritical, QStringLiteral("Tillbook - Receipt Entry"));
        return false;
    }

    ui->cboTransType->setListIndex(0);
    const QDate today = Today();
    ui->txtDate->setText(FormatShortDate(today));
    Load_FiscalYears(today);
    Load_FiscalPeriods(today);
    Get_BatchNumber();
    const ReceiptStyle style = Load_ReceiptStyle();
    ui->mnuFileReceipt2V->setChecked(style.twoPanel);
    ui->mnuFileReceipt3V->setChecked(style.threePanel);

    frmWorking working;
    working.showNow();
    Load_Customers();
    working.close();
    return true;
}

void frmCR::reportLedgerError(const QString& what, const QString& description) {
    if (LedgerSession)
        LedgerSession->errors().clear();
    MsgBox(what + u'\n' + description, vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Receipt Entry"));
}

// ---- The mode switch and the entry fields ----

void frmCR::mnuTransReceipt_Click() {
    ui->cboTransType->setListIndex(0);
}
void frmCR::mnuTransPrePay_Click() {
    ui->cboTransType->setListIndex(1);
}
void frmCR::mnuTransMisc_Click() {
    ui->cboTransType->setListIndex(2);
}

void frmCR::cboTransType_Click() {
    Prompt_SaveEntry();
    Clear_Entry();
    const int mode = ui->cboTransType->ListIndex();
    setModeControls(mode);
    ui->MSFlexGrid1->setVisible(true);
    m_transType = mode;
}

void frmCR::setModeControls(int mode) {
    const bool receipt = mode == 0;
    const bool prepayment = mode == 1;
    const bool misc = mode == 2;

    ui->cmdSearch->setVisible(receipt);
    if (receipt)
        ui->cmdSearch->setEnabled(false);
    if (!misc) {
        // A miscellaneous receipt leaves the unapplied amount and the floating editor as they were.
        ui->lblUnapplied->setVisible(receipt);
        ui->txtUnapplied->setVisible(receipt);
        ui->txtFloat->setVisible(false);
    }
    ui->lblPrePay->setVisible(prepayment);
    ui->txtPrePay->setVisible(prepayment);
    ui->lblPrePayDocNo->setVisible(prepayment);
    ui->txtPrePayDocNo->setVisible(prepayment);
    ui->cboCustomers->setVisible(!misc);
    ui->lblCustomers->setVisible(!misc);
    ui->txtCustInfo->setVisible(!misc);
    ui->lblDistribution->setVisible(misc);
    ui->txtDistribution->setVisible(misc);
    ui->cmdNewInvoice->setVisible(misc);
    ui->cmdDist->setVisible(misc);
    ui->cmdAccount->setVisible(misc);
    if (misc) {
        ui->cmdNewInvoice->setEnabled(false);
        ui->cmdDist->setEnabled(false);
        ui->cmdAccount->setEnabled(false);
        DistLines = 0;
    }

    if (prepayment)
        setWindowTitle(QStringLiteral("Tillbook - PrePayment Entry"));
    else if (misc)
        setWindowTitle(QStringLiteral("Tillbook - Misc. Receipt Entry"));
    else
        setWindowTitle(QStringLiteral("Tillbook - Receipt Entry"));
}

void frmCR::Clear_Entry() {
    ui->txtEntDesc->clear();
    ui->cboCustomers->setListIndex(-1);
    ui->txtCustInfo->clear();
    const QDate today = Today();
    m_dateMask =
        FormatShortDate(today).replace(QRegularExpression(QStringLiteral("[0-9]")), QStringLiteral("_"));
    ui->txtDate->setText(FormatShortDate(today));
    Load_FiscalYears(today);
    Load_FiscalPeriods(today);
    ui->txtAmount->clear();
    ui->txtReceiptNum->clear();
    ui->txtPayer->clear();
    ui->txtUnapplied->clear();
    ui->txtDistribution->clear();
    ui->cmdSearch->setEnabled(false);
    ui->txtPrePayDocNo->clear();
    ui->txtPrePay->clear();
    ui->cmdSave->setEnabled(false);
    ui->mnuFileSave->setEnabled(false);
    ui->cmdPrint->setEnabled(false);
    ui->mnuFilePrint->setEnabled(false);
    ui->txtFloat->clear();
}

void frmCR::Prompt_SaveEntry() {
    if (!EntryDirty)
        return;
    const int answer = MsgBox(QStringLiteral("Do you want to save the current entry?"),
                              vbYesNo + vbExclamation, QStringLiteral("Unsaved Entry"));
    if (answer == vbYes) {
        cmdSave_Click();
    } else {
        EntryDirty = false;
        ui->txtUnapplied->setText(ui->txtAmount->text());
    }
}

// Saving an entry comes with the posting procedures.
void frmCR::cmdSave_Click() {}

// ---- Closing ----

void frmCR::cmdClose_Click() {
    close();
}
void frmCR::mnuFileClose_Click() {
    cmdClose_Click();
}

void frmCR::closeEvent(QCloseEvent* event) {
    if (!m_closing) {
        m_closing = true;
        Save_BatchInfo();
        Save_ReceiptStyle({ui->mnuFileReceipt2V->isChecked(), ui->mnuFileReceipt3V->isChecked()});
    }
    event->accept();
    QCoreApplication::quit();
}

// ---- The customer list ----

void frmCR::Load_Customers() {
    std::vector<CustomerRecord> customers;
    try {
        customers = Read_Customers(*LedgerSession);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The customer list could not be read."), error.description());
        return;
    }
    Sort_Customers(customers);
    Customers = std::move(customers);
    Fill_CustomerCombo(static_cast<int>(Customers.size()));
}

void frmCR::Fill_CustomerCombo(int count) {
    QStringList names;
    names.reserve(count);
    for (int i = 0; i < count && i < static_cast<int>(Customers.size()); ++i)
        names << Customers[static_cast<size_t>(i)].Name;
    ui->cboCustomers->addItems(names);
}

void frmCR::Select_Customer(const QString& customerNumber, int receiptType) {
    if (receiptType == 5) {
        ui->cboCustomers->setListIndex(-1);
        return;
    }
    const int position = Find_Customer(Customers, customerNumber);
    if (position >= 0)
        ui->cboCustomers->setListIndex(position);
}

// ---- The fiscal year and period ----

void frmCR::Load_FiscalYears(const QDate& date) {
    ui->cboYear->clear();
    if (!LedgerSession)
        return;
    try {
        const FiscalYearList list = Read_FiscalYears(*LedgerSession, date);
        ui->cboYear->addItems(list.years);
        ui->cboYear->setListIndex(list.selected);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The fiscal years could not be read."), error.description());
    }
}

void frmCR::Load_FiscalPeriods(const QDate& date) {
    ui->cboPeriod->clear();
    if (!LedgerSession)
        return;
    try {
        const int count = Get_PeriodCount(*LedgerSession);
        ui->cboPeriod->addItems(PeriodEntries(count));
        ui->cboPeriod->setListIndex(PeriodIndexOf(date, count));
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The fiscal periods could not be read."), error.description());
    }
}

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
}

void frmCR::Load_OpenDocuments() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Customers.size()))
        return;
    const QString customer = Customers[static_cast<size_t>(position)].Id;
    try {
        BatchView->browse(FilterOpenReceiptBatches, true);
        BatchView->fetch();
        ReceiptPostView->clear();
        FieldCollection& post = ReceiptPostView->fields();
        post.item(QStringLiteral("IDCUST")).putWithoutVerification(customer);
        ReceiptPostView->process();
        ReceiptPostView->order(0);
        int n = 1;
        post.item(QStringLiteral("CNTKEY")).putWithoutVerification(QString::number(n));
        const int lastColumn = ui->MSFlexGrid1->Cols() - 1;
        while (ReceiptPostView->read()) {
            QStringList row;
            const QString apply = fieldText(*ReceiptPostView, QStringLiteral("APPLY"));
            row << ApplyMarkText(apply);
            if (apply == u"X" || apply == u"N")
                ReceiptHeaderView->clear();
            const QString docType = fieldText(*ReceiptHeaderView, QStringLiteral("DOCTYPE"));
            row << (docType == u"1" ? QStringLiteral("Invoice") : QString());
            for (int c = 2; c < ApplyGridFields.size(); ++c)
                row << fieldText(*ReceiptPostView, ApplyGridFields[c]);
            Add_GridRow(row, n, lastColumn, GridRowReceipt);
            ++n;
            post.item(QStringLiteral("CNTKEY")).putWithoutVerification(QString::number(n));
        }
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The customer's open documents could not be read."),
                          error.description());
    }
}

void frmCR::Load_CustomerDocuments() {
    const int position = ui->cboCustomers->ListIndex();
    if (position < 0 || position >= static_cast<int>(Customers.size()))
        return;
    const QString customer = Customers[static_cast<size_t>(position)].Id;
    try {
        DocumentView->clear();
        DocumentView->browse(QStringLiteral("IDCUST =") + customer, true);
        int rows = 0;
        while (DocumentView->fetch()) {
            const Money due = ValMoney(fieldText(*DocumentView, QStringLiteral("AMTDUETC")));
            if (!(due > Money()))
                continue;
            QStringList row;
            for (const QString& field : CustomerDocumentsFields)
                row << fieldText(*DocumentView, field);
            row[5] = TransactionTypeText(row[5]);
            row[6] = DocumentTypeText(row[6]);
            row[9] = FormatAmount(ValMoney(row[9]));
            row[10] = FormatAmount(ValMoney(row[10]));
            row[11] = FullyPaidText(row[11]);
            ++rows;
            Add_GridRow(row, rows, static_cast<int>(row.size()) - 1, GridRowReceipt);
        }
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The customer's documents could not be read."), error.description());
    }
}

void frmCR::Add_GridRow(const QStringList& values, int row, int lastColumn, int kind) {
    FlexGrid* grid = ui->MSFlexGrid1;
    grid->setRows(row + 1);
    const int mode = ui->cboTransType->ListIndex();
    for (int c = 0; c <= lastColumn && c < values.size(); ++c) {
        const QString& value = values[c];
        if (mode == 1 || mode == 2) {
            grid->setTextMatrix(row, c, value);
        } else if (kind == GridRowAppliedDocument) {
            grid->setTextMatrix(row, c, c <= 1 ? value.trimmed() : FormatAmount(ValMoney(value)));
        } else if (c <= 2 || c >= 14) {
            grid->setTextMatrix(row, c, value.trimmed());
        } else {
            grid->setTextMatrix(row, c, FormatAmount(ValMoney(value)));
            grid->setRow(row);
            grid->setCol(c);
            grid->setCellAlignment(flexAlignRightCenter);
        }
    }
}

bool frmCR::Is_GridCellEmpty(int row, int column) const {
    return ui->MSFlexGrid1->TextMatrix(row, column).isEmpty();
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
        ui->cboBatch->addItems(Read_OpenBatches());
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The receipt batches could not be read."), error.description());
    }
}

void frmCR::Get_BatchNumber() {
    Load_Batches();
    Load_BatchInfo();
    const QString rememberedBatch = CurrentBatch;
    const int position = Int16Of(BatchListIndex);
    if (BatchListIndex != u"-1" && position >= 0 && position < ui->cboBatch->ListCount()) {
        ui->cboBatch->setListIndex(position);
        if (ui->cboBatch->currentText() == rememberedBatch) {
            // The batch click has read the batch's figures and its entries.
            return;
        }
    }
    ui->cboBatch->setListIndex(-1);
    showBatchFigures(QString(), QString(), QString());
}

void frmCR::cboBatch_Click() {
    Clear_Entry();
    if (ui->cboBatch->ListIndex() < 0)
        return;
    CurrentBatch = ui->cboBatch->currentText();
    BatchListIndex = QString::number(ui->cboBatch->ListIndex());
    try {
        const QString entries = Count_BatchEntries(CurrentBatch);
        const QString total = Get_BatchTotal(CurrentBatch);
        BankCode = Get_BatchBank(CurrentBatch);
        Load_EntryList(Int16Of(entries));
        ui->cboEntry->setListIndex(-1);
        showBatchFigures(entries, total, BankCode);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("Batch %1 could not be read.").arg(CurrentBatch),
                          error.description());
    }
    ui->cmdNewEntry->setEnabled(true);
    ui->mnuEntryNew->setEnabled(true);
}

void frmCR::cboBatch_GotFocus() {
    if (EntryDirty)
        return;
    Lock_Entry();
    ui->cmdPrint->setEnabled(false);
}

void frmCR::cmdNewBatch_Click() {
    qint64 number = 0;
    try {
        number = Create_Batch(Today());
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("A new batch could not be created."), error.description());
        return;
    }
    CurrentBatch = QString::number(number);
    QStringList banks;
    try {
        banks = Load_BankCodes(*LedgerSession);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The bank codes could not be read."), error.description());
    }
    frmBank bank(
        CurrentBatch, banks, [batch = CurrentBatch](const QString& code) { Set_BatchBank(batch, code); },
        this);
    bank.exec();
    BankCode = bank.BankCode();
    if (BankCode.isEmpty()) {
        MsgBox(
            QStringLiteral("Batch %1 has no bank code. Choose it again with a new batch, or give it one in "
                           "the ledger before posting.")
                .arg(CurrentBatch),
            vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Bank"));
    }
    CurrentEntry = QStringLiteral("0");
    showBatchFigures(QStringLiteral("0"), QStringLiteral("0.00"), BankCode);
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
    EntryIsNew.assign(static_cast<size_t>(std::max(count, 0)), false);
}

void frmCR::cboEntry_Click() {
    const int position = ui->cboEntry->ListIndex();
    if (position < 0 || EntryIsNew.empty() || position >= static_cast<int>(EntryIsNew.size()))
        return;
    if (!EntryIsNew[static_cast<size_t>(position)]) {
        CurrentEntry = QString::number(position + 1);
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
    if (position >= 0 && position < static_cast<int>(EntryIsNew.size()) &&
        EntryIsNew[static_cast<size_t>(position)])
        Unlock_Entry();
}

void frmCR::cmdNewEntry_Click() {
    EntryDirty = false;
    if (ui->cboEntry->ListCount() == 0 || EntryIsNew.empty() || !EntryIsNew.back()) {
        Unlock_Entry();
        EntryIsNew.push_back(true);
        CurrentEntry = QString::number(EntryIsNew.size());
        ui->cboEntry->addItem(CurrentEntry);
        ui->cboEntry->setListIndex(ui->cboEntry->ListCount() - 1);
        ui->cboTransType->setListIndex(0);
        Clear_Entry();
    } else {
        // Only one new entry at a time stands at the end of the list.
        ui->cmdNewEntry->setEnabled(false);
        ui->mnuEntryNew->setEnabled(false);
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
        ui->cmdDist->setEnabled(enabled);
        ui->cmdAccount->setEnabled(enabled);
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
    ApplyCount = 0;
}

void frmCR::Show_CustomerInfo(int position) {
    if (position < 0 || position >= static_cast<int>(Customers.size()))
        return;
    const CustomerRecord& customer = Customers[static_cast<size_t>(position)];
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
    selectFirst(ui->cboCustomers);
}
void frmCR::mnuCustomerPrevious_Click() {
    selectPrevious(ui->cboCustomers);
}
void frmCR::mnuCustomerNext_Click() {
    selectNext(ui->cboCustomers);
}
void frmCR::mnuCustomerLast_Click() {
    selectLast(ui->cboCustomers);
}

// ---- A saved entry ----

void frmCR::Load_Receipt() {
    RecalledReceipt receipt;
    try {
        receipt = Read_Receipt(CurrentBatch, CurrentEntry);
    } catch (const LedgerError& error) {
        reportLedgerError(
            QStringLiteral("Entry %1 of batch %2 could not be read.").arg(CurrentEntry, CurrentBatch),
            error.description());
        return;
    }
    ui->txtEntDesc->setText(receipt.description);
    ui->cboTransType->setListIndex(Get_ReceiptTypeIndex(receipt.receiptType));
    ui->txtAmount->setText(FormatAmount(receipt.amount.roundedToCentsBankers()));
    ui->txtDate->setText(receipt.date);
    int year = ui->cboYear->findText(receipt.fiscalYear);
    if (year < 0) {
        ui->cboYear->addItem(receipt.fiscalYear);
        year = ui->cboYear->ListCount() - 1;
    }
    ui->cboYear->setListIndex(year);
    ui->cboPeriod->setListIndex(ui->cboPeriod->findText(receipt.fiscalPeriod));
    ui->txtReceiptNum->setText(receipt.receiptNumber);
    ui->txtPayer->setText(receipt.payer);
    const QString unapplied = FormatAmount(receipt.unapplied.roundedToCentsBankers());
    ui->txtUnapplied->setText(unapplied);
    ui->txtDistribution->setText(unapplied);
    ui->txtPrePay->setText(receipt.documentNumber);
    ui->txtPrePayDocNo->setText(receipt.firstLineNumber);
    Select_Customer(receipt.customerNumber, receipt.receiptType);
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
        fillGridLines(Read_EntryLines(detailView, CurrentBatch, CurrentEntry, fields), kind);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The entry's %1 could not be read.").arg(what), error.description());
    }
}

void frmCR::Load_AppliedDocuments() {
    loadEntryLines(*ReceiptDetailView, 8, AppliedDocumentsFormat, AppliedDocumentsFields,
                   GridRowAppliedDocument, QStringLiteral("applied documents"));
}

void frmCR::Load_Distributions() {
    loadEntryLines(*ReceiptMiscView, 5, DistributionFormat, DistributionFields, GridRowReceipt,
                   QStringLiteral("distribution lines"));
}

} // namespace tillbook
