#include "entry/frmCR.h"

#include "entry/CustomerInfo.h"
#include "entry/CustomerListModel.h"
#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "entry/dialogs/frmBank.h"
#include "fetching/Batches.h"
#include "fetching/CodeChecks.h"
#include "fetching/CustomerList.h"
#include "fetching/FiscalPeriods.h"
#include "fetching/ReceiptRecall.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "settings/Registry.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui/Forms.h"
#include "ui/Help.h"
#include "ui/Platform.h"
#include "ui/frmAbout.h"
#include "ui/frmWorking.h"
#include "ui_frmCR.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QResizeEvent>
#include <QSignalBlocker>

namespace tillbook {

frmCR::frmCR(QWidget* parent) : QMainWindow(parent), ui(std::make_unique<Ui::frmCR>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmCR"));
    FixFormSize(this, FormWidthTwips, FormHeightTwips);
    // A long customer list must not be measured item by item to size the box.
    ui->cboCustomers->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ui->cmdNewBatch->setIcon(style()->standardIcon(QStyle::SP_FileDialogNewFolder));
    ui->cmdNewEntry->setIcon(style()->standardIcon(QStyle::SP_FileIcon));
    ui->cmdDist->setIcon(style()->standardIcon(QStyle::SP_FileDialogContentsView));
    ui->cmdAccount->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    // The grid's design-time columns are the distribution lines'.
    ui->MSFlexGrid1->setFormatString(DistributionFormat);
    connectHandlers();
    // No entry can be started before a batch is chosen.
    setNewEntryEnabled(false);
}

frmCR::~frmCR() = default;

void frmCR::connectHandlers() {
    connect(ui->cboTransType, &ComboBox::Click, this, &frmCR::cboTransType_Click);
    connect(ui->mnuTransReceipt, &QAction::triggered, this, &frmCR::mnuTransReceipt_Click);
    connect(ui->mnuTransPrePay, &QAction::triggered, this, &frmCR::mnuTransPrePay_Click);
    connect(ui->mnuTransMisc, &QAction::triggered, this, &frmCR::mnuTransMisc_Click);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmCR::cmdClose_Click);
    connect(ui->mnuFileClose, &QAction::triggered, this, &frmCR::mnuFileClose_Click);
    connectPrinting();
    connect(ui->mnuHelpContents, &QAction::triggered, this, &frmCR::mnuHelpContents_Click);
    connect(ui->mnuHelpAbout, &QAction::triggered, this, &frmCR::mnuHelpAbout_Click);

    connectSelection();
    connectApplicationGrid();
    connectSaving();
    connectAmountAndDate();
    connectDistributions();
}

