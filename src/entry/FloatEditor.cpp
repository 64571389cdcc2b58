// The receipt window: the editor that floats over the grid's current distribution cell, following the cell as
// the clerk moves, scrolls and types.

#include "entry/ApplicationGrid.h"
#include "entry/DistributionLines.h"
#include "entry/DistributionRules.h"
#include "entry/EntryFields.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui_frmCR.h"

#include <QScrollBar>

namespace tillbook {

void DistributionLines::Position_FloatEditor() {
    FlexGrid* grid = ui.MSFlexGrid1;
    // Reading the cell's place scrolls it into view first.
    QRect cell(grid->CellLeft(), grid->CellTop(), grid->CellWidth(), grid->CellHeight());
    // A cell wider than the grid's view is covered only where it is shown.
    if (const QRect shown = grid->ShownCellRect(); !shown.isEmpty())
        cell = shown;
    QLineEdit* editor = ui.txtFloat;
    editor->setGeometry(QRect(grid->pos() + cell.topLeft(), cell.size()));
    editor->setVisible(true);
    editor->raise();
    editor->setSelection(0, static_cast<int>(editor->text().size()));
    editor->setFocus(Qt::OtherFocusReason);
    m_editorFloating = true;
}

void DistributionLines::followScrolledCell() {
    if (!m_editorFloating || !editingDistributions())
        return;
    FlexGrid* grid = ui.MSFlexGrid1;
    const QRect shown = grid->ShownCellRect();
    ui.txtFloat->setVisible(!shown.isEmpty());
    if (!shown.isEmpty())
        ui.txtFloat->setGeometry(QRect(grid->pos() + shown.topLeft(), shown.size()));
}

void DistributionLines::enterCell() {
    if (!editingDistributions())
        return;
    FlexGrid* grid = ui.MSFlexGrid1;
    if (grid->Row() < 1 || grid->Row() > Desk().DistLines) {
        // No line to edit there.
        m_editorFloating = false;
        ui.txtFloat->setVisible(false);
        return;
    }
    ui.txtFloat->setText(grid->Text());
    if (grid->Col() == DistColCode)
        m_codeOnEnter = grid->Text();
    Position_FloatEditor();
}

void DistributionLines::leaveCell() {
    if (!editingDistributions())
        return;
    m_leftCellText = ui.MSFlexGrid1->Text();
    m_leftCellRow = ui.MSFlexGrid1->Row();
    m_leftCellCol = ui.MSFlexGrid1->Col();
}

void DistributionLines::clickCell() {
    if (!editingDistributions() || m_entry.EntryLocked())
        return;
    FlexGrid* grid = ui.MSFlexGrid1;
    const int row = m_leftCellRow;
    const int col = m_leftCellCol;
    const bool leftALine = row >= 1 && row <= Desk().DistLines;
    const bool onALine = grid->Row() >= 1 && grid->Row() <= Desk().DistLines;
    if (!leftALine)
        return;
    // A click past the lines leaves the editor where it was.
    bool back = !onALine;
    if (onALine && !checkDistCell(row, col, m_leftCellText, RefusedBy::Click))
        back = true;
    if (back) {
        const bool refusedAmount = onALine && col == DistColAmount;
        grid->setRow(row);
        grid->setCol(col);
        if (refusedAmount)
            refuseDistAmount();
    }
    m_leftCellRow = 0;
}

void DistributionLines::editorKeyDown(int& keyCode, int shift) {
    if (!editingDistributions())
        return;
    if (keyCode == vbKeyDelete && shift == vbCtrlMask) {
        keyCode = 0;
        removeDistLine(ui.MSFlexGrid1->Row());
        return;
    }
    TabToLeft(keyCode);
    FlexGrid* grid = ui.MSFlexGrid1;
    m_keyDownCol = grid->Col();
    const int target = DistKeyTarget(keyCode, grid->Col());
    if (target < 0 || grid->Row() < 1 || grid->Row() > Desk().DistLines)
        return;
    if (!checkDistCell(grid->Row(), grid->Col(), ui.txtFloat->text(), RefusedBy::Keys)) {
        if (grid->Col() == DistColAmount)
            refuseDistAmount();
        return;
    }
    grid->setCol(target);
}

void DistributionLines::editorKeyUp(int keyCode) {
    if (!editingDistributions())
        return;
    if ((keyCode == vbKeyLeft && m_keyDownCol >= 1) || (keyCode == vbKeyRight && m_keyDownCol <= 3))
        ui.txtFloat->setSelection(0, static_cast<int>(ui.txtFloat->text().size()));
}

void DistributionLines::editorChanged() {
    if (!editingDistributions())
        return;
    FlexGrid* grid = ui.MSFlexGrid1;
    if (grid->Row() < 1 || grid->Row() > Desk().DistLines)
        return;
    const QString text = ui.txtFloat->text();
    grid->setText(grid->Col() == DistColAmount ? FormatAmount(Strip_Commas(text)) : text);
}

} // namespace tillbook
