// Applying a receipt in the grid of the receipt window: the figures of each application, the refusal when
// nothing is left, unapplying in the middle, what the grid ignores, and the prepayment's pick.
#include "entry/ReceiptDesk.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/ReceiptWindow.h"

#include <QAction>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

using namespace tillbook;

class ApplicationGridTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;

    FlexGrid* grid() const { return window->grid(); }
    // Rows 1 to 3 as "mark applied net", then the unapplied amount.
    QString rows() const {
        QStringList shown;
        for (int row = 1; row <= 3; ++row)
            shown << grid()->TextMatrix(row, 0) + ' ' + grid()->TextMatrix(row, 4) + ' ' +
                         grid()->TextMatrix(row, 8);
        return (shown << window->text("txtUnapplied")).join(u'|');
    }

    // A new entry in a new batch with the first customer chosen in the given mode and the documents searched.
    void startEntry(int mode) {
        QVERIFY(window->open());
        test::answerBankDialog(0);
        window->form->cmdNewBatch_Click();
        window->form->cmdNewEntry_Click();
        window->combo("cboTransType")->setListIndex(mode);
        window->combo("cboCustomers")->setListIndex(0);
        if (mode == 0)
            window->form->cmdSearch_Click();
        QVERIFY(!grid()->TextMatrix(3, mode == 0 ? 2 : 0).isEmpty()); // three documents to work with
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    }
    void init() {
        // Customers with many documents, so that the first one has at least three.
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample(5, 200));
        window = std::make_unique<test::ReceiptWindow>(*company);
    }
    void cleanup() {
        window.reset();
        company.reset();
    }

    void applyingUnapplyingAndTheRefusalWhenNothingIsLeft() {
        test::ExpectBox box;
        startEntry(0);
        for (const auto& [row, net] : {std::pair{1, "100.00"}, {2, "400.00"}, {3, "10.00"}})
            grid()->setTextMatrix(row, 8, net);
        window->edit("txtAmount")->setText("250.00");
        window->edit("txtUnapplied")->setText("250.00");
        QVERIFY(!window->saveEnabled());
        window->dblClick(1, 0);
        QVERIFY(window->saveEnabled() && Desk().EntryDirty && grid()->CellBold(1, 0));
        window->dblClick(2, 0);
        window->dblClick(3, 0); // nothing is left
        QVERIFY(box(1, "The unapplied amount must be greater than $0.00.", vbOKOnly, "Invalid Entry"));
        QCOMPARE(rows(), QString("Yes 100.00 0.00|Yes 150.00 250.00|No 0.00 10.00|0.00"));
        // Unapplying the second gives its net balance back as a plain number.
        window->dblClick(2, 0);
        QCOMPARE(rows(), QString("Yes 100.00 0.00|No 0.00 400|No 0.00 10.00|150.00"));
        QVERIFY(window->saveEnabled());
        // Three applied, the middle one unapplied: the others keep their order.
        window->edit("txtUnapplied")->setText("1,000.00");
        window->dblClick(2, 0);
        window->dblClick(3, 0);
        window->dblClick(2, 0);
        QCOMPARE(Desk().ApplyKeys, (std::vector<int>{1, 3}));
        QCOMPARE(rows(), QString("Yes 100.00 0.00|No 0.00 400|Yes 10.00 0.00|990.00"));
        window->dblClick(1, 0);
        window->dblClick(3, 0);
        QCOMPARE(Desk().ApplyCount, 0);
        QVERIFY(!grid()->CellBold(1, 0) && !window->saveEnabled() && !Desk().EntryDirty);

        // Other columns, a row without a document and a locked entry ignore a double-click.
        window->dblClick(1, 2);
        grid()->setRows(grid()->Rows() + 1);
        window->dblClick(grid()->Rows() - 1, 0);
        window->form->Parts().entry.Lock_Entry();
        window->dblClick(1, 0);
        QCOMPARE(Desk().ApplyCount, 0);
    }

    void anotherCustomerIsOfferedTheWholeAmount() {
        startEntry(0);
        window->edit("txtAmount")->setText("1,000.00");
        window->edit("txtUnapplied")->setText("1,000.00");
        QVERIFY(QStringList({"Invoice", "Debit Note", "Credit Note"}).contains(grid()->TextMatrix(1, 1)));
        // From the keyboard, Space on the Apply cell applies as a double-click does.
        grid()->setRow(1);
        grid()->setCol(0);
        grid()->setFocus();
        QTest::keyClick(grid(), Qt::Key_Space);
        QCOMPARE(grid()->TextMatrix(1, 0), QString("Yes"));
        grid()->horizontalScrollBar()->setValue(grid()->horizontalScrollBar()->maximum());
        window->combo("cboCustomers")->setListIndex(1);
        QVERIFY(Desk().ApplyCount == 0 && !window->saveEnabled());
        QCOMPARE(window->text("txtUnapplied"), QString("1,000.00"));
        // The next customer's documents are shown from their first column.
        window->form->cmdSearch_Click();
        QCOMPARE(grid()->horizontalScrollBar()->value(), 0);
    }

    // Yes to the unsaved-entry question saves the receipt as a receipt, whatever mode was chosen; the
    // chosen mode then holds on a new entry.
    void savingOnAModeChangeSavesTheKindKeyed() {
        startEntry(0);
        window->edit("txtAmount")->setText("100.00");
        window->edit("txtUnapplied")->setText("100.00");
        window->dblClick(1, 0);
        test::ExpectBox boxes(vbYes);
        window->combo("cboTransType")->setListIndex(2);
        QCOMPARE(boxes.asked.size(), 1); // the question only: no refusal
        QVERIFY(window->form->LastPosting().PostOK);
        QCOMPARE(window->texts({"txtBatchEntries", "txtAmount"}), QString("Entries:  1|"));
        QCOMPARE(QPoint(window->combo("cboEntry")->count(), window->combo("cboEntry")->ListIndex()),
                 QPoint(2, 1));
        QCOMPARE(QPoint(window->form->TransType(), window->combo("cboTransType")->ListIndex()), QPoint(2, 2));
        QVERIFY(!window->form->EntryLocked() && window->shown("txtDistribution"));
        // A receipt keyed as the new entry is saved, asked about, when a saved entry is chosen; the chosen
        // one is then shown, the receipt read back as one.
        window->combo("cboTransType")->setListIndex(0);
        window->combo("cboCustomers")->setListIndex(0);
        window->edit("txtAmount")->setText("50.00");
        window->edit("txtUnapplied")->setText("50.00");
        window->form->cmdSearch_Click();
        window->dblClick(2, 0); // the first document is taken up by the first entry
        window->combo("cboEntry")->setListIndex(0);
        QCOMPARE(boxes.asked.size(), 2);
        QCOMPARE(window->texts({"txtBatchEntries", "txtAmount"}), QString("Entries:  2|100.00"));
        QCOMPARE(QPoint(window->combo("cboEntry")->ListIndex(), window->combo("cboTransType")->ListIndex()),
                 QPoint(0, 0));
        QVERIFY(window->form->EntryLocked() && window->enabled("cmdPrint")); // a saved entry recalled prints
    }

    void aPrepaymentPicksTheDocumentOnlyWithAnAmount() {
        startEntry(1);
        for (const char* amount : {"", "0.00"}) {
            window->edit("txtAmount")->setText(amount);
            window->dblClick(1, 0);
            QVERIFY(window->text("txtPrePay").isEmpty() && !window->saveEnabled());
        }

        window->edit("txtAmount")->setText("75.00");
        window->dblClick(2, 0);
        QCOMPARE(window->text("txtPrePay"), grid()->TextMatrix(2, 0));
        QVERIFY(!window->text("txtReceiptNum").isEmpty() && window->saveEnabled() && Desk().EntryDirty);
    }
};

QTEST_MAIN(ApplicationGridTest)
#include "ApplicationGridTest.moc"
