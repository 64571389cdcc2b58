// The data grid: format strings and the header row, growing and shrinking, cells by row and column, the
// current cell and its events, the clerk's mouse and keys, and where a form lays its editor.
#include "ui/FlexGrid.h"

#include "support/Grab.h"

#include <QHeaderView>
#include <QLineEdit>
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

    // The entries since the last call.
    QStringList take() { return std::exchange(entries, {}); }

    QStringList entries;

private:
    QObject m_context;
};

QModelIndex indexOf(const FlexGrid& grid, int row, int col) {
    return grid.model()->index(row - 1, col);
}

QPoint centreOf(const FlexGrid& grid, int row, int col) {
    return grid.visualRect(indexOf(grid, row, col)).center();
}

Qt::Alignment viewAlignment(const FlexGrid& grid, int row, int col) {
    const QVariant value = row == 0 ? grid.model()->headerData(col, Qt::Horizontal, Qt::TextAlignmentRole)
                                    : indexOf(grid, row, col).data(Qt::TextAlignmentRole);
    return Qt::Alignment::fromInt(value.toInt());
}

// A grid of `rows` by `cols`, shown at a given size so that cells have their places on the screen.
void showGrid(FlexGrid& grid, int rows, int cols, QSize size = {320, 200}) {
    grid.setRows(rows);
    grid.setCols(cols);
    grid.resize(size);
    grid.show();
    if (!QTest::qWaitForWindowExposed(&grid))
        qWarning("the grid was not shown");
}

// A form with a grid and, beside it, the editor that form code lays over the grid's current cell.
struct GridWithEditor {
    GridWithEditor(QSize formSize, const QRect& gridGeometry, const QString& format, int rows) {
        form.resize(formSize);
        grid->setGeometry(gridGeometry);
        grid->setFormatString(format);
        grid->setRows(rows);
    }

    QWidget form;
    FlexGrid* grid = new FlexGrid(&form);
    QLineEdit* editor = new QLineEdit(&form);
};

const QString distributionFormat =
    "^  Dist Code             |^         Account                    |^    Amount         |"
    "^ Reference              |^              Description                  ";

} // namespace

class FlexGridTest : public QObject {
    Q_OBJECT

private slots:
    void formatStringKeepsHeaderTextsWithTheirBlanks() {
        FlexGrid grid;
        grid.setTextMatrix(1, 0, "kept");
        grid.setFormatString(distributionFormat);
        QCOMPARE(grid.FormatString(), distributionFormat);
        QCOMPARE(grid.Cols(), 5);
        const QStringList headers = distributionFormat.split('|');
        for (int col = 0; col < 5; ++col) {
            QCOMPARE(grid.TextMatrix(0, col), headers[col].mid(1));
            QCOMPARE(grid.model()->headerData(col, Qt::Horizontal).toString(), headers[col].mid(1));
        }
        QCOMPARE(grid.TextMatrix(1, 0), QString("kept"));

        // Marks align the header cell only; a trailing "|" is one more, empty column.
        grid.setFormatString("^Apply |<Left|>Right|plain|a^b|");
        QCOMPARE(grid.Cols(), 6);
        const QStringList texts{"Apply ", "Left", "Right", "plain", "a^b", ""};
        for (int col = 0; col < 6; ++col)
            QCOMPARE(grid.TextMatrix(0, col), texts[col]);
        QCOMPARE(viewAlignment(grid, 0, 0), Qt::AlignCenter);
        QCOMPARE(viewAlignment(grid, 0, 1), Qt::AlignLeft | Qt::AlignVCenter);
        QCOMPARE(viewAlignment(grid, 0, 2), Qt::AlignRight | Qt::AlignVCenter);
        QCOMPARE(viewAlignment(grid, 0, 3), Qt::AlignLeft | Qt::AlignVCenter);
        QCOMPARE(viewAlignment(grid, 1, 0), Qt::AlignLeft | Qt::AlignVCenter);
        grid.setRow(0);
        grid.setCol(2);
        QCOMPARE(grid.CellAlignment(), flexAlignRightCenter);
    }

