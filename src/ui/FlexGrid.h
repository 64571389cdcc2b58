#pragma once

// The data grid of the forms. Row 0 is a fixed header row drawn as the grid's column headers; rows 1 and on
// hold the data. One cell is current; form code reads and writes any cell by row and column. The grid never
// edits a cell itself: a form lays its own editor over the current cell, placed with CellLeft, CellTop,
// CellWidth and CellHeight.
//
// Events: LeaveCell just before the current cell changes (Row and Col still name the old cell), EnterCell
// just after (they name the new one), whether code or the clerk moves it. Click follows a left click on a
// data cell, once the cell has become current; DblClick follows a double click on a data cell. The clerk
// cannot make a header cell current: clicks on the header row, and on the blank area below the last row, do
// nothing.

#include <QColor>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <vector>

namespace tillbook {

// Where a cell's text sits: three horizontal positions times three vertical ones.
constexpr int flexAlignLeftTop = 0;
constexpr int flexAlignLeftCenter = 1;
constexpr int flexAlignLeftBottom = 2;
constexpr int flexAlignCenterTop = 3;
constexpr int flexAlignCenterCenter = 4;
constexpr int flexAlignCenterBottom = 5;
constexpr int flexAlignRightTop = 6;
constexpr int flexAlignRightCenter = 7;
constexpr int flexAlignRightBottom = 8;

class FlexGridCells;

class FlexGrid : public QTableView {
    Q_OBJECT
    Q_PROPERTY(int Rows READ Rows WRITE setRows)
    Q_PROPERTY(int Cols READ Cols WRITE setCols)
    Q_PROPERTY(int Row READ Row WRITE setRow)
    Q_PROPERTY(int Col READ Col WRITE setCol)
    Q_PROPERTY(QString Text READ Text WRITE setText)
    Q_PROPERTY(QString FormatString READ FormatString WRITE setFormatString)
    Q_PROPERTY(int CellAlignment READ CellAlignment WRITE setCellAlignment)
    Q_PROPERTY(int TopRow READ TopRow WRITE setTopRow)

public:
    // A new grid has 2 rows (the header and one data row) and 2 columns; the current cell is row 1, column 0.
    explicit FlexGrid(QWidget* parent = nullptr);

    // Rows counts the header row. There is always the header row and at least one column: smaller values
    // count as 1. Growing adds empty cells, shrinking drops the cut ones; surviving cells keep their text.
    // A current cell that is cut moves, without events, to the last remaining row or column.
    int Rows() const;
    void setRows(int rows);
    int Cols() const;
    void setCols(int cols);

    // The current cell. Code may make any cell current, the header row included; a row or column outside the
    // grid is ignored.
    int Row() const { return m_row; }
    void setRow(int row);
    int Col() const { return m_col; }
    void setCol(int col);

    // Any cell's text; row 0 holds the header texts. Outside the grid, reading gives "" and writing does
    // nothing.
    Q_INVOKABLE QString TextMatrix(int row, int col) const;
    Q_INVOKABLE void setTextMatrix(int row, int col, const QString& text);
    // The current cell's text.
    QString Text() const;
    void setText(const QString& text);

    // The header texts separated by "|", each optionally led by an alignment mark for its header cell:
    // "^" centred, "<" left, ">" right. The text after the mark, blanks included, becomes the header cell's
    // text and its width in the grid's font sets the column's width. Sets Cols to the number of texts (a
    // trailing "|" makes an empty last column); data cells keep their text.
    QString FormatString() const { return m_formatString; }
    void setFormatString(const QString& format);

    // Empties the text of every cell, the header row included, and takes away the cells' looks; Rows, Cols,
    // widths and alignments stay.
    Q_INVOKABLE void Clear();

    // Column widths in pixels; 0 hides a column. Outside the grid, reading gives 0 and writing does nothing.
    Q_INVOKABLE int ColWidth(int col) const;
    Q_INVOKABLE void setColWidth(int col, int width);

    // The current cell's alignment, one of the flexAlign constants; other values are ignored. Cells start
    // left-aligned (flexAlignLeftCenter); code right-aligns amounts itself.
    int CellAlignment() const;
    void setCellAlignment(int alignment);

    // Any cell's alignment and look (bold text, a background colour; an invalid colour is the grid's own),
    // without making it current: filling a grid moves no cell and raises no cell events.
    void setCellAlignment(int row, int col, int alignment);
    bool CellBold(int row, int col) const;
    void setCellLook(int row, int col, bool bold, const QColor& back);

    // The current cell's rectangle in pixels, relative to the grid's own top-left corner: an editor placed at
    // the grid's position plus (CellLeft, CellTop), with the size (CellWidth, CellHeight), in the grid's
    // parent lies exactly over the cell. Reading any of them first scrolls the cell into view.
    int CellLeft() const { return currentCellRect().left(); }
    int CellTop() const { return currentCellRect().top(); }
    int CellWidth() const { return currentCellRect().width(); }
    int CellHeight() const { return currentCellRect().height(); }

    // The current cell's rectangle as the grid shows it now, relative to the grid like CellLeft..., cut to
    // the cells' area; empty when the cell is scrolled out of sight. Reading it never scrolls: an editor laid
    // over the cell follows it with this while the clerk scrolls.
    QRect ShownCellRect() const;

    // Appends one row after the last for each list of texts, cell by cell from column 0, in one change of
    // the grid: a long list is shown without a repaint or a layout per row. Texts past the last column are
    // left out; `alignments` gives each column's alignment (flexAlign constants), the rest are left-aligned.
    // The current cell stays where it is.
    void AddRows(const std::vector<QStringList>& rows, const std::vector<int>& alignments = {});

    // The first data row shown at the top (0 when there are no data rows); setting it scrolls as far as the
    // grid allows.
    int TopRow() const;
    void setTopRow(int row);

    // Typing never jumps to a matching cell: the forms handle typed characters themselves.
    void keyboardSearch(const QString& search) override;

signals:
    void EnterCell();
    void LeaveCell();
    void Click();
    void DblClick();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void changeEvent(QEvent* event) override;

private:
    bool contains(int row, int col) const;
    // Makes (row, col) current with LeaveCell before and EnterCell after; nothing when it already is.
    void moveTo(int row, int col);
    // The view's current index follows Row and Col; the header row has none.
    void showCurrentCell();
    int visibleDataRows() const;
    void fitRowHeightToFont();
    void scrollColumnIntoView(int col);
    QRect currentCellRect() const;

    FlexGridCells* m_cells;
    QString m_formatString;
    int m_row = 1;
    int m_col = 0;
    bool m_clickPending = false; // a left press on a cell whose release is the Click
};

} // namespace tillbook
