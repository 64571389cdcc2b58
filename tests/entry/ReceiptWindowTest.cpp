// The receipt window: what it loads after sign-in, its three modes, the grid's column sets, and closing.
#include "support/ReceiptWindow.h"

#include "entry/GridColumnSets.h"
#include "entry/frmCR.h"
#include "fetching/CustomerList.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"

#include <QAction>
#include <QCollator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

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
        QCOMPARE(window->form->objectName(), QString("frmCR"));
        QCOMPARE(window->form->windowTitle(), QString("Tillbook - Receipt Entry"));
        QCOMPARE(window->form->size(), QSize(670, 569));
        QCOMPARE(window->combo("cboTransType")->ListIndex(), 0);
        QCOMPARE(window->form->TransType(), 0);
        QCOMPARE(window->edit("txtDate")->text(), QString("03/15/2026"));
        QCOMPARE(window->form->Parts().amountDate.DateMask(), QString("__/__/____"));
        QCOMPARE(window->combo("cboYear")->currentText(), QString("2026"));
        QCOMPARE(window->combo("cboPeriod")->count(), 12);
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("03"));
        // Nothing stored: the three-part receipt.
        QVERIFY(test::control<QAction>(window->form, "mnuFileReceipt3V")->isChecked());
        QVERIFY(!test::control<QAction>(window->form, "mnuFileReceipt2V")->isChecked());
        QVERIFY(!test::control<QPushButton>(window->form, "cmdSave")->isEnabled());
        test::grabToPng(window->form, "frmCR-receipt");
    }

    void theCustomerListHoldsCustomersWithOpenInvoicesByName() {
        ComboBox* customers = window->combo("cboCustomers");
        QVERIFY(customers->count() > 0);
        QCOMPARE(customers->count(), static_cast<int>(Desk().Customers.size()));
        QCOMPARE(customers->ListIndex(), -1);
        QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        for (int i = 1; i < customers->count(); ++i) {
            QVERIFY2(collator.compare(customers->itemText(i - 1), customers->itemText(i)) <= 0,
                     qPrintable(customers->itemText(i - 1) + " > " + customers->itemText(i)));
            QCOMPARE(customers->itemText(i), Desk().Customers[static_cast<size_t>(i)].Name);
        }
    }

    void theLargestAmountsFitTheirBoxes() {
        const QString largest = "99,999,999,999,999.00";
        for (const auto& [box, text] : {std::pair{"txtAmount", largest},
                                        {"txtUnapplied", largest},
                                        {"txtDistribution", largest},
                                        {"txtBatchTotal", "Total:  " + largest},
                                        {"txtBatchEntries", QString("Entries:  32767")},
                                        {"txtBank", QString("Bank Code:  RBCOPER")}}) {
            const QLineEdit* edit = window->edit(box);
            // The frame and the text's margins take 8 pixels of the width.
            QVERIFY2(edit->fontMetrics().horizontalAdvance(text) + 8 <= edit->width(), box);
        }
    }

    void theThreeModesShowTheirOwnControls() {
        window->combo("cboTransType")->setListIndex(1);
        QCOMPARE(window->form->windowTitle(), QString("Tillbook - PrePayment Entry"));
        QVERIFY(!window->shown("cmdSearch"));
        QVERIFY(!window->shown("txtUnapplied") && !window->shown("lblUnapplied"));
        QVERIFY(window->shown("txtPrePay") && window->shown("lblPrePay"));
        QVERIFY(window->shown("txtPrePayDocNo") && window->shown("lblPrePayDocNo"));
        QVERIFY(window->shown("cboCustomers") && window->shown("lblCustomers") &&
                window->shown("txtCustInfo"));
        QVERIFY(!window->shown("txtDistribution") && !window->shown("cmdNewInvoice"));
        QVERIFY(window->shown("MSFlexGrid1"));
        test::grabToPng(window->form, "frmCR-prepayment");

        // Misc. entered from prepayment mode leaves the unapplied amount hidden.
        test::control<QAction>(window->form, "mnuTransMisc")->trigger();
        QCOMPARE(window->form->windowTitle(), QString("Tillbook - Misc. Receipt Entry"));
        QCOMPARE(window->form->TransType(), 2);
        QVERIFY(!window->shown("txtUnapplied"));
        QVERIFY(window->shown("txtDistribution") && window->shown("lblDistribution"));
        QVERIFY(window->shown("cmdNewInvoice") &&
                !test::control<QWidget>(window->form, "cmdNewInvoice")->isEnabled());
        QVERIFY(window->shown("cmdDist") && !test::control<QWidget>(window->form, "cmdDist")->isEnabled());
        QVERIFY(window->shown("cmdAccount") &&
                !test::control<QWidget>(window->form, "cmdAccount")->isEnabled());
        QVERIFY(!window->shown("cboCustomers") && !window->shown("txtCustInfo") &&
                !window->shown("txtPrePay"));
        QCOMPARE(Desk().DistLines, 0);

        // Misc. entered from receipt mode leaves it visible under the undistributed amount.
        test::control<QAction>(window->form, "mnuTransReceipt")->trigger();
        QVERIFY(window->shown("cmdSearch") &&
                !test::control<QWidget>(window->form, "cmdSearch")->isEnabled());
        QVERIFY(window->shown("txtUnapplied"));
        Desk().DistLines = 3;
        test::control<QAction>(window->form, "mnuTransMisc")->trigger();
        QVERIFY(window->shown("txtUnapplied") && window->shown("lblUnapplied"));
        QVERIFY(window->shown("txtDistribution"));
        QCOMPARE(Desk().DistLines, 0);
        test::grabToPng(window->form, "frmCR-misc");
    }

    void choosingTheSameModeAsksAboutUnsavedWorkAndEmptiesTheEntry() {
        test::AnswerMessageBoxes answers(vbNo);
        window->edit("txtAmount")->setText("125.00");
        window->edit("txtEntDesc")->setText("Counter sale");
        Desk().EntryDirty = true;
        window->combo("cboTransType")->setListIndex(0);
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt, QString("Do you want to save the current entry?"));
        QCOMPARE(answers.asked[0].title, QString("Unsaved Entry"));
        QCOMPARE(answers.asked[0].buttons, vbYesNo);
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QVERIFY(!Desk().EntryDirty);
        QCOMPARE(window->edit("txtEntDesc")->text(), QString());
        QCOMPARE(window->edit("txtAmount")->text(), QString());
        // Not dirty: no question.
        window->combo("cboTransType")->setListIndex(0);
        QCOMPARE(answers.asked.size(), 1);
    }

    void decliningToSaveGivesTheWholeAmountBackAsUnapplied() {
        test::AnswerMessageBoxes answers(vbNo);
        window->edit("txtAmount")->setText("1,250.00");
        window->edit("txtUnapplied")->setText("0.00");
        Desk().EntryDirty = true;
        window->form->Parts().entry.Prompt_SaveEntry([&] { window->form->cmdSave_Click(); });
        QCOMPARE(window->edit("txtUnapplied")->text(), QString("1,250.00"));
        QVERIFY(!Desk().EntryDirty);
    }

    void theGridTakesTheColumnSetOfTheMode() {
        window->form->Parts().grid.Set_GridHeaders();
        QCOMPARE(window->grid()->Cols(), 20);
        QCOMPARE(window->grid()->Rows(), 10);
        QCOMPARE(window->grid()->TextMatrix(0, 0), QString("Apply "));
        QCOMPARE(window->grid()->TextMatrix(0, 5), QString(" Discount Available"));
        QCOMPARE(window->grid()->TextMatrix(0, 19), QString(" Payment Number"));
        window->combo("cboTransType")->setListIndex(1);
        window->form->Parts().grid.Set_GridHeaders();
        QCOMPARE(window->grid()->Cols(), 13);
        QCOMPARE(window->grid()->TextMatrix(0, 2), QString("     Sales Order No     "));
        window->combo("cboTransType")->setListIndex(2);
        window->form->Parts().grid.Set_GridHeaders();
        QCOMPARE(window->grid()->Cols(), 5);
        QCOMPARE(window->grid()->TextMatrix(0, 0), QString("  Dist Code             "));
        QCOMPARE(window->grid()->Rows(), 10);
    }

    void aCustomersDocumentsShowTheirTextsAndAmounts() {
        window->combo("cboTransType")->setListIndex(1);
        // A customer with documents due.
        int withDocuments = -1;
        for (int i = 0; i < window->combo("cboCustomers")->count() && withDocuments < 0; ++i) {
            window->form->Parts().grid.Set_GridHeaders();
            window->combo("cboCustomers")->setCurrentIndex(i);
            window->form->Parts().grid.Load_CustomerDocuments();
            if (window->grid()->Rows() > 1 && !window->grid()->TextMatrix(1, 0).isEmpty())
                withDocuments = i;
        }
        QVERIFY(withDocuments >= 0);
        const int rows = window->grid()->Rows();
        for (int r = 1; r < rows; ++r) {
            const QString type = window->grid()->TextMatrix(r, 5);
            QVERIFY2(type.contains(" - ") || type == "Interest Charge" || type.toInt() > 0, qPrintable(type));
            QVERIFY(QStringList({"Invoice", "Debit Note", "Credit Note"})
                        .contains(window->grid()->TextMatrix(r, 6)) ||
                    window->grid()->TextMatrix(r, 6).toInt() > 0);
            QVERIFY(window->grid()->TextMatrix(r, 9).contains('.'));
            QVERIFY(window->grid()->TextMatrix(r, 11) == "No" || window->grid()->TextMatrix(r, 11) == "Yes");
        }
        test::grabToPng(window->form, "frmCR-prepayment-documents");
    }

    void aCustomersOpenDocumentsFillTheApplyGrid() {
        window->combo("cboCustomers")->setListIndex(0);
        QCOMPARE(window->grid()->Cols(), 20);
        window->form->Parts().grid.Load_OpenDocuments();
        QVERIFY(window->grid()->Rows() > 1);
        for (int r = 1; r < window->grid()->Rows(); ++r) {
            QVERIFY(QStringList({"No", "Pend", "Yes"}).contains(window->grid()->TextMatrix(r, 0)));
            QVERIFY(!window->grid()->TextMatrix(r, 2).isEmpty());
            for (int c = 3; c <= 13; ++c)
                QVERIFY2(
                    window->grid()->TextMatrix(r, c).contains(QRegularExpression("^-?[0-9,]+\\.[0-9]{2}$")),
                    qPrintable(window->grid()->TextMatrix(r, c)));
        }
        window->grid()->setRow(1);
        window->grid()->setCol(3);
        QCOMPARE(window->grid()->CellAlignment(), flexAlignRightCenter);
        window->grid()->setCol(2);
        QCOMPARE(window->grid()->CellAlignment(), flexAlignLeftCenter);
        test::grabToPng(window->form, "frmCR-open-documents");
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
