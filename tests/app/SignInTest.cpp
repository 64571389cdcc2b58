// The sign-in window: what it shows at start, which password it checks, and what a sign-in and an exit store;
// its Add and Delete commands and the new database/user dialog: the limits, the questions, what is kept in
// memory and what is stored, the name rules and the test sign-on against a real company.
#include "LoginWindow.h"
#include "app/frmNew.h"
#include "entry/ReceiptDesk.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/TempSettings.h"

#include <QApplication>
#include <QDir>
#include <QTest>

using namespace tillbook;

namespace {

QWidget* receiptWindow() {
    return test::shownWindow("frmCR");
}

// The dialog the Add commands opened, with its controls.
struct NewDialog {
    QPointer<frmNew> form = qobject_cast<frmNew*>(test::shownWindow("frmNew"));
    QLineEdit* txtNewDB = field("txtNewDB");
    QLineEdit* txtNewUser = field("txtNewUser");
    QLineEdit* txtNewPWD = field("txtNewPWD");
    QLineEdit* txtVerPWD = field("txtVerPWD");

    QLineEdit* field(const char* name) const { return form ? form->findChild<QLineEdit*>(name) : nullptr; }
    bool shown() const { return form && QTest::qWaitForWindowActive(form); }
    // Types into a field as the clerk does: the field gets the focus first.
    static void type(QLineEdit* field, const QString& text) {
        field->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(field, text);
    }
    void fill(const QString& db, const QString& user, const QString& password, const QString& verify) {
        if (!txtNewDB->isReadOnly())
            type(txtNewDB, db);
        type(txtNewUser, user);
        type(txtNewPWD, password);
        type(txtVerPWD, verify);
    }
};

} // namespace

class SignInTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TempSettings> settings;
    std::unique_ptr<test::Company> company;

    // SAMINC in slot 1 with ADMIN and CLERK; with `remembered`, CLERK's last sign-in and its saved password.
    void storeTwoUsers(const QString& clerkPassword, bool remembered, const QString& savedPassword = "") {
        settings->setAll({{"Database1/DB1", "SAMINC"},
                          {"Database1/Users/User1", "ADMIN"},
                          {"Database1/Users/Password1", "ADMIN"},
                          {"Database1/Users/User2", "CLERK"},
                          {"Database1/Users/Password2", clerkPassword}});
        if (remembered)
            settings->setAll({{"ConnectInfo/Database", "1"},
                              {"ConnectInfo/User", "2"},
                              {"ConnectInfo/Save", savedPassword.isEmpty() ? "False" : "True"},
                              {"ConnectInfo/SavedPWD", savedPassword}});
    }
    // Database IDs in slots 1.., each name of `users` a user of slot `database` whose password is its name;
    // the database is remembered as the last sign-in's.
    void store(const QStringList& ids, int database = 0, const QStringList& users = {}) {
        for (int i = 0; i < ids.size(); ++i)
            settings->set(QString("Database%1/DB%1").arg(i + 1), ids[i]);
        for (int i = 0; i < users.size(); ++i) {
            settings->set(QString("Database%1/Users/User%2").arg(database).arg(i + 1), users[i]);
            settings->set(QString("Database%1/Users/Password%2").arg(database).arg(i + 1), users[i]);
        }
        if (database)
            settings->set("ConnectInfo/Database", QString::number(database));
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
        test::LoginWindow login;
        QCOMPARE(login.cboDatabase->count() + login.cboUser->count(), 0);
        QVERIFY(!login.cmdOK->isEnabled() && !login.mnuFilePassword->isChecked() &&
                !login.form->Initialised());
    }

    void theRememberedConnectionIsRestoredAndCountsOnceThePasswordIsLeft() {
        storeTwoUsers("PW2", true, "PW2");
        test::ExpectBox box;
        test::LoginWindow login;
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
        QVERIFY(receiptWindow() && (login.form.isNull() || !login.form->isVisible()));
        QCOMPARE(Desk().SignInDatabaseID + Desk().SignInUser, QString("SAMINCCLERK"));
        QVERIFY(Desk().LedgerSession); // opened with the password typed
        QCOMPARE(settings->raws({"ConnectInfo/Database", "ConnectInfo/User", "ConnectInfo/SavedPWD"}),
                 QString("1|2|PW2"));
    }

    void thePasswordCheckIsExactAndKeysTypeCapitals() {
        storeTwoUsers("secret", true);
        test::ExpectBox answers;
        test::LoginWindow login;
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
        settings->setAll({{"Database2/DB2", "OTHER"}, {"Database2/Users/User1", "SOLO"}});
        {
            test::LoginWindow login;
            login.cboDatabase->setListIndex(0);
            QTest::keyClicks(login.txtPassword, "ADMIN");
            // Not remembered: picking a database only re-evaluates OK, so no user can be chosen.
            QCOMPARE(QPoint(Desk().CurrentDatabase, login.cboUser->count()), QPoint(0, 0));
            QVERIFY(!login.cmdOK->isEnabled());
        }
        ResetDesk();
        storeTwoUsers("PW2", true, "PW2");
        test::LoginWindow remembered;
        remembered.cboDatabase->setListIndex(1);
        QCOMPARE(QPoint(Desk().CurrentDatabase, Desk().CurrentUser), QPoint(2, 0));
        QCOMPARE(QPoint(remembered.cboUser->count(), remembered.cboUser->ListIndex()), QPoint(1, -1));
        QVERIFY(!remembered.cmdOK->isEnabled());
        remembered.cboUser->setListIndex(0);
        QVERIFY(Desk().CurrentUser == 1 && remembered.cmdOK->isEnabled());
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
        test::ExpectBox answers;
        test::LoginWindow login;
        login.leavePassword();
        login.form->cmdOK_Click();
        QVERIFY2(answers.asked.value(0).prompt.startsWith(said), qPrintable(answers.asked.value(0).prompt));
        QCOMPARE(answers.asked.value(0).icon, vbCritical);
        QVERIFY(!receiptWindow() && login.form && login.form->isVisible());
        QVERIFY(!Desk().LedgerSession && Desk().Customers.empty());
    }

    void exitSavesTheConnectionTheDatabasesAndTheUsers() {
        storeTwoUsers("PW2", true, "PW2");
        test::LoginWindow login;
        login.form->mnuFilePassword_Click(); // "Save Password" unticked: the saved one goes
        login.form->cmdExit_Click();
        QCOMPARE(settings->raws({"ConnectInfo/Database", "ConnectInfo/User", "ConnectInfo/Save",
                                 "ConnectInfo/SavedPWD", "Database2/DB2", "Database1/Users/User10",
                                 "Database1/Users/Password1"}),
                 QString("1|2|False||||ADMIN"));
    }

    void exitBeforeTheWindowWasEverActiveKeepsWhatIsSaved() {
        storeTwoUsers("PW2", true);
        const QStringList keys{"ConnectInfo/Database", "Database1/DB1", "Database1/Users/User1"};
        const QString before = settings->raws(keys);
        auto* form = new frmLogin();
        form->setAttribute(Qt::WA_DeleteOnClose);
        form->cmdExit_Click();
        QCOMPARE(settings->raws(keys), before);
    }

    void threeDatabasesAndTenUsersAreTheLimits() {
        store({"ALPHA", "BRAVO", "SAMINC"}, 3, {"U1", "U2", "U3", "U4", "U5", "U6", "U7", "U8", "U9", "U10"});
        test::ExpectBox answers;
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        QVERIFY(
            answers(1,
                    "The Maximun number of databases has been reached.\nYou must first delete an existing "
                    "database before you can add another.",
                    vbOKOnly, "Database Limit Reached"));
        login.form->mnuAddNewUser_Click();
        QVERIFY(
            answers(2,
                    "The Maximun number of users has been reached.\nYou must first delete an existing user "
                    "before you can add another.",
                    vbOKOnly, "User Limit Reached"));
        QVERIFY(!test::shownWindow("frmNew"));

        // One user fewer, but no database chosen.
        Desk().Users[9] = UserRecord();
        login.form->Load_UserCombo();
        login.cboDatabase->setListIndex(-1);
        login.form->mnuAddNewUser_Click();
        QVERIFY(answers(3, "Choose a database before entering a new user.", vbOKOnly, "Input Required"));
        QVERIFY(!test::shownWindow("frmNew"));
    }

    void deletingTheMiddleDatabaseClosesTheGapAndWaitsForExit() {
        store({"ALPHA", "BRAVO", "CHARLIE"}, 2, {"U1"});
        test::ExpectBox answers(vbYes);
        {
            test::LoginWindow login;
            login.form->mnuDeleteDB_Click();
            QVERIFY(answers(1,
                            "Delete Database ID: BRAVO\nAre you sure that you want to remove this database?",
                            vbYesNo + vbExclamation, "Confirm Delete"));
            QCOMPARE(Desk().DatabaseIDs, (std::array<QString, 3>{"ALPHA", "CHARLIE", ""}));
            QVERIFY(Desk().Users[0].UserName.isEmpty());
            QCOMPARE(QPoint(login.cboDatabase->count(), login.cboDatabase->ListIndex()), QPoint(2, -1));
            QCOMPARE(settings->raw("Database2/DB2"), QString("BRAVO")); // not stored before Exit
        }
        test::LoginWindow again; // left without Exit: the ID is back
        QCOMPARE(again.cboDatabase->count(), 3);
        again.form->mnuDeleteDB_Click();
        again.form->cmdExit_Click();
        QCOMPARE(settings->raw("Database2/DB2") + settings->raw("Database3/DB3"), QString("CHARLIE"));
        QCOMPARE(settings->raw("Database2/Users/User1"), QString("U1")); // users stay under their slot
    }

    void deletingAUserStoresTheUsersWhateverTheAnswer() {
        store({"SAMINC"}, 1, {"ANN", "BOB", "CAT"});
        test::ExpectBox answers(vbNo);
        test::LoginWindow login;
        login.cboUser->setListIndex(1);
        settings->set("Database1/Users/User2", "SOMEONE"); // overwritten from memory, even on No
        login.form->mnuDeleteUser_Click();
        QVERIFY(answers(1, "Delete User Name: BOB\nAre you sure that you want to remove this user?",
                        vbYesNo + vbExclamation, "Confirm Delete"));
        QCOMPARE(settings->raw("Database1/Users/User2"), QString("BOB"));
        answers.answerWith(vbYes);
        login.cboUser->setListIndex(1);
        login.form->mnuDeleteUser_Click();
        QCOMPARE(QPoint(login.cboUser->count(), login.cboUser->ListIndex()), QPoint(2, -1));
        QCOMPARE(settings->raw("Database1/Users/User2") + settings->raw("Database1/Users/Password2"),
                 QString("CATCAT"));
        QCOMPARE(settings->raw("Database1/Users/User3") + settings->raw("Database1/Users/Password3"),
                 QString(""));
        login.form->mnuDeleteUser_Click(); // no user chosen: the clerk is told so
        QCOMPARE(answers.asked.value(2).title, QString("Input Required"));
    }

    void namesStartWithALetterAndHoldOnlyCapitalsAndDigits() {
        const std::pair<const char*, QString> cases[] = {
            {"1ABC", "The first character cannot be a number."},
            {"ABC-1", "All characters must be capital letters or numbers."},
            {"A1B2", ""},
        };
        for (const char* field : {"txtNewDB", "txtNewUser"}) {
            for (const auto& [name, message] : cases) {
                test::ExpectBox answers;
                test::LoginWindow login;
                login.form->mnuAddNewDB_Click();
                NewDialog dialog;
                QVERIFY(dialog.shown());
                QLineEdit* edit = dialog.field(field);
                dialog.type(edit, QString(name).toLower());
                QCOMPARE(edit->text(), QString(name)); // typed letters are capitals
                dialog.txtNewPWD->setFocus(Qt::TabFocusReason);
                QTest::qWait(20);
                QVERIFY(message.isEmpty() ? answers.none()
                                          : answers(1, message, vbExclamation, "Invalid Input"));
                QCOMPARE(QApplication::focusWidget(), message.isEmpty() ? dialog.txtNewPWD : edit);
                if (!message.isEmpty())
                    QCOMPARE(edit->selectedText(), QString(name));
                dialog.form->close();
            }
        }
    }

    void anAddedDatabaseOrUserIsProvedOnTheCompanyAndStored_data() {
        QTest::addColumn<bool>("database");
        QTest::newRow("new database") << true;
        QTest::newRow("new user") << false;
    }
    void anAddedDatabaseOrUserIsProvedOnTheCompanyAndStored() {
        QFETCH(bool, database);
        store({database ? "OTHER" : "SAMINC"}, 1, {"ANN"});
        test::ExpectBox answers;
        test::LoginWindow login;
        database ? login.form->mnuAddNewDB_Click() : login.form->mnuAddNewUser_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("saminc", "clerk", "wrong", "");
        QVERIFY(
            !dialog.form->findChild<QPushButton*>("cmdOK")->isEnabled()); // only a key in Verify enables OK
        dialog.type(dialog.txtVerPWD, "x"); // which is never compared with the password
        dialog.form->cmdOK_Click();
        QVERIFY(answers(1,
                        "The information you entered cannot create a valid connection.\nPlease check your "
                        "values carefully and try again.",
                        vbOKOnly, "Invalid Connection"));
        QVERIFY(dialog.form->isVisible() && !Desk().ReturnFromNew);
        QCOMPARE(dialog.txtNewUser->text() + dialog.txtNewPWD->text() + dialog.txtVerPWD->text(), QString());
        QCOMPARE(QApplication::focusWidget(), database ? dialog.txtNewDB : dialog.txtNewUser);

        dialog.fill("saminc", "clerk", "pw2", "x");
        dialog.form->cmdOK_Click();
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(Desk().CurrentUser, database ? 1 : 2);
        const QString slot = database ? "Database2/%1%2" : "Database1/%1%2";
        const QString row = database ? "1" : "2";
        QCOMPARE(settings->raw(slot.arg("DB", database ? "2" : "1")), QString("SAMINC"));
        QCOMPARE(settings->raw(slot.arg("Users/User", row)) + settings->raw(slot.arg("Users/Password", row)),
                 QString("CLERKPW2"));
        // Back on the sign-in window the lists are rebuilt: the database chosen, the new user listed.
        login.form->activateWindow();
        QTRY_VERIFY(login.cboUser->findText("CLERK") >= 0);
        QCOMPARE(login.cboDatabase->count(), database ? 2 : 1);
        QCOMPARE(login.cboDatabase->currentText(), QString("SAMINC"));
    }

    void theSignOnTestMakesNoCompanyAndEscapeStoresNothing() {
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("NOSUCHCO", "ADMIN", "ADMIN", "A");
        QVERIFY(!dialog.form->Test_Connection());
        QVERIFY(QDir(company->dataFolder()).entryList({"NOSUCHCO*"}).isEmpty()); // no company made
        // Escape cancels and stores nothing.
        QTest::keyClick(dialog.form, Qt::Key_Escape);
        QTRY_VERIFY(dialog.form.isNull());
        QVERIFY(Desk().ReturnFromNew && !settings->contains("Database1/DB1"));
    }
};

QTEST_MAIN(SignInTest)
#include "SignInTest.moc"
