// Distribution lines of a miscellaneous receipt on the receipt window: adding lines, the floating editor and
// its keys, the checks of codes, accounts and amounts with their messages, and the finder's choice put into
// the line.
#include "entry/DistributionRules.h"
#include "fetching/FinderRecords.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/FinderAnswers.h"
#include "support/ReceiptWindow.h"

#include <QPushButton>

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
                          grid()->visualRect(grid()->model()->index(row, col)).center());
    }

    // Misc. mode with a receipt amount and its first line started.
    void startMisc(const QString& amount) {
        window->combo("cboTransType")->setListIndex(2);
        window->edit("txtAmount")->setText(amount);
        window->form->cmdNewInvoice_Click();
    }
    // Keys a whole line from its code cell, leaving the editor in its Amount cell after the amount is
    // accepted by Right.
    void keyLine(const QString& code, const QString& account, const QString& amount) {
        QCOMPARE(grid()->Col(), 0);
        editor()->setText(code);
        key(Qt::Key_Right);
        editor()->setText(account);
        key(Qt::Key_Right);
        editor()->setText(amount);
        key(Qt::Key_Right);
        QCOMPARE(grid()->Col(), 3);
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
        QVERIFY(window->open());
        QVERIFY(QTest::qWaitForWindowActive(window->form));
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
        QCOMPARE(Desk().DistLines, 1);
        QCOMPARE(cell(1, 2), QString("0.00"));
        QVERIFY(window->enabled("cmdDist") && window->enabled("cmdAccount") && window->saveEnabled());
        QVERIFY(Desk().EntryDirty);
        expectEditorOverCurrentCell();

        // No line after a line whose amount is still zero.
        window->form->cmdNewInvoice_Click();
        QCOMPARE(Desk().DistLines, 1);

        // Tab in the first column moves nothing and keeps the focus in the editor; Tab moves left, selecting
        // the cell's text, and the arrows stop at the ends.
        key(Qt::Key_Tab);
        QCOMPARE(grid()->Col(), 0);
        QVERIFY(editor()->hasFocus());
        keyLine("RETAIL", "4100-100", "25");
        key(Qt::Key_Right);
        key(Qt::Key_Right);
        QCOMPARE(grid()->Col(), 4);
        expectEditorOverCurrentCell();
        for (int tab = 0; tab < 3; ++tab)
            key(Qt::Key_Tab);
        QCOMPARE(grid()->Col(), 1);
        QVERIFY(editor()->hasFocus());
        QCOMPARE(editor()->selectedText(), QString("4100-100"));
    }

    void amountsAreKeptWithinTheUndistributedAmount() {
        test::ExpectBox answers;
        startMisc("1,000.00");
        keyLine("RETAIL", "4100100", "1,2,3.455"); // commas anywhere, more decimals than a cent
        QCOMPARE(cell(1, 2), QString("123.46"));
        QCOMPARE(window->form->Parts().lines.DistAmounts()[1], Money::fromCents(12346));
        QCOMPARE(window->text("txtDistribution"), QString("876.54"));

        window->form->cmdNewInvoice_Click();
        QCOMPARE(Desk().DistLines, 2);
        QCOMPARE(cell(2, 2), QString("0.00"));
        editor()->setText("MISC");
        key(Qt::Key_Right);
        editor()->setText("4700");
        key(Qt::Key_Right);
        // One cent more than is left: refused, the editor emptied, the line counted at zero.
        editor()->setText("876.55");
        QCOMPARE(cell(2, 2), QString("876.55"));
        key(Qt::Key_Right);
        QVERIFY(
            answers(1,
                    "The Amount you entered is greater than the Undistributed Amount.\nEnter an Amount less "
                    "than the Undistributed Amount.",
                    vbOKOnly + vbCritical, "Invalid Input"));
        QCOMPARE(grid()->Col(), 2);
        QCOMPARE(editor()->text(), QString());
        QCOMPARE(cell(2, 2), QString("0.00"));
        QCOMPARE(window->form->Parts().lines.DistAmounts()[2], Money());
        QCOMPARE(window->text("txtDistribution"), QString("876.54"));

        // Exactly what is left, typed with letters after it: accepted, nothing left.
        editor()->setText("876.54abc");
        key(Qt::Key_Right);
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(grid()->Col(), 3);
        QCOMPARE(cell(2, 2), QString("876.54"));
        QCOMPARE(window->text("txtDistribution"), QString("0.00"));
        // Leaving the undistributed amount at nothing takes away New Invoice.
        window->edit("txtDistribution")->setFocus();
        editor()->setFocus();
        QVERIFY(!window->enabled("cmdNewInvoice"));

        // A line's own amount does not count against itself when it is changed.
        key(Qt::Key_Left);
        editor()->setText("800");
        key(Qt::Key_Left);
        QCOMPARE(grid()->Col(), 1);
        QCOMPARE(window->text("txtDistribution"), QString("76.54"));

        // The amount being keyed is checked before a line is added.
        key(Qt::Key_Right);
        editor()->setText("900");
        window->form->cmdNewInvoice_Click();
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(Desk().DistLines, 2);
        QCOMPARE(cell(2, 2), QString("0.00"));
        QCOMPARE(window->text("txtDistribution"), QString("876.54"));
    }

    void codesAndAccountsAreCheckedAsTyped() {
        test::ExpectBox answers;
        startMisc("100.00");
        const QString codeRefused =
            "The Distribution Code you entered is invalid.\nEnter the Distribution Code "
            "again, or select one using thr finder.";
        for (const QString& code : QStringList{"retail", " RETAIL", ""}) {
            editor()->setText(code);
            key(Qt::Key_Right);
            QCOMPARE(grid()->Col(), 0);
            QCOMPARE(editor()->text(), code);
        }
        QVERIFY(answers(3, codeRefused, vbOKOnly + vbCritical, "Invalid Input"));

        // A code typed by hand brings its revenue account.
        editor()->setText("CONSLT");
        key(Qt::Key_Right);
        QCOMPARE(grid()->Col(), 1);
        QCOMPARE(cell(1, 1), QString("4200100"));
        QCOMPARE(editor()->text(), QString("4200100"));
        const QString accountRefused = "The Account number you entered is invalid.\nEnter the Account number "
                                       "again, or select one using thr finder.";
        for (const QString& account : QStringList{"4100 100", "999-9", ""}) {
            editor()->setText(account);
            key(Qt::Key_Right);
            QCOMPARE(grid()->Col(), 1);
        }
        QVERIFY(answers(6, accountRefused, vbOKOnly + vbCritical));
        // Hyphens anywhere and blanks around the number are ignored.
        for (const QString& account : QStringList{" 4100100 ", "41-00-100", "4200-100-10"}) {
            editor()->setText(account);
            key(Qt::Key_Right);
            QCOMPARE(grid()->Col(), 2);
            QCOMPARE(cell(1, 1), account);
            key(Qt::Key_Left);
        }
        QCOMPARE(answers.asked.size(), 6);
    }

    void aClickChecksTheCellItLeavesAndSpellsTheFinderRight() {
        test::ExpectBox answers;
        startMisc("100.00");
        editor()->setText("NOSUCH");
        clickCell(0, 3);
        QVERIFY(
            answers(1,
                    "The Distribution Code you entered is invalid.\nEnter the Distribution Code again, or "
                    "select one using the finder.",
                    vbOKOnly + vbCritical));
        QCOMPARE(grid()->Row(), 1);
        QCOMPARE(grid()->Col(), 0);
        QCOMPARE(editor()->text(), QString("NOSUCH"));
        expectEditorOverCurrentCell();

        editor()->setText("RETAIL");
        clickCell(0, 2);
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(grid()->Col(), 2);
        expectEditorOverCurrentCell();

        // An amount over the receipt, left by a click: refused, back on its cell, emptied.
        editor()->setText("100.01");
        clickCell(0, 4);
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(grid()->Col(), 2);
        QCOMPARE(editor()->text(), QString());
        QCOMPARE(cell(1, 2), QString("0.00"));
        QCOMPARE(window->text("txtDistribution"), QString("100.00"));

        // A click below the lines leaves the editor on its line.
        clickCell(3, 1);
        QCOMPARE(grid()->Row(), 1);
        QCOMPARE(grid()->Col(), 2);
        expectEditorOverCurrentCell();
    }

    void theEditorFollowsItsCellAsTheGridScrolls() {
        startMisc("1,000.00");
        for (int line = 1; line <= 14; ++line) {
            keyLine("RETAIL", "4100100", "1");
            window->form->cmdNewInvoice_Click();
        }
        QCOMPARE(Desk().DistLines, 15);
        QCOMPARE(grid()->Row(), 15);
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

    void aLineIsRemovedAndNewInvoiceFollowsWhatIsLeft() {
        test::ExpectBox answers;
        startMisc("100.00");
        keyLine("RETAIL", "4100100", "60");
        window->form->cmdNewInvoice_Click();
        keyLine("MISC", "4700", "40");
        // Nothing left: New Invoice goes at once, and adds nothing when called.
        QCOMPARE(window->text("txtDistribution"), QString("0.00"));
        QVERIFY(!window->enabled("cmdNewInvoice"));
        window->form->cmdNewInvoice_Click();
        QCOMPARE(Desk().DistLines, 2);

        grid()->setRow(1);
        grid()->setCol(0);
        QTest::keyClick(editor(), Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(Desk().DistLines, 1);
        QCOMPARE(cell(1, 0), QString("MISC"));
        QCOMPARE(cell(2, 0), QString());
        QCOMPARE(window->text("txtDistribution"), QString("60.00"));
        QVERIFY(window->enabled("cmdNewInvoice"));
        QCOMPARE(grid()->Row(), 1);
        QVERIFY(answers.none());
    }

    // A code's finder is walked by the road test; the account's: through the editor into its cell, Cancel
    // writing nothing, and straight into a blank line.
    void theAccountFinderPutsAnAccountIntoTheLine() {
        startMisc("100.00");

        editor()->setText("RETAIL");
        test::whenFinderShows([](frmFinder* finder) { test::selectInFinder(finder, "4100-100"); });
        window->form->cmdAccount_Click();
        QCOMPARE(Desk().FinderKind, 2);
        QCOMPARE(cell(1, 1), QString("4100-100"));
        test::whenFinderShows([](frmFinder* finder) {
            test::finderGrid(finder)->setRow(3);
            test::control<QPushButton>(finder, "cmdCancel")->click();
        });
        window->form->cmdAccount_Click();
        QCOMPARE(cell(1, 1), QString("4100-100"));
        QCOMPARE(grid()->Col(), 2);
        // A blank line takes the account straight into its cell.
        editor()->setText("10");
        key(Qt::Key_Right);
        window->form->cmdNewInvoice_Click();
        test::whenFinderShows([](frmFinder* finder) { test::selectInFinder(finder, "4200-100-10"); });
        window->form->cmdAccount_Click();
        QCOMPARE(cell(2, 0), QString());
        QCOMPARE(cell(2, 1), QString("4200-100-10"));
        QCOMPARE(grid()->Col(), 2);
    }

    void theFinderReadsEveryRecordInKeyOrder() {
        for (const int kind : {FinderDistCodes, FinderAccounts}) {
            const std::vector<QStringList> records = Read_FinderRecords(*Desk().LedgerSession, kind);
            QCOMPARE(records.size(), kind == FinderDistCodes ? size_t(24) : size_t(34));
            for (size_t i = 1; i < records.size(); ++i)
                QVERIFY(records[i - 1][0] < records[i][0]);
        }
    }
};

QTEST_MAIN(DistributionsTest)
#include "DistributionsTest.moc"
