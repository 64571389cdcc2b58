// Batches, entries and customers on the receipt window: the remembered batch, a new batch with its bank code,
// new entries, the list menus, and the customer shown.
#include "app/SignIn.h"
#include "entry/EntryState.h"
#include "entry/frmCR.h"
#include "ledger/Batches.h"
#include "ledger/LedgerError.h"
#include "ledger/ReceiptViews.h"
#include "ledger/dialogs/frmBank.h"
#include "settings/Globals.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace tillbook;

namespace {

template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return found;
}

// Answers the new-batch dialog when it opens: picks the bank code at `position` and confirms.
void answerBankDialog(int position, QString* shownBatch = nullptr) {
    QTimer::singleShot(0, [position, shownBatch] {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != "frmBank")
            qFatal("the bank dialog is not open");
        test::grabToPng(dialog, "frmBank");
        if (shownBatch)
            *shownBatch = dialog->findChild<QLineEdit*>("txtBatchNum")->text();
        auto* ok = dialog->findChild<QPushButton*>("cmdOK");
        if (ok->isEnabled())
            qFatal("OK is enabled before a bank code is chosen");
        dialog->findChild<ComboBox*>("cboBank")->setListIndex(position);
        ok->click();
    });
}

} // namespace

class BatchSelectionTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::TempSettings> settings;
    QPointer<frmCR> form;

    ComboBox* combo(const char* name) { return control<ComboBox>(form, name); }
    QString text(const char* name) { return control<QLineEdit>(form, name)->text(); }

    void openWindow() {
        form = new frmCR();
        QVERIFY(form->Form_Load());
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form));
    }
    QStringList batchItems() {
        QStringList items;
        for (int i = 0; i < combo("cboBatch")->count(); ++i)
            items << combo("cboBatch")->itemText(i);
        return items;
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    }

    void init() {
        company = std::make_unique<test::SampleCompany>();
        settings = std::make_unique<test::TempSettings>();
        SignInDatabaseID = "SAMINC";
        SignInUser = "ADMIN";
        SignInPassword = "ADMIN";
        CurrentDatabase = 1;
        EntryDirty = false;
    }
    void cleanup() {
        delete form;
        Close_Ledger();
        settings.reset();
        company.reset();
    }

    void aNewBatchGetsItsBankCodeAndIsListedAfterTheEarlierOnesTwice() {
        openWindow();
        // A first batch, so that there are earlier batches to list again.
        QString shown;
        answerBankDialog(0, &shown);
        form->cmdNewBatch_Click();
        const QString first = CurrentBatch;
        QCOMPARE(shown, first);
        QCOMPARE(batchItems(), QStringList{first});

        answerBankDialog(1);
        control<QAction>(form, "mnuBatchNew")->trigger();
        const QString second = CurrentBatch;
        QVERIFY(second.toInt() > first.toInt());
        QCOMPARE(batchItems(), (QStringList{first, first, second}));
        QCOMPARE(combo("cboBatch")->ListIndex(), 2);
        QCOMPARE(combo("cboBatch")->currentText(), second);
        QCOMPARE(BatchListIndex, QString("2"));
        QCOMPARE(text("txtBatchEntries"), QString("Entries:  0"));
        QCOMPARE(text("txtBatchTotal"), QString("Total:  0.00"));
        QVERIFY(text("txtBank").startsWith("Bank Code:  "));
        QVERIFY(!BankCode.isEmpty());
        QCOMPARE(text("txtBank"), "Bank Code:  " + BankCode);
        QCOMPARE(Get_BatchBank(second), BankCode);
        QCOMPARE(combo("cboEntry")->count(), 0);
        QVERIFY(control<QPushButton>(form, "cmdNewEntry")->isEnabled());
    }

    void theRememberedBatchIsSelectedOnlyWhereItStillStands() {
        openWindow();
        answerBankDialog(0);
        form->cmdNewBatch_Click();
        const QString batch = CurrentBatch;
        delete form;
        Close_Ledger();

        settings->set("Database1/BatchInfo/Batch", batch);
        settings->set("Database1/BatchInfo/Index", "0");
        openWindow();
        QCOMPARE(combo("cboBatch")->currentText(), batch);
        QCOMPARE(text("txtBatchEntries"), QString("Entries:  0"));
        QCOMPARE(text("txtBatchTotal"), QString("Total:  0.00"));
        QCOMPARE(combo("cboEntry")->ListIndex(), -1);
        delete form;
        Close_Ledger();

        // The list position now holds another batch: nothing is selected and the captions stand bare.
        settings->set("Database1/BatchInfo/Batch", "999");
        openWindow();
        QCOMPARE(combo("cboBatch")->ListIndex(), -1);
        QCOMPARE(text("txtBatchEntries"), QString("Entries:  "));
        QCOMPARE(text("txtBatchTotal"), QString("Total:  "));
        QCOMPARE(text("txtBank"), QString("Bank Code:  "));
        delete form;
        Close_Ledger();

        // A position beyond the list: the same.
        settings->set("Database1/BatchInfo/Batch", batch);
        settings->set("Database1/BatchInfo/Index", "5");
        openWindow();
        QCOMPARE(combo("cboBatch")->ListIndex(), -1);
    }

    void onlyOneNewEntryAtATimeStandsAtTheEndOfTheList() {
        openWindow();
        answerBankDialog(0);
        form->cmdNewBatch_Click();
        form->cmdNewEntry_Click();
        QCOMPARE(combo("cboEntry")->count(), 1);
        QCOMPARE(combo("cboEntry")->currentText(), QString("1"));
        QCOMPARE(CurrentEntry, QString("1"));
        QVERIFY(!form->EntryLocked());
        QVERIFY(control<QWidget>(form, "txtAmount")->isEnabled());
        QCOMPARE(combo("cboTransType")->ListIndex(), 0);

        control<QAction>(form, "mnuEntryNew")->trigger();
        QCOMPARE(combo("cboEntry")->count(), 1);
        QVERIFY(!control<QPushButton>(form, "cmdNewEntry")->isEnabled());
        QVERIFY(!control<QAction>(form, "mnuEntryNew")->isEnabled());
    }

    void previousOnTheFirstAndNextOnTheLastDoNothing() {
        openWindow();
        ComboBox* customers = combo("cboCustomers");
        QVERIFY(customers->count() > 2);
        control<QAction>(form, "mnuCustomerFirst")->trigger();
        QCOMPARE(customers->ListIndex(), 0);
        control<QAction>(form, "mnuCustomerPrevious")->trigger();
        QCOMPARE(customers->ListIndex(), 0);
        control<QAction>(form, "mnuCustomerNext")->trigger();
        QCOMPARE(customers->ListIndex(), 1);
        control<QAction>(form, "mnuCustomerLast")->trigger();
        QCOMPARE(customers->ListIndex(), customers->count() - 1);
        control<QAction>(form, "mnuCustomerNext")->trigger();
        QCOMPARE(customers->ListIndex(), customers->count() - 1);
        control<QAction>(form, "mnuCustomerPrevious")->trigger();
        QCOMPARE(customers->ListIndex(), customers->count() - 2);

        // First on an empty list selects nothing and does no harm.
        control<QAction>(form, "mnuEntryFirst")->trigger();
        QCOMPARE(combo("cboEntry")->ListIndex(), -1);
    }

    void aBankCodeThatCannotBeWrittenIsAskedForAgain() {
        test::AnswerMessageBoxes answers;
        int attempts = 0;
        frmBank dialog("7", {"TDOPER", "RBCOPER"}, [&](const QString&) {
            if (++attempts == 1)
                throw LedgerError("Batch 7 is being changed by another till.");
        });
        dialog.show();
        auto* ok = dialog.findChild<QPushButton*>("cmdOK");
        auto* banks = dialog.findChild<ComboBox*>("cboBank");
        QCOMPARE(banks->count(), 2);
        QCOMPARE(banks->ListIndex(), -1);
        QVERIFY(!ok->isEnabled());
        dialog.reject(); // there is no cancel
        QVERIFY(dialog.isVisible());

        banks->setListIndex(0);
        QVERIFY(ok->isEnabled());
        ok->click();
        QCOMPARE(attempts, 1);
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(answers.asked[0].prompt.startsWith("The bank code TDOPER could not be written to batch 7."));
        QVERIFY(answers.asked[0].prompt.contains("Batch 7 is being changed by another till."));
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.BankCode(), QString());

        banks->setListIndex(1);
        ok->click();
        QCOMPARE(attempts, 2);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.BankCode(), QString("RBCOPER"));
    }

    void choosingACustomerShowsItsNumberAddressAndPhone() {
        openWindow();
        control<QAction>(form, "mnuCustomerFirst")->trigger();
        const QString info = control<QPlainTextEdit>(form, "txtCustInfo")->toPlainText();
        QVERIFY(info.startsWith("Customer ID: "));
        QVERIFY(info.contains("\nAddress: "));
        QVERIFY(info.contains("\n               "));
        QVERIFY(info.contains("\nPhone: "));
        QCOMPARE(text("txtPayer"), combo("cboCustomers")->currentText());
        test::grabToPng(form, "frmCR-customer");
    }
};

QTEST_MAIN(BatchSelectionTest)
#include "BatchSelectionTest.moc"
