// The controls' behaviour that form code relies on: typed characters, key codes, focus, list indexes, form
// sizes and activation; and the data grid: growing and shrinking, cells by row and column, the current cell
// and its events under code, the clerk's mouse and keys.
#include "ui/ComboBox.h"
#include "ui/Events.h"
#include "ui/FlexGrid.h"
#include "ui/Forms.h"
#include "ui/Platform.h"

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
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

class ControlsTest : public QObject {
    Q_OBJECT

private slots:
    void keyPressReplacesOrDropsTypedCharacters() {
        QLineEdit upper, digitsOnly;
        onKeyPress(&upper, [](int& k) { UpperCaseKey(k); });
        QTest::keyClicks(&upper, "ab1-z?");
        QCOMPARE(upper.text(), QString("AB1-Z?"));
        onKeyPress(&digitsOnly, [](int& k) {
            if (k != vbKeyBack && (k < '0' || k > '9'))
                k = 0;
        });
        QTest::keyClicks(&digitsOnly, "1a2.3");
        QTest::keyClick(&digitsOnly, Qt::Key_Backspace); // Backspace reaches KeyPress as 8 and still works
        QCOMPARE(digitsOnly.text(), QString("12"));
    }

    void keyDownSeesKeyCodesAndMayReplaceOrDropThem() {
        QWidget form;
        auto* edit = new QLineEdit(&form);
        auto* next = new QLineEdit(&form);
        next->move(0, 40);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        edit->setFocus();
        QList<int> down, up;
        int shift = -1;
        onKeyDown(edit, [&](int& code, int s) {
            down << code;
            shift = s;
            if (code == vbKeyTab && s == 0)
                code = vbKeyLeft;
            else if (code == 'X')
                code = 0;
        });
        onKeyUp(edit, [&](int code, int) { up << code; });
        QTest::keyClicks(edit, "ab");
        QTest::keyClick(edit, Qt::Key_Backspace);
        QTest::keyClick(edit, Qt::Key_Right);
        QTest::keyClick(edit, Qt::Key_Tab); // becomes Left: the caret moves and the focus stays
        QVERIFY(edit->hasFocus());
        QCOMPARE(edit->cursorPosition(), 0);
        QTest::keyClick(edit, Qt::Key_X); // dropped: types nothing and has no KeyUp
        QCOMPARE(edit->text(), QString("a"));
        QCOMPARE(down, QList<int>({'A', 'B', vbKeyBack, vbKeyRight, vbKeyTab, 'X'}));
        QCOMPARE(up, QList<int>({'A', 'B', vbKeyBack, vbKeyRight, vbKeyLeft}));
        QTest::keyClick(edit, Qt::Key_Backtab, Qt::ShiftModifier); // left alone: the focus moves on
        QCOMPARE(shift, vbShiftMask);
        QVERIFY(!edit->hasFocus());
    }

    void focusEventsIgnoreMenusAndOtherWindows() {
        QWidget form;
        auto* first = new QLineEdit(&form);
        auto* second = new QLineEdit(&form);
        second->move(0, 40);
        int got = 0, lost = 0;
        onGotFocus(first, [&] { ++got; });
        onLostFocus(first, [&] { ++lost; });
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        second->setFocus(Qt::TabFocusReason);
        got = lost = 0;
        first->setFocus(Qt::TabFocusReason);
        for (auto [type, reason] : {std::pair{QEvent::FocusOut, Qt::MenuBarFocusReason},
                                    {QEvent::FocusIn, Qt::PopupFocusReason},
                                    {QEvent::FocusOut, Qt::ActiveWindowFocusReason},
                                    {QEvent::FocusIn, Qt::ActiveWindowFocusReason}}) {
            QFocusEvent event(type, reason);
            QApplication::sendEvent(first, &event);
        }
        QCOMPARE(QPoint(got, lost), QPoint(1, 0));
        second->setFocus(Qt::TabFocusReason);
        QCOMPARE(lost, 1);
    }

    void settingTheListIndexAlwaysRunsClick() {
        ComboBox combo;
        combo.addItems({"A", "B", "C"});
        QList<int> clicks;
        connect(&combo, &ComboBox::Click, this, [&] { clicks << combo.ListIndex(); });
        combo.setListIndex(1);
        combo.setListIndex(1); // unchanged: Click runs again
        combo.setListIndex(7); // beyond the list: nothing selected
        QCOMPARE(clicks, (QList<int>{1, 1, -1}));
        QCOMPARE(combo.currentText(), QString());
        combo.setListIndex(2);
        combo.show();
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Up); // the clerk's choice runs Click too
        QCOMPARE(clicks.last(), 1);

        // Filling an empty list selects nothing and runs no Click.
        ComboBox fresh;
        connect(&fresh, &ComboBox::Click, this, [&] { clicks << -2; });
        fresh.addItems({"X", "Y"});
        QCOMPARE(fresh.ListIndex(), -1);
        QCOMPARE(clicks.size(), 5);
    }

    void formsKeepTheirSizeInTwips() {
        QWidget form;
        FixFormSize(&form, 7920, 3330);
        form.resize(800, 600);
        QCOMPARE(form.size(), QSize(528, 222));
    }

    void activateRunsOnlyWhenComingFromAnotherForm() {
        QMainWindow a, b;
        int activations = 0;
        onActivate(&a, [&] { ++activations; });
        onActivate(&b, [] {}); // a form of the program, as the other one
        a.show();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QEvent deactivate(QEvent::WindowDeactivate), reactivate(QEvent::WindowActivate);
        QApplication::sendEvent(&a, &deactivate); // the program as a whole loses and regains the focus
        QApplication::sendEvent(&a, &reactivate);
        QCOMPARE(activations, 1);
        b.show();
        b.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&b));
        a.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QCOMPARE(activations, 2);
    }

    void formatStringFillsTheHeaderAndRowsAndColsGrowAndShrinkKeepingText() {
        FlexGrid grid;
        QCOMPARE(QPoint(grid.Rows(), grid.Cols()), QPoint(2, 2));
        grid.setRows(3);
        grid.setTextMatrix(1, 0, "x");
        grid.setFormatString("^Apply |<Left|>Right|plain|"); // a trailing "|" is one more, empty column
        QCOMPARE(grid.TextMatrix(0, 0) + grid.TextMatrix(0, 2) + grid.TextMatrix(1, 0),
                 QString("Apply Rightx"));
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
        QVERIFY(grid.Row() > 4 && grid.TopRow() > 1 &&
                grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
    }
};

QTEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
