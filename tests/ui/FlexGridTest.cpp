// The data grid: growing and shrinking, cells by row and column, the current cell and its events under code,
// the clerk's mouse and keys.
#include "ui/FlexGrid.h"

#include <QHeaderView>
#include <QTest>
#include <utility>

using namespace tillbook;

namespace {

// The grid's events in order, each with the cell that was current when it ran: "Leave 1,0".
class EventLog {
public:
    explicit EventLog(FlexGrid& grid) {
        const auto record = [&grid, this](const char* name) {
            return [&grid, this, name] {
                entries << QStringLiteral("%1 %2,%3").arg(name).arg(grid.Row()).arg(grid.Col());
            };
        };
        QObject::connect(&grid, &FlexGrid::LeaveCell, &m_context, record("Leave"));
        QObject::connect(&grid, &FlexGrid::EnterCell, &m_context, record("Enter"));
        QObject::connect(&grid, &FlexGrid::Click, &m_context, record("Click"));
        QObject::connect(&grid, &FlexGrid::DblClick, &m_context, record("DblClick"));
    }
    QStringList take() { return std::exchange(entries, {}); } // the entries since the last call
    QStringList entries;

private:
    QObject m_context;
};

QPoint centreOf(const FlexGrid& grid, int row, int col) {
    return grid.visualRect(grid.model()->index(row - 1, col)).center();
}

// A grid of `rows` by `cols`, shown so that cells have their places on the screen.
void showGrid(FlexGrid& grid, int rows, int cols) {
    grid.setRows(rows);
    grid.setCols(cols);
    grid.resize(300, 200);
    grid.show();
    if (!QTest::qWaitForWindowExposed(&grid))
        qWarning("the grid was not shown");
}

} // namespace

