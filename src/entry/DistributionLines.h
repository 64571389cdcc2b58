#pragma once

// The distribution lines of a miscellaneous receipt: keyed through the editor that floats over the grid's
// current cell, checked cell by cell as the clerk leaves it, filled from the finder, and the undistributed
// amount that follows them.

#include "entry/DistributionRules.h"
#include "entry/ReceiptForm.h"
#include "ledger/Money.h"

#include <QString>
#include <vector>

class QPoint;

namespace tillbook {

class DistributionLines {
public:
    DistributionLines(QWidget& window, Ui::frmCR& ui, EntryFields& entry, ApplicationGrid& grid);
    // The editor's keys and changes, the lines' menu, the scrolled grid and the misc. kind's empty grid;
    // after the window's handlers of the same controls.
    void connectControls();

    // The stored amount of each line, index n for line n (index 0 unused).
    const std::vector<Money>& DistAmounts() const { return m_distAmounts; }

    // A new line at the end, when the last one holds an amount and something is left to distribute.
    void newLine();
    void undistributedLeft();
    // The finder of distribution codes or G/L accounts (FinderDistCodes, FinderAccounts), its choice put
    // into the last line.
    void chooseFromFinder(int kind);

    void Position_FloatEditor();
    void enterCell();
    void leaveCell();
    void clickCell();
    void editorKeyDown(int& keyCode, int shift);
    void editorKeyUp(int keyCode);
    void editorChanged();
    bool Check_DistAmount() const;
    void Recalc_Undistributed();

private:
    bool editingDistributions() const;
    // Checks the text of a line's cell by its column as the clerk leaves it; tells the clerk when it is
    // refused.
    bool checkDistCell(int row, int col, const QString& text, RefusedBy by);
    bool distAmountFits(int row, const QString& text) const;
    void storeDistAmount(int row, Money amount);
    void refuseDistAmount();
    void putFinderChoice(int kind, const QString& code, const QString& account);
    void followScrolledCell();
    void followUndistributed();
    // Takes a line out of the grid; the lines below move up and the undistributed amount follows.
    void removeDistLine(int line);
    void showLineMenu(const QPoint& at);

    QWidget& m_window;
    Ui::frmCR& ui;
    EntryFields& m_entry;
    ApplicationGrid& m_grid;
    std::vector<Money> m_distAmounts;
    QString m_leftCellText; // the text, row and column of the cell last left
    int m_leftCellRow = 0;
    int m_leftCellCol = 0;
    int m_keyDownCol = 0;          // the column the editor's last key was pressed in
    bool m_editorFloating = false; // the editor lies over a line's cell
    QString m_codeOnEnter;         // the code cell's text when the editor last entered it
};

} // namespace tillbook