    void headerBlanksAndTheFontSetColumnWidths() {
        FlexGrid grid;
        grid.setFormatString("^A|^ A |^     A     |^ Pending Balance |");
        const QFontMetrics metrics(grid.font());
        for (int col = 0; col < 4; ++col)
            QVERIFY(grid.ColWidth(col) >= metrics.horizontalAdvance(grid.TextMatrix(0, col)));
        QVERIFY(grid.ColWidth(0) < grid.ColWidth(1));
        QVERIFY(grid.ColWidth(1) < grid.ColWidth(2));
        QVERIFY(grid.ColWidth(4) < grid.ColWidth(0));

        const int narrow = grid.ColWidth(3);
        const int lowRow = grid.rowHeight(0);
        QFont big = grid.font();
        big.setPointSize(big.pointSize() * 2);
        grid.setFont(big);
        grid.setFormatString(grid.FormatString());
        QVERIFY(grid.ColWidth(3) > narrow);
        QVERIFY(grid.rowHeight(0) > lowRow);
        QVERIFY(grid.rowHeight(0) >= QFontMetrics(big).height());

        grid.setColWidth(1, 0); // hides the column
        QCOMPARE(grid.ColWidth(1), 0);
    }

    void rowsAndColsGrowAndShrinkKeepingText() {
        FlexGrid grid;
        QCOMPARE(grid.Rows(), 2);
        QCOMPARE(grid.Cols(), 2);
        QCOMPARE(grid.Row(), 1);
        QCOMPARE(grid.Col(), 0);
        grid.setRows(4);
        grid.setCols(3);
        for (int row = 0; row < 4; ++row)
            for (int col = 0; col < 3; ++col)
                grid.setTextMatrix(row, col, QString::number(row * 10 + col));

        QVERIFY(grid.setProperty("Rows", 6));
        QVERIFY(grid.setProperty("Cols", 5));
        QCOMPARE(grid.model()->rowCount(), 5); // the header row is no data row
        QCOMPARE(grid.model()->columnCount(), 5);
        QCOMPARE(grid.TextMatrix(3, 2), QString("32"));
        QCOMPARE(grid.TextMatrix(0, 1), QString("1"));
        QCOMPARE(grid.TextMatrix(5, 1), QString());
        QCOMPARE(grid.TextMatrix(2, 4), QString());

        // Shrinking pulls a cut current cell back, and cut text does not return when the grid grows again.
        grid.setRow(5);
        grid.setCol(4);
        grid.setRows(3);
        grid.setCols(2);
        QCOMPARE(grid.Row(), 2);
        QCOMPARE(grid.Col(), 1);
        QCOMPARE(grid.TextMatrix(2, 1), QString("21"));
        grid.setRows(4);
        grid.setCols(3);
        QCOMPARE(grid.TextMatrix(3, 0), QString());
        QCOMPARE(grid.TextMatrix(1, 2), QString());
        QCOMPARE(grid.TextMatrix(0, 2), QString());

        // The header row and one column always remain.
        grid.setRows(0);
        grid.setCols(-3);
        QCOMPARE(grid.Rows(), 1);
        QCOMPARE(grid.Cols(), 1);
        QCOMPARE(grid.Row(), 0);
        QCOMPARE(grid.TextMatrix(0, 0), QString("0"));
    }

    void cellsOutsideTheGridReadEmptyAndIgnoreWrites() {
        FlexGrid grid;
        grid.setRows(3);
        grid.setCols(2);
        const QList<QPoint> outside{{-1, 0}, {0, -1}, {3, 0}, {0, 2}, {100, 100}};
        for (const QPoint& cell : outside) {
            grid.setTextMatrix(cell.x(), cell.y(), "x");
            QCOMPARE(grid.TextMatrix(cell.x(), cell.y()), QString());
        }
        QCOMPARE(grid.Rows(), 3);
        QCOMPARE(grid.Cols(), 2);
        grid.setColWidth(2, 50);
        grid.setColWidth(0, -5);
        QCOMPARE(grid.ColWidth(2), 0);
        QCOMPARE(grid.ColWidth(-1), 0);
        QVERIFY(grid.ColWidth(0) > 0);
        grid.setRow(3);
        grid.setCol(-1);
        QCOMPARE(grid.Row(), 1);
        QCOMPARE(grid.Col(), 0);
    }

