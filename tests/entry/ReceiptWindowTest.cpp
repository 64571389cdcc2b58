// The receipt window: what it loads after sign-in, its three modes, the grid's column sets, batches with
// their bank codes, entries, the list menus, the customer shown, and closing.
#include "support/ReceiptWindow.h"

#include "entry/dialogs/frmBank.h"
#include "fetching/Batches.h"
#include "ledger/LedgerError.h"
#include "support/Company.h"
#include "support/ExpectBox.h"

#include <QCollator>
#include <QPlainTextEdit>
#include <QPushButton>
#include <array>
#include <tuple>

using namespace tillbook;

class ReceiptWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;

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
    // A company of its own for each test: the batches one test adds are not in the next one's lists.
    void init() {
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample());
        window = std::make_unique<test::ReceiptWindow>(*company);
        QVERIFY(window->open());
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
    }
    void cleanup() {
        window.reset();
        company.reset();
    }

    // Loaded in receipt mode on today's fiscal period, with the customers that have open documents by name.
    void loadsTodaysPeriodAndTheCustomersByName() {
        QCOMPARE(window->form->TransType(), 0);
        QCOMPARE(window->combo("cboPeriod")->count(), 12);
        QCOMPARE(window->combo("cboYear")->currentText() + window->combo("cboPeriod")->currentText(),
                 QString("202603"));
        ComboBox* customers = window->combo("cboCustomers");
        QCOMPARE(customers->count(), static_cast<int>(Desk().Customers.size()));
        QCOMPARE(customers->ListIndex(), -1);
        QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        for (int i = 1; i < customers->count(); ++i) {
            QVERIFY(collator.compare(customers->itemText(i - 1), customers->itemText(i)) <= 0);
            QCOMPARE(customers->itemText(i), Desk().Customers[static_cast<size_t>(i)].Name);
        }
    }

    void theThreeModesShowTheirOwnControls() {
        // Shown in receipt, prepayment and misc. mode (entered from receipt mode).
        const std::vector<std::pair<const char*, std::array<bool, 3>>> shown = {
            {"cmdSearch", {true, false, false}},       {"txtUnapplied", {true, false, true}},
            {"txtPrePay", {false, true, false}},       {"txtPrePayDocNo", {false, true, false}},
            {"cboCustomers", {true, true, false}},     {"txtCustInfo", {true, true, false}},
            {"txtDistribution", {false, false, true}}, {"cmdNewInvoice", {false, false, true}},
            {"cmdDist", {false, false, true}},         {"cmdAccount", {false, false, true}}};
        const QStringList titles = {"Tillbook - Receipt Entry", "Tillbook - PrePayment Entry",
                                    "Tillbook - Misc. Receipt Entry"};
        for (const char* menu : {"mnuTransReceipt", "mnuTransPrePay", "mnuTransReceipt", "mnuTransMisc"}) {
            Desk().DistLines = 3;
            window->action(menu)->trigger();
            const int mode = window->form->TransType();
            QCOMPARE(window->form->windowTitle(), titles[mode]);
            QCOMPARE(window->grid()->Cols(), (std::array{20, 13, 5})[static_cast<size_t>(mode)]);
            QCOMPARE(window->grid()->Rows(), 10);
            for (const auto& [name, inMode] : shown)
                QVERIFY2(window->shown(name) == inMode[static_cast<size_t>(mode)], name);
        }
        QCOMPARE(Desk().DistLines, 0);
        for (const char* button : {"cmdNewInvoice", "cmdDist", "cmdAccount"})
            QVERIFY2(!window->enabled(button), button);
        // Misc. entered from prepayment mode leaves the unapplied amount hidden.
        window->combo("cboTransType")->setListIndex(1);
        window->action("mnuTransMisc")->trigger();
        QVERIFY(!window->shown("txtUnapplied"));
        window->action("mnuTransReceipt")->trigger();
        QVERIFY(window->shown("cmdSearch") && !window->enabled("cmdSearch"));
        window->action("mnuTransMisc")->trigger();
    }

    void choosingTheSameModeAsksAboutUnsavedWorkAndEmptiesTheEntry() {
        test::ExpectBox box(vbNo);
        window->edit("txtAmount")->setText("1,250.00");
        window->edit("txtUnapplied")->setText("0.00");
        window->edit("txtEntDesc")->setText("Counter sale");
        // Declined: the whole amount is unapplied again before the entry is emptied.
        Desk().EntryDirty = true;
        QCOMPARE(window->form->Parts().entry.Prompt_SaveEntry([] { QFAIL("saved"); }), vbNo);
        QCOMPARE(window->edit("txtUnapplied")->text(), QString("1,250.00"));
        Desk().EntryDirty = true;
        window->combo("cboTransType")->setListIndex(0);
        QVERIFY(box(2, "Do you want to save the current entry?", vbYesNo + vbExclamation, "Unsaved Entry"));
        QVERIFY(!Desk().EntryDirty);
        QCOMPARE(window->edit("txtEntDesc")->text(), QString());
        QCOMPARE(window->edit("txtAmount")->text(), QString());
        // Not dirty: no question.
        window->combo("cboTransType")->setListIndex(0);
        QCOMPARE(box.asked.size(), 2);
    }

    void closingRemembersTheBatchAndTheReceiptStyle() {
        Desk().CurrentBatch = 12;
        Desk().BatchListIndex = 3;
        window->action("mnuFileReceipt2V")->setChecked(true);
        window->action("mnuFileReceipt3V")->setChecked(false);
        test::control<QPushButton>(window->form, "cmdClose")->click();
        QCOMPARE(window->settings.raws({"Database1/BatchInfo/Batch", "Database1/BatchInfo/Index",
                                        "ReceiptStyle/2panel", "ReceiptStyle/3panel"}),
                 QString("12|3|True|False"));
    }

    void aNewBatchGetsItsBankCodeAndIsListedAfterTheEarlierOnesTwiceWithOneNewEntryAtATime() {
        // A first batch, so that there are earlier batches to list again.
        QString shown;
        test::answerBankDialog(0, &shown);
        window->form->cmdNewBatch_Click();
        const QString first = QString::number(Desk().CurrentBatch);
        QCOMPARE(shown, first);
        QCOMPARE(batchItems(), QStringList{first});

        test::answerBankDialog(1);
        window->action("mnuBatchNew")->trigger();
        const QString second = QString::number(Desk().CurrentBatch);
        QVERIFY(second.toInt() > first.toInt());
        QCOMPARE(batchItems(), (QStringList{first, first, second}));
        QCOMPARE(QPoint(window->combo("cboBatch")->ListIndex(), Desk().BatchListIndex), QPoint(2, 2));
        QVERIFY(!Desk().BankCode.isEmpty());
        QCOMPARE(window->texts({"txtBatchEntries", "txtBatchTotal", "txtBank"}),
                 "Entries:  0|Total:  0.00|Bank Code:  " + Desk().BankCode);
        QCOMPARE(Get_BatchBank(Desk(), second), Desk().BankCode);
        QCOMPARE(window->combo("cboEntry")->count(), 0);

        // Only one new entry at a time stands at the end of the list.
        window->form->cmdNewEntry_Click();
        QCOMPARE(window->combo("cboEntry")->currentText(), QString("1"));
        QCOMPARE(QPoint(Desk().CurrentEntry, window->combo("cboTransType")->ListIndex()), QPoint(1, 0));
        QVERIFY(!window->form->EntryLocked() && window->enabled("txtAmount"));
        window->action("mnuEntryNew")->trigger();
        QCOMPARE(window->combo("cboEntry")->count(), 1);
        QVERIFY(!window->enabled("cmdNewEntry") && !window->action("mnuEntryNew")->isEnabled());
    }

    void theRememberedBatchIsSelectedOnlyWhereItStillStands() {
        test::answerBankDialog(0);
        window->form->cmdNewBatch_Click();
        const QString batch = QString::number(Desk().CurrentBatch);
        // Where the list position now holds another batch, or lies beyond the list, nothing is selected and
        // the captions stand bare.
        for (const auto& [remembered, index, selected] :
             {std::tuple{batch, "0", 0}, {QString("999"), "0", -1}, {batch, "5", -1}}) {
            window->close();
            window->settings.set("Database1/BatchInfo/Batch", remembered);
            window->settings.set("Database1/BatchInfo/Index", index);
            QVERIFY(window->open());
            QCOMPARE(window->combo("cboBatch")->ListIndex(), selected);
            QCOMPARE(window->texts({"txtBatchEntries", "txtBatchTotal"}),
                     QString(selected < 0 ? "Entries:  |Total:  " : "Entries:  0|Total:  0.00"));
            QCOMPARE(window->combo("cboEntry")->ListIndex(), -1);
        }
        QCOMPARE(window->text("txtBank"), QString("Bank Code:  "));
    }

    void theMenusMoveOverTheListsAndStopAtTheirEnds() {
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
            window->action(menu)->trigger();
            QCOMPARE(customers->ListIndex(), index);
        }
        // The customer chosen shows its number, address and phone, and is the payer.
        const QString info = test::control<QPlainTextEdit>(window->form, "txtCustInfo")->toPlainText();
        QVERIFY(info.startsWith("Customer ID: ") && info.contains("\nAddress: ") &&
                info.contains("\nPhone: "));
        QCOMPARE(window->text("txtPayer"), customers->currentText());
        // A saved entry on show keeps its customer.
        window->form->Parts().entry.Lock_Entry();
        window->action("mnuCustomerFirst")->trigger();
        QCOMPARE(customers->ListIndex(), last - 1);
        // First on an empty list selects nothing and does no harm.
        window->action("mnuEntryFirst")->trigger();
        QCOMPARE(window->combo("cboEntry")->ListIndex(), -1);
    }

    void aBankCodeThatCannotBeWrittenIsAskedForAgain() {
        test::ExpectBox answers;
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
        QVERIFY(answers(1,
                        "The bank code TDOPER could not be written to batch 7.\nBatch 7 is being changed by "
                        "another till.\nChoose the bank code again.",
                        vbOKOnly + vbExclamation));
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.BankCode(), QString());

        banks->setListIndex(1);
        ok->click();
        QCOMPARE(attempts, 2);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.BankCode(), QString("RBCOPER"));
    }
};

QTEST_MAIN(ReceiptWindowTest)
#include "ReceiptWindowTest.moc"
