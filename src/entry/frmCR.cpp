#include "entry/frmCR.h"

#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
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
#include <QResizeEvent>
#include <QSignalBlocker>
#include <exception>

namespace tillbook {

frmCR::frmCR(QWidget* parent) : QMainWindow(parent), ui(std::make_unique<Ui::frmCR>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmCR"));
    FixFormSize(this, FormWidthTwips, FormHeightTwips);
    m_parts = std::make_unique<ReceiptWindowParts>(*this, *ui);
    m_amountDate = &m_parts->amountDate;
    m_entry = &m_parts->entry;
    m_grid = &m_parts->grid;
    m_selection = &m_parts->selection;
    m_lines = &m_parts->lines;
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
    m_entry->setNewEntryEnabled(false);
}

frmCR::~frmCR() = default;

int frmCR::TransType() const {
    return m_entry->TransType();
}

bool frmCR::EntryLocked() const {
    return m_entry->EntryLocked();
}

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

    connect(ui->cboBatch, &ComboBox::Click, this, &frmCR::cboBatch_Click);
    onGotFocus(ui->cboBatch, [this] { cboBatch_GotFocus(); });
    connect(ui->cmdNewBatch, &QPushButton::clicked, this, &frmCR::cmdNewBatch_Click);
    connect(ui->mnuBatchNew, &QAction::triggered, this, &frmCR::mnuBatchNew_Click);
    connect(ui->cboEntry, &ComboBox::Click, this, &frmCR::cboEntry_Click);
    onLostFocus(ui->cboEntry, [this] { cboEntry_LostFocus(); });
    connect(ui->cmdNewEntry, &QPushButton::clicked, this, &frmCR::cmdNewEntry_Click);
    connect(ui->mnuEntryNew, &QAction::triggered, this, &frmCR::mnuEntryNew_Click);
    connect(ui->cboCustomers, &ComboBox::Click, this, &frmCR::cboCustomers_Click);
    m_selection->connectControls();

    connect(ui->MSFlexGrid1, &FlexGrid::DblClick, this, &frmCR::MSFlexGrid1_DblClick);
    connect(ui->cmdSearch, &QPushButton::clicked, this, &frmCR::cmdSearch_Click);
    // From the keyboard: Space or Enter on a document does what a double-click does.
    onKeyDown(ui->MSFlexGrid1, [this](int& keyCode, int shift) {
        if ((keyCode == vbKeySpace || keyCode == vbKeyReturn) && shift == 0 && TransType() != KindMisc) {
            keyCode = 0;
            MSFlexGrid1_DblClick();
        }
    });

    connect(ui->cmdSave, &QPushButton::clicked, this, &frmCR::cmdSave_Click);
    connect(ui->mnuFileSave, &QAction::triggered, this, &frmCR::mnuFileSave_Click);

