// The receipt window: the distribution lines of a miscellaneous receipt, keyed through the editor that floats
// over the grid's current cell, checked cell by cell, and filled from the finder.
#include "entry/ApplicationGrid.h"
#include "entry/DistributionLines.h"
#include "entry/DistributionRules.h"
#include "entry/EntryFields.h"
#include "entry/ReceiptDesk.h"
#include "entry/dialogs/frmFinder.h"
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

DistributionLines::DistributionLines(QWidget& window, Ui::frmCR& form, EntryFields& entry,
                                     ApplicationGrid& grid)
    : m_window(window), ui(form), m_entry(entry), m_grid(grid) {}

void DistributionLines::connectControls() {
    FlexGrid* grid = ui.MSFlexGrid1;
    // A click checks the cell it leaves only when it does leave one.
    new PressWatcher(grid->viewport(), [this] { m_leftCellRow = 0; });
    QObject::connect(ui.txtDistribution, &QLineEdit::textChanged, grid, [this] { followUndistributed(); });
    grid->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(grid, &QWidget::customContextMenuRequested, grid,
                     [this](const QPoint& at) { showLineMenu(at); });
    for (QScrollBar* bar : {grid->verticalScrollBar(), grid->horizontalScrollBar()})
        QObject::connect(bar, &QScrollBar::valueChanged, grid, [this] { followScrolledCell(); });
    // Misc. mode starts on an empty distribution grid, whatever the grid showed before.
    QObject::connect(ui.cboTransType, &ComboBox::Click, grid, [this] {
        if (ui.cboTransType->ListIndex() != KindMisc)
            return;
        m_grid.Set_GridHeaders();
        m_distAmounts.assign(1, Money());
        m_editorFloating = false;
        ui.txtFloat->setVisible(false);
    });
}

bool DistributionLines::editingDistributions() const {
    return m_entry.TransType() == 2;
}

// ---- Lines ----

void DistributionLines::newLine() {
    FlexGrid* grid = ui.MSFlexGrid1;
    // The amount being keyed counts only once it is checked, as when the clerk leaves its cell.
    if (m_editorFloating && grid->Col() == DistColAmount && grid->Row() >= 1 &&
        grid->Row() <= Desk().DistLines &&
        !checkDistCell(grid->Row(), DistColAmount, ui.txtFloat->text(), RefusedBy::Keys)) {
        refuseDistAmount();
        return;
    }
    const bool first = Desk().DistLines == 0;
    const bool somethingLeft = first || ui.txtDistribution->text() != u"0.00";
    if (first || (somethingLeft &&
                  CanAddDistLine(Desk().DistLines, grid->TextMatrix(Desk().DistLines, DistColAmount)))) {
        ++Desk().DistLines;
        if (grid->Rows() <= Desk().DistLines)
            grid->setRows(Desk().DistLines + 1);
        grid->setTextMatrix(Desk().DistLines, DistColAmount, QStringLiteral("0.00"));
    }
    if (first) {
        ui.cmdDist->setEnabled(true);
        ui.cmdAccount->setEnabled(true);
        m_grid.Make_ReceiptNumber();
    }

    if (grid->Row() == Desk().DistLines && grid->Col() == DistColCode) {
        enterCell();
    } else {
        grid->setRow(Desk().DistLines);
        grid->setCol(DistColCode);
    }
    m_distAmounts.resize(static_cast<size_t>(Desk().DistLines) + 1);
    m_entry.setSaveEnabled(true);
    Desk().EntryDirty = true;
}

void DistributionLines::undistributedLeft() {
    if (ui.txtDistribution->text() == u"0.00")
        ui.cmdNewInvoice->setEnabled(false);
}

// The read-only undistributed amount never takes the focus: New Invoice follows its every change instead, so
// that no empty line can be added with nothing left to distribute.
void DistributionLines::followUndistributed() {
    const QString text = ui.txtDistribution->text();
    if (text == u"0.00" || Strip_Commas(text) < Money())
        ui.cmdNewInvoice->setEnabled(false);
    else if (editingDistributions() && !m_entry.EntryLocked() && Desk().DistLines > 0)
        ui.cmdNewInvoice->setEnabled(true);
}

void DistributionLines::removeDistLine(int line) {
    FlexGrid* grid = ui.MSFlexGrid1;
    if (m_entry.EntryLocked() || line < 1 || line > Desk().DistLines)
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
    ui.txtDistribution->setText(
        FormatAmount(Undistributed(Strip_Commas(ui.txtAmount->text()), m_distAmounts, Desk().DistLines)));
    m_entry.setSaveEnabled(Desk().DistLines > 0);
    Desk().EntryDirty = true;
    if (Desk().DistLines == 0) {
        m_editorFloating = false;
        ui.txtFloat->setVisible(false);
        ui.cmdNewInvoice->setEnabled(Strip_Commas(ui.txtAmount->text()) > Money());
        return;
    }
    grid->setRow(std::min<int>(line, Desk().DistLines));
    grid->setCol(DistColCode);
    enterCell();
}

