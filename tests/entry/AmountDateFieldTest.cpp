// The receipt window's amount and date fields as the clerk types into them: the amount's keys, the remaining
// amounts and buttons on leaving; the date mask, its caret, the beep, and the fiscal lists and the ledger's
// date on leaving, impossible dates included.
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/ReceiptWindow.h"
#include "support/SampleCompany.h"
#include "ui/Platform.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPushButton>
#include <QTest>

using namespace tillbook;

class AmountDateFieldTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::SampleCompany> company;
    std::unique_ptr<test::ReceiptWindow> window;
    int beeps = 0;

    // Tabs into a field: the window active, the field's text selected.
    QLineEdit* enter(const char* name) {
        if (!window->form->isActiveWindow())
            window->form->activateWindow();
        if (!QTest::qWaitForWindowActive(window->form))
            qFatal("the receipt window does not become active");
        QLineEdit* field = window->edit(name);
        field->setFocus(Qt::TabFocusReason);
        return field;
    }
    void leave() { window->edit("txtEntDesc")->setFocus(Qt::TabFocusReason); }
    void typeAmount(const QString& keys) {
        QTest::keyClicks(enter("txtAmount"), keys);
        leave();
    }
    bool enabled(const char* name) const { return window->enabled(name); }
    bool saveMenuEnabled() const { return test::control<QAction>(window->form, "mnuFileSave")->isEnabled(); }
    QDate headerDate() const { return ReceiptHeaderView->fields().item("DATERMIT").value().toDate(); }