    onGotFocus(ui->txtAmount, [this] { txtAmount_GotFocus(); });
    onKeyPress(ui->txtAmount, [this](int& keyAscii) { txtAmount_KeyPress(keyAscii); });
    onLostFocus(ui->txtAmount, [this] { txtAmount_LostFocus(); });
    onGotFocus(ui->txtDate, [this] { txtDate_GotFocus(); });
    connect(ui->txtDate, &QLineEdit::textChanged, this, &frmCR::txtDate_Change);
    onKeyPress(ui->txtDate, [this](int& keyAscii) { txtDate_KeyPress(keyAscii); });
    onKeyUp(ui->txtDate, [this](int keyCode, int shift) { txtDate_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtDate, [this] { txtDate_LostFocus(); });
    m_amountDate->connectControls();

    connect(ui->cmdNewInvoice, &QPushButton::clicked, this, &frmCR::cmdNewInvoice_Click);
    connect(ui->cmdDist, &QPushButton::clicked, this, &frmCR::cmdDist_Click);
    connect(ui->cmdAccount, &QPushButton::clicked, this, &frmCR::cmdAccount_Click);
    connect(ui->MSFlexGrid1, &FlexGrid::EnterCell, this, &frmCR::MSFlexGrid1_EnterCell);
    connect(ui->MSFlexGrid1, &FlexGrid::LeaveCell, this, &frmCR::MSFlexGrid1_LeaveCell);
    connect(ui->MSFlexGrid1, &FlexGrid::Click, this, &frmCR::MSFlexGrid1_Click);
    connect(ui->txtFloat, &QLineEdit::textChanged, this, &frmCR::txtFloat_Change);
    onKeyDown(ui->txtFloat, [this](int& keyCode, int shift) { txtFloat_KeyDown(keyCode, shift); });
    onKeyUp(ui->txtFloat, [this](int keyCode, int shift) { txtFloat_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtDistribution, [this] { txtDistribution_LostFocus(); });
    m_lines->connectControls();
}

bool frmCR::Form_Load(const QString& password) {
    CentreForm(this);
    try {
        Desk().LedgerSession = std::make_unique<Session>();
        // The password's hash is checked on the other core while the views are opened and the customers
        // read; nothing of the company is shown before it passes.
        Desk().LedgerSession->beginOpen(Desk().SignInUser, password, Desk().SignInDatabaseID, Today(), 0);
        std::exception_ptr viewsFailed;
        try {
            Open_ReceiptViews(Desk());
            m_selection->Read_CustomersAhead();
        } catch (const LedgerError&) {
            viewsFailed = std::current_exception();
        }
        // A wrong password is said before anything the reads found.
        Desk().LedgerSession->finishOpen();
        if (viewsFailed)
            std::rethrow_exception(viewsFailed);
    } catch (const LedgerError& error) {
        const QString description = error.description();
        Close_Ledger(Desk());
        MsgBox(QStringLiteral("The company %1 could not be opened.").arg(Desk().SignInDatabaseID) + u'\n' +
                   description,
               vbOKOnly + vbCritical, QStringLiteral("Tillbook - Receipt Entry"));
        return false;
    }

    ui->cboTransType->setListIndex(KindReceipt);
    const QDate today = Today();
    ui->txtDate->setText(FormatShortDate(today));
    m_amountDate->Load_FiscalYears(today);
    m_amountDate->Load_FiscalPeriods(today);
    m_selection->Get_BatchNumber();
    const ReceiptStyle style = Load_ReceiptStyle();
    ui->mnuFileReceipt2V->setChecked(style.twoPanel);
    ui->mnuFileReceipt3V->setChecked(style.threePanel);

    frmWorking working;
    working.showNow();
    m_selection->Load_Customers();
    working.close();
    return true;
}

// ---- The kind of entry ----

// A saved entry on show keeps its kind: the menu does nothing while it is locked, as the list itself.
void frmCR::mnuTransReceipt_Click() {
    if (!EntryLocked())
        ui->cboTransType->setListIndex(KindReceipt);
}
void frmCR::mnuTransPrePay_Click() {
    if (!EntryLocked())
        ui->cboTransType->setListIndex(KindPrepayment);
}
void frmCR::mnuTransMisc_Click() {
    if (!EntryLocked())
        ui->cboTransType->setListIndex(KindMisc);
}

void frmCR::cboTransType_Click() {
    // The list has already moved to the clerk's choice; the entry on show is still of the kind in TransType.
    const int mode = ui->cboTransType->ListIndex();
    if (m_entry->Prompt_SaveEntry([this] { cmdSave_Click(); }) == vbYes) {
        if (!m_lastPosting.PostOK) {
            // Not saved: the entry stays as keyed, in its own mode, for the clerk to correct and save.
            const QSignalBlocker quiet(ui->cboTransType);
            ui->cboTransType->setCurrentIndex(TransType());
            return;
        }
        // Saved and shown; the clerk's chosen mode then holds, on a new entry ready for keying.
        cmdNewEntry_Click();
        if (mode != KindReceipt)
            ui->cboTransType->setListIndex(mode);
        return;
    }
    m_entry->switchKind(mode);
    // Nothing of the previous entry or mode stays in the grid (misc. mode empties it as it starts its lines).
    if (mode != KindMisc)
        m_grid->Set_GridHeaders();
    ui->MSFlexGrid1->setVisible(true);
}

// ---- Help and closing ----

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

} // namespace tillbook