    void textAndAlignmentFollowTheCurrentCell() {
        FlexGrid grid;
        grid.setRows(4);
        grid.setCols(3);
        grid.setRow(2);
        grid.setCol(1);
        grid.setText("12.50");
        QCOMPARE(grid.TextMatrix(2, 1), QString("12.50"));
        QCOMPARE(indexOf(grid, 2, 1).data().toString(), QString("12.50"));
        grid.setTextMatrix(2, 1, "13.00");
        QCOMPARE(grid.Text(), QString("13.00"));

        grid.setCellAlignment(flexAlignRightCenter);
        QCOMPARE(grid.CellAlignment(), flexAlignRightCenter);
        QCOMPARE(viewAlignment(grid, 2, 1), Qt::AlignRight | Qt::AlignVCenter);
        grid.setCellAlignment(9);
        grid.setCellAlignment(-1);
        QCOMPARE(grid.CellAlignment(), flexAlignRightCenter);
        grid.setCol(0);
        QCOMPARE(grid.CellAlignment(), flexAlignLeftCenter);

        grid.setRow(3);
        grid.setCol(2);
        grid.setCellAlignment(flexAlignLeftTop);
        QCOMPARE(viewAlignment(grid, 3, 2), Qt::AlignLeft | Qt::AlignTop);
        grid.setCellAlignment(flexAlignCenterCenter);
        QCOMPARE(viewAlignment(grid, 3, 2), Qt::AlignCenter);
        grid.setCellAlignment(flexAlignRightBottom);
        QCOMPARE(viewAlignment(grid, 3, 2), Qt::AlignRight | Qt::AlignBottom);

        // Code may make a header cell current and write it; the header shows it.
        grid.setRow(0);
        grid.setText("Head");
        QCOMPARE(grid.model()->headerData(2, Qt::Horizontal).toString(), QString("Head"));
    }

    void clearEmptiesEveryCellButKeepsTheShape() {
        FlexGrid grid;
        grid.setFormatString("^One|^Two|^Three");
        grid.setRows(4);
        for (int row = 1; row < 4; ++row)
            for (int col = 0; col < 3; ++col)
                grid.setTextMatrix(row, col, "x");
        grid.setRow(2);
        grid.setCellAlignment(flexAlignRightCenter);
        const int width = grid.ColWidth(2);
        grid.Clear();
        for (int row = 0; row < 4; ++row)
            for (int col = 0; col < 3; ++col)
                QCOMPARE(grid.TextMatrix(row, col), QString());
        QCOMPARE(grid.model()->headerData(0, Qt::Horizontal).toString(), QString());
        QCOMPARE(grid.Rows(), 4);
        QCOMPARE(grid.Cols(), 3);
        QCOMPARE(grid.ColWidth(2), width);
        QCOMPARE(grid.CellAlignment(), flexAlignRightCenter);
    }

    void leaveCellAndEnterCellSurroundEveryMoveByCode() {
        FlexGrid grid;
        grid.setRows(5);
        grid.setCols(4);
        EventLog log(grid);
        grid.setRow(3);
        QCOMPARE(log.take(), (QStringList{"Leave 1,0", "Enter 3,0"}));
        grid.setCol(2);
        QCOMPARE(log.take(), (QStringList{"Leave 3,0", "Enter 3,2"}));
        grid.setRow(3);
        grid.setRow(5);
        grid.setCol(-1);
        grid.setRows(10);
        grid.setTextMatrix(3, 2, "x");
        QCOMPARE(log.take(), QStringList());
        grid.setRow(0);
        QVERIFY(grid.setProperty("Row", 1));
        QCOMPARE(log.take(), (QStringList{"Leave 3,2", "Enter 0,2", "Leave 0,2", "Enter 1,2"}));

        // The usual form code: LeaveCell stores the editor's text in the cell being left.
        connect(&grid, &FlexGrid::LeaveCell, &grid, [&grid] { grid.setText("saved"); });
        grid.setRow(4);
        QCOMPARE(grid.TextMatrix(1, 2), QString("saved"));
        QCOMPARE(grid.TextMatrix(4, 2), QString());
    }

