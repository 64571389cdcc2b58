// The receipt window: what it loads after sign-in, its three modes, the grid's column sets, and closing.
#include "app/SignIn.h"
#include "entry/EntryState.h"
#include "entry/GridColumnSets.h"
#include "entry/frmCR.h"
#include "ledger/CustomerList.h"
#include "ledger/ReceiptViews.h"
#include "settings/Globals.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QCollator>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

using namespace tillbook;

namespace {

template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(name);
    if (!found)
        qFatal("no control %s", name);
    return found;
}

bool shown(QWidget* form, const char* name) {
    return control<QWidget>(form, name)->isVisibleTo(form);
}

} // namespace

class ReceiptWindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::TempSettings> settings;
    QPointer<frmCR> form;

    ComboBox* combo(const char* name) { return control<ComboBox>(form, name); }
    QLineEdit* edit(const char* name) { return control<QLineEdit>(form, name); }
    FlexGrid* grid() { return control<FlexGrid>(form, "MSFlexGrid1"); }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        company = std::make_unique<test::SampleCompany>();
    }
    void cleanupTestCase() { company.reset(); }

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

    void loadsTheSignedInCompanyInReceiptMode() {
        QCOMPARE(form->objectName(), QString("frmCR"));
        QCOMPARE(form->windowTitle(), QString("Tillbook - Receipt Entry"));
        QCOMPARE(form->size(), QSize(670, 569));
        QCOMPARE(combo("cboTransType")->ListIndex(), 0);
        QCOMPARE(form->TransType(), 0);
        QCOMPARE(edit("txtDate")->text(), QString("03/15/2026"));
        QCOMPARE(form->DateMask(), QString("__/__/____"));
        QCOMPARE(combo("cboYear")->currentText(), QString("2026"));
        QCOMPARE(combo("cboPeriod")->count(), 12);
        QCOMPARE(combo("cboPeriod")->currentText(), QString("03"));
        // Nothing stored: the three-part receipt.
        QVERIFY(control<QAction>(form, "mnuFileReceipt3V")->isChecked());
        QVERIFY(!control<QAction>(form, "mnuFileReceipt2V")->isChecked());
        QVERIFY(!control<QPushButton>(form, "cmdSave")->isEnabled());
        test::grabToPng(form, "frmCR-receipt");
    }

    void theCustomerListHoldsCustomersWithOpenInvoicesByName() {
        ComboBox* customers = combo("cboCustomers");
        QVERIFY(customers->count() > 0);
        QCOMPARE(customers->count(), static_cast<int>(Customers.size()));
        QCOMPARE(customers->ListIndex(), -1);
        QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        for (int i = 1; i < customers->count(); ++i) {
            QVERIFY2(collator.compare(customers->itemText(i - 1), customers->itemText(i)) <= 0,
                     qPrintable(customers->itemText(i - 1) + " > " + customers->itemText(i)));
            QCOMPARE(customers->itemText(i), Customers[static_cast<size_t>(i)].Name);
        }
    }

    void theThreeModesShowTheirOwnControls() {
        combo("cboTransType")->setListIndex(1);
        QCOMPARE(form->windowTitle(), QString("Tillbook - PrePayment Entry"));
        QVERIFY(!shown(form, "cmdSearch"));
        QVERIFY(!shown(form, "txtUnapplied") && !shown(form, "lblUnapplied"));
        QVERIFY(shown(form, "txtPrePay") && shown(form, "lblPrePay"));
        QVERIFY(shown(form, "txtPrePayDocNo") && shown(form, "lblPrePayDocNo"));
        QVERIFY(shown(form, "cboCustomers") && shown(form, "lblCustomers") && shown(form, "txtCustInfo"));
        QVERIFY(!shown(form, "txtDistribution") && !shown(form, "cmdNewInvoice"));
        QVERIFY(shown(form, "MSFlexGrid1"));
        test::grabToPng(form, "frmCR-prepayment");

        // Misc. entered from prepayment mode leaves the unapplied amount hidden.
        control<QAction>(form, "mnuTransMisc")->trigger();
        QCOMPARE(form->windowTitle(), QString("Tillbook - Misc. Receipt Entry"));
        QCOMPARE(form->TransType(), 2);
        QVERIFY(!shown(form, "txtUnapplied"));
        QVERIFY(shown(form, "txtDistribution") && shown(form, "lblDistribution"));
        QVERIFY(shown(form, "cmdNewInvoice") && !control<QWidget>(form, "cmdNewInvoice")->isEnabled());
        QVERIFY(shown(form, "cmdDist") && !control<QWidget>(form, "cmdDist")->isEnabled());
        QVERIFY(shown(form, "cmdAccount") && !control<QWidget>(form, "cmdAccount")->isEnabled());
        QVERIFY(!shown(form, "cboCustomers") && !shown(form, "txtCustInfo") && !shown(form, "txtPrePay"));
        QCOMPARE(DistLines, 0);

        // Misc. entered from receipt mode leaves it visible under the undistributed amount.
        control<QAction>(form, "mnuTransReceipt")->trigger();
        QVERIFY(shown(form, "cmdSearch") && !control<QWidget>(form, "cmdSearch")->isEnabled());
        QVERIFY(shown(form, "txtUnapplied"));
        DistLines = 3;
        control<QAction>(form, "mnuTransMisc")->trigger();
        QVERIFY(shown(form, "txtUnapplied") && shown(form, "lblUnapplied"));
        QVERIFY(shown(form, "txtDistribution"));
        QCOMPARE(DistLines, 0);
        test::grabToPng(form, "frmCR-misc");
    }

    void choosingTheSameModeAsksAboutUnsavedWorkAndEmptiesTheEntry() {
        test::AnswerMessageBoxes answers(vbNo);
        edit("txtAmount")->setText("125.00");
        edit("txtEntDesc")->setText("Counter sale");
        EntryDirty = true;
        combo("cboTransType")->setListIndex(0);
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt, QString("Do you want to save the current entry?"));
        QCOMPARE(answers.asked[0].title, QString("Unsaved Entry"));
        QCOMPARE(answers.asked[0].buttons, vbYesNo);
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QVERIFY(!EntryDirty);
        QCOMPARE(edit("txtEntDesc")->text(), QString());
        QCOMPARE(edit("txtAmount")->text(), QString());
        // Not dirty: no question.
        combo("cboTransType")->setListIndex(0);
        QCOMPARE(answers.asked.size(), 1);
    }

    void decliningToSaveGivesTheWholeAmountBackAsUnapplied() {
        test::AnswerMessageBoxes answers(vbNo);
        edit("txtAmount")->setText("1,250.00");
        edit("txtUnapplied")->setText("0.00");
        EntryDirty = true;
        form->Prompt_SaveEntry();
        QCOMPARE(edit("txtUnapplied")->text(), QString("1,250.00"));
        QVERIFY(!EntryDirty);
    }

    void theGridTakesTheColumnSetOfTheMode() {
        form->Set_GridHeaders();
        QCOMPARE(grid()->Cols(), 20);
        QCOMPARE(grid()->Rows(), 10);
        QCOMPARE(grid()->TextMatrix(0, 0), QString("Apply "));
        QCOMPARE(grid()->TextMatrix(0, 5), QString(" Discount Available"));
        QCOMPARE(grid()->TextMatrix(0, 19), QString(" Payment Number"));
        combo("cboTransType")->setListIndex(1);
        form->Set_GridHeaders();
        QCOMPARE(grid()->Cols(), 13);
        QCOMPARE(grid()->TextMatrix(0, 2), QString("     Sales Order No     "));
        combo("cboTransType")->setListIndex(2);
        form->Set_GridHeaders();
        QCOMPARE(grid()->Cols(), 5);
        QCOMPARE(grid()->TextMatrix(0, 0), QString("  Dist Code             "));
        QCOMPARE(grid()->Rows(), 10);
    }

    void aCustomersDocumentsShowTheirTextsAndAmounts() {
        combo("cboTransType")->setListIndex(1);
        // A customer with documents due.
        int withDocuments = -1;
        for (int i = 0; i < combo("cboCustomers")->count() && withDocuments < 0; ++i) {
            form->Set_GridHeaders();
            combo("cboCustomers")->setCurrentIndex(i);
            form->Load_CustomerDocuments();
            if (grid()->Rows() > 1 && !grid()->TextMatrix(1, 0).isEmpty())
                withDocuments = i;
        }
        QVERIFY(withDocuments >= 0);
        const int rows = grid()->Rows();
        for (int r = 1; r < rows; ++r) {
            const QString type = grid()->TextMatrix(r, 5);
            QVERIFY2(type.contains(" - ") || type == "Interest Charge" || type.toInt() > 0, qPrintable(type));
            QVERIFY(
                QStringList({"Invoice", "Debit Note", "Credit Note"}).contains(grid()->TextMatrix(r, 6)) ||
                grid()->TextMatrix(r, 6).toInt() > 0);
            QVERIFY(grid()->TextMatrix(r, 9).contains('.'));
            QVERIFY(grid()->TextMatrix(r, 11) == "No" || grid()->TextMatrix(r, 11) == "Yes");
        }
        test::grabToPng(form, "frmCR-prepayment-documents");
    }

    void aCustomersOpenDocumentsFillTheApplyGrid() {
        combo("cboCustomers")->setListIndex(0);
        QCOMPARE(grid()->Cols(), 20);
        form->Load_OpenDocuments();
        QVERIFY(grid()->Rows() > 1);
        for (int r = 1; r < grid()->Rows(); ++r) {
            QVERIFY(QStringList({"No", "Pend", "Yes"}).contains(grid()->TextMatrix(r, 0)));
            QVERIFY(!grid()->TextMatrix(r, 2).isEmpty());
            for (int c = 3; c <= 13; ++c)
                QVERIFY2(grid()->TextMatrix(r, c).contains(QRegularExpression("^-?[0-9,]+\\.[0-9]{2}$")),
                         qPrintable(grid()->TextMatrix(r, c)));
        }
        grid()->setRow(1);
        grid()->setCol(3);
        QCOMPARE(grid()->CellAlignment(), flexAlignRightCenter);
        grid()->setCol(2);
        QCOMPARE(grid()->CellAlignment(), flexAlignLeftCenter);
        test::grabToPng(form, "frmCR-open-documents");
    }

    void closingRemembersTheBatchAndTheReceiptStyle() {
        CurrentBatch = "12";
        BatchListIndex = "3";
        control<QAction>(form, "mnuFileReceipt2V")->setChecked(true);
        control<QAction>(form, "mnuFileReceipt3V")->setChecked(false);
        control<QPushButton>(form, "cmdClose")->click();
        QCOMPARE(settings->raw("Database1/BatchInfo/Batch"), QString("12"));
        QCOMPARE(settings->raw("Database1/BatchInfo/Index"), QString("3"));
        QCOMPARE(settings->raw("ReceiptStyle/2panel"), QString("True"));
        QCOMPARE(settings->raw("ReceiptStyle/3panel"), QString("False"));
    }
};

QTEST_MAIN(ReceiptWindowTest)
#include "ReceiptWindowTest.moc"
