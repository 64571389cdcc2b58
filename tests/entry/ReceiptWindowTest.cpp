// The receipt window: what it loads after sign-in, its three modes, the grid's column sets, and closing.
#include "support/ReceiptWindow.h"

#include "entry/frmCR.h"
#include "support/ExpectBox.h"
#include "support/SampleCompany.h"

#include <QAction>
#include <QCollator>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <array>
#include <tuple>

using namespace tillbook;

class ReceiptWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::ReceiptWindow> window;

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        company = std::make_unique<test::SampleCompany>();
    }
    void cleanupTestCase() { company.reset(); }

    void init() {
        window = std::make_unique<test::ReceiptWindow>();
        QVERIFY(window->open());
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
    }
    void cleanup() { window.reset(); }

    void loadsTheSignedInCompanyInReceiptMode() {
        QCOMPARE(window->form->TransType(), 0);
        QCOMPARE(window->edit("txtDate")->text(), QString("03/15/2026"));
        QCOMPARE(window->combo("cboYear")->currentText(), QString("2026"));
        QCOMPARE(window->combo("cboPeriod")->count(), 12);
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("03"));
        // Nothing stored: the three-part receipt.
        QVERIFY(test::control<QAction>(window->form, "mnuFileReceipt3V")->isChecked());
        QVERIFY(!test::control<QAction>(window->form, "mnuFileReceipt2V")->isChecked());
        QVERIFY(!window->enabled("cmdSave"));
    }

    void theCustomerListHoldsCustomersWithOpenInvoicesByName() {
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
            {"lblUnapplied", {true, false, true}},     {"txtPrePay", {false, true, false}},
            {"lblPrePay", {false, true, false}},       {"txtPrePayDocNo", {false, true, false}},
            {"lblPrePayDocNo", {false, true, false}},  {"cboCustomers", {true, true, false}},
            {"lblCustomers", {true, true, false}},     {"txtCustInfo", {true, true, false}},
            {"txtDistribution", {false, false, true}}, {"lblDistribution", {false, false, true}},
            {"cmdNewInvoice", {false, false, true}},   {"cmdDist", {false, false, true}},
            {"cmdAccount", {false, false, true}},      {"MSFlexGrid1", {true, true, true}}};
        const QStringList titles = {"Tillbook - Receipt Entry", "Tillbook - PrePayment Entry",
                                    "Tillbook - Misc. Receipt Entry"};
        for (const char* menu : {"mnuTransReceipt", "mnuTransPrePay", "mnuTransReceipt", "mnuTransMisc"}) {
            Desk().DistLines = 3;
            test::control<QAction>(window->form, menu)->trigger();
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
        test::control<QAction>(window->form, "mnuTransMisc")->trigger();
        QVERIFY(!window->shown("txtUnapplied"));
        test::control<QAction>(window->form, "mnuTransReceipt")->trigger();
        QVERIFY(window->shown("cmdSearch") && !window->enabled("cmdSearch"));
        test::control<QAction>(window->form, "mnuTransMisc")->trigger();
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

    // Each document shows its own type texts and amounts: the prepayment's list of a customer with documents,
    // then the receipt's open documents with their amounts right-aligned.
    void aCustomersDocumentsShowTheirTextsAndAmounts() {
        const QRegularExpression amount("^-?[0-9,]+\\.[0-9]{2}$");
        FlexGrid* grid = window->grid();
        window->combo("cboTransType")->setListIndex(1);
        for (int i = 0; i < window->combo("cboCustomers")->count() && grid->TextMatrix(1, 0).isEmpty(); ++i) {
            window->combo("cboCustomers")->setCurrentIndex(i);
            window->form->Parts().grid.Load_CustomerDocuments();
        }
        QVERIFY(!grid->TextMatrix(1, 0).isEmpty());
        for (int r = 1; r < grid->Rows(); ++r) {
            const QString type = grid->TextMatrix(r, 5);
            QVERIFY2(type.contains(" - ") || type == "Interest Charge" || type.toInt() > 0, qPrintable(type));
            QVERIFY(QStringList({"Invoice", "Debit Note", "Credit Note"}).contains(grid->TextMatrix(r, 6)) ||
                    grid->TextMatrix(r, 6).toInt() > 0);
            QVERIFY2(grid->TextMatrix(r, 9).contains(amount), qPrintable(grid->TextMatrix(r, 9)));
            QVERIFY(QStringList({"No", "Yes"}).contains(grid->TextMatrix(r, 11)));
        }

        window->combo("cboTransType")->setListIndex(0);
        window->combo("cboCustomers")->setListIndex(0);
        window->form->Parts().grid.Load_OpenDocuments();
        QVERIFY(grid->Rows() > 1);
        for (int r = 1; r < grid->Rows(); ++r) {
            QVERIFY(QStringList({"No", "Pend", "Yes"}).contains(grid->TextMatrix(r, 0)));
            for (int c = 3; c <= 13; ++c)
                QVERIFY2(grid->TextMatrix(r, c).contains(amount), qPrintable(grid->TextMatrix(r, c)));
        }
        grid->setRow(1);
        grid->setCol(3);
        QCOMPARE(grid->CellAlignment(), flexAlignRightCenter);
        grid->setCol(2);
        QCOMPARE(grid->CellAlignment(), flexAlignLeftCenter);
    }

    void closingRemembersTheBatchAndTheReceiptStyle() {
        Desk().CurrentBatch = 12;
        Desk().BatchListIndex = 3;
        test::control<QAction>(window->form, "mnuFileReceipt2V")->setChecked(true);
        test::control<QAction>(window->form, "mnuFileReceipt3V")->setChecked(false);
        test::control<QPushButton>(window->form, "cmdClose")->click();
        QCOMPARE(window->settings.raw("Database1/BatchInfo/Batch"), QString("12"));
        QCOMPARE(window->settings.raw("Database1/BatchInfo/Index"), QString("3"));
        QCOMPARE(window->settings.raw("ReceiptStyle/2panel"), QString("True"));
        QCOMPARE(window->settings.raw("ReceiptStyle/3panel"), QString("False"));
    }
};

QTEST_MAIN(ReceiptWindowTest)
#include "ReceiptWindowTest.moc"
