// The receipt window: what it loads after sign-in, its three modes, the grid's column sets, batches with
// their bank codes, entries, the list menus, the customer shown, and closing; the amount and date fields
// typed into as a clerk does: the remaining amounts and buttons on leaving the amount, the date mask with
// real keys, and the fiscal lists and the ledger's date on leaving, impossible and day-first dates included.
#include "support/ReceiptWindow.h"

#include "entry/dialogs/frmBank.h"
#include "fetching/Batches.h"
#include "ledger/LedgerError.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "ui/Platform.h"

#include <QClipboard>
#include <QCollator>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <array>
#include <tuple>

using namespace tillbook;

class ReceiptWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;
    int beeps = 0;

    QDate headerDate() const { return Desk().ReceiptHeaderView->fields().item("DATERMIT").value().toDate(); }
    QStringList batchItems() {
        QStringList items;
        for (int i = 0; i < window->combo("cboBatch")->count(); ++i)
            items << window->combo("cboBatch")->itemText(i);
        return items;
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        setBeepRecorder([this] { ++beeps; });
    }
    void cleanupTestCase() { setBeepRecorder({}); }
    // A company of its own for each test: the batches one test adds are not in the next one's lists.
    void init() {
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample());
        window = std::make_unique<test::ReceiptWindow>(*company);
        QVERIFY(window->open());
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
        window->form->Parts().entry.Clear_Entry();
    }
    void cleanup() {
        window.reset();
        company.reset();
    }

    // Loaded in receipt mode on today's fiscal period, with the customers that have open documents by name.
    void loadsTodaysPeriodAndTheCustomersByName() {
        QCOMPARE(QPoint(window->form->TransType(), window->combo("cboPeriod")->count()), QPoint(0, 12));
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
        for (const char* menu : {"mnuTransReceipt", "mnuTransPrePay", "mnuTransReceipt", "mnuTransMisc"}) {
            Desk().DistLines = 3;
            window->action(menu)->trigger();
            const int mode = window->form->TransType();
            QCOMPARE(QPoint(window->grid()->Cols(), window->grid()->Rows()),
                     QPoint((std::array{20, 13, 5})[static_cast<size_t>(mode)], 10));
            for (const auto& [name, inMode] : shown)
                QVERIFY2(window->shown(name) == inMode[static_cast<size_t>(mode)], name);
        }
        QCOMPARE(Desk().DistLines, 0);
        QVERIFY(!window->enabled("cmdNewInvoice") && !window->enabled("cmdDist") &&
                !window->enabled("cmdAccount"));
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
        QCOMPARE(window->texts({"txtEntDesc", "txtAmount"}), QString("|"));
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
            QCOMPARE(window->texts({"txtBatchEntries", "txtBatchTotal"}),
                     QString(selected < 0 ? "Entries:  |Total:  " : "Entries:  0|Total:  0.00"));
            QCOMPARE(QPoint(window->combo("cboBatch")->ListIndex(), window->combo("cboEntry")->ListIndex()),
                     QPoint(selected, -1));
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

    void pastedTextGoesThroughTheKeyFilter() {
        QLineEdit* amount = window->edit("txtAmount");
        for (const auto& [pasted, kept] :
             {std::pair{"1,234.56", "1234.56"}, {"$100", "100"}, {"1.2.3", "1.23"}}) {
            amount->clear();
            Desk().DecimalTyped = false;
            amount->setFocus(Qt::TabFocusReason);
            QGuiApplication::clipboard()->setText(pasted);
            QTest::keySequence(amount, QKeySequence::Paste);
            QCOMPARE(amount->text(), QString(kept));
        }
    }

    void theRemainingAmountsAndButtonsFollowTheAmount() {
        window->type("txtAmount", "12.5.0");
        QCOMPARE(window->texts({"txtAmount", "txtUnapplied"}), QString("12.50|12.50"));
        QVERIFY(!window->enabled("cmdSearch")); // no customer yet

        // 30.00 applied out of 100.00, changed to 80.00; Save waits for the amount to be applied again.
        window->combo("cboCustomers")->setListIndex(0);
        window->edit("txtAmount")->setText("100.00");
        window->edit("txtUnapplied")->setText("70.00");
        window->form->findChild<QWidget*>("cmdSave")->setEnabled(true);
        window->type("txtAmount", "8", false);
        QVERIFY(!window->saveEnabled());
        QCOMPARE(window->form->Parts().amountDate.AmountOnFocus(), Money::fromWhole(100));
        window->type("txtAmount", "0");
        QCOMPARE(window->texts({"txtAmount", "txtUnapplied"}), QString("80.00|50.00"));
        QCOMPARE(Desk().ReceiptAmount, Money::fromWhole(80));
        QVERIFY(window->enabled("cmdSearch"));

        // Emptied: "0.00", and neither save, search nor a new line.
        window->type("txtAmount", "\b");
        QCOMPARE(window->texts({"txtAmount", "txtUnapplied"}), QString("0.00|-30.00"));
        QVERIFY(!window->saveEnabled() && !window->enabled("cmdSearch") && !window->enabled("cmdNewInvoice"));

        // A new mode counts from zero again and allows a point.
        Desk().DecimalTyped = true;
        window->combo("cboTransType")->setListIndex(2);
        QVERIFY(!Desk().DecimalTyped);
        QCOMPARE(window->form->Parts().amountDate.AmountOnFocus(), Money());
        window->type("txtAmount", "1,250.5");
        QCOMPARE(window->text("txtDistribution"), QString("1,250.50"));
        QVERIFY(window->enabled("cmdNewInvoice"));

        // A picked prepayment keeps Save, even on a dropped key.
        window->combo("cboTransType")->setListIndex(1);
        window->edit("txtPrePay")->setText("IN0000012");
        window->type("txtAmount", "x", false);
        QVERIFY(window->saveEnabled());
    }

    void theDateMaskWithRealKeys() {
        beeps = 0;
        QLineEdit* date = window->type("txtDate", "1201", false);
        QCOMPARE(date->text() + QString::number(date->cursorPosition()), QString("12/01/____6"));
        QTest::keyClicks(date, "20009a/");
        QCOMPARE(date->text(), QString("12/01/2000"));
        QCOMPARE(beeps, 2); // the letter and the slash; the ninth digit is dropped quietly

        // Backspace after a separator; then a refused key erases nothing, nor does a click move the typing.
        QTest::keyClicks(date, "\b\b\b\b\b");
        QCOMPARE(date->text(), QString("12/0_/____"));
        QTest::keyClick(date, Qt::Key_Q);
        date->setCursorPosition(9);
        QTest::keyClicks(date, "22026");
        QCOMPARE(date->text(), QString("12/02/2026"));
        // Delete goes round the keys: the digits are laid back into the mask.
        date->setCursorPosition(1);
        QTest::keyClick(date, Qt::Key_Delete);
        QCOMPARE(date->text(), QString("10/22/026_"));
        QCOMPARE(window->form->Parts().amountDate.DatePos(), 9);
        QTest::keyClick(date, Qt::Key_Backspace, Qt::ControlModifier); // a word at once
        QCOMPARE(date->text(), QString("10/22/____"));

        // Left half typed, the ledger refuses it; typed over, it is taken.
        test::ExpectBox answers;
        window->edit("txtEntDesc")->setFocus(Qt::TabFocusReason);
        QCOMPARE(answers.asked.size(), 1);
        window->type("txtDate", "12022026");
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(window->combo("cboYear")->currentText() + window->combo("cboPeriod")->currentText(),
                 QString("202612"));
        QCOMPARE(headerDate(), QDate(2026, 12, 2));
        // A new entry's date is typed from its first digit again.
        window->form->Parts().entry.Clear_Entry();
        QCOMPARE(window->form->Parts().amountDate.DatePos(), 0);
    }

    void anImpossibleDateIsRefusedByTheLedgerWithAClearMessage() {
        test::ExpectBox answers;
        const QDate before = headerDate();
        const QString refused =
            "The receipt date could not be taken.\nReceipt Date/Adjustment Date \"%1\" is not "
            "a valid date.";
        int asked = 0;
        for (const auto& [keys, shown] : {std::pair{"02312026", "02/31/2026"}, {"00000000", "00/00/0000"}}) {
            window->type("txtDate", keys);
            QVERIFY(answers(++asked, refused.arg(shown), vbExclamation, "Tillbook - Receipt Entry"));
            QVERIFY(window->combo("cboYear")->count() > 0);
            QCOMPARE(window->combo("cboPeriod")->ListIndex(), -1);
            QCOMPARE(headerDate(), before);
        }
        QCOMPARE(Desk().LedgerSession->errors().count(), 0);
        // Keyed again correctly in a day-first form, the date is taken.
        qputenv("TILLBOOK_SHORT_DATE", "dd/MM/yyyy");
        window->combo("cboTransType")->setListIndex(0);
        QCOMPARE(window->text("txtDate"), QString("15/03/2026"));
        QCOMPARE(window->type("txtDate", "31012026")->text(), QString("31/01/2026"));
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("01"));
        QCOMPARE(headerDate(), QDate(2026, 1, 31));
    }
};

QTEST_MAIN(ReceiptWindowTest)
#include "ReceiptWindowTest.moc"
