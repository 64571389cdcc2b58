// The road of each kind of entry through the receipt window, as a clerk walks it on a sample company: a new
// batch with its bank code, a new entry, the customer, the amount typed, the documents or the distribution
// lines, Save; then what the window shows, what the ledger holds, and the receipt printed from it.
#include "fetching/ReceiptRecall.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Formats.h"
#include "ledger/Session.h"
#include "ledger/View.h"
#include "ledger/engine/BatchPosting.h"
#include "posting/Posting.h"
#include "support/ExpectBox.h"
#include "support/FinderAnswers.h"
#include "support/LedgerRecords.h"
#include "support/ReceiptWindow.h"

#include <QPushButton>
#include <QTest>

using namespace tillbook;

class ReceiptRoadTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;
    std::unique_ptr<test::ExpectBox>
        boxes; // answers every box, so that one a fault brings up waits for no one

    QPushButton* button(const char* name) const { return test::control<QPushButton>(window->form, name); }
    void newBatchAndEntry() {
        QVERIFY(window->open());
        test::answerBankDialog(0);
        button("cmdNewBatch")->click();
        QVERIFY(!Desk().BankCode.isEmpty());
        // No entry is started yet: nothing can be keyed.
        QVERIFY(!window->enabled("txtAmount") && !window->enabled("cboCustomers"));
        button("cmdNewEntry")->click();
        QVERIFY(window->enabled("txtAmount"));
        QCOMPARE(window->combo("cboEntry")->count(), 1);
    }
    std::vector<QStringList> entryRows(const QString& view, const QStringList& fields) {
        return test::ledgerRecords(
            view, EntryFilter(QString::number(Desk().CurrentBatch), QString::number(Desk().CurrentEntry)),
            fields);
    }
    QLineEdit* editor() const { return window->edit("txtFloat"); }
    void typeInLine(const QString& text) {
        editor()->setText(text);
        QTest::keyClick(editor(), Qt::Key_Right);
    }
    QStringList batchFigures() {
        return test::ledgerRecords(QStringLiteral("AR0041"),
                                   QStringLiteral("CNTBTCH=") + QString::number(Desk().CurrentBatch),
                                   {"CNTENTER", "AMTENTER"})
            .at(0);
    }
    // Each phrase is printed `times` times (once in each copy of the style).
    static void expectPrinted(const QString& receipt, const QStringList& phrases, int times) {
        for (const QString& phrase : phrases)
            QVERIFY2(receipt.count(phrase) == times, qPrintable(phrase + " in " + receipt));
    }

    // Another till of the company saves a miscellaneous receipt of 10.00 into the current batch.
    void anotherTillSaves() {
        ReceiptViews till;
        till.LedgerSession = company->signIn(Today());
        Open_ReceiptViews(till);
        ReceiptDraft draft;
        draft.kind = ReceiptKind::Misc;
        draft.batch = Desk().CurrentBatch;
        draft.amount = Money::fromWhole(10);
        draft.receiptDate = Today();
        draft.fiscalYear = 2026;
        draft.fiscalPeriod = 3;
        draft.payer = "Another till";
        draft.distributions = {{"RETAIL", "", Money::fromWhole(10), "", ""}};
        QVERIFY(Post_MiscReceipt(till, draft).PostOK);
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    }
    void init() {
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample(5, 200));
        window = std::make_unique<test::ReceiptWindow>(*company);
        boxes = std::make_unique<test::ExpectBox>();
    }
    void cleanup() {
        boxes.reset();
        window.reset();
        company.reset();
    }

    void aReceiptAppliedToTwoDocumentsIsSavedReadBackLockedAndPrinted() {
        newBatchAndEntry();
        window->combo("cboCustomers")->setListIndex(0);
        const QString customer = Desk().Customers[0].Id;
        window->type("txtAmount", "1,000");
        QCOMPARE(window->texts({"txtAmount", "txtDate"}), QString("1,000.00|03/15/2026"));
        button("cmdSearch")->click();
        QCOMPARE(window->text("txtReceiptNum"),
                 QString("%1-001-20260315").arg(Desk().CurrentBatch, 4, 10, QChar('0')));
        const QString first = window->grid()->TextMatrix(1, 2);
        const QString second = window->grid()->TextMatrix(2, 2);
        const Money nets =
            Strip_Commas(window->grid()->TextMatrix(1, 8)) + Strip_Commas(window->grid()->TextMatrix(2, 8));
        window->dblClick(1, 0);
        window->dblClick(2, 0);
        QCOMPARE(Desk().ApplyCount, 2);
        const Money applied =
            Strip_Commas(window->grid()->TextMatrix(1, 4)) + Strip_Commas(window->grid()->TextMatrix(2, 4));
        QCOMPARE(applied, std::min(Money::fromWhole(1000), nets));

        window->edit("txtEntDesc")->setText("Cheque for two invoices");
        window->edit("txtPayer")->setText("Paid by cheque");
        QVERIFY(!button("cmdPrint")->isEnabled());
        button("cmdSave")->click();
        QVERIFY(window->form->LastPosting().PostOK);
        window->form->cmdSave_Click(); // a second save of the saved entry writes nothing more

        // The window: the batch's figures and the saved entry read back as saved, locked and printable.
        const QString unapplied = FormatAmount(Money::fromWhole(1000) - applied);
        QCOMPARE(
            window->texts({"txtBatchEntries", "txtBatchTotal", "txtEntDesc", "txtPayer", "txtUnapplied"}),
            "Entries:  1|Total:  1,000.00|Cheque for two invoices|Paid by cheque|" + unapplied);
        QCOMPARE(window->combo("cboEntry")->ListIndex(), 0);
        QVERIFY(window->form->EntryLocked() && !Desk().EntryDirty);
        QVERIFY(button("cmdPrint")->isEnabled() && !window->saveEnabled() && window->enabled("cmdNewEntry"));
        for (const char* field :
             {"txtAmount", "txtDate", "txtEntDesc", "cboCustomers", "cboTransType", "txtPayer", "cmdSearch"})
            QVERIFY2(!window->enabled(field), field);
        QCOMPARE(window->combo("cboCustomers")->currentText(), Desk().Customers[0].Name);
        QCOMPARE(window->grid()->Cols(), 8);
        for (const auto& [row, document] : {std::pair{1, first}, {2, second}, {3, QString()}})
            QCOMPARE(window->grid()->TextMatrix(row, 0), document);

        // The ledger: one header, its two applications, the batch's count and total.
        QCOMPARE(entryRows("AR0042", {"IDCUST", "AMTRMIT", "IDRMIT"}),
                 (std::vector<QStringList>{
                     {customer, Money::fromWhole(1000).toLedgerString(), window->text("txtReceiptNum")}}));
        const auto lines = entryRows("AR0044", {"IDINVC", "AMTPAYM"});
        QCOMPARE(lines.size(), size_t(2));
        QCOMPARE(lines[0][0] + lines[1][0], first + second);
        QCOMPARE(Strip_Commas(lines[0][1]) + Strip_Commas(lines[1][1]), applied);
        QCOMPARE(batchFigures(), (QStringList{"1", Money::fromWhole(1000).toLedgerString()}));

        // Printed in the three-part style nothing stored chooses: each copy states the money and documents.
        QVERIFY(window->action("mnuFileReceipt3V")->isChecked());
        const QString receipt = window->print();
        expectPrinted(receipt, {"Customer copy", "Office copy", "File copy"}, 1);
        expectPrinted(receipt,
                      {"Amount received 1,000.00", "Applied " + FormatAmount(applied),
                       "Unapplied " + unapplied, first + ' ' + FormatAmount(Strip_Commas(lines[0][1])),
                       second + ' ' + FormatAmount(Strip_Commas(lines[1][1])), "Received by ADMIN",
                       "Cheque/Receipt No. " + window->text("txtReceiptNum")},
                      3);
        QVERIFY(boxes->none());
        // A new entry has nothing to print.
        button("cmdNewEntry")->click();
        QVERIFY(!button("cmdPrint")->isEnabled() && !window->action("mnuFilePrint")->isEnabled());
    }

    // Other tills save into the batch meanwhile: the saved entry is still the one shown, found by its number.
    void aPrepaymentIsSavedWithItsDocumentShownWhateverOtherTillsAddedAndPrinted() {
        newBatchAndEntry();
        window->combo("cboTransType")->setListIndex(1);
        window->combo("cboCustomers")->setListIndex(0);
        window->type("txtAmount", "1250");
        const QString document = window->grid()->TextMatrix(1, 0);
        window->dblClick(1, 0);
        QCOMPARE(window->text("txtPrePay"), document);
        anotherTillSaves();
        anotherTillSaves();

        button("cmdSave")->click();
        QVERIFY(window->form->LastPosting().PostOK);
        QCOMPARE(
            window->texts({"txtBatchEntries", "txtBatchTotal", "txtAmount", "txtPrePay", "txtPrePayDocNo"}),
            "Entries:  3|Total:  1,270.00|1,250.00|" + document + "|PP0000001");
        QCOMPARE(QPoint(window->combo("cboEntry")->count(), window->combo("cboEntry")->ListIndex()),
                 QPoint(3, 2));
        QCOMPARE(Desk().CurrentEntry, 3);
        QVERIFY(window->form->EntryLocked() && !window->grid()->isVisibleTo(window->form));
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 1);
        QCOMPARE(window->grid()->Cols(), 13);
        QCOMPARE(entryRows("AR0042", {"RMITTYPE", "AMTRMIT", "DOCNBR"}),
                 (std::vector<QStringList>{{"2", Money::fromWhole(1250).toLedgerString(), document}}));
        QCOMPARE(batchFigures(), (QStringList{"3", Money::fromWhole(1270).toLedgerString()}));

        // The two styles are a pair: a click ticks its own, also when ticked, and unticks the other.
        window->action("mnuFileReceipt2V")->trigger();
        window->action("mnuFileReceipt2V")->trigger();
        QVERIFY(window->action("mnuFileReceipt2V")->isChecked() &&
                !window->action("mnuFileReceipt3V")->isChecked());
        const QString receipt = window->print();
        expectPrinted(receipt, {"File copy"}, 0);
        expectPrinted(receipt,
                      {"Amount received 1,250.00", "Applied 1,250.00", "Unapplied 0.00",
                       document + " PP0000001 1,250.00"},
                      2);
        QVERIFY(boxes->none());
    }

    void aMiscellaneousReceiptFromItsFirstLineToTheLedgerAndItsReceipt() {
        newBatchAndEntry();
        window->form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window->form));
        window->combo("cboTransType")->setListIndex(2);
        window->edit("txtEntDesc")->setText("Rent and a refund");
        window->edit("txtPayer")->setText("Counter");
        window->edit("txtAmount")->setFocus();
        window->edit("txtAmount")->setText("1,150.00");
        window->form->cmdNewInvoice_Click();
        // Line 1: a distribution code from the finder; line 2: an account typed with hyphens.
        test::whenFinderShows([](frmFinder* finder) { test::selectInFinder(finder, "RENTAL"); });
        window->form->cmdDist_Click();
        QCOMPARE(window->grid()->Col(), 2);
        for (const char* text : {"1,000", "MAR-RENT"})
            typeInLine(text);
        editor()->setText("March rent");
        window->form->cmdNewInvoice_Click();
        for (const char* text : {"MISC", "4100-100", "150"})
            typeInLine(text);
        QCOMPARE(window->text("txtDistribution"), QString("0.00"));
        button("cmdSave")->click();

        QCOMPARE(window->texts({"txtBatchTotal", "txtEntDesc", "txtPayer", "txtAmount"}),
                 QString("Total:  1,150.00|Rent and a refund|Counter|1,150.00"));
        QVERIFY(window->form->EntryLocked() && button("cmdPrint")->isEnabled());
        QCOMPARE(
            QPoint(window->combo("cboTransType")->ListIndex(), window->combo("cboCustomers")->ListIndex()),
            QPoint(2, -1));
        QCOMPARE(QPoint(window->grid()->Cols(), window->grid()->Rows()), QPoint(5, 10));
        for (const auto& [row, col, text] :
             {std::tuple{1, 0, "RENTAL"}, {2, 1, "4100-100"}, {2, 2, "150"}, {3, 0, ""}})
            QCOMPARE(window->grid()->TextMatrix(row, col), QString(text));
        const auto money = [](int whole) { return Money::fromWhole(whole).toLedgerString(); };
        QCOMPARE(entryRows("AR0042", {"RMITTYPE", "AMTRMIT", "TEXTRMIT", "IDRMIT", "IDCUST"}),
                 (std::vector<QStringList>{
                     {"5", money(1150), "Rent and a refund", window->text("txtReceiptNum"), ""}}));
        QCOMPARE(entryRows("AR0043", {"IDDISTCODE", "IDACCT", "AMTDIST", "GLREF", "GLDESC"}),
                 (std::vector<QStringList>{{"RENTAL", "4500", money(1000), "MAR-RENT", "March rent"},
                                           {"MISC", "4100-100", money(150), "", ""}}));
        QCOMPARE(batchFigures(), (QStringList{"1", money(1150)}));

        const QString receipt = window->print();
        expectPrinted(receipt,
                      {"RENTAL 4500 MAR-RENT March rent 1,000.00", "MISC 4100-100 150.00",
                       "Amount received 1,150.00", "Unapplied 0.00"},
                      3);
        QVERIFY(boxes->none());
    }

    void aFailedSaveUndoesTheApplicationsAndKeepsTheEntryNew() {
        newBatchAndEntry();
        window->combo("cboCustomers")->setListIndex(0);
        window->type("txtAmount", "100");
        button("cmdSearch")->click();
        window->dblClick(1, 0);
        // Another till posts the batch meanwhile: the ledger refuses the entry.
        ErrorList elsewhere;
        engine::postBatch(*company->store(), elsewhere, Desk().CurrentBatch, Today());

        button("cmdSave")->click();
        QVERIFY(!window->form->LastPosting().PostOK && !boxes->none());
        QCOMPARE(window->text("txtUnapplied"), window->text("txtAmount"));
        for (int row = 1; row < window->grid()->Rows(); ++row)
            QVERIFY(window->grid()->TextMatrix(row, 0) != "Yes");
        QVERIFY(!window->form->EntryLocked() && Desk().EntryIsNew.back());
        QVERIFY(entryRows("AR0042", {"IDCUST"}).empty() && window->print().isEmpty());
    }
};

QTEST_MAIN(ReceiptRoadTest)
#include "ReceiptRoadTest.moc"
