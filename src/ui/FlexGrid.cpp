#include "ui/FlexGrid.h"

#include "ui/FlexGridCells.h"

#include <QAbstractTableModel>
#include <QBrush>
#include <QFont>
#include <QHeaderView>
#include <QKeyEvent>
#include <QList>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

namespace tillbook {

FlexGrid::FlexGrid(QWidget* parent) : QTableView(parent), m_cells(new FlexGridCells(this)) {
    setModel(m_cells);
    setItemDelegate(new CurrentCellDelegate(this));
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setTabKeyNavigation(false); // Tab leaves the grid, as it leaves any other field
    setAutoScroll(false);       // code that moves the current cell does not scroll; the clerk's moves do
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel); // wide columns scroll smoothly; rows scroll whole
    setVerticalScrollMode(ScrollPerItem);

    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView* header = horizontalHeader();
    header->setMinimumSectionSize(0);
    header->setDefaultSectionSize(64);
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->setSectionsClickable(false);
    header->setHighlightSections(false);
    header->setStretchLastSection(false);
    fitRowHeightToFont();
    showCurrentCell();
}

int FlexGrid::Rows() const {
    return m_cells->gridRows();
}

void FlexGrid::setRows(int rows) {
    rows = std::max(rows, 1);
    if (rows == Rows())
        return;
    m_cells->setGridRows(rows);
    m_row = std::min(m_row, rows - 1);
    showCurrentCell();
}

int FlexGrid::Cols() const {
    return m_cells->gridCols();
}

void FlexGrid::setCols(int cols) {
    cols = std::max(cols, 1);
    if (cols == Cols())
        return;
    m_cells->setGridCols(cols);
    m_col = std::min(m_col, cols - 1);
    showCurrentCell();
}

void FlexGrid::setRow(int row) {
    if (contains(row, m_col))
        moveTo(row, m_col);
}

void FlexGrid::setCol(int col) {
    if (contains(m_row, col))
        moveTo(m_row, col);
}

QString FlexGrid::TextMatrix(int row, int col) const {
    return contains(row, col) ? m_cells->cell(row, col).text : QString();
}

void FlexGrid::setTextMatrix(int row, int col, const QString& text) {
    if (contains(row, col))
        m_cells->setText(row, col, text);
}

QString FlexGrid::Text() const {
    return TextMatrix(m_row, m_col);
}

void FlexGrid::setText(const QString& text) {
    setTextMatrix(m_row, m_col, text);
}

void FlexGrid::setFormatString(const QString& format) {
    m_formatString = format;
    const QStringList headers = format.split(u'|');
    setCols(static_cast<int>(headers.size()));
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, horizontalHeader());
    for (int col = 0; col < headers.size(); ++col) {
        QString text = headers[col];
        int alignment = flexAlignLeftCenter;
        if (text.startsWith(u'^'))
            alignment = flexAlignCenterCenter;
        else if (text.startsWith(u'>'))
            alignment = flexAlignRightCenter;
        if (text.startsWith(u'^') || text.startsWith(u'<') || text.startsWith(u'>'))
            text.remove(0, 1);
        m_cells->setText(0, col, text);
        m_cells->setAlignment(0, col, alignment);
        // The blanks around a header text are how the forms size their columns.
        setColWidth(col, fontMetrics().horizontalAdvance(text) + 2 * margin + 2);
    }
}

void FlexGrid::Clear() {
    m_cells->clearText();
}

int FlexGrid::ColWidth(int col) const {
    return col >= 0 && col < Cols() ? columnWidth(col) : 0;
}

void FlexGrid::setColWidth(int col, int width) {
    if (col >= 0 && col < Cols() && width >= 0)
        setColumnWidth(col, width);
}

int FlexGrid::CellAlignment() const {
    return m_cells->cell(m_row, m_col).alignment;
}

void FlexGrid::setCellAlignment(int alignment) {
    if (alignment >= flexAlignLeftTop && alignment <= flexAlignRightBottom)
        m_cells->setAlignment(m_row, m_col, alignment);
}

void FlexGrid::setCellAlignment(int row, int col, int alignment) {
    if (contains(row, col) && alignment >= flexAlignLeftTop && alignment <= flexAlignRightBottom)
        m_cells->setAlignment(row, col, alignment);
}

bool FlexGrid::CellBold(int row, int col) const {
    return contains(row, col) && m_cells->cell(row, col).bold;
}

void FlexGrid::setCellLook(int row, int col, bool bold, const QColor& back) {
    if (contains(row, col))
        m_cells->setLook(row, col, bold, back);
}

int FlexGrid::TopRow() const {
    if (Rows() < 2)
        return 0;
    return std::max(rowAt(0), 0) + 1;
}

void FlexGrid::setTopRow(int row) {
    if (row < 1 || row >= Rows())
        return;
    executeDelayedItemsLayout(); // the scroll range must know the current rows
    verticalScrollBar()->setValue(row - 1);
}

