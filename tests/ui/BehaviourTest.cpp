// The event behaviour that form code relies on: typed characters, key codes, focus, list indexes, activation,
// and message boxes.
#include "support/ExpectBox.h"
#include "ui/ComboBox.h"
#include "ui/Events.h"
#include "ui/Platform.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>

using namespace tillbook;

class BehaviourTest : public QObject {
    Q_OBJECT

private slots:
    void keyPressReplacesOrDropsTypedCharacters() {
        QLineEdit upper, digitsOnly;
        onKeyPress(&upper, [](int& k) { UpperCaseKey(k); });
        QTest::keyClicks(&upper, "ab1-z?");
        QCOMPARE(upper.text(), QString("AB1-Z?"));
        onKeyPress(&digitsOnly, [](int& k) {
            if (k != vbKeyBack && (k < '0' || k > '9'))
                k = 0;
        });
        QTest::keyClicks(&digitsOnly, "1a2.3");
        QTest::keyClick(&digitsOnly, Qt::Key_Backspace); // Backspace reaches KeyPress as 8 and still works
        QCOMPARE(digitsOnly.text(), QString("12"));
    }

    void keyDownSeesKeyCodesAndMayReplaceOrDropThem() {
        QWidget form;
        auto* edit = new QLineEdit(&form);
        auto* next = new QLineEdit(&form);
        next->move(0, 40);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        edit->setFocus();
        QList<int> down, up;
        int shift = -1;
        onKeyDown(edit, [&](int& code, int s) {
            down << code;
            shift = s;
            if (code == vbKeyTab && s == 0)
                code = vbKeyLeft;
            else if (code == 'X')
                code = 0;
        });
        onKeyUp(edit, [&](int code, int) { up << code; });
        QTest::keyClicks(edit, "ab");
        QTest::keyClick(edit, Qt::Key_Backspace);
        QTest::keyClick(edit, Qt::Key_Right);
        QTest::keyClick(edit, Qt::Key_Tab); // becomes Left: the caret moves and the focus stays
        QVERIFY(edit->hasFocus());
        QCOMPARE(edit->cursorPosition(), 0);
        QTest::keyClick(edit, Qt::Key_X); // dropped: types nothing and has no KeyUp
        QCOMPARE(edit->text(), QString("a"));
        QCOMPARE(down, QList<int>({'A', 'B', vbKeyBack, vbKeyRight, vbKeyTab, 'X'}));
        QCOMPARE(up, QList<int>({'A', 'B', vbKeyBack, vbKeyRight, vbKeyLeft}));
        QTest::keyClick(edit, Qt::Key_Backtab, Qt::ShiftModifier); // left alone: the focus moves on
        QCOMPARE(shift, vbShiftMask);
        QVERIFY(!edit->hasFocus());
    }

    void focusEventsIgnoreMenusAndOtherWindows() {
        QWidget form;
        auto* first = new QLineEdit(&form);
        auto* second = new QLineEdit(&form);
        second->move(0, 40);
        int got = 0, lost = 0;
        onGotFocus(first, [&] { ++got; });
        onLostFocus(first, [&] { ++lost; });
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        second->setFocus(Qt::TabFocusReason);
        got = lost = 0;
        first->setFocus(Qt::TabFocusReason);
        for (auto [type, reason] : {std::pair{QEvent::FocusOut, Qt::MenuBarFocusReason},
                                    {QEvent::FocusIn, Qt::PopupFocusReason},
                                    {QEvent::FocusOut, Qt::ActiveWindowFocusReason},
                                    {QEvent::FocusIn, Qt::ActiveWindowFocusReason}}) {
            QFocusEvent event(type, reason);
            QApplication::sendEvent(first, &event);
        }
        QCOMPARE(got, 1);
        QCOMPARE(lost, 0);
        second->setFocus(Qt::TabFocusReason);
        QCOMPARE(lost, 1);
    }

    void settingTheListIndexAlwaysRunsClick() {
        ComboBox combo;
        combo.addItems({"A", "B", "C"});
        QList<int> clicks;
        connect(&combo, &ComboBox::Click, this, [&] { clicks << combo.ListIndex(); });
        combo.setListIndex(1);
        combo.setListIndex(1); // unchanged: Click runs again
        combo.setListIndex(7); // beyond the list: nothing selected
        QCOMPARE(clicks, (QList<int>{1, 1, -1}));
        QCOMPARE(combo.currentText(), QString());
        combo.setListIndex(2);
        combo.show();
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Up); // the clerk's choice runs Click too
        QCOMPARE(clicks.last(), 1);

        // Filling an empty list selects nothing and runs no Click.
        ComboBox fresh;
        connect(&fresh, &ComboBox::Click, this, [&] { clicks << -2; });
        fresh.addItems({"X", "Y"});
        QCOMPARE(fresh.ListIndex(), -1);
        QCOMPARE(clicks.size(), 5);
    }

    void activateRunsOnlyWhenComingFromAnotherForm() {
        QMainWindow a, b;
        int activations = 0;
        onActivate(&a, [&] { ++activations; });
        onActivate(&b, [] {}); // a form of the program, as the other one
        a.show();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QEvent deactivate(QEvent::WindowDeactivate), reactivate(QEvent::WindowActivate);
        QApplication::sendEvent(&a, &deactivate); // the program as a whole loses and regains the focus
        QApplication::sendEvent(&a, &reactivate);
        QCOMPARE(activations, 1);
        b.show();
        b.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&b));
        a.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QCOMPARE(activations, 2);
    }

    void messageBoxesSplitButtonsFromIcon() {
        test::ExpectBox answers(vbNo);
        QCOMPARE(MsgBox("Delete it?", vbYesNo + vbExclamation, "Confirm Delete"), vbNo);
        MsgBox("Plain");
        QCOMPARE(answers.asked[0].buttons, vbYesNo);
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QCOMPARE(answers.asked[1].buttons + answers.asked[1].icon, vbOKOnly);
        QCOMPARE(answers.asked[1].title, QString("Tillbook"));
    }
};

QTEST_MAIN(BehaviourTest)
#include "BehaviourTest.moc"