bool frmCR::Form_Load(const QString& password) {
    CentreForm(this);
    try {
        Desk().LedgerSession = std::make_unique<Session>();
        Desk().LedgerSession->open(Desk().SignInUser, password, Desk().SignInDatabaseID, Today(), 0);
        Open_ReceiptViews(Desk());
    } catch (const LedgerError& error) {
        const QString description = error.description();
        Close_Ledger(Desk());
        MsgBox(QStringLiteral("The company %1 could not be opened.").arg(Desk().SignInDatabaseID) + u'\n' +
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
    if (Desk().LedgerSession)
        Desk().LedgerSession->errors().clear();
    MsgBox(what + u'\n' + description, vbOKOnly + vbExclamation, QStringLiteral("Tillbook - Receipt Entry"));
}

// ---- The mode switch and the entry fields ----

// A saved entry on show keeps its kind: the menu does nothing while it is locked, as the list itself.
void frmCR::mnuTransReceipt_Click() {
    if (!m_entryLocked)
        ui->cboTransType->setListIndex(0);
}
void frmCR::mnuTransPrePay_Click() {
    if (!m_entryLocked)
        ui->cboTransType->setListIndex(1);
}
void frmCR::mnuTransMisc_Click() {
    if (!m_entryLocked)
        ui->cboTransType->setListIndex(2);
}

void frmCR::cboTransType_Click() {
    // The list has already moved to the clerk's choice; the entry on show is still of the kind in TransType.
    const int mode = ui->cboTransType->ListIndex();
    if (Prompt_SaveEntry() == vbYes) {
        if (!m_lastPosting.PostOK) {
            // Not saved: the entry stays as keyed, in its own mode, for the clerk to correct and save.
            const QSignalBlocker quiet(ui->cboTransType);
            ui->cboTransType->setCurrentIndex(m_transType);
            return;
        }
        // Saved and shown; the clerk's chosen mode then holds, on a new entry ready for keying.
        cmdNewEntry_Click();
        if (mode != 0)
            ui->cboTransType->setListIndex(mode);
        return;
    }
    Clear_Entry();
    m_amountOnFocus = Money();
    setModeControls(mode);
    // Nothing of the previous entry or mode stays in the grid (misc. mode empties it as it starts its lines).
    if (mode != 2)
        Set_GridHeaders();
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
        Desk().DistLines = 0;
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
    // Typing a date starts again at its first digit.
    m_datePos = 0;
    m_dateTyping = false;
    Load_FiscalYears(today);
    Load_FiscalPeriods(today);
    ui->txtAmount->clear();
    Desk().DecimalTyped = false;
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

int frmCR::Prompt_SaveEntry() {
    if (!Desk().EntryDirty)
        return 0;
    const int answer = MsgBox(QStringLiteral("Do you want to save the current entry?"),
                              vbYesNo + vbExclamation, QStringLiteral("Unsaved Entry"));
    if (answer == vbYes) {
        cmdSave_Click();
    } else {
        Desk().EntryDirty = false;
        ui->txtUnapplied->setText(ui->txtAmount->text());
    }
    return answer;
}

// ---- Closing ----

void frmCR::mnuHelpContents_Click() {
    ShowHelp();
}

void frmCR::mnuHelpAbout_Click() {
    ShowAbout(this);
}

void frmCR::cmdClose_Click() {
    close();
}
void frmCR::mnuFileClose_Click() {
    cmdClose_Click();
}

void frmCR::closeEvent(QCloseEvent* event) {
    if (!m_closing) {
        m_closing = true;
        Save_BatchInfo(Desk());
        Save_ReceiptStyle({ui->mnuFileReceipt2V->isChecked(), ui->mnuFileReceipt3V->isChecked()});
        // The views and the session go with the window: nothing of the ledger may outlive the application.
        Close_Ledger(Desk());
    }
    event->accept();
    QCoreApplication::quit();
}

void frmCR::Form_Resize() {
    if (isMinimized())
        return;
    if (windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))
        setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    FixFormSize(this, FormWidthTwips, FormHeightTwips);
    if (size() != QSize(pixelsOfTwips(FormWidthTwips), pixelsOfTwips(FormHeightTwips)))
        resize(pixelsOfTwips(FormWidthTwips), pixelsOfTwips(FormHeightTwips));
}

void frmCR::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

void frmCR::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
}

// ---- The customer list ----

void frmCR::Load_Customers() {
    try {
        Desk().Customers = Read_Customers(*Desk().LedgerSession, frmWorking::ShownProgress());
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The customer list could not be read."), error.description());
        return;
    }
    Fill_CustomerCombo(static_cast<int>(Desk().Customers.size()));
}

void frmCR::Fill_CustomerCombo(int count) {
    ShowCustomers(ui->cboCustomers, Desk().Customers, count);
}

// ---- The fiscal year and period ----

void frmCR::Load_FiscalYears(const QDate& date) {
    ui->cboYear->clear();
    if (!Desk().LedgerSession)
        return;
    try {
        const FiscalYearList list = Read_FiscalYears(*Desk().LedgerSession, date);
        ui->cboYear->addItems(list.years);
        ui->cboYear->setListIndex(list.selected);
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The fiscal years could not be read."), error.description());
    }
}

void frmCR::Load_FiscalPeriods(const QDate& date) {
    ui->cboPeriod->clear();
    if (!Desk().LedgerSession)
        return;
    try {
        const int count = Get_PeriodCount(*Desk().LedgerSession);
        ui->cboPeriod->addItems(PeriodEntries(count));
        ui->cboPeriod->setListIndex(PeriodIndexOf(date, count));
    } catch (const LedgerError& error) {
        reportLedgerError(QStringLiteral("The fiscal periods could not be read."), error.description());
    }
}

} // namespace tillbook
