// Saved entries shown again on the receipt window: an ordinary receipt, a prepayment and a miscellaneous
// receipt, each read back from the ledger, locked and ready to print.
#include "app/SignIn.h"
#include "entry/EntryState.h"
#include "entry/frmCR.h"
#include "ledger/ReceiptViews.h"
#include "settings/Globals.h"
#include "support/Grab.h"
#include "support/TempSettings.h"
#include "support/TestCompany.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>

using namespace tillbook;

namespace {

template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return found;
}

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
    std::unique_ptr<test::TempSettings> settings;
    QPointer<frmCR> form;

    ComboBox* combo(const char* name) { return control<ComboBox>(form, name); }
    QString text(const char* name) { return control<QLineEdit>(form, name)->text(); }
    FlexGrid* grid() { return control<FlexGrid>(form, "MSFlexGrid1"); }

    void showEntry(int entry) {
        combo("cboBatch")->setListIndex(combo("cboBatch")->findText("1"));
        QCOMPARE(combo("cboBatch")->currentText(), QString("1"));
        QCOMPARE(text("txtBatchEntries"), QString("Entries:  3"));
        combo("cboEntry")->setListIndex(entry - 1);
        QCOMPARE(CurrentEntry, QString::number(entry));
    }
    void expectLockedAndPrintable() {
        QVERIFY(form->EntryLocked());
        for (const char* field :
             {"txtAmount", "txtDate", "txtEntDesc", "cboCustomers", "cboTransType", "txtPayer"})
            QVERIFY2(!control<QWidget>(form, field)->isEnabled(), field);
        QVERIFY(control<QPushButton>(form, "cmdPrint")->isEnabled());
        QVERIFY(control<QAction>(form, "mnuFilePrint")->isEnabled());
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
        settings = std::make_unique<test::TempSettings>();
        SignInDatabaseID = "SAMINC";
        SignInUser = "ADMIN";
        SignInPassword = "ADMIN";
        CurrentDatabase = 1;
        EntryDirty = false;
        form = new frmCR();
        QVERIFY(form->Form_Load());
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form));
    }
    void cleanup() {
        delete form;
        Close_Ledger();
        settings.reset();
    }

    void anOrdinaryReceiptWithItsAppliedDocuments() {
        showEntry(1);
        QCOMPARE(combo("cboTransType")->ListIndex(), 0);
        QCOMPARE(text("txtAmount"), QString("4,000.00"));
        QCOMPARE(text("txtDate"), QString("03/15/2025"));
        QVERIFY(!text("txtUnapplied").isEmpty());
        QCOMPARE(combo("cboCustomers")->ListIndex() >= 0, true);
        QCOMPARE(grid()->Cols(), 8);
        QCOMPARE(grid()->Rows(), 10);
        QCOMPARE(grid()->TextMatrix(0, 0), QString(" Document Number "));
        QCOMPARE(grid()->TextMatrix(1, 0), QString("IN0000002"));
        QCOMPARE(grid()->TextMatrix(2, 0), QString("IN0000006"));
        QVERIFY(grid()->TextMatrix(1, 5).contains('.'));
        QCOMPARE(grid()->TextMatrix(3, 0), QString());
        expectLockedAndPrintable();
        test::grabToPng(form, "frmCR-recall-receipt");
    }

    void aPrepaymentWithItsNumber() {
        showEntry(2);
        QCOMPARE(combo("cboTransType")->ListIndex(), 1);
        QCOMPARE(form->windowTitle(), QString("Tillbook - PrePayment Entry"));
        QCOMPARE(text("txtAmount"), QString("1,250.00"));
        QCOMPARE(text("txtPrePay"), QString("IN0000018"));
        QCOMPARE(text("txtPrePayDocNo"), QString("PP0000001"));
        QVERIFY(combo("cboCustomers")->ListIndex() >= 0);
        QCOMPARE(grid()->Cols(), 13);
        expectLockedAndPrintable();
        test::grabToPng(form, "frmCR-recall-prepayment");
    }

    void aMiscellaneousReceiptWithItsLines() {
        showEntry(3);
        QCOMPARE(combo("cboTransType")->ListIndex(), 2);
        QCOMPARE(text("txtAmount"), QString("1,500.00"));
        QCOMPARE(combo("cboCustomers")->ListIndex(), -1);
        QCOMPARE(grid()->Cols(), 5);
        QCOMPARE(grid()->Rows(), 10);
        QCOMPARE(grid()->Col(), 0);
        QVERIFY(!grid()->TextMatrix(1, 0).isEmpty() || !grid()->TextMatrix(1, 1).isEmpty());
        QVERIFY(!grid()->TextMatrix(2, 2).isEmpty());
        QCOMPARE(grid()->TextMatrix(3, 0), QString());
        expectLockedAndPrintable();
        test::grabToPng(form, "frmCR-recall-misc");
    }
};

QTEST_MAIN(RecallTest)
#include "RecallTest.moc"