    void clickMovesToTheCellBeforeClick() {
        FlexGrid grid;
        showGrid(grid, 10, 4);
        EventLog log(grid);

        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, centreOf(grid, 3, 2));
        QCOMPARE(log.take(), (QStringList{"Leave 1,0", "Enter 3,2", "Click 3,2"}));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, centreOf(grid, 3, 2));
        QCOMPARE(log.take(), QStringList{"Click 3,2"});
        QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, centreOf(grid, 5, 1));
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(grid.Row(), 3);
    }

    void doubleClickFollowsARealDoubleClick() {
        FlexGrid grid;
        showGrid(grid, 10, 4);
        EventLog log(grid);

        // A real double click: press, release, then the double click in place of the second press, release.
        const QPoint at = centreOf(grid, 4, 1);
        QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(log.take(), (QStringList{"Leave 1,0", "Enter 4,1", "Click 4,1", "DblClick 4,1"}));

        // Should the first press land elsewhere, the double-clicked cell still becomes current first.
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, centreOf(grid, 6, 3));
        QCOMPARE(log.take(), (QStringList{"Leave 4,1", "Enter 6,3", "DblClick 6,3"}));
    }

    void headerAndBlankAreaIgnoreTheMouse() {
        FlexGrid grid;
        grid.setFormatString("^One|^Two|^Three");
        grid.setRows(3);
        grid.resize(320, 200);
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
        EventLog log(grid);

        QHeaderView* header = grid.horizontalHeader();
        const QPoint onTwo(header->sectionViewportPosition(1) + 5, header->height() / 2);
        QTest::mouseClick(header, Qt::LeftButton, {}, onTwo);
        QTest::mouseDClick(header, Qt::LeftButton, {}, onTwo);
        const QPoint belowLastRow(10, grid.viewport()->height() - 3);
        QVERIFY(!grid.indexAt(belowLastRow).isValid());
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, belowLastRow);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, belowLastRow);
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(grid.Row(), 1);
        QCOMPARE(grid.Col(), 0);
    }

    void keysMoveAmongDataRowsOnly() {
        FlexGrid grid;
        showGrid(grid, 40, 5, {300, 200});
        EventLog log(grid);
        const auto at = [&grid] { return QPoint(grid.Row(), grid.Col()); };

        QTest::keyClick(&grid, Qt::Key_Up);
        QTest::keyClick(&grid, Qt::Key_PageUp);
        QTest::keyClick(&grid, Qt::Key_Left);
        QCOMPARE(at(), QPoint(1, 0));
        QCOMPARE(log.take(), QStringList());
        QTest::keyClick(&grid, Qt::Key_Down);
        QCOMPARE(log.take(), (QStringList{"Leave 1,0", "Enter 2,0"}));
        QTest::keyClick(&grid, Qt::Key_Right);
        QCOMPARE(at(), QPoint(2, 1));
        QTest::keyClick(&grid, Qt::Key_End);
        QCOMPARE(at(), QPoint(2, 4));
        QTest::keyClick(&grid, Qt::Key_Home);
        QCOMPARE(at(), QPoint(2, 0));

        // Paging moves by a screenful and keeps the current cell in view.
        QTest::keyClick(&grid, Qt::Key_PageDown);
        QVERIFY(grid.Row() > 4);
        QVERIFY(grid.TopRow() > 1);
        QVERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(at(), QPoint(39, 4));
        QTest::keyClick(&grid, Qt::Key_Down);
        QTest::keyClick(&grid, Qt::Key_PageDown);
        QCOMPARE(at(), QPoint(39, 4));
        QTest::keyClick(&grid, Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(at(), QPoint(1, 0));
        QCOMPARE(grid.TopRow(), 1);
        log.take();

        // Typing and Tab leave the current cell alone: the forms handle them.
        QTest::keyClicks(&grid, "b2");
        QTest::keyClick(&grid, Qt::Key_Tab);
        QCOMPARE(log.take(), QStringList());

        // From the header row set by code, Down enters the data; Up never leaves them.
        grid.setRow(0);
        QTest::keyClick(&grid, Qt::Key_Up);
        QCOMPARE(grid.Row(), 0);
        QTest::keyClick(&grid, Qt::Key_Down);
        QCOMPARE(grid.Row(), 1);
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(&grid, Qt::Key_PageDown);
            QTest::keyClick(&grid, Qt::Key_PageUp);
            QTest::keyClick(&grid, Qt::Key_Up);
            QVERIFY(grid.Row() >= 1);
        }
    }

    void editorLaidOverTheCellCoversIt() {
        GridWithEditor setup({420, 260}, {10, 20, 330, 170},
                             "^Apply |^ Type |^ Document Number |^ Balance |^ Applied |^ Date |^ Due |^ Ref ",
                             60);
        auto& [form, grid, editor] = setup;
        editor->setFrame(false);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));

        const auto layEditor = [&] {
            editor->setGeometry(QRect(grid->pos() + QPoint(grid->CellLeft(), grid->CellTop()),
                                      QSize(grid->CellWidth(), grid->CellHeight())));
        };
        // Some cells start out of view, below or to the right.
        const QList<QPoint> cells{{1, 0}, {2, 3}, {45, 7}, {59, 0}, {3, 6}};
        for (const QPoint& cell : cells) {
            grid->setRow(cell.x());
            grid->setCol(cell.y());
            layEditor();
            const QRect shown = grid->visualRect(indexOf(*grid, cell.x(), cell.y()));
            QVERIFY(grid->viewport()->rect().contains(shown));
            QCOMPARE(editor->geometry(),
                     QRect(grid->viewport()->mapTo(&form, shown.topLeft()), shown.size()));
        }

        // Over a header cell the editor lies within the header, on that column.
        grid->setRow(0);
        grid->setCol(1);
        layEditor();
        QHeaderView* header = grid->horizontalHeader();
        QVERIFY(QRect(header->mapTo(&form, QPoint()), header->size()).contains(editor->geometry()));
        QCOMPARE(header->logicalIndexAt(header->mapFrom(&form, editor->geometry().center())), 1);
        QCOMPARE(editor->width(), grid->ColWidth(1));
    }

    void currentCellShowsWithoutFocus() {
        GridWithEditor setup(
            {560, 230}, {10, 10, 540, 180},
            "^Apply |^ Document Type |^ Document Number |^ Pending Balance |^ Applied Amount |^ Due Date ",
            12);
        auto& [form, grid, editor] = setup;
        editor->setGeometry(10, 196, 200, 24);
        const QStringList types{"Invoice", "Invoice", "Credit Note", "Invoice", "Debit Note"};
        for (int row = 1; row <= types.size(); ++row) {
            grid->setTextMatrix(row, 1, types[row - 1]);
            grid->setTextMatrix(row, 2, QStringLiteral("IN%1").arg(1040 + row, 6, 10, QChar('0')));
            for (int col : {3, 4}) {
                grid->setRow(row);
                grid->setCol(col);
                grid->setText(QStringLiteral("%1.00").arg(row * 125 + col));
                grid->setCellAlignment(flexAlignRightCenter);
            }
            grid->setTextMatrix(row, 5, QStringLiteral("03/%1/2026").arg(row + 10));
        }
        grid->setTextMatrix(2, 0, "Yes");
        grid->setRow(3);
        grid->setCol(0);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        editor->setFocus();
        QVERIFY(!grid->hasFocus());

        // Two empty cells of one column differ only by the mark.
        const QImage shot = grid->viewport()->grab().toImage();
        const qreal ratio = shot.devicePixelRatio();
        const auto pixels = [&](int row) {
            const QRect cell = grid->visualRect(indexOf(*grid, row, 0));
            return shot.copy(QRect(cell.topLeft() * ratio, cell.size() * ratio));
        };
        QVERIFY(pixels(3) != pixels(4));
        QCOMPARE(pixels(4), pixels(5));
        test::grabToPng(&form, "flexgrid");
    }
};

QTEST_MAIN(FlexGridTest)
#include "FlexGridTest.moc"
