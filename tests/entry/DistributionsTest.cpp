// Distribution lines of a miscellaneous receipt on the receipt window: the floating editor and its keys, the
// check of each cell as it is left (a table), what is left to distribute as lines change, scrolling, and the
// finder's choice put into the line.
#include "entry/DistributionRules.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/FinderAnswers.h"
#include "support/ReceiptWindow.h"

#include <QPushButton>
#include <map>

using namespace tillbook;

class DistributionsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;

    QLineEdit* editor() const { return window->edit("txtFloat"); }
    FlexGrid* grid() const { return window->grid(); }
    void key(Qt::Key k) { QTest::keyClick(editor(), k); }
    QString cell(int row, int col) const { return grid()->TextMatrix(row, col); }
    void clickCell(int row, int col) {
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {},
                          grid()->visualRect(grid()->model()->index(row - 1, col)).center());
    }
    // Misc. mode with a receipt amount and its first line started.
    void startMisc(const QString& amount) {
        window->combo("cboTransType")->setListIndex(2);
        window->edit("txtAmount")->setText(amount);
        window->form->cmdNewInvoice_Click();
    }
    // Types each text into the editor's cell and leaves it by Right.
    void keyCells(const QStringList& texts) {
        for (const QString& text : texts) {
            editor()->setText(text);
            key(Qt::Key_Right);
        }
    }
    // The editor lies exactly over the grid's current cell.
    void expectEditorOverCurrentCell() {
        QVERIFY(editor()->isVisible());
        const QRect shown = grid()->ShownCellRect();
        QVERIFY(!shown.isEmpty());
        QCOMPARE(editor()->geometry(), QRect(grid()->pos() + shown.topLeft(), shown.size()));
        QCOMPARE(editor()->text(), grid()->Text());
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample());
    }
    void cleanupTestCase() { company.reset(); }

    void init() {
        window = std::make_unique<test::ReceiptWindow>(*company);
        QVERIFY(window->open() && QTest::qWaitForWindowActive(window->form));
        Desk().CurrentBatch = 12;
        Desk().CurrentEntry = 3;
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
    }
    void cleanup() {
        window.reset();
        Desk().EntryDirty = false;
    }

    void theFirstLineOpensTheEditorWhoseKeysMoveAlongTheLine() {
        // No finder before there is a line to fill.
        window->combo("cboTransType")->setListIndex(2);
        window->form->Parts().entry.Unlock_Entry();
        QVERIFY(!window->enabled("cmdDist") && !window->enabled("cmdAccount"));
        startMisc("100.00");
        QCOMPARE(QString::number(Desk().DistLines) + cell(1, 2), QString("10.00"));
        QVERIFY(window->enabled("cmdDist") && window->enabled("cmdAccount") && window->saveEnabled() &&
                Desk().EntryDirty);
        expectEditorOverCurrentCell();

        // No line after a line whose amount is still zero.
        window->form->cmdNewInvoice_Click();
        QCOMPARE(Desk().DistLines, 1);

        // Tab in the first column moves nothing and keeps the focus in the editor; Tab moves left, selecting
        // the cell's text, and the arrows stop at the ends.
        key(Qt::Key_Tab);
        QVERIFY(grid()->Col() == 0 && editor()->hasFocus());
        keyCells({"RETAIL", "4100-100", "25", "", ""});
        QCOMPARE(grid()->Col(), 4);
        expectEditorOverCurrentCell();
        for (int tab = 0; tab < 3; ++tab)
            key(Qt::Key_Tab);
        QVERIFY(grid()->Col() == 1 && editor()->hasFocus());
        QCOMPARE(editor()->selectedText(), QString("4100-100"));
    }

    // On a receipt of 100.00, the first `before` cells keyed, then `typed` left by Right or by a click: the
    // column the editor stands on, the box asked ('-' none; refused code, account or amount, 'k'/'a' by keys,
    // 'K'/'A' by a click, 'o' over), the line's first three cells and what is left to distribute (shown
    // once an amount is stored).
    void eachCellIsCheckedAsItIsLeft_data() {
        QTest::addColumn<int>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("click");
        QTest::addColumn<int>("col");
        QTest::addColumn<char>("box");
        QTest::addColumn<QString>("shown");
        const struct {
            int before;
            const char* typed;
            bool click;
            int col;
            char box;
            const char* shown;
        } cells[] = {
            {0, "retail", false, 0, 'k', "retail||0.00|"},   // codes are capitals
            {0, " RETAIL", false, 0, 'k', " RETAIL||0.00|"}, // and never trimmed
            {0, "", false, 0, 'k', "||0.00|"},
            {0, "NOSUCH", true, 0, 'K', "NOSUCH||0.00|"},
            {0, "CONSLT", false, 1, '-', "CONSLT|4200100|0.00|"}, // a code brings its account
            {1, "4100 100", false, 1, 'a', "RETAIL|4100 100|0.00|"},
            {1, "999-9", false, 1, 'a', "RETAIL|999-9|0.00|"},
            {1, "", false, 1, 'a', "RETAIL||0.00|"},
            {1, "999-9", true, 1, 'A', "RETAIL|999-9|0.00|"},
            {1, " 4100100 ", false, 2, '-', "RETAIL| 4100100 |0.00|"}, // blanks and hyphens ignored
            {1, "41-00-100", false, 2, '-', "RETAIL|41-00-100|0.00|"},
            {1, "4200-100-10", false, 2, '-', "RETAIL|4200-100-10|0.00|"},
            {2, "1,2.345", false, 3, '-', "RETAIL|4100100|12.35|87.65"}, // to the cent, half away from 0
            {2, "100.01", false, 2, 'o', "RETAIL|4100100|0.00|100.00"},
            {2, "100.01", true, 2, 'o', "RETAIL|4100100|0.00|100.00"},
            {2, "100abc", false, 3, '-', "RETAIL|4100100|100.00|0.00"}, // exactly what is left
        };
        for (const auto& c : cells)
            QTest::newRow(QByteArray::number(c.before) + (c.click ? " click " : " key ") + c.typed)
                << c.before << QString(c.typed) << c.click << c.col << c.box << QString(c.shown);
    }
    void eachCellIsCheckedAsItIsLeft() {
        QFETCH(int, before);
        QFETCH(QString, typed);
        QFETCH(bool, click);
        QFETCH(int, col);
        QFETCH(char, box);
        QFETCH(QString, shown);
        const std::map<char, QString> boxes = {{'k', InvalidDistCodeText(RefusedBy::Keys)},
                                               {'K', InvalidDistCodeText(RefusedBy::Click)},
                                               {'a', InvalidAccountText(RefusedBy::Keys)},
                                               {'A', InvalidAccountText(RefusedBy::Click)},
                                               {'o', AmountOverUndistributedText}};
        test::ExpectBox answers;
        startMisc("100.00");
        keyCells(QStringList({"RETAIL", "4100100"}).mid(0, before));
        editor()->setText(typed);
        click ? clickCell(1, 4) : key(Qt::Key_Right);
        QVERIFY(box == '-' ? answers.none()
                           : answers(1, boxes.at(box), vbOKOnly + vbCritical, "Invalid Input"));
        QCOMPARE(QPoint(grid()->Row(), grid()->Col()), QPoint(1, col));
        QCOMPARE(
            QStringList({cell(1, 0), cell(1, 1), cell(1, 2), window->text("txtDistribution")}).join(u'|'),
            shown);
        if (box == 'o') // refused: the editor back over the cell, emptied
            QCOMPARE(editor()->text(), QString());
        else
            expectEditorOverCurrentCell();
    }

    // A line's own amount does not count against itself; the amount being keyed is checked before a line is
    // added; nothing left takes New Invoice away; a removed line gives its amount back.
    void whatIsLeftFollowsTheLines() {
        test::ExpectBox answers;
        startMisc("100.00");
        keyCells({"RETAIL", "4100100", "60"});
        window->form->cmdNewInvoice_Click();
        keyCells({"MISC", "4700", "40"});
        key(Qt::Key_Left);
        editor()->setText("35");
        key(Qt::Key_Left);
        QCOMPARE(window->text("txtDistribution"), QString("5.00"));
        key(Qt::Key_Right);
        editor()->setText("41");
        window->form->cmdNewInvoice_Click();
        QVERIFY(answers(1, AmountOverUndistributedText, vbOKOnly + vbCritical));
        QCOMPARE(Desk().DistLines, 2);
        QCOMPARE(cell(2, 2) + '|' + window->text("txtDistribution"), QString("0.00|40.00"));
        keyCells({"40"});
        QVERIFY(!window->enabled("cmdNewInvoice"));
        window->form->cmdNewInvoice_Click();
        QCOMPARE(Desk().DistLines, 2);

        // A click below the lines leaves the editor on its line.
        clickCell(4, 1);
        QCOMPARE(QPoint(grid()->Row(), grid()->Col()), QPoint(2, 0));
        expectEditorOverCurrentCell();

        grid()->setRow(1);
        grid()->setCol(0);
        QTest::keyClick(editor(), Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(Desk().DistLines, 1);
        QCOMPARE(cell(1, 0) + cell(2, 0), QString("MISC"));
        QCOMPARE(window->text("txtDistribution"), QString("60.00"));
        QVERIFY(window->enabled("cmdNewInvoice"));
        QCOMPARE(grid()->Row(), 1);
        QCOMPARE(answers.asked.size(), 1);
    }

    void theEditorFollowsItsCellAsTheGridScrolls() {
        startMisc("1,000.00");
        for (int line = 1; line <= 14; ++line) {
            keyCells({"RETAIL", "4100100", "1"});
            window->form->cmdNewInvoice_Click();
        }
        QCOMPARE(QPoint(Desk().DistLines, grid()->Row()), QPoint(15, 15));
        QVERIFY(grid()->TopRow() > 1);
        expectEditorOverCurrentCell();
        QVERIFY(grid()->viewport()->geometry().translated(grid()->pos()).contains(editor()->geometry()));

        // Scrolled by the clerk, the editor moves with its cell and is hidden while the cell is out of sight.
        grid()->setRow(10);
        expectEditorOverCurrentCell();
        grid()->setTopRow(9);
        expectEditorOverCurrentCell();
        grid()->setTopRow(1);
        QVERIFY(!editor()->isVisible());
        grid()->setTopRow(8);
        expectEditorOverCurrentCell();

        // The last column, partly out of sight, is brought into view under the editor.
        for (int i = 0; i < 4; ++i)
            key(Qt::Key_Right);
        QCOMPARE(grid()->Col(), 4);
        expectEditorOverCurrentCell();
        QCOMPARE(editor()->width(), grid()->CellWidth());
    }

    // A code's finder is walked by the road test; the account's: through the editor into its cell, Cancel
    // writing nothing, and straight into a blank line.
    void theAccountFinderPutsAnAccountIntoTheLine() {
        startMisc("100.00");
        editor()->setText("RETAIL");
        test::whenFinderShows([](frmFinder* finder) { test::selectInFinder(finder, "4100-100"); });
        window->form->cmdAccount_Click();
        QCOMPARE(QString::number(Desk().FinderKind) + cell(1, 1), QString("24100-100"));
        test::whenFinderShows([](frmFinder* finder) {
            test::finderGrid(finder)->setRow(3);
            test::control<QPushButton>(finder, "cmdCancel")->click();
        });
        window->form->cmdAccount_Click();
        QVERIFY(cell(1, 1) == "4100-100" && grid()->Col() == 2);
        keyCells({"10"});
        window->form->cmdNewInvoice_Click();
        test::whenFinderShows([](frmFinder* finder) { test::selectInFinder(finder, "4200-100-10"); });
        window->form->cmdAccount_Click();
        QCOMPARE(cell(2, 0) + '|' + cell(2, 1), QString("|4200-100-10"));
        QCOMPARE(grid()->Col(), 2);
    }
};

QTEST_MAIN(DistributionsTest)
#include "DistributionsTest.moc"
