// The receipt window: the distribution lines of a miscellaneous receipt, keyed through the editor that floats
// over the grid's current cell, checked cell by cell, and filled from the finder.
#include "entry/DistributionRules.h"
#include "entry/ReceiptDesk.h"
#include "entry/dialogs/frmFinder.h"
#include "entry/frmCR.h"
#include "fetching/CodeChecks.h"
#include "fetching/FinderRecords.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/LedgerError.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui/Platform.h"
#include "ui_frmCR.h"

#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

namespace tillbook {

namespace {

// Runs a function on every mouse press on a widget, before the widget takes it.
class PressWatcher : public QObject {
public:
    PressWatcher(QWidget* watched, std::function<void()> onPress)
        : QObject(watched), m_onPress(std::move(onPress)) {
        watched->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
            m_onPress();
        return false;
    }

private:
    std::function<void()> m_onPress;
};

} // namespace

void frmCR::connectDistributions() {
    FlexGrid* grid = ui->MSFlexGrid1;
    connect(ui->cmdNewInvoice, &QPushButton::clicked, this, &frmCR::cmdNewInvoice_Click);
    connect(ui->cmdDist, &QPushButton::clicked, this, &frmCR::cmdDist_Click);
    connect(ui->cmdAccount, &QPushButton::clicked, this, &frmCR::cmdAccount_Click);
    connect(grid, &FlexGrid::EnterCell, this, &frmCR::MSFlexGrid1_EnterCell);
    connect(grid, &FlexGrid::LeaveCell, this, &frmCR::MSFlexGrid1_LeaveCell);
    connect(grid, &FlexGrid::Click, this, &frmCR::MSFlexGrid1_Click);
    // A click checks the cell it leaves only when it does leave one.
    new PressWatcher(grid->viewport(), [this] { m_leftCellRow = 0; });
    connect(ui->txtFloat, &QLineEdit::textChanged, this, &frmCR::txtFloat_Change);
    onKeyDown(ui->txtFloat, [this](int& keyCode, int shift) { txtFloat_KeyDown(keyCode, shift); });
    onKeyUp(ui->txtFloat, [this](int keyCode, int shift) { txtFloat_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtDistribution, [this] { txtDistribution_LostFocus(); });
    connect(ui->txtDistribution, &QLineEdit::textChanged, this, &frmCR::followUndistributed);
    grid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid, &QWidget::customContextMenuRequested, this, &frmCR::showLineMenu);
    connect(grid->verticalScrollBar(), &QScrollBar::valueChanged, this, &frmCR::followScrolledCell);
    connect(grid->horizontalScrollBar(), &QScrollBar::valueChanged, this, &frmCR::followScrolledCell);
    // Misc. mode starts on an empty distribution grid, whatever the grid showed before.
    connect(ui->cboTransType, &ComboBox::Click, this, [this] {
        if (ui->cboTransType->ListIndex() != 2)
            return;
        Set_GridHeaders();
        m_distAmounts.assign(1, Money());
        m_editorFloating = false;
        ui->txtFloat->setVisible(false);
    });
}

bool frmCR::editingDistributions() const {
    return m_transType == 2;
}

// ---- Lines ----

void frmCR::cmdNewInvoice_Click() {
    FlexGrid* grid = ui->MSFlexGrid1;
    // The amount being keyed counts only once it is checked, as when the clerk leaves its cell.
    if (m_editorFloating && grid->Col() == DistColAmount && grid->Row() >= 1 &&
        grid->Row() <= Desk().DistLines &&
        !checkDistCell(grid->Row(), DistColAmount, ui->txtFloat->text(), RefusedBy::Keys)) {
        refuseDistAmount();
        return;
    }
    const bool first = Desk().DistLines == 0;
    const bool somethingLeft = first || ui->txtDistribution->text() != u"0.00";
    if (first || (somethingLeft &&
                  CanAddDistLine(Desk().DistLines, grid->TextMatrix(Desk().DistLines, DistColAmount)))) {
        ++Desk().DistLines;
        if (grid->Rows() <= Desk().DistLines)
            grid->setRows(Desk().DistLines + 1);
        grid->setTextMatrix(Desk().DistLines, DistColAmount, QStringLiteral("0.00"));
    }
    if (first) {
        ui->cmdDist->setEnabled(true);
        ui->cmdAccount->setEnabled(true);
        Make_ReceiptNumber();
    }

    if (grid->Row() == Desk().DistLines && grid->Col() == DistColCode) {
        MSFlexGrid1_EnterCell();
    } else {
        grid->setRow(Desk().DistLines);
        grid->setCol(DistColCode);
    }
    m_distAmounts.resize(static_cast<size_t>(Desk().DistLines) + 1);
    ui->cmdSave->setEnabled(true);
    ui->mnuFileSave->setEnabled(true);
    Desk().EntryDirty = true;
}

void frmCR::txtDistribution_LostFocus() {
    if (ui->txtDistribution->text() == u"0.00")
        ui->cmdNewInvoice->setEnabled(false);
}

// The read-only undistributed amount never takes the focus: New Invoice follows its every change instead, so
// that no empty line can be added with nothing left to distribute.
void frmCR::followUndistributed() {
    const QString text = ui->txtDistribution->text();
    if (text == u"0.00" || Strip_Commas(text) < Money())
        ui->cmdNewInvoice->setEnabled(false);
    else if (editingDistributions() && !m_entryLocked && Desk().DistLines > 0)
        ui->cmdNewInvoice->setEnabled(true);
}

void frmCR::removeDistLine(int line) {
    FlexGrid* grid = ui->MSFlexGrid1;
    if (m_entryLocked || line < 1 || line > Desk().DistLines)
        return;
    // The lines below move up one row; the last row is emptied.
    for (int row = line; row < Desk().DistLines; ++row)
        for (int col = 0; col < grid->Cols(); ++col)
            grid->setTextMatrix(row, col, grid->TextMatrix(row + 1, col));
    for (int col = 0; col < grid->Cols(); ++col)
        grid->setTextMatrix(Desk().DistLines, col, QString());
    if (static_cast<size_t>(line) < m_distAmounts.size())
        m_distAmounts.erase(m_distAmounts.begin() + line);
    --Desk().DistLines;
    m_distAmounts.resize(static_cast<size_t>(Desk().DistLines) + 1);
    ui->txtDistribution->setText(
        FormatAmount(Undistributed(Strip_Commas(ui->txtAmount->text()), m_distAmounts, Desk().DistLines)));
    setSaveEnabled(Desk().DistLines > 0);
    Desk().EntryDirty = true;
    if (Desk().DistLines == 0) {
        m_editorFloating = false;
        ui->txtFloat->setVisible(false);
        ui->cmdNewInvoice->setEnabled(Strip_Commas(ui->txtAmount->text()) > Money());
        return;
    }
    grid->setRow(std::min<int>(line, Desk().DistLines));
    grid->setCol(DistColCode);
    MSFlexGrid1_EnterCell();
}

void frmCR::showLineMenu(const QPoint& at) {
    FlexGrid* grid = ui->MSFlexGrid1;
    const int line = grid->rowAt(at.y());
    if (!editingDistributions() || m_entryLocked || line < 1 || line > Desk().DistLines)
        return;
    QMenu menu(this);
    QAction* remove = menu.addAction(QStringLiteral("Remove Line"));
    remove->setObjectName(QStringLiteral("mnuRemoveLine"));
    if (menu.exec(grid->viewport()->mapToGlobal(at)) == remove)
        removeDistLine(line);
}

// ---- Checks and totals ----

bool frmCR::checkDistCell(int row, int col, const QString& text, RefusedBy by) {
    switch (col) {
    case DistColCode:
        if (const auto account =
                Desk().LedgerSession ? Get_DistRevenueAccount(*Desk().LedgerSession, text) : std::nullopt) {
            // A code typed by hand brings its revenue account, as a code chosen in the finder does; an
            // account keyed for the line's code stays.
            if (text != m_codeOnEnter || Is_GridCellEmpty(row, DistColAccount))
                ui->MSFlexGrid1->setTextMatrix(row, DistColAccount, *account);
            return true;
        }
        MsgBox(InvalidDistCodeText(by), vbOKOnly + vbCritical, InvalidInputTitle);
        return false;
    case DistColAccount:
        if (Desk().LedgerSession && Check_GLAccount(*Desk().LedgerSession, text))
            return true;
        MsgBox(InvalidAccountText(by), vbOKOnly + vbCritical, InvalidInputTitle);
        return false;
    case DistColAmount:
        if (distAmountFits(row, text)) {
            storeDistAmount(row, DistLineAmount(text));
            return true;
        }
        MsgBox(AmountOverUndistributedText, vbOKOnly + vbCritical, InvalidInputTitle);
        return false;
    default:
        return true;
    }
}

bool frmCR::distAmountFits(int row, const QString& text) const {
    const Money left =
        DistRemaining(Strip_Commas(ui->txtAmount->text()), m_distAmounts, Desk().DistLines, row);
    return DistLineAmount(text) <= left;
}

bool frmCR::Check_DistAmount() {
    return distAmountFits(ui->MSFlexGrid1->Row(), ui->txtFloat->text());
}

void frmCR::Recalc_Undistributed() {
    storeDistAmount(ui->MSFlexGrid1->Row(), DistLineAmount(ui->txtFloat->text()));
}

void frmCR::storeDistAmount(int row, Money amount) {
    if (row >= 1 && row <= Desk().DistLines) {
        if (m_distAmounts.size() <= static_cast<size_t>(row))
            m_distAmounts.resize(static_cast<size_t>(row) + 1);
        m_distAmounts[static_cast<size_t>(row)] = amount;
    }
    ui->txtDistribution->setText(
        FormatAmount(Undistributed(Strip_Commas(ui->txtAmount->text()), m_distAmounts, Desk().DistLines)));
}

void frmCR::refuseDistAmount() {
    // The editor lies over the refused cell again: emptied, the line counted at zero.
    ui->txtFloat->clear();
    storeDistAmount(ui->MSFlexGrid1->Row(), Money());
    ui->txtFloat->setFocus(Qt::OtherFocusReason);
}

// ---- The finder ----

void frmCR::cmdDist_Click() {
    Desk().FinderKind = FinderDistCodes;
    showFinder(Desk().FinderKind);
}

void frmCR::cmdAccount_Click() {
    Desk().FinderKind = FinderAccounts;
    showFinder(Desk().FinderKind);
}

void frmCR::showFinder(int kind) {
    if (!Desk().LedgerSession || Desk().DistLines < 1 || m_entryLocked)
        return;
    std::vector<QStringList> records;
    try {
        records = Read_FinderRecords(*Desk().LedgerSession, kind);
    } catch (const LedgerError& error) {
        reportLedgerError(kind == FinderDistCodes
                              ? QStringLiteral("The distribution codes could not be read.")
                              : QStringLiteral("The G/L accounts could not be read."),
                          error.description());
        return;
    }
    frmFinder finder(kind, records, this);
    if (finder.exec() == QDialog::Accepted)
        putFinderChoice(kind, finder.ChosenCode(), finder.ChosenAccount());
}

void frmCR::putFinderChoice(int kind, const QString& code, const QString& account) {
    FlexGrid* grid = ui->MSFlexGrid1;
    const int line = std::max<int>(Desk().DistLines, 1);
    if (kind == FinderDistCodes) {
        grid->setRow(line);
        grid->setCol(DistColCode);
        ui->txtFloat->setText(code);
        grid->setCol(DistColAccount);
        grid->setTextMatrix(line, DistColAccount, account);
    } else {
        const bool blankLine = Is_GridCellEmpty(line, DistColCode) && Is_GridCellEmpty(line, DistColAccount);
        grid->setRow(line);
        grid->setCol(DistColAccount);
        if (blankLine)
            grid->setTextMatrix(line, DistColAccount, code);
        else
            ui->txtFloat->setText(code);
    }
    grid->setCol(DistColAmount);
}

} // namespace tillbook
