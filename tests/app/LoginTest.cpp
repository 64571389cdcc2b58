// The sign-in window: what it shows at start, which password it checks, and what a sign-in and an exit store.
#include "LoginWindow.h"
#include "entry/ReceiptDesk.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/TempSettings.h"

#include <QApplication>
#include <QTest>

using namespace tillbook;

namespace {

using Login = test::LoginWindow;

QWidget* receiptWindow() {
    return test::shownWindow("frmCR");
}

} // namespace

class LoginTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TempSettings> settings;
    std::unique_ptr<test::Company> company;

    // SAMINC in slot 1 with ADMIN and CLERK; with `remembered`, CLERK's last sign-in and its saved password.
    void storeTwoUsers(const QString& clerkPassword, bool remembered, const QString& savedPassword = "") {
        for (const auto& [key, value] : {std::pair<QString, QString>{"Database1/DB1", "SAMINC"},
                                         {"Database1/Users/User1", "ADMIN"},
                                         {"Database1/Users/Password1", "ADMIN"},
                                         {"Database1/Users/User2", "CLERK"},
                                         {"Database1/Users/Password2", clerkPassword}})
            settings->set(key, value);
        if (!remembered)
            return;
        settings->set("ConnectInfo/Database", "1");
        settings->set("ConnectInfo/User", "2");
        settings->set("ConnectInfo/Save", savedPassword.isEmpty() ? "False" : "True");
        settings->set("ConnectInfo/SavedPWD", savedPassword);
    }
    QString stored(const QStringList& keys) const {
        QStringList values;
        for (const QString& key : keys)
            values << settings->raw(key);
        return values.join('|');
    }

