// The road of each kind of entry through the receipt window, as a clerk walks it on a sample company: a new
// batch with its bank code, a new entry, the customer, the amount typed, the documents or the distribution
// lines, Save; then what the window shows and what the ledger holds.
#include "entry/ReceiptDesk.h"
#include "fetching/CustomerList.h"
#include "fetching/ReceiptRecall.h"
#include "ledger/Formats.h"
#include "ledger/Session.h"
#include "ledger/View.h"
#include "ledger/engine/BatchPosting.h"
#include "support/AnswerMessageBoxes.h"
#include "support/BankDialog.h"
#include "support/FinderAnswers.h"
#include "support/LedgerRecords.h"
#include "support/ReceiptWindow.h"
#include "support/SampleCompany.h"

#include <QAction>
#include <QPushButton>
#include <QTest>

using namespace tillbook;

class ReceiptRoadTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::ReceiptWindow> window;

    QPushButton* button(const char* name) const { return test::control<QPushButton>(window->form, name); }
    void newBatchAndEntry() {
        QVERIFY(window->open());
        test::answerBankDialog(0);
        button("cmdNewBatch")->click();
        QVERIFY(!Desk().BankCode.isEmpty());
        // No entry is started yet: nothing can be keyed.
        QVERIFY(!window->enabled("txtAmount"));
        QVERIFY(!window->enabled("cboCustomers"));
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

    // Another till of the company saves a miscellaneous receipt of 10.00 into the current batch.
    void anotherTillSaves() {
        Session till;
        till.open("ADMIN", "ADMIN", company->id(), Today(), 0);
        const auto batch = till.openView("AR0041", "AR");
        const auto header = till.openView("AR0042", "AR");
        const auto misc = till.openView("AR0043", "AR");
        batch->compose({header.get()});
        header->compose({batch.get(), misc.get()});
        misc->compose({header.get()});
        batch->fields().item("CODEPYMTYP").setValue(QString("CA"));
        batch->fields().item("CNTBTCH").setValue(Desk().CurrentBatch);
        QVERIFY(batch->read());
        header->init();
        for (const auto& [field, value] : {std::pair{"RMITTYPE", "5"},
                                           {"AMTRMIT", "10"},
                                           {"FISCYR", "2026"},
                                           {"FISCPER", "03"},
                                           {"TEXTPAYOR", "Another till"}})
            header->fields().item(field).setValue(QString(value));
        header->fields().item("DATERMIT").setValue(Today());
        misc->init();
        misc->fields().item("IDDISTCODE").setValue(QString("RETAIL"));
        misc->fields().item("AMTDIST").setValue(QString("10"));
        misc->insert();
        header->insert();
    }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
    }
    void init() {
        company = std::make_unique<test::SampleCompany>(QStringLiteral("SAMINC"), 5, 200);
        window = std::make_unique<test::ReceiptWindow>();
    }
    void cleanup() {
        window.reset();
        company.reset();
    }

    void aReceiptAppliedToTwoDocumentsIsSavedReadBackAndLocked() {
        newBatchAndEntry();
        window->combo("cboCustomers")->setListIndex(0);
        const QString customer = Desk().Customers[0].Id;
        window->type("txtAmount", "1,000");
        QCOMPARE(window->text("txtAmount"), QString("1,000.00"));
        QCOMPARE(window->text("txtDate"), QString("03/15/2026"));
        QVERIFY(button("cmdSearch")->isEnabled());
        button("cmdSearch")->click();
        QCOMPARE(window->text("txtReceiptNum"),
                 QString("%1-001-20260315").arg(Desk().CurrentBatch, 4, 10, QChar('0')));
        const QString first = window->grid()->TextMatrix(1, 2);
        const QString second = window->grid()->TextMatrix(2, 2);
        const Money firstNet = Strip_Commas(window->grid()->TextMatrix(1, 8));
        const Money secondNet = Strip_Commas(window->grid()->TextMatrix(2, 8));
        window->dblClick(1, 0);
        window->dblClick(2, 0);
        QCOMPARE(Desk().ApplyCount, 2);
        const Money applied =
            Strip_Commas(window->grid()->TextMatrix(1, 4)) + Strip_Commas(window->grid()->TextMatrix(2, 4));
        QCOMPARE(applied, std::min(Money::fromWhole(1000), firstNet + secondNet));

        window->edit("txtEntDesc")->setText("Cheque for two invoices");
        window->edit("txtPayer")->setText("Paid by cheque");
        test::AnswerMessageBoxes boxes;
        QVERIFY(button("cmdSave")->isEnabled());
        button("cmdSave")->click();
        button("cmdSave")->click(); // a second click writes nothing more
        QVERIFY(window->form->LastPosting().PostOK);

        // The window: the batch's figures and the saved entry read back as saved, locked and printable.
        QCOMPARE(window->text("txtBatchEntries"), QString("Entries:  1"));
        QCOMPARE(window->text("txtBatchTotal"), QString("Total:  1,000.00"));
        QCOMPARE(window->combo("cboEntry")->ListIndex(), 0);
        QCOMPARE(Desk().CurrentEntry, 1);
        QVERIFY(window->form->EntryLocked() && !Desk().EntryDirty);
        QVERIFY(button("cmdPrint")->isEnabled() && !button("cmdSave")->isEnabled());
        QVERIFY(window->enabled("cmdNewEntry"));
        for (const char* field :
             {"txtAmount", "txtDate", "txtEntDesc", "cboCustomers", "cboTransType", "txtPayer", "cmdSearch"})
            QVERIFY2(!window->enabled(field), field);
        QCOMPARE(window->text("txtAmount"), QString("1,000.00"));
        QCOMPARE(window->text("txtEntDesc"), QString("Cheque for two invoices"));
        QCOMPARE(window->text("txtPayer"), QString("Paid by cheque"));
        QCOMPARE(window->combo("cboCustomers")->currentText(), Desk().Customers[0].Name);
        QCOMPARE(window->text("txtUnapplied"), FormatAmount(Money::fromWhole(1000) - applied));
        QCOMPARE(window->grid()->Cols(), 8);
        for (const auto& [row, document] : {std::pair{1, first}, {2, second}, {3, QString()}})
            QCOMPARE(window->grid()->TextMatrix(row, 0), document);

        // The ledger: one header, its two applications, the batch's count and total.
        QCOMPARE(entryRows("AR0042", {"IDCUST", "AMTRMIT", "IDRMIT"}),
                 (std::vector<QStringList>{
                     {customer, Money::fromWhole(1000).toLedgerString(), window->text("txtReceiptNum")}}));
        const auto lines = entryRows("AR0044", {"IDINVC", "AMTPAYM"});
        QCOMPARE(lines.size(), size_t(2));
        QCOMPARE(lines[0][0], first);
        QCOMPARE(lines[1][0], second);
        QCOMPARE(Strip_Commas(lines[0][1]) + Strip_Commas(lines[1][1]), applied);
        QCOMPARE(batchFigures(), (QStringList{"1", Money::fromWhole(1000).toLedgerString()}));
        QVERIFY(boxes.asked.isEmpty());
    }

    // Other tills save into the batch meanwhile: the saved entry is still the one shown, found by its number.
    void aPrepaymentIsSavedWithItsDocumentAndShownWhateverOtherTillsAdded() {
        newBatchAndEntry();
        window->combo("cboTransType")->setListIndex(1);
        window->combo("cboCustomers")->setListIndex(0);
        window->type("txtAmount", "1250");
        const QString document = window->grid()->TextMatrix(1, 0);
        window->dblClick(1, 0);
        QCOMPARE(window->text("txtPrePay"), document);
        anotherTillSaves();
        anotherTillSaves();

        test::AnswerMessageBoxes boxes;
        button("cmdSave")->click();
        QVERIFY(window->form->LastPosting().PostOK);
        QCOMPARE(window->text("txtBatchEntries"), QString("Entries:  3"));
        QCOMPARE(window->text("txtBatchTotal"), QString("Total:  1,270.00"));
        QCOMPARE(window->combo("cboEntry")->count(), 3);
        QCOMPARE(window->combo("cboEntry")->ListIndex(), 2);
        QCOMPARE(Desk().CurrentEntry, 3);
        QVERIFY(window->form->EntryLocked() && !button("cmdSave")->isEnabled());
        QVERIFY(!window->grid()->isVisibleTo(window->form));
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 1);
        QCOMPARE(window->text("txtAmount"), QString("1,250.00"));
        QCOMPARE(window->text("txtPrePay"), document);
        QCOMPARE(window->text("txtPrePayDocNo"), QString("PP0000001"));
        QCOMPARE(window->grid()->Cols(), 13);
        QCOMPARE(entryRows("AR0042", {"RMITTYPE", "AMTRMIT", "DOCNBR"}),
                 (std::vector<QStringList>{{"2", Money::fromWhole(1250).toLedgerString(), document}}));
        QCOMPARE(batchFigures(), (QStringList{"3", Money::fromWhole(1270).toLedgerString()}));
    }

    void aMiscellaneousReceiptFromItsFirstLineToTheLedger() {
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

        QCOMPARE(window->text("txtBatchTotal"), QString("Total:  1,150.00"));
        QVERIFY(window->form->EntryLocked() && button("cmdPrint")->isEnabled());
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 2);
        QCOMPARE(window->text("txtEntDesc"), QString("Rent and a refund"));
        QCOMPARE(window->text("txtPayer"), QString("Counter"));
        QCOMPARE(window->combo("cboCustomers")->ListIndex(), -1);
        QCOMPARE(window->text("txtAmount"), QString("1,150.00"));
        QCOMPARE(window->grid()->Cols(), 5);
        QCOMPARE(window->grid()->Rows(), 10);
        QCOMPARE(window->grid()->Col(), 0);
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
    }

    void aFailedSaveUndoesTheApplicationsAndKeepsTheEntryNew() {
        newBatchAndEntry();
        window->combo("cboCustomers")->setListIndex(0);
        window->type("txtAmount", "100");
        button("cmdSearch")->click();
        window->dblClick(1, 0);
        // Another till posts the batch meanwhile: the ledger refuses the entry.
        ErrorList elsewhere;
        engine::postBatch(*engine::CompanyStore::open(company->id()), elsewhere, Desk().CurrentBatch,
                          Today());

        test::AnswerMessageBoxes boxes;
        button("cmdSave")->click();
        QVERIFY(!window->form->LastPosting().PostOK);
        QVERIFY(!boxes.asked.isEmpty());
        QCOMPARE(window->text("txtUnapplied"), window->text("txtAmount"));
        for (int row = 1; row < window->grid()->Rows(); ++row)
            QVERIFY(window->grid()->TextMatrix(row, 0) != "Yes");
        QVERIFY(!window->form->EntryLocked());
        QVERIFY(Desk().EntryIsNew.back());
        QVERIFY(entryRows("AR0042", {"IDCUST"}).empty());
    }
};

QTEST_MAIN(ReceiptRoadTest)
#include "ReceiptRoadTest.moc"