void FlexGrid::AddRows(const std::vector<QStringList>& rows, const std::vector<int>& alignments) {
    m_cells->appendRows(rows, alignments);
    showCurrentCell();
}

QRect FlexGrid::ShownCellRect() const {
    if (m_row < 1)
        return {};
    const QRect cell = visualRect(m_cells->index(m_row - 1, m_col));
    return cell.intersected(viewport()->rect()).translated(viewport()->pos());
}

void FlexGrid::keyboardSearch(const QString&) {}

void FlexGrid::keyPressEvent(QKeyEvent* event) {
    const int lastRow = Rows() - 1;
    const bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
    int row = m_row;
    int col = m_col;
    // Vertical moves stay among the data rows; from the header row they enter the first one.
    switch (event->key()) {
    case Qt::Key_Up:
        row = row > 1 ? row - 1 : row;
        break;
    case Qt::Key_Down:
        row = std::min(row + 1, lastRow);
        break;
    case Qt::Key_PageUp:
        row = row > 1 ? std::max(row - visibleDataRows(), 1) : row;
        break;
    case Qt::Key_PageDown:
        row = std::min(std::max(row + visibleDataRows(), 1), lastRow);
        break;
    case Qt::Key_Left:
        col = std::max(col - 1, 0);
        break;
    case Qt::Key_Right:
        col = std::min(col + 1, Cols() - 1);
        break;
    case Qt::Key_Home:
        col = 0;
        if (ctrl && lastRow >= 1)
            row = 1;
        break;
    case Qt::Key_End:
        col = Cols() - 1;
        if (ctrl && lastRow >= 1)
            row = lastRow;
        break;
    default:
        QWidget::keyPressEvent(event); // left to the form's key handlers and the parent
        return;
    }
    moveTo(row, col);
    if (m_row > 0)
        scrollTo(currentIndex());
    event->accept();
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
    // Presses are taken, as by any item view, also where they do nothing.
    m_clickPending = false;
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid())
        return;
    moveTo(index.row() + 1, index.column());
    if (m_row > 0)
        scrollTo(currentIndex());
    m_clickPending = true;
}

void FlexGrid::mouseMoveEvent(QMouseEvent*) {
    // Dragging neither selects nor moves the current cell.
}

void FlexGrid::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_clickPending)
        return;
    m_clickPending = false;
    emit Click();
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    // The double click replaces the second press; its release is no further Click.
    m_clickPending = false;
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid())
        return;
    moveTo(index.row() + 1, index.column());
    emit DblClick();
}

QModelIndex FlexGrid::moveCursor(CursorAction, Qt::KeyboardModifiers) {
    // The keys are handled in keyPressEvent; the view asks only when it gets the focus, and the current cell
    // stays where it is.
    return currentIndex();
}

void FlexGrid::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitRowHeightToFont();
}

bool FlexGrid::contains(int row, int col) const {
    return row >= 0 && row < Rows() && col >= 0 && col < Cols();
}

void FlexGrid::moveTo(int row, int col) {
    if (row == m_row && col == m_col)
        return;
    emit LeaveCell();
    m_row = row;
    m_col = col;
    showCurrentCell();
    emit EnterCell();
}

void FlexGrid::showCurrentCell() {
    const QModelIndex index = m_row > 0 ? m_cells->index(m_row - 1, m_col) : QModelIndex();
    if (index != currentIndex())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

int FlexGrid::visibleDataRows() const {
    return std::max(viewport()->height() / std::max(verticalHeader()->defaultSectionSize(), 1), 1);
}

void FlexGrid::fitRowHeightToFont() {
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
}

void FlexGrid::scrollColumnIntoView(int col) {
    const QHeaderView* header = horizontalHeader();
    const int left = header->sectionPosition(col);
    const int right = left + header->sectionSize(col);
    QScrollBar* bar = horizontalScrollBar();
    const int width = viewport()->width();
    if (left < bar->value())
        bar->setValue(left);
    else if (right > bar->value() + width)
        bar->setValue(std::min(left, right - width));
}

QRect FlexGrid::currentCellRect() const {
    // Bringing the cell into view changes only what is shown, not the grid's contents.
    auto* self = const_cast<FlexGrid*>(this);
    self->executeDelayedItemsLayout();
    if (m_row > 0) {
        const QModelIndex index = m_cells->index(m_row - 1, m_col);
        self->scrollTo(index);
        return visualRect(index).translated(viewport()->pos());
    }
    self->scrollColumnIntoView(m_col);
    const QHeaderView* header = horizontalHeader();
    return QRect(header->pos() + QPoint(header->sectionViewportPosition(m_col), 0),
                 QSize(header->sectionSize(m_col), header->height()));
}

} // namespace tillbook