private slots:
    void initTestCase() {
        company = std::make_unique<test::Company>(test::CompanyBuilder().sample(5, 20).user("CLERK", "PW2"));
    }
    void cleanupTestCase() { company.reset(); }
    void init() {
        settings = std::make_unique<test::TempSettings>();
        ResetDesk();
    }
    void cleanup() {
        while (QWidget* w = receiptWindow()) {
            w->close();
            QApplication::processEvents();
        }
        settings.reset();
    }

    void firstStartShowsEmptyListsAndADisabledOK() {
        Login login;
        QCOMPARE(login.cboDatabase->count() + login.cboUser->count(), 0);
        QVERIFY(!login.cmdOK->isEnabled());
        QVERIFY(!login.mnuFilePassword->isChecked());
        QVERIFY(!login.form->Initialised());
    }

    void theRememberedConnectionIsRestoredAndCountsOnceThePasswordIsLeft() {
        storeTwoUsers("PW2", true, "PW2");
        test::ExpectBox box;
        Login login;
        QCOMPARE(login.cboDatabase->currentText() + login.cboUser->currentText(), QString("SAMINCCLERK"));
        QVERIFY(login.mnuFilePassword->isChecked() && login.form->Initialised() && login.cmdOK->isEnabled());
        QCOMPARE(QApplication::focusWidget(), login.txtPassword);
        QCOMPARE(login.txtPassword->selectedText(), QString("PW2"));
        // The menu does not take the focus, so the password typed "last time" is still the empty one.
        login.mnuFileOK->trigger();
        QVERIFY(box(1, "Enter your password again.", vbExclamation, "Invalid Password"));
        QVERIFY(!login.cmdOK->isEnabled() && !receiptWindow());

        login.leavePassword();
        login.mnuFileOK->trigger();
        QCOMPARE(box.asked.size(), 1);
        QVERIFY(receiptWindow());
        QVERIFY(login.form.isNull() || !login.form->isVisible());
        QCOMPARE(Desk().SignInDatabaseID + Desk().SignInUser, QString("SAMINCCLERK"));
        QVERIFY(Desk().LedgerSession); // opened with the password typed
        QCOMPARE(stored({"ConnectInfo/Database", "ConnectInfo/User", "ConnectInfo/SavedPWD"}),
                 QString("1|2|PW2"));
    }

    void thePasswordCheckIsExactAndKeysTypeCapitals() {
        storeTwoUsers("secret", true);
        test::AnswerMessageBoxes answers;
        Login login;
        QTest::keyClicks(login.txtPassword, "secret");
        QCOMPARE(login.txtPassword->text(), QString("SECRET"));
        login.leavePassword();
        QTest::mouseClick(login.cmdOK, Qt::LeftButton);
        QCOMPARE(answers.asked.size(), 1); // "SECRET" is not "secret"
        QCOMPARE(QApplication::focusWidget(), login.txtPassword);
        QCOMPARE(login.txtPassword->selectedText(), QString("SECRET"));
        // Enter signs in as OK does: the password typed so far is checked.
        QTest::keyClick(login.txtPassword, Qt::Key_End);
        QTest::keyClick(login.txtPassword, Qt::Key_Backspace);
        QVERIFY(login.cmdOK->isEnabled()); // typing again re-enables OK
        QTest::keyClick(login.txtPassword, Qt::Key_Return);
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(login.txtPassword->selectedText(), QString("SECRE"));
    }

    void pickingADatabaseReadsNoUsersAndAnotherOneResetsTheUser() {
        storeTwoUsers("PW2", false);
        settings->set("Database2/DB2", "OTHER");
        settings->set("Database2/Users/User1", "SOLO");
        {
            Login login;
            login.cboDatabase->setListIndex(0);
            QTest::keyClicks(login.txtPassword, "ADMIN");
            // Not remembered: picking a database only re-evaluates OK, so no user can be chosen.
            QCOMPARE(Desk().CurrentDatabase, 0);
            QCOMPARE(login.cboUser->count(), 0);
            QVERIFY(!login.cmdOK->isEnabled());
        }
        ResetDesk();
        storeTwoUsers("PW2", true, "PW2");
        Login remembered;
        remembered.cboDatabase->setListIndex(1);
        QCOMPARE(QPoint(Desk().CurrentDatabase, Desk().CurrentUser), QPoint(2, 0));
        QCOMPARE(QPoint(remembered.cboUser->count(), remembered.cboUser->ListIndex()), QPoint(1, -1));
        QVERIFY(!remembered.cmdOK->isEnabled());
        remembered.cboUser->setListIndex(0);
        QCOMPARE(Desk().CurrentUser, 1);
        QVERIFY(remembered.cmdOK->isEnabled());
    }

    void aCompanyThatCannotBeOpenedKeepsTheClerkHere_data() {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("password"); // CLERK's in the settings and typed; the company keeps PW2
        QTest::addColumn<QString>("said");
        QTest::newRow("no such company") << "NOSUCHCO"
                                         << "PW2"
                                         << "The company NOSUCHCO could not be opened.";
        // The company is read while its password is checked: a wrong one must still end the sign-in.
        QTest::newRow("the company's password differs")
            << "SAMINC"
            << "WRONG"
            << "The company SAMINC could not be opened.\nThe user name or password";
    }
    void aCompanyThatCannotBeOpenedKeepsTheClerkHere() {
        QFETCH(QString, database);
        QFETCH(QString, password);
        QFETCH(QString, said);
        storeTwoUsers(password, true, password);
        settings->set("Database1/DB1", database);
        test::AnswerMessageBoxes answers;
        Login login;
        login.leavePassword();
        login.form->cmdOK_Click();
        QVERIFY2(answers.asked.value(0).prompt.startsWith(said), qPrintable(answers.asked.value(0).prompt));
        QCOMPARE(answers.asked.value(0).icon, vbCritical);
        QVERIFY(!receiptWindow() && login.form && login.form->isVisible());
        QVERIFY(!Desk().LedgerSession && Desk().Customers.empty());
    }

    void exitSavesTheConnectionTheDatabasesAndTheUsers() {
        storeTwoUsers("PW2", true, "PW2");
        Login login;
        login.form->mnuFilePassword_Click(); // "Save Password" unticked: the saved one goes
        login.form->cmdExit_Click();
        QCOMPARE(
            stored({"ConnectInfo/Database", "ConnectInfo/User", "ConnectInfo/Save", "ConnectInfo/SavedPWD",
                    "Database2/DB2", "Database1/Users/User10", "Database1/Users/Password1"}),
            QString("1|2|False||||ADMIN"));
    }

    void exitBeforeTheWindowWasEverActiveKeepsWhatIsSaved() {
        storeTwoUsers("PW2", true);
        const QStringList keys{"ConnectInfo/Database", "Database1/DB1", "Database1/Users/User1"};
        const QString before = stored(keys);
        auto* form = new frmLogin();
        form->setAttribute(Qt::WA_DeleteOnClose);
        form->cmdExit_Click();
        QCOMPARE(stored(keys), before);
    }
};

QTEST_MAIN(LoginTest)
#include "LoginTest.moc"
