// The event behaviour that form code relies on: typed characters, key codes, focus, list indexes, activation,
// message boxes and started programs.
#include "support/AnswerMessageBoxes.h"
#include "ui/ComboBox.h"
#include "ui/Events.h"
#include "ui/Forms.h"
#include "ui/Platform.h"

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>

using namespace tillbook;

class BehaviourTest : public QObject {
    Q_OBJECT

private slots:
    void keyPressReplacesOrDropsTypedCharacters() {
        QLineEdit upper;
        onKeyPress(&upper, [](int& k) { UpperCaseKey(k); });
        QTest::keyClicks(&upper, "ab1-z?");
        QCOMPARE(upper.text(), QString("AB1-Z?"));

        QLineEdit digitsOnly;
        onKeyPress(&digitsOnly, [](int& k) {
            if (k != vbKeyBack && (k < '0' || k > '9'))
                k = 0;
        });
        QTest::keyClicks(&digitsOnly, "1a2.3");
        QCOMPARE(digitsOnly.text(), QString("123"));
        QTest::keyClick(&digitsOnly, Qt::Key_Backspace); // Backspace reaches KeyPress as 8 and still works
        QCOMPARE(digitsOnly.text(), QString("12"));
    }

    void keyDownAndKeyUpSeeKeyCodes() {
        QLineEdit edit;
        QList<int> down, up;
        onKeyDown(&edit, [&](int code, int) { down << code; });
        onKeyUp(&edit, [&](int code, int) { up << code; });
        QTest::keyClick(&edit, Qt::Key_A);
        QTest::keyClick(&edit, Qt::Key_Backspace);
        QTest::keyClick(&edit, Qt::Key_Left);
        QTest::keyClick(&edit, Qt::Key_Right);
        QTest::keyClick(&edit, Qt::Key_5);
        const QList<int> expected{'A', vbKeyBack, vbKeyLeft, vbKeyRight, '5'};
        QCOMPARE(down, expected);
        QCOMPARE(up, expected);

        int shift = -1;
        onKeyDown(&edit, [&](int, int s) { shift = s; });
        QTest::keyClick(&edit, Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(shift, vbShiftMask);
    }

    void keyDownMayReplaceOrDropTheKey() {
        QWidget form;
        auto* edit = new QLineEdit(&form);
        auto* next = new QLineEdit(&form);
        next->move(0, 40);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        edit->setFocus();
        QList<int> up;
        onKeyDown(edit, [](int& code, int) {
            if (code == vbKeyTab)
                code = vbKeyLeft;
            else if (code == 'X')
                code = 0;
        });
        onKeyUp(edit, [&](int code, int) { up << code; });
        QTest::keyClicks(edit, "abc");
        // Tab becomes Left: the caret moves and the focus stays; Shift+Tab likewise, without selecting.
        QTest::keyClick(edit, Qt::Key_Tab);
        QVERIFY(edit->hasFocus());
        QCOMPARE(edit->cursorPosition(), 2);
        QTest::keyClick(edit, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(edit->hasFocus());
        QCOMPARE(edit->cursorPosition(), 1);
        QVERIFY(!edit->hasSelectedText());
        // A dropped key types nothing and has no KeyUp.
        QTest::keyClick(edit, Qt::Key_X);
        QCOMPARE(edit->text(), QString("abc"));
        up.removeAll(0); // Shift's own release
        QCOMPARE(up, QList<int>({'A', 'B', 'C', vbKeyLeft, vbKeyLeft}));

        // A handler taking the code by value changes nothing.
        int seen = 0;
        onKeyDown(edit, [&seen](int code, int) { seen = code; });
        QTest::keyClick(edit, Qt::Key_Tab);
        QCOMPARE(seen, vbKeyTab);
        QVERIFY(next->hasFocus());
    }

    void focusEventsIgnoreMenusAndOtherWindows() {
        QMainWindow form;
        auto* central = new QWidget(&form);
        auto* layout = new QVBoxLayout(central);
        auto* first = new QLineEdit(central);
        auto* second = new QLineEdit(central);
        layout->addWidget(first);
        layout->addWidget(second);
        form.setCentralWidget(central);
        QMenu* menu = form.menuBar()->addMenu("&File");
        menu->addAction("Item");
        int got = 0, lost = 0;
        onGotFocus(first, [&] { ++got; });
        onLostFocus(first, [&] { ++lost; });
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        second->setFocus(Qt::TabFocusReason);
        got = lost = 0;

        first->setFocus(Qt::TabFocusReason);
        QCOMPARE(got, 1);
        // A menu opening and closing neither takes nor gives the focus.
        QFocusEvent menuOpens(QEvent::FocusOut, Qt::MenuBarFocusReason);
        QApplication::sendEvent(first, &menuOpens);
        QFocusEvent popupCloses(QEvent::FocusIn, Qt::PopupFocusReason);
        QApplication::sendEvent(first, &popupCloses);
        QFocusEvent otherWindow(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(first, &otherWindow);
        QFocusEvent windowReturns(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(first, &windowReturns);
        QCOMPARE(lost, 0);
        QCOMPARE(got, 1);

        second->setFocus(Qt::TabFocusReason);
        QCOMPARE(lost, 1);
        first->setFocus(Qt::MouseFocusReason);
        QCOMPARE(got, 2);
    }

    void settingTheListIndexAlwaysRunsClick() {
        ComboBox combo;
        combo.addItems({"A", "B", "C"});
        QList<int> clicks;
        connect(&combo, &ComboBox::Click, this, [&] { clicks << combo.ListIndex(); });
        combo.setListIndex(1);
        combo.setListIndex(1); // unchanged: Click runs again
        combo.setListIndex(-1);
        combo.setListIndex(7); // beyond the list: nothing selected
        QCOMPARE(clicks, (QList<int>{1, 1, -1, -1}));
        QCOMPARE(combo.currentText(), QString());
        QVERIFY(combo.setProperty("ListIndex", 2));
        QCOMPARE(clicks.last(), 2);

        // Filling an empty list selects nothing and runs no Click.
        ComboBox fresh;
        int freshClicks = 0;
        connect(&fresh, &ComboBox::Click, this, [&] { ++freshClicks; });
        fresh.addItems({"X", "Y"});
        fresh.addItem("Z");
        QCOMPARE(fresh.ListIndex(), -1);
        QCOMPARE(freshClicks, 0);
        fresh.setListIndex(0);
        fresh.addItem("W");
        QCOMPARE(fresh.ListIndex(), 0);

        // The clerk's choice with the keyboard runs Click too.
        combo.show();
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Up);
        QCOMPARE(clicks.last(), 1);
    }

    void activateRunsOnlyWhenComingFromAnotherForm() {
        QMainWindow a, b;
        int activations = 0;
        onActivate(&a, [&] { ++activations; });
        onActivate(&b, [] {});
        a.show();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QCOMPARE(activations, 1);

        // The program as a whole loses and regains the focus: no Activate.
        QEvent deactivate(QEvent::WindowDeactivate);
        QApplication::sendEvent(&a, &deactivate);
        QEvent reactivate(QEvent::WindowActivate);
        QApplication::sendEvent(&a, &reactivate);
        QCOMPARE(activations, 1);

        b.show();
        b.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&b));
        a.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&a));
        QCOMPARE(activations, 2);
    }

    void messageBoxesSplitButtonsFromIconAndAreAnswered() {
        test::AnswerMessageBoxes answers(vbNo);
        QCOMPARE(MsgBox("Delete it?", vbYesNo + vbExclamation, "Confirm Delete"), vbNo);
        QCOMPARE(MsgBox("Plain"), vbNo);
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(answers.asked[0].prompt, QString("Delete it?"));
        QCOMPARE(answers.asked[0].title, QString("Confirm Delete"));
        QCOMPARE(answers.asked[0].buttons, vbYesNo);
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QCOMPARE(answers.asked[1].buttons, vbOKOnly);
        QCOMPARE(answers.asked[1].icon, 0);
        QCOMPARE(answers.asked[1].title, QString("Tillbook"));
    }

    void shellIsRecordedNotStarted() {
        QStringList started;
        setShellRecorder([&](const QString& line) { started << line; });
        Shell("hh.exe C:\\Tillbook\\Tillbook Help.chm");
        setShellRecorder({});
        QCOMPARE(started, QStringList{"hh.exe C:\\Tillbook\\Tillbook Help.chm"});
    }

    void formsCentreAndKeepTheirSizeInTwips() {
        QWidget form;
        FixFormSize(&form, 7920, 3330);
        QCOMPARE(form.size(), QSize(528, 222));
        form.resize(800, 600);
        QCOMPARE(form.size(), QSize(528, 222));
        CentreForm(&form);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(form.frameGeometry().center().x() / 2, screen.center().x() / 2);
    }
};

QTEST_MAIN(BehaviourTest)
#include "BehaviourTest.moc"
