// Saved entries shown again on the receipt window: an ordinary receipt, a prepayment and a miscellaneous
// receipt, each read back from the ledger, locked and ready to print.
#include "support/Grab.h"
#include "support/ReceiptWindow.h"
#include "support/TestCompany.h"

#include <QAction>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>

using namespace tillbook;

namespace {

// Runs the ledger tool; a script that shows refusals on purpose ends with exit code 1.
bool runTool(const QStringList& arguments, int allowedExitCode = 0) {
    QProcess tool;
    tool.start(QStringLiteral(TILLBOOK_LEDGER_TOOL), arguments);
    if (!tool.waitForFinished(120000) || tool.exitCode() > allowedExitCode) {
        qWarning() << arguments << tool.readAllStandardError();
        return false;
    }
    return true;
}

} // namespace

class RecallTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TestStore> store;
    std::unique_ptr<test::ReceiptWindow> window;

    void showEntry(int entry) {
        window->combo("cboBatch")->setListIndex(window->combo("cboBatch")->findText("1"));
        QCOMPARE(window->combo("cboBatch")->currentText(), QString("1"));
        QCOMPARE(window->text("txtBatchEntries"), QString("Entries:  3"));
        window->combo("cboEntry")->setListIndex(entry - 1);
        QCOMPARE(Desk().CurrentEntry, entry);
    }
    void expectLockedAndPrintable() {
        QVERIFY(window->form->EntryLocked());
        for (const char* field :
             {"txtAmount", "txtDate", "txtEntDesc", "cboCustomers", "cboTransType", "txtPayer"})
            QVERIFY2(!test::control<QWidget>(window->form, field)->isEnabled(), field);
        QVERIFY(test::control<QPushButton>(window->form, "cmdPrint")->isEnabled());
        QVERIFY(test::control<QAction>(window->form, "mnuFilePrint")->isEnabled());
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2025-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        store = std::make_unique<test::TestStore>();
        QVERIFY(runTool({"create", "SAMINC", "--sample", "--customers", "20", "--documents", "120"}));
        QVERIFY(runTool({"run", "SAMINC",
                         QStringLiteral(TILLBOOK_SOURCE_DIR) + "/tests/ledger/rules/scripts/receipts.script"},
                        1));
    }
    void cleanupTestCase() { store.reset(); }

    void init() {
        window = std::make_unique<test::ReceiptWindow>();
        QVERIFY(window->open());
    }
    void cleanup() { window.reset(); }

    void anOrdinaryReceiptWithItsAppliedDocuments() {
        showEntry(1);
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 0);
        QCOMPARE(window->text("txtAmount"), QString("4,000.00"));
        QCOMPARE(window->text("txtDate"), QString("03/15/2025"));
        QVERIFY(!window->text("txtUnapplied").isEmpty());
        // Shown as saved: its own description and payer, not the customer's name.
        QCOMPARE(window->text("txtEntDesc"), QString("Cheque for two invoices"));
        QCOMPARE(window->text("txtPayer"), QString("Silver Dairy Group"));
        const int customer = window->combo("cboCustomers")->ListIndex();
        QVERIFY(customer >= 0);
        // Nothing changes what a locked entry shows: the Customer menu does nothing.
        test::control<QAction>(window->form, "mnuCustomerNext")->trigger();
        test::control<QAction>(window->form, "mnuCustomerLast")->trigger();
        QCOMPARE(window->combo("cboCustomers")->ListIndex(), customer);
        QVERIFY(!window->enabled("cmdSearch"));
        QCOMPARE(window->grid()->Cols(), 8);
        QCOMPARE(window->grid()->Rows(), 10);
        QCOMPARE(window->grid()->TextMatrix(0, 0), QString(" Document Number "));
        QCOMPARE(window->grid()->TextMatrix(1, 0), QString("IN0000002"));
        QCOMPARE(window->grid()->TextMatrix(2, 0), QString("IN0000006"));
        QVERIFY(window->grid()->TextMatrix(1, 5).contains('.'));
        QCOMPARE(window->grid()->TextMatrix(3, 0), QString());
        expectLockedAndPrintable();
        test::grabToPng(window->form, "frmCR-recall-receipt");
    }

    void aPrepaymentWithItsNumber() {
        showEntry(2);
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 1);
        QCOMPARE(window->form->windowTitle(), QString("Tillbook - PrePayment Entry"));
        QCOMPARE(window->text("txtAmount"), QString("1,250.00"));
        QCOMPARE(window->text("txtPrePay"), QString("IN0000018"));
        QCOMPARE(window->text("txtPrePayDocNo"), QString("PP0000001"));
        QCOMPARE(window->text("txtEntDesc"), QString("Deposit on order"));
        QCOMPARE(window->text("txtPayer"), QString("Silver Dairy Inc."));
        QVERIFY(window->combo("cboCustomers")->ListIndex() >= 0);
        QCOMPARE(window->grid()->Cols(), 13);
        expectLockedAndPrintable();
        test::grabToPng(window->form, "frmCR-recall-prepayment");
    }

    void aMiscellaneousReceiptWithItsLines() {
        showEntry(3);
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 2);
        QCOMPARE(window->text("txtAmount"), QString("1,500.00"));
        QCOMPARE(window->text("txtEntDesc"), QString("Rent and freight"));
        QCOMPARE(window->text("txtPayer"), QString("Walk-in"));
        QCOMPARE(window->combo("cboCustomers")->ListIndex(), -1);
        QCOMPARE(window->grid()->Cols(), 5);
        QCOMPARE(window->grid()->Rows(), 10);
        QCOMPARE(window->grid()->Col(), 0);
        QVERIFY(!window->grid()->TextMatrix(1, 0).isEmpty() || !window->grid()->TextMatrix(1, 1).isEmpty());
        QVERIFY(!window->grid()->TextMatrix(2, 2).isEmpty());
        QCOMPARE(window->grid()->TextMatrix(3, 0), QString());
        expectLockedAndPrintable();
        test::grabToPng(window->form, "frmCR-recall-misc");
    }
};

QTEST_MAIN(RecallTest)
#include "RecallTest.moc"
