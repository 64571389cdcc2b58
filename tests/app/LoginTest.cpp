// The sign-in window: what it shows at start, which password it checks, and what a sign-in and an exit store.
#include "LoginWindow.h"
#include "entry/ReceiptDesk.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "support/TempSettings.h"
#include "ui/ComboBox.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace tillbook;

namespace {

using Login = test::LoginWindow;

QWidget* receiptWindow() {
    return test::shownWindow("frmCR");
}

void closeReceiptWindows() {
    while (QWidget* w = receiptWindow()) {
        w->close();
        QApplication::processEvents();
    }
}

} // namespace

class LoginTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TempSettings> settings;
    std::unique_ptr<test::SampleCompany> company;

    void storeTwoUsers(const QString& secondPassword = "PW2") {
        settings->set("Database1/DB1", "SAMINC");
        settings->set("Database1/Users/User1", "ADMIN");
        settings->set("Database1/Users/Password1", "ADMIN");
        settings->set("Database1/Users/User2", "CLERK");
        settings->set("Database1/Users/Password2", secondPassword);
    }
    void rememberConnection(const QString& savedPassword) {
        settings->set("ConnectInfo/Database", "1");
        settings->set("ConnectInfo/User", "2");
        settings->set("ConnectInfo/Save", savedPassword.isEmpty() ? "False" : "True");
        settings->set("ConnectInfo/SavedPWD", savedPassword);
    }