private slots:
    void initTestCase() {
        qputenv("TILLBOOK_TODAY", "2026-03-15");
        company = std::make_unique<test::SampleCompany>();
        setBeepRecorder([this] { ++beeps; });
    }
    void cleanupTestCase() {
        setBeepRecorder({});
        company.reset();
    }

    void init() {
        qputenv("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        beeps = 0;
        window = std::make_unique<test::ReceiptWindow>();
        QVERIFY(window->open());
    }
    void cleanup() { window.reset(); }

    void aSecondPointIsDroppedAndTheAmountIsFormattedOnLeaving() {
        QLineEdit* amount = enter("txtAmount");
        QTest::keyClicks(amount, "1,2a.5.0-");
        QCOMPARE(amount->text(), QString("12.50"));
        QVERIFY(DecimalTyped);
        leave();
        QCOMPARE(amount->text(), QString("12.50"));
        QCOMPARE(ReceiptAmount, Money::fromCents(1250));
        QCOMPARE(window->text("txtUnapplied"), QString("12.50"));
        // No customer chosen: no search yet.
        QVERIFY(!enabled("cmdSearch"));

        // Deleted back to one character, a point is taken again.
        enter("txtAmount");
        amount->end(false);
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(amount, Qt::Key_Backspace);
        QTest::keyClicks(amount, ".75");
        QCOMPARE(amount->text(), QString("1.75"));
        leave();
        QCOMPARE(window->text("txtUnapplied"), QString("1.75"));

        // A change of mode empties the entry: the point is allowed and the amount counts from zero again.
        window->combo("cboTransType")->setListIndex(0);
        QVERIFY(!DecimalTyped);
        QCOMPARE(window->form->AmountOnFocus(), Money());
    }

    void theUnappliedAmountFollowsAChangedAmount() {
        window->combo("cboCustomers")->setListIndex(0);
        // 30.00 applied out of 100.00.
        window->edit("txtAmount")->setText("100.00");
        window->edit("txtUnapplied")->setText("70.00");
        QTest::keyClicks(enter("txtAmount"), "80");
        QCOMPARE(window->form->AmountOnFocus(), Money::fromWhole(100));
        leave();
        QCOMPARE(window->text("txtAmount"), QString("80.00"));
        QCOMPARE(window->text("txtUnapplied"), QString("50.00"));
        QCOMPARE(ReceiptAmount, Money::fromWhole(80));
        QVERIFY(enabled("cmdSearch"));
        // Thousands: 1,250.00 raised to 2,000.
        window->edit("txtAmount")->setText("1,250.00");
        window->edit("txtUnapplied")->setText("1,000.00");
        typeAmount("2000");
        QCOMPARE(window->text("txtUnapplied"), QString("1,750.00"));
        QCOMPARE(window->text("txtAmount"), QString("2,000.00"));
    }

    void aMiscReceiptsUndistributedAmountFollowsAndANewLineIsOffered() {
        window->combo("cboTransType")->setListIndex(2);
        typeAmount("250");
        QCOMPARE(window->text("txtDistribution"), QString("250.00"));
        QVERIFY(enabled("cmdNewInvoice"));
        // The unapplied amount of receipt mode stays as it was.
        QCOMPARE(window->text("txtUnapplied"), QString());
    }

    void anEmptyAmountBecomesZeroAndTakesTheButtonsAway() {
        window->combo("cboCustomers")->setListIndex(0);
        for (const char* name : {"cmdSave", "cmdSearch", "cmdNewInvoice"})
            test::control<QWidget>(window->form, name)->setEnabled(true);
        test::control<QAction>(window->form, "mnuFileSave")->setEnabled(true);
        window->edit("txtAmount")->setText("40.00");
        QLineEdit* amount = enter("txtAmount");
        QTest::keyClick(amount, Qt::Key_Backspace);
        QCOMPARE(amount->text(), QString());
        leave();
        QCOMPARE(amount->text(), QString("0.00"));
        QVERIFY(!enabled("cmdSave") && !saveMenuEnabled());
        QVERIFY(!enabled("cmdSearch") && !enabled("cmdNewInvoice"));
        QCOMPARE(window->text("txtUnapplied"), QString("-40.00"));
    }

    void typingAnAmountTakesSaveAwayUnlessAPrepaymentIsPicked() {
        // Applied documents had enabled Save: the changed amount must be applied again.
        test::control<QWidget>(window->form, "cmdSave")->setEnabled(true);
        test::control<QAction>(window->form, "mnuFileSave")->setEnabled(true);
        QTest::keyClick(enter("txtAmount"), Qt::Key_5);
        QVERIFY(!enabled("cmdSave") && !saveMenuEnabled());

        window->combo("cboTransType")->setListIndex(1);
        window->edit("txtPrePay")->setText("IN0000012");
        QTest::keyClick(enter("txtAmount"), Qt::Key_X); // even a dropped key
        QVERIFY(enabled("cmdSave") && saveMenuEnabled());
        QCOMPARE(window->text("txtAmount"), QString());
    }

    void digitsFillTheDateMaskAndTheCaretJumpsTheSeparators() {
        QLineEdit* date = enter("txtDate");
        QCOMPARE(date->text(), QString("03/15/2026"));
        QTest::keyClicks(date, "1201");
        QCOMPARE(date->text(), QString("12/01/____"));
        QCOMPARE(date->cursorPosition(), 6);
        QTest::keyClicks(date, "2000");
        QCOMPARE(date->text(), QString("12/01/2000"));
        QCOMPARE(window->form->DatePos(), 10);
        // A ninth digit is dropped without a sound; a letter beeps and changes nothing.
        QTest::keyClick(date, Qt::Key_9);
        QCOMPARE(date->text(), QString("12/01/2000"));
        QCOMPARE(beeps, 0);
        QTest::keyClicks(date, "a/");
        QCOMPARE(date->text(), QString("12/01/2000"));
        QCOMPARE(beeps, 2);

        // Back to just after the second separator, then once more: the digit before it goes.
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(date, Qt::Key_Backspace);
        QCOMPARE(date->text(), QString("12/01/____"));
        QTest::keyClick(date, Qt::Key_Backspace);
        QCOMPARE(date->text(), QString("12/0_/____"));
        QCOMPARE(date->cursorPosition(), 4);
        QVERIFY(!window->form->DateTyping());
        // A refused key after Backspace erases nothing more; a click elsewhere does not move the typing.
        QTest::keyClick(date, Qt::Key_Q);
        QCOMPARE(date->text(), QString("12/0_/____"));
        date->setCursorPosition(9);
        QTest::keyClicks(date, "22026");
        QCOMPARE(date->text(), QString("12/02/2026"));
        test::grabToPng(window->form, "frmCR-date-typed");

        test::AnswerMessageBoxes answers;
        leave();
        QCOMPARE(answers.asked.size(), 0);
        QCOMPARE(window->combo("cboYear")->currentText(), QString("2026"));
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("12"));
        QCOMPARE(headerDate(), QDate(2026, 12, 2));
    }

    void deleteAndPasteCannotBreakTheMask() {
        QLineEdit* date = enter("txtDate");
        QTest::keyClicks(date, "12012000");
        date->setCursorPosition(1);
        QTest::keyClick(date, Qt::Key_Delete);
        QCOMPARE(date->text(), QString("10/12/000_"));
        QCOMPARE(window->form->DatePos(), 9);
        QTest::keyClick(date, Qt::Key_7);
        QCOMPARE(date->text(), QString("10/12/0007"));

        QApplication::clipboard()->setText("3/4/2026 x");
        date->selectAll();
        // Ctrl+V as a keyboard sends it: the control character, which no KeyPress sees.
        QKeyEvent paste(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier, QString(QChar(0x16)));
        QApplication::sendEvent(date, &paste);
        QKeyEvent released(QEvent::KeyRelease, Qt::Key_V, Qt::ControlModifier, QString(QChar(0x16)));
        QApplication::sendEvent(date, &released);
        QCOMPARE(date->text(), QString("34/20/26__"));
        QTest::keyClick(date, Qt::Key_Backspace);
        QCOMPARE(date->text(), QString("34/20/2___"));
        QCOMPARE(date->contextMenuPolicy(), Qt::NoContextMenu);
    }

    void anImpossibleDateIsRefusedByTheLedgerWithAClearMessage() {
        test::AnswerMessageBoxes answers;
        const QDate before = headerDate();
        for (const QString& keys : {QString("02312026"), QString("00000000")}) {
            QTest::keyClicks(enter("txtDate"), keys);
            leave();
            QVERIFY(window->combo("cboYear")->count() > 0);
            QCOMPARE(window->combo("cboPeriod")->ListIndex(), -1);
            QCOMPARE(headerDate(), before);
        }
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(answers.asked[0].title, QString("Tillbook - Receipt Entry"));
        QVERIFY2(answers.asked[0].prompt.contains("\"02/31/2026\" is not a valid date"),
                 qPrintable(answers.asked[0].prompt));
        QVERIFY2(answers.asked[1].prompt.contains("\"00/00/0000\""), qPrintable(answers.asked[1].prompt));
        QVERIFY(LedgerSession->errors().count() == 0);

        // Keyed again correctly, the date is taken.
        QTest::keyClicks(enter("txtDate"), "02282026");
        leave();
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("02"));
        QCOMPARE(headerDate(), QDate(2026, 2, 28));
    }

    void aDayFirstShortDateForm() {
        qputenv("TILLBOOK_SHORT_DATE", "dd/MM/yyyy");
        window->combo("cboTransType")->setListIndex(0);
        QLineEdit* date = enter("txtDate");
        QCOMPARE(date->text(), QString("15/03/2026"));
        QCOMPARE(window->form->DateMask(), QString("__/__/____"));
        QTest::keyClicks(date, "3101202");
        QCOMPARE(date->text(), QString("31/01/202_"));
        QTest::keyClick(date, Qt::Key_6);
        test::AnswerMessageBoxes answers;
        leave();
        QCOMPARE(answers.asked.size(), 0);
        QCOMPARE(window->combo("cboPeriod")->currentText(), QString("01"));
        QCOMPARE(headerDate(), QDate(2026, 1, 31));
    }
};

QTEST_MAIN(AmountDateFieldTest)
#include "AmountDateFieldTest.moc"
