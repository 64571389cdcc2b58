// Batches, entries and customers on the receipt window: the remembered batch, a new batch with its bank code,
// new entries, the list menus, and the customer shown.
#include "entry/dialogs/frmBank.h"
#include "fetching/Batches.h"
#include "ledger/LedgerError.h"
#include "support/AnswerMessageBoxes.h"
#include "support/BankDialog.h"
#include "support/ReceiptWindow.h"
#include "support/SampleCompany.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace tillbook;

using test::answerBankDialog;

class BatchSelectionTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::ReceiptWindow> window;

    void openWindow() { QVERIFY(window->open()); }
    QStringList batchItems() {
        QStringList items;
        for (int i = 0; i < window->combo("cboBatch")->count(); ++i)
            items << window->combo("cboBatch")->itemText(i);
        return items;
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    }

    void init() {
        company = std::make_unique<test::SampleCompany>();
        window = std::make_unique<test::ReceiptWindow>();
    }
    void cleanup() {
        window.reset();
        company.reset();
    }

    void aNewBatchGetsItsBankCodeAndIsListedAfterTheEarlierOnesTwiceWithOneNewEntryAtATime() {
        openWindow();
        // A first batch, so that there are earlier batches to list again.
        QString shown;
        answerBankDialog(0, &shown);
        window->form->cmdNewBatch_Click();
        const QString first = QString::number(Desk().CurrentBatch);
        QCOMPARE(shown, first);
        QCOMPARE(batchItems(), QStringList{first});

        answerBankDialog(1);
        test::control<QAction>(window->form, "mnuBatchNew")->trigger();
        const QString second = QString::number(Desk().CurrentBatch);
        QVERIFY(second.toInt() > first.toInt());
        QCOMPARE(batchItems(), (QStringList{first, first, second}));
        QCOMPARE(window->combo("cboBatch")->ListIndex(), 2);
        QCOMPARE(Desk().BatchListIndex, 2);
        QCOMPARE(window->text("txtBatchEntries"), QString("Entries:  0"));
        QCOMPARE(window->text("txtBatchTotal"), QString("Total:  0.00"));
        QVERIFY(!Desk().BankCode.isEmpty());
        QCOMPARE(window->text("txtBank"), "Bank Code:  " + Desk().BankCode);
        QCOMPARE(Get_BatchBank(Desk(), second), Desk().BankCode);
        QCOMPARE(window->combo("cboEntry")->count(), 0);

        // Only one new entry at a time stands at the end of the list.
        window->form->cmdNewEntry_Click();
        QCOMPARE(window->combo("cboEntry")->currentText(), QString("1"));
        QCOMPARE(Desk().CurrentEntry, 1);
        QVERIFY(!window->form->EntryLocked() && window->enabled("txtAmount"));
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 0);
        test::control<QAction>(window->form, "mnuEntryNew")->trigger();
        QCOMPARE(window->combo("cboEntry")->count(), 1);
        QVERIFY(!window->enabled("cmdNewEntry"));
        QVERIFY(!test::control<QAction>(window->form, "mnuEntryNew")->isEnabled());
    }

    void theRememberedBatchIsSelectedOnlyWhereItStillStands() {
        openWindow();
        answerBankDialog(0);
        window->form->cmdNewBatch_Click();
        const QString batch = QString::number(Desk().CurrentBatch);
        // Where the list position now holds another batch, or lies beyond the list, nothing is selected and
        // the captions stand bare.
        for (const auto& [remembered, index, selected] :
             {std::tuple{batch, "0", 0}, {QString("999"), "0", -1}, {batch, "5", -1}}) {
            window->close();
            window->settings.set("Database1/BatchInfo/Batch", remembered);
            window->settings.set("Database1/BatchInfo/Index", index);
            openWindow();
            QCOMPARE(window->combo("cboBatch")->ListIndex(), selected);
            QCOMPARE(window->text("txtBatchEntries"), QString(selected < 0 ? "Entries:  " : "Entries:  0"));
            QCOMPARE(window->text("txtBatchTotal"), QString(selected < 0 ? "Total:  " : "Total:  0.00"));
            QCOMPARE(window->combo("cboEntry")->ListIndex(), -1);
        }
        QCOMPARE(window->text("txtBank"), QString("Bank Code:  "));
    }

    void theMenusMoveOverTheListsAndStopAtTheirEnds() {
        openWindow();
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
        ComboBox* customers = window->combo("cboCustomers");
        const int last = customers->count() - 1;
        QVERIFY(last > 1);
        for (const auto& [menu, index] :
             std::vector<std::pair<const char*, int>>{{"mnuCustomerFirst", 0},
                                                      {"mnuCustomerPrevious", 0},
                                                      {"mnuCustomerNext", 1},
                                                      {"mnuCustomerLast", last},
                                                      {"mnuCustomerNext", last},
                                                      {"mnuCustomerPrevious", last - 1}}) {
            test::control<QAction>(window->form, menu)->trigger();
            QCOMPARE(customers->ListIndex(), index);
        }
        // The customer chosen shows its number, address and phone, and is the payer.
        const QString info = test::control<QPlainTextEdit>(window->form, "txtCustInfo")->toPlainText();
        QVERIFY(info.startsWith("Customer ID: "));
        QVERIFY(info.contains("\nAddress: ") && info.contains("\n               ") &&
                info.contains("\nPhone: "));
        QCOMPARE(window->text("txtPayer"), customers->currentText());
        // A saved entry on show keeps its customer.
        window->form->Parts().entry.Lock_Entry();
        test::control<QAction>(window->form, "mnuCustomerFirst")->trigger();
        QCOMPARE(customers->ListIndex(), last - 1);
        // First on an empty list selects nothing and does no harm.
        test::control<QAction>(window->form, "mnuEntryFirst")->trigger();
        QCOMPARE(window->combo("cboEntry")->ListIndex(), -1);
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
        QCOMPARE(banks->ListIndex(), -1);
        QVERIFY(!ok->isEnabled());
        dialog.reject(); // there is no cancel
        QVERIFY(dialog.isVisible());

        banks->setListIndex(0);
        ok->click();
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
};

QTEST_MAIN(BatchSelectionTest)
#include "BatchSelectionTest.moc"