private slots:
    void initTestCase() {
        company = std::make_unique<test::SampleCompany>();
        company->addUser("CLERK", "PW2");
    }
    void cleanupTestCase() { company.reset(); }

    void init() {
        settings = std::make_unique<test::TempSettings>();
        ResetDesk();
    }
    void cleanup() {
        closeReceiptWindows();
        settings.reset();
    }

    void firstStartShowsEmptyListsAndADisabledOK() {
        Login login;
        QCOMPARE(login.form->windowTitle(), QString("Tillbook - Login"));
        QCOMPARE(login.form->objectName(), QString("frmLogin"));
        QCOMPARE(login.form->size(), QSize(528, 222));
        QCOMPARE(login.form->findChild<QLabel*>("lblVersion")->text(), QString("Version  1.0.0"));
        QCOMPARE(login.cboDatabase->count(), 0);
        QCOMPARE(login.cboUser->count(), 0);
        QCOMPARE(login.txtPassword->text(), QString());
        QVERIFY(!login.cmdOK->isEnabled());
        QVERIFY(!login.mnuFilePassword->isChecked());
        QVERIFY(!login.form->Initialised());
        QCOMPARE(login.cmdExit->text(), QString("E&xit"));
    }

    void theRememberedConnectionIsRestored() {
        storeTwoUsers();
        rememberConnection("PW2");
        Login login;
        QCOMPARE(login.cboDatabase->currentText(), QString("SAMINC"));
        QCOMPARE(login.cboUser->count(), 2);
        QCOMPARE(login.cboUser->currentText(), QString("CLERK"));
        QCOMPARE(login.txtPassword->text(), QString("PW2"));
        QVERIFY(login.mnuFilePassword->isChecked());
        QVERIFY(login.form->Initialised());
        QVERIFY(login.cmdOK->isEnabled());
        QCOMPARE(QApplication::focusWidget(), login.txtPassword);
        QCOMPARE(login.txtPassword->selectedText(), QString("PW2"));
        test::grabToPng(login.form, "frmLogin");
    }

    void aSavedPasswordCountsOnlyOnceTheFieldHasLostTheFocus() {
        storeTwoUsers();
        rememberConnection("PW2");
        test::AnswerMessageBoxes answers;
        Login login;
        // The menu does not take the focus, so the password typed "last time" is still the empty one.
        login.mnuFileOK->trigger();
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt, QString("Enter your password again."));
        QCOMPARE(answers.asked[0].title, QString("Invalid Password"));
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QVERIFY(!login.cmdOK->isEnabled());
        QVERIFY(!receiptWindow());

        login.leavePassword();
        QCOMPARE(login.form->TypedPassword(), QString("PW2"));
        login.mnuFileOK->trigger();
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(receiptWindow());
        QCOMPARE(receiptWindow()->windowTitle(), QString("Tillbook - Receipt Entry"));
        QVERIFY(login.form.isNull() || !login.form->isVisible());
        QCOMPARE(Desk().SignInDatabaseID, QString("SAMINC"));
        QCOMPARE(Desk().SignInUser, QString("CLERK"));
        QVERIFY(Desk().LedgerSession); // opened with the password typed
        QCOMPARE(settings->raw("ConnectInfo/Database"), QString("1"));
        QCOMPARE(settings->raw("ConnectInfo/User"), QString("2"));
        QCOMPARE(settings->raw("ConnectInfo/SavedPWD"), QString("PW2"));
    }

    void thePasswordCheckIsExactAndKeysTypeCapitals() {
        storeTwoUsers("secret");
        rememberConnection("");
        test::AnswerMessageBoxes answers;
        Login login;
        QTest::keyClicks(login.txtPassword, "secret");
        QCOMPARE(login.txtPassword->text(), QString("SECRET"));
        QVERIFY(login.cmdOK->isEnabled());
        login.leavePassword();
        QTest::mouseClick(login.cmdOK, Qt::LeftButton);
        QCOMPARE(answers.asked.size(), 1); // "SECRET" is not "secret"
        QCOMPARE(QApplication::focusWidget(), login.txtPassword);
        QCOMPARE(login.txtPassword->selectedText(), QString("SECRET"));

        // Typing again re-enables OK through the key-up rule.
        QTest::keyClick(login.txtPassword, Qt::Key_End);
        QTest::keyClick(login.txtPassword, Qt::Key_Backspace);
        QVERIFY(login.cmdOK->isEnabled());

        // Enter signs in as OK does: the password typed so far is checked.
        QTest::keyClick(login.txtPassword, Qt::Key_Return);
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(login.txtPassword->selectedText(), QString("SECRE"));
    }

    void withNoDatabaseRememberedOKStaysDisabled() {
        storeTwoUsers();
        Login login;
        QVERIFY(!login.form->Initialised());
        QCOMPARE(login.cboDatabase->count(), 1);
        login.cboDatabase->setListIndex(0);
        QTest::keyClicks(login.txtPassword, "ADMIN");
        // Picking a database only re-evaluates OK: its users are not read, so no user can be chosen.
        QCOMPARE(Desk().CurrentDatabase, 0);
        QCOMPARE(login.cboUser->count(), 0);
        QVERIFY(!login.cmdOK->isEnabled());
    }

    void choosingAnotherDatabaseResetsTheUser() {
        storeTwoUsers();
        settings->set("Database2/DB2", "OTHER");
        settings->set("Database2/Users/User1", "SOLO");
        rememberConnection("PW2");
        Login login;
        login.cboDatabase->setListIndex(1);
        QCOMPARE(Desk().CurrentDatabase, 2);
        QCOMPARE(Desk().CurrentUser, 0);
        QCOMPARE(login.cboUser->count(), 1);
        QCOMPARE(login.cboUser->ListIndex(), -1);
        QVERIFY(!login.cmdOK->isEnabled());
        login.cboUser->setListIndex(0);
        QCOMPARE(Desk().CurrentUser, 1);
        QVERIFY(login.cmdOK->isEnabled());
    }

    void signingInWithSavePasswordUntickedErasesTheSavedOne() {
        storeTwoUsers();
        rememberConnection("PW2");
        Login login;
        login.form->mnuFilePassword_Click();
        QVERIFY(!login.mnuFilePassword->isChecked());
        login.leavePassword();
        login.form->cmdOK_Click();
        QVERIFY(receiptWindow());
        QCOMPARE(settings->raw("ConnectInfo/Save"), QString("False"));
        QCOMPARE(settings->raw("ConnectInfo/SavedPWD"), QString(""));
    }

    void aCompanyThatCannotBeOpenedKeepsTheClerkHere() {
        storeTwoUsers();
        settings->set("Database1/DB1", "NOSUCHCO");
        rememberConnection("PW2");
        test::AnswerMessageBoxes answers;
        Login login;
        login.leavePassword();
        login.form->cmdOK_Click();
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(answers.asked[0].prompt.startsWith("The company NOSUCHCO could not be opened."));
        QCOMPARE(answers.asked[0].icon, vbCritical);
        QVERIFY(!receiptWindow());
        QVERIFY(!login.form.isNull());
        QVERIFY(login.form->isVisible());
    }

    void exitSavesTheConnectionTheDatabasesAndTheUsers() {
        storeTwoUsers();
        rememberConnection("");
        Login login;
        login.form->cmdExit_Click();
        QCOMPARE(settings->raw("ConnectInfo/Database"), QString("1"));
        QCOMPARE(settings->raw("ConnectInfo/User"), QString("2"));
        QCOMPARE(settings->raw("ConnectInfo/Save"), QString("False"));
        QCOMPARE(settings->raw("Database2/DB2"), QString(""));
        QCOMPARE(settings->raw("Database1/Users/User10"), QString(""));
        QCOMPARE(settings->raw("Database1/Users/Password1"), QString("ADMIN"));
    }
};

QTEST_MAIN(LoginTest)
#include "LoginTest.moc"
