// The receipt window's amount and date fields typed into as a clerk does: the remaining amounts and buttons
// on leaving the amount; the date mask with real keys, and the fiscal lists and the ledger's date on leaving,
// impossible dates and a day-first form included.
#include "support/ExpectBox.h"
#include "support/Company.h"
#include "support/ReceiptWindow.h"
#include "ui/Platform.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTest>

using namespace tillbook;

class AmountDateFieldTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::Company> company;
    std::unique_ptr<test::ReceiptWindow> window;
    int beeps = 0;

    QDate headerDate() const { return Desk().ReceiptHeaderView->fields().item("DATERMIT").value().toDate(); }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample());
        setBeepRecorder([this] { ++beeps; });
    }
    void cleanupTestCase() {
        setBeepRecorder({});
        company.reset();
    }
    void init() {
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        window = std::make_unique<test::ReceiptWindow>(*company);
        QVERIFY(window->open());
        window->form->Parts().entry.Unlock_Entry(); // as a started entry is
        window->form->Parts().entry.Clear_Entry();
    }
    void cleanup() { window.reset(); }

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
        QCOMPARE(window->type("txtAmount", "12.5.0")->text(), QString("12.50"));
        QCOMPARE(window->text("txtUnapplied"), QString("12.50"));
        QVERIFY(!window->enabled("cmdSearch")); // no customer yet

        // 30.00 applied out of 100.00, changed to 80.00; Save waits for the amount to be applied again.
        window->combo("cboCustomers")->setListIndex(0);
        window->edit("txtAmount")->setText("100.00");
        window->edit("txtUnapplied")->setText("70.00");
        window->form->findChild<QWidget*>("cmdSave")->setEnabled(true);
        QLineEdit* amount = window->type("txtAmount", "8", false);
        QVERIFY(!window->saveEnabled());
        QCOMPARE(window->form->Parts().amountDate.AmountOnFocus(), Money::fromWhole(100));
        window->type("txtAmount", "0");
        QCOMPARE(amount->text(), QString("80.00"));
        QCOMPARE(window->text("txtUnapplied"), QString("50.00"));
        QCOMPARE(Desk().ReceiptAmount, Money::fromWhole(80));
        QVERIFY(window->enabled("cmdSearch"));

        // Emptied: "0.00", and neither save, search nor a new line.
        window->type("txtAmount", "\b");
        QCOMPARE(amount->text(), QString("0.00"));
        QCOMPARE(window->text("txtUnapplied"), QString("-30.00"));
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
        QLineEdit* date = window->type("txtDate", "1201", false);
        QCOMPARE(date->text(), QString("12/01/____"));
        QCOMPARE(date->cursorPosition(), 6);
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
        QCOMPARE(window->combo("cboYear")->currentText(), QString("2026"));
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("12"));
        QCOMPARE(headerDate(), QDate(2026, 12, 2));
        // A new entry's date is typed from its first digit again.
        window->form->Parts().entry.Clear_Entry();
        QCOMPARE(window->form->Parts().amountDate.DatePos(), 0);
    }

    void anImpossibleDateIsRefusedByTheLedgerWithAClearMessage() {
        test::ExpectBox answers;
        const QDate before = headerDate();
        for (const QString& keys : {QString("02312026"), QString("00000000")}) {
            window->type("txtDate", keys);
            QVERIFY(window->combo("cboYear")->count() > 0);
            QCOMPARE(window->combo("cboPeriod")->ListIndex(), -1);
            QCOMPARE(headerDate(), before);
        }
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(answers.asked[0].title, QString("Tillbook - Receipt Entry"));
        QVERIFY2(answers.asked[0].prompt.contains("\"02/31/2026\" is not a valid date"),
                 qPrintable(answers.asked[0].prompt));
        QVERIFY(answers.asked[1].prompt.contains("\"00/00/0000\""));
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

QTEST_MAIN(AmountDateFieldTest)
#include "AmountDateFieldTest.moc"