void DistributionLines::showLineMenu(const QPoint& at) {
    FlexGrid* grid = ui.MSFlexGrid1;
    const int line = grid->rowAt(at.y());
    if (!editingDistributions() || m_entry.EntryLocked() || line < 1 || line > Desk().DistLines)
        return;
    QMenu menu(&m_window);
    QAction* remove = menu.addAction(QStringLiteral("Remove Line"));
    remove->setObjectName(QStringLiteral("mnuRemoveLine"));
    if (menu.exec(grid->viewport()->mapToGlobal(at)) == remove)
        removeDistLine(line);
}

// ---- Checks and totals ----

bool DistributionLines::checkDistCell(int row, int col, const QString& text, RefusedBy by) {
    switch (col) {
    case DistColCode:
        if (const auto account =
                Desk().LedgerSession ? Get_DistRevenueAccount(*Desk().LedgerSession, text) : std::nullopt) {
            // A code typed by hand brings its revenue account, as a code chosen in the finder does; an
            // account keyed for the line's code stays.
            if (text != m_codeOnEnter || m_grid.Is_GridCellEmpty(row, DistColAccount))
                ui.MSFlexGrid1->setTextMatrix(row, DistColAccount, *account);
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

bool DistributionLines::distAmountFits(int row, const QString& text) const {
    const Money left =
        DistRemaining(Strip_Commas(ui.txtAmount->text()), m_distAmounts, Desk().DistLines, row);
    return DistLineAmount(text) <= left;
}

bool DistributionLines::Check_DistAmount() const {
    return distAmountFits(ui.MSFlexGrid1->Row(), ui.txtFloat->text());
}

void DistributionLines::Recalc_Undistributed() {
    storeDistAmount(ui.MSFlexGrid1->Row(), DistLineAmount(ui.txtFloat->text()));
}

void DistributionLines::storeDistAmount(int row, Money amount) {
    if (row >= 1 && row <= Desk().DistLines) {
        if (m_distAmounts.size() <= static_cast<size_t>(row))
            m_distAmounts.resize(static_cast<size_t>(row) + 1);
        m_distAmounts[static_cast<size_t>(row)] = amount;
    }
    ui.txtDistribution->setText(
        FormatAmount(Undistributed(Strip_Commas(ui.txtAmount->text()), m_distAmounts, Desk().DistLines)));
}

void DistributionLines::refuseDistAmount() {
    // The editor lies over the refused cell again: emptied, the line counted at zero.
    ui.txtFloat->clear();
    storeDistAmount(ui.MSFlexGrid1->Row(), Money());
    ui.txtFloat->setFocus(Qt::OtherFocusReason);
}

// ---- The finder ----

void DistributionLines::chooseFromFinder(int kind) {
    Desk().FinderKind = static_cast<std::int16_t>(kind);
    if (!Desk().LedgerSession || Desk().DistLines < 1 || m_entry.EntryLocked())
        return;
    std::vector<QStringList> records;
    try {
        records = Read_FinderRecords(*Desk().LedgerSession, kind);
    } catch (const LedgerError& error) {
        ReportLedgerError(kind == FinderDistCodes
                              ? QStringLiteral("The distribution codes could not be read.")
                              : QStringLiteral("The G/L accounts could not be read."),
                          error.description());
        return;
    }
    frmFinder finder(kind, records, &m_window);
    if (finder.exec() == QDialog::Accepted)
        putFinderChoice(kind, finder.ChosenCode(), finder.ChosenAccount());
}

void DistributionLines::putFinderChoice(int kind, const QString& code, const QString& account) {
    FlexGrid* grid = ui.MSFlexGrid1;
    const int line = std::max<int>(Desk().DistLines, 1);
    if (kind == FinderDistCodes) {
        grid->setRow(line);
        grid->setCol(DistColCode);
        ui.txtFloat->setText(code);
        grid->setCol(DistColAccount);
        grid->setTextMatrix(line, DistColAccount, account);
    } else {
        const bool blankLine =
            m_grid.Is_GridCellEmpty(line, DistColCode) && m_grid.Is_GridCellEmpty(line, DistColAccount);
        grid->setRow(line);
        grid->setCol(DistColAccount);
        if (blankLine)
            grid->setTextMatrix(line, DistColAccount, code);
        else
            ui.txtFloat->setText(code);
    }
    grid->setCol(DistColAmount);
}

} // namespace tillbook
