#pragma once

// The grid's parts that no form sees: the model of its cells and the painter of its current cell. Included by
// FlexGrid.cpp only.

#include "ui/FlexGrid.h"

#include <QAbstractTableModel>
#include <QBrush>
#include <QFont>
#include <QList>
#include <QPainter>
#include <QStyledItemDelegate>

namespace tillbook {

inline Qt::Alignment qtAlignmentOf(int flexAlignment) {
    static constexpr Qt::AlignmentFlag horizontal[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    static constexpr Qt::AlignmentFlag vertical[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    return horizontal[flexAlignment / 3] | vertical[flexAlignment % 3];
}

// Draws the current cell tinted and framed whether or not the grid holds the keyboard focus: the clerk's
// typing usually goes to the editor a form lays over the grid, and the cell must still show where it is.
class CurrentCellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem plain(option);
        plain.state &= ~(QStyle::State_HasFocus | QStyle::State_Selected);
        const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
        const bool current = view && view->currentIndex() == index;
        const QColor mark = option.palette.color(QPalette::Active, QPalette::Highlight);
        if (current) {
            QColor tint = mark;
            tint.setAlpha(40);
            painter->fillRect(option.rect, tint);
        }
        QStyledItemDelegate::paint(painter, plain, index);
        if (current) {
            painter->save();
            QPen pen(mark, 2);
            pen.setJoinStyle(Qt::MiterJoin);
            painter->setPen(pen);
            painter->setBrush(Qt::NoBrush);
            painter->drawRect(QRectF(option.rect).adjusted(1, 1, -1, -1));
            painter->restore();
        }
    }
};

// The cells, header row included, as a model whose rows are the data rows; the header row feeds the
// horizontal header. A row stores only the cells up to the last one ever written, so adding rows or columns
// costs next to nothing.
class FlexGridCells : public QAbstractTableModel {
public:
    struct Cell {
        QString text;
        int alignment = flexAlignLeftCenter;
        bool bold = false;
        QColor back; // invalid: the grid's own background
    };

    explicit FlexGridCells(QObject* parent) : QAbstractTableModel(parent), m_rows(2) {}

    int gridRows() const { return static_cast<int>(m_rows.size()); }
    int gridCols() const { return m_cols; }

    const Cell& cell(int row, int col) const {
        static const Cell empty;
        const QList<Cell>& cells = m_rows[row];
        return col < cells.size() ? cells[col] : empty;
    }

    void setText(int row, int col, const QString& text) {
        if (cell(row, col).text == text)
            return;
        writable(row, col).text = text;
        changed(row, col);
    }

    void setAlignment(int row, int col, int alignment) {
        if (cell(row, col).alignment == alignment)
            return;
        writable(row, col).alignment = alignment;
        changed(row, col);
    }

    void setLook(int row, int col, bool bold, const QColor& back) {
        const Cell& c = cell(row, col);
        if (c.bold == bold && c.back == back)
            return;
        Cell& w = writable(row, col);
        w.bold = bold;
        w.back = back;
        changed(row, col);
    }

    void setGridRows(int rows) {
        const int old = gridRows();
        if (rows > old) {
            beginInsertRows({}, old - 1, rows - 2);
            m_rows.resize(rows);
            endInsertRows();
        } else if (rows < old) {
            beginRemoveRows({}, rows - 1, old - 2);
            m_rows.resize(rows);
            endRemoveRows();
        }
    }

    void appendRows(const std::vector<QStringList>& rows, const std::vector<int>& alignments) {
        if (rows.empty())
            return;
        const int old = gridRows();
        beginInsertRows({}, old - 1, old - 1 + static_cast<int>(rows.size()) - 1);
        m_rows.reserve(old + static_cast<qsizetype>(rows.size()));
        for (const QStringList& texts : rows) {
            QList<Cell> cells(std::min(static_cast<int>(texts.size()), m_cols));
            for (qsizetype c = 0; c < cells.size(); ++c) {
                cells[c].text = texts[c];
                if (c < static_cast<qsizetype>(alignments.size()))
                    cells[c].alignment = alignments[static_cast<size_t>(c)];
            }
            m_rows.append(std::move(cells));
        }
        endInsertRows();
    }

    void setGridCols(int cols) {
        if (cols > m_cols) {
            beginInsertColumns({}, m_cols, cols - 1);
            m_cols = cols;
            endInsertColumns();
        } else if (cols < m_cols) {
            beginRemoveColumns({}, cols, m_cols - 1);
            for (QList<Cell>& cells : m_rows)
                if (cells.size() > cols)
                    cells.resize(cols);
            m_cols = cols;
            endRemoveColumns();
        }
    }

    void clearText() {
        for (QList<Cell>& cells : m_rows)
            for (Cell& c : cells) {
                c.text.clear();
                c.bold = false;
                c.back = QColor();
            }
        emit headerDataChanged(Qt::Horizontal, 0, m_cols - 1);
        if (gridRows() > 1)
            emit dataChanged(index(0, 0), index(gridRows() - 2, m_cols - 1),
                             {Qt::DisplayRole, Qt::FontRole, Qt::BackgroundRole});
    }

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : gridRows() - 1; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : m_cols; }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid())
            return {};
        return valueOf(cell(index.row() + 1, index.column()), role);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || section < 0 || section >= m_cols)
            return {};
        return valueOf(cell(0, section), role);
    }

    Qt::ItemFlags flags(const QModelIndex&) const override {
        return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    }

private:
    static QVariant valueOf(const Cell& c, int role) {
        if (role == Qt::DisplayRole)
            return c.text;
        if (role == Qt::TextAlignmentRole)
            return qtAlignmentOf(c.alignment).toInt();
        if (role == Qt::FontRole && c.bold) {
            QFont font;
            font.setBold(true);
            return font;
        }
        if (role == Qt::BackgroundRole && c.back.isValid())
            return QBrush(c.back);
        return {};
    }

    Cell& writable(int row, int col) {
        QList<Cell>& cells = m_rows[row];
        if (cells.size() <= col)
            cells.resize(col + 1);
        return cells[col];
    }

    void changed(int row, int col) {
        if (row == 0) {
            emit headerDataChanged(Qt::Horizontal, col, col);
        } else {
            const QModelIndex at = index(row - 1, col);
            emit dataChanged(at, at,
                             {Qt::DisplayRole, Qt::TextAlignmentRole, Qt::FontRole, Qt::BackgroundRole});
        }
    }

    QList<QList<Cell>> m_rows; // [0] is the header row
    int m_cols = 2;
};

} // namespace tillbook