class FlexGridTest : public QObject {
    Q_OBJECT

private slots:
    void formatStringAlignsTheHeaderAndRowsAndColsGrowAndShrinkKeepingText() {
        FlexGrid grid;
        QCOMPARE(QPoint(grid.Rows(), grid.Cols()), QPoint(2, 2));
        grid.setRows(3);
        grid.setTextMatrix(1, 0, "x");
        grid.setFormatString("^Apply |<Left|>Right|plain|"); // a trailing "|" is one more, empty column
        QCOMPARE(grid.TextMatrix(0, 0) + grid.TextMatrix(0, 2) + grid.TextMatrix(1, 0),
                 QString("Apply Rightx"));
        const auto aligned = [&grid](int col) {
            return grid.model()->headerData(col, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
        };
        QCOMPARE(QList<int>({aligned(0), aligned(2), aligned(3)}),
                 QList<int>(
                     {Qt::AlignCenter, Qt::AlignRight | Qt::AlignVCenter, Qt::AlignLeft | Qt::AlignVCenter}));
        grid.Clear();
        QCOMPARE(grid.TextMatrix(0, 0) + grid.TextMatrix(1, 0), QString());
        QCOMPARE(QPoint(grid.Rows(), grid.Cols()), QPoint(3, 5));

        grid.setRows(4);
        grid.setCols(3);
        for (int row = 0; row < 4; ++row)
            for (int col = 0; col < 3; ++col)
                grid.setTextMatrix(row, col, QString::number(row * 10 + col));
        QVERIFY(grid.setProperty("Rows", 6));
        QCOMPARE(grid.model()->rowCount(), 5); // the header row is no data row
        QCOMPARE(grid.TextMatrix(3, 2) + grid.TextMatrix(0, 1) + grid.TextMatrix(5, 1), QString("321"));
        // Shrinking pulls a cut current cell back, and cut text does not return when the grid grows again.
        grid.setRow(5);
        grid.setCol(2);
        grid.setRows(3);
        grid.setCols(2);
        QCOMPARE(QPoint(grid.Row(), grid.Col()), QPoint(2, 1));
        grid.setRows(4);
        grid.setCols(3);
        QCOMPARE(grid.TextMatrix(2, 1) + grid.TextMatrix(3, 0) + grid.TextMatrix(1, 2), QString("21"));
        // Outside the grid cells read empty and ignore writes; the header row and one column always remain.
        grid.setTextMatrix(4, 0, "x");
        QCOMPARE(grid.TextMatrix(4, 0) + grid.TextMatrix(-1, 0) + grid.TextMatrix(0, 3), QString());
        grid.setRows(0);
        grid.setCols(-3);
        QCOMPARE(QPoint(grid.Rows(), grid.Cols()), QPoint(1, 1));
        QCOMPARE(grid.TextMatrix(0, 0), QString("0"));
    }

    void leaveCellAndEnterCellSurroundEveryMoveByCode() {
        FlexGrid grid;
        grid.setRows(5);
        grid.setCols(4);
        EventLog log(grid);
        grid.setRow(3);
        grid.setCol(2);
        grid.setRow(3); // no move: no events, nor for a cell outside the grid, nor for new rows
        grid.setRow(5);
        grid.setCol(-1);
        grid.setRows(10);
        grid.setRow(0);
        QCOMPARE(log.take(),
                 (QStringList{"Leave 1,0", "Enter 3,0", "Leave 3,0", "Enter 3,2", "Leave 3,2", "Enter 0,2"}));
        // The usual form code: LeaveCell stores the editor's text in the cell being left.
        connect(&grid, &FlexGrid::LeaveCell, &grid, [&grid] { grid.setText("saved"); });
        grid.setRow(4);
        QCOMPARE(grid.TextMatrix(0, 2) + grid.TextMatrix(4, 2), QString("saved"));
    }

    void theMouseMovesToTheCellBeforeClickAndDblClick() {
        FlexGrid grid;
        showGrid(grid, 10, 4);
        EventLog log(grid);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, centreOf(grid, 3, 2));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, centreOf(grid, 3, 2));
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, centreOf(grid, 5, 1));
        QCOMPARE(log.take(), (QStringList{"Leave 1,0", "Enter 3,2", "Click 3,2", "Click 3,2"}));
        // A real double click: press, release, then the double click in place of the second press, release.
        const QPoint at = centreOf(grid, 4, 1);
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(log.take(), (QStringList{"Leave 3,2", "Enter 4,1", "Click 4,1", "DblClick 4,1"}));
        // The header and the blank area below the last row ignore the mouse.
        QHeaderView* header = grid.horizontalHeader();
        const QPoint onHeader(header->sectionViewportPosition(1) + 5, header->height() / 2);
        grid.setRows(3);
        log.take();
        QTest::mouseDClick(header, Qt::LeftButton, {}, onHeader);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, QPoint(10, grid.viewport()->height() - 3));
        QCOMPARE(log.take(), QStringList());
    }

    void keysMoveAmongDataRowsOnly() {
        FlexGrid grid;
        showGrid(grid, 40, 5);
        EventLog log(grid);
        const struct {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            QPoint to;
        } moves[] = {
            {Qt::Key_Up, {}, {1, 0}},
            {Qt::Key_PageUp, {}, {1, 0}},
            {Qt::Key_Left, {}, {1, 0}},
            {Qt::Key_Down, {}, {2, 0}},
            {Qt::Key_Right, {}, {2, 1}},
            {Qt::Key_End, {}, {2, 4}},
            {Qt::Key_Home, {}, {2, 0}},
            {Qt::Key_End, Qt::ControlModifier, {39, 4}},
            {Qt::Key_Down, {}, {39, 4}},
            {Qt::Key_PageDown, {}, {39, 4}},
            {Qt::Key_Home, Qt::ControlModifier, {1, 0}},
            {Qt::Key_B, {}, {1, 0}},
            {Qt::Key_Tab, {}, {1, 0}}, // typing and Tab are the forms' to handle
        };
        for (const auto& move : moves) {
            QTest::keyClick(&grid, move.key, move.modifiers);
            QCOMPARE(QPoint(grid.Row(), grid.Col()), move.to);
        }
        QCOMPARE(log.take().mid(0, 2), (QStringList{"Leave 1,0", "Enter 2,0"}));
        QCOMPARE(grid.TopRow(), 1);
        // Paging moves by a screenful and keeps the current cell in view.
        QTest::keyClick(&grid, Qt::Key_PageDown);
        QVERIFY(grid.Row() > 4 && grid.TopRow() > 1);
        QVERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
    }
};

QTEST_MAIN(FlexGridTest)
#include "FlexGridTest.moc"
