// The sign-in window's Add and Delete commands and the new database/user dialog: the limits, the questions,
// what is kept in memory and what is stored, the name rules and the test sign-on against a real company.
#include "LoginWindow.h"
#include "app/NewDialogFlags.h"
#include "app/frmNew.h"
#include "settings/Globals.h"
#include "support/AnswerMessageBoxes.h"
#include "support/Grab.h"
#include "support/SampleCompany.h"
#include "support/TempSettings.h"

#include <QDir>
#include <QGroupBox>
#include <QTest>

using namespace tillbook;

namespace {

// The dialog the Add commands opened, with its controls.
struct NewDialog {
    QPointer<frmNew> form = qobject_cast<frmNew*>(test::shownWindow("frmNew"));
    QLineEdit* txtNewDB = form ? form->findChild<QLineEdit*>("txtNewDB") : nullptr;
    QLineEdit* txtNewUser = form ? form->findChild<QLineEdit*>("txtNewUser") : nullptr;
    QLineEdit* txtNewPWD = form ? form->findChild<QLineEdit*>("txtNewPWD") : nullptr;
    QLineEdit* txtVerPWD = form ? form->findChild<QLineEdit*>("txtVerPWD") : nullptr;
    QPushButton* cmdOK = form ? form->findChild<QPushButton*>("cmdOK") : nullptr;
    QGroupBox* fraDB = form ? form->findChild<QGroupBox*>("fraDB") : nullptr;

    bool shown() const { return form && QTest::qWaitForWindowActive(form); }
    // Types into a field as the clerk does: the field gets the focus first.
    void type(QLineEdit* field, const QString& text) {
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

class AdministrationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TempSettings> settings;
    std::unique_ptr<test::SampleCompany> company;

    void storeDatabases(const QStringList& ids) {
        for (int i = 0; i < ids.size(); ++i)
            settings->set(QString("Database%1/DB%1").arg(i + 1), ids[i]);
    }
    void storeUsers(int database, const QStringList& names) {
        for (int i = 0; i < names.size(); ++i) {
            settings->set(QString("Database%1/Users/User%2").arg(database).arg(i + 1), names[i]);
            settings->set(QString("Database%1/Users/Password%2").arg(database).arg(i + 1), names[i]);
        }
    }
    void rememberDatabase(int database) { settings->set("ConnectInfo/Database", QString::number(database)); }

private slots:
    void initTestCase() {
        company = std::make_unique<test::SampleCompany>();
        company->addUser("CLERK", "PW2");
    }
    void cleanupTestCase() { company.reset(); }

    void init() {
        settings = std::make_unique<test::TempSettings>();
        CurrentDatabase = 0;
        CurrentUser = 0;
        ReturnFromNew = DatabasesChanged = UsersChanged = AddingDatabase = false;
    }
    void cleanup() {
        while (QWidget* w = test::shownWindow("frmNew")) {
            w->close();
            QApplication::processEvents();
        }
        settings.reset();
    }

    void threeDatabasesAreTheLimit() {
        storeDatabases({"ALPHA", "BRAVO", "CHARLIE"});
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt,
                 QString("The Maximun number of databases has been reached.\nYou must "
                         "first delete an existing database before you can add another."));
        QCOMPARE(answers.asked[0].title, QString("Database Limit Reached"));
        QCOMPARE(answers.asked[0].buttons, vbOKOnly);
        QCOMPARE(answers.asked[0].icon, 0);
        QVERIFY(!test::shownWindow("frmNew"));

        // With two the dialog opens for a new database.
        DatabaseIDs[2].clear();
        login.form->Load_DatabaseCombo();
        ReturnFromNew = true;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(AddingDatabase);
        QVERIFY(!ReturnFromNew);
        QCOMPARE(dialog.form->windowTitle(), QString("Tillbook - New Database ID"));
        QCOMPARE(dialog.fraDB->title(), QString("New Database ID"));
        QVERIFY(!dialog.txtNewDB->isReadOnly());
        QCOMPARE(dialog.txtNewDB->focusPolicy(), Qt::StrongFocus);
        QVERIFY(!dialog.cmdOK->isEnabled());
        test::grabToPng(dialog.form, "frmNew-database");
    }

    void tenUsersAreTheLimitBeforeADatabaseIsAskedFor() {
        storeDatabases({"SAMINC"});
        storeUsers(1, {"U1", "U2", "U3", "U4", "U5", "U6", "U7", "U8", "U9", "U10"});
        rememberDatabase(1);
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        // Choosing no database leaves the ten users of the last one listed.
        login.cboDatabase->setListIndex(-1);
        QCOMPARE(login.cboUser->count(), 10);
        login.form->mnuAddNewUser_Click();
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt,
                 QString("The Maximun number of users has been reached.\nYou must first "
                         "delete an existing user before you can add another."));
        QCOMPARE(answers.asked[0].title, QString("User Limit Reached"));
        QCOMPARE(answers.asked[0].icon, 0);

        Users[9] = UserRecord();
        settings->set("Database1/Users/User10", "");
        login.form->Load_UserCombo();
        login.form->mnuAddNewUser_Click();
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(answers.asked[1].prompt, QString("Choose a database before entering a new user."));
        QCOMPARE(answers.asked[1].title, QString("Input Required"));
        QVERIFY(!test::shownWindow("frmNew"));

        login.cboDatabase->setListIndex(0);
        login.form->mnuAddNewUser_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        QVERIFY(!AddingDatabase);
        QCOMPARE(dialog.form->windowTitle(), QString("Tillbook - New User Name"));
        QCOMPARE(dialog.fraDB->title(), QString("Existing Database ID"));
        QCOMPARE(dialog.txtNewDB->text(), QString("SAMINC"));
        QVERIFY(dialog.txtNewDB->isReadOnly());
        QCOMPARE(dialog.txtNewDB->focusPolicy(), Qt::NoFocus);
        QCOMPARE(dialog.txtNewDB->palette().color(QPalette::Base),
                 dialog.txtNewDB->palette().color(QPalette::Button));
        test::grabToPng(dialog.form, "frmNew-user");
    }

    void deletingTheMiddleDatabaseClosesTheGapAndWaitsForExit() {
        storeDatabases({"ALPHA", "BRAVO", "CHARLIE"});
        storeUsers(2, {"U1"});
        rememberDatabase(2);
        test::AnswerMessageBoxes answers(vbYes);
        {
            test::LoginWindow login;
            QCOMPARE(login.cboUser->count(), 1);
            login.form->mnuDeleteDB_Click();
            QCOMPARE(answers.asked.size(), 1);
            QCOMPARE(
                answers.asked[0].prompt,
                QString("Delete Database ID: BRAVO\nAre you sure that you want to remove this database?"));
            QCOMPARE(answers.asked[0].title, QString("Confirm Delete"));
            QCOMPARE(answers.asked[0].buttons, vbYesNo);
            QCOMPARE(answers.asked[0].icon, vbExclamation);
            QCOMPARE(DatabaseIDs[0], QString("ALPHA"));
            QCOMPARE(DatabaseIDs[1], QString("CHARLIE"));
            QCOMPARE(DatabaseIDs[2], QString());
            for (const UserRecord& user : Users)
                QVERIFY(user.UserName.isEmpty() && user.Password.isEmpty());
            QCOMPARE(login.cboDatabase->count(), 2);
            QCOMPARE(login.cboDatabase->ListIndex(), -1);
            QCOMPARE(login.cboUser->count(), 0);
            // Nothing is stored yet: leaving without Exit brings the ID back at the next start.
            QCOMPARE(settings->raw("Database2/DB2"), QString("BRAVO"));
        }
        {
            test::LoginWindow again;
            QCOMPARE(again.cboDatabase->count(), 3);
            again.form->mnuDeleteDB_Click();
            again.form->cmdExit_Click();
        }
        QCOMPARE(settings->raw("Database1/DB1"), QString("ALPHA"));
        QCOMPARE(settings->raw("Database2/DB2"), QString("CHARLIE"));
        QCOMPARE(settings->raw("Database3/DB3"), QString(""));
        // The users stay under the slot they were stored in.
        QCOMPARE(settings->raw("Database2/Users/User1"), QString("U1"));
    }

    void deletingAUserStoresTheUsersWhateverTheAnswer() {
        storeDatabases({"SAMINC"});
        storeUsers(1, {"ANN", "BOB", "CAT"});
        rememberDatabase(1);
        test::AnswerMessageBoxes answers(vbNo);
        test::LoginWindow login;
        login.cboUser->setListIndex(1);
        // A change made to the store behind the window's back is overwritten from memory even on No.
        settings->set("Database1/Users/User2", "SOMEONE");
        login.form->mnuDeleteUser_Click();
        QCOMPARE(answers.asked[0].prompt,
                 QString("Delete User Name: BOB\nAre you sure that you want to remove this user?"));
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QCOMPARE(settings->raw("Database1/Users/User2"), QString("BOB"));
        QCOMPARE(login.cboUser->count(), 3);

        answers.answerWith(vbYes);
        login.cboUser->setListIndex(1);
        login.form->mnuDeleteUser_Click();
        QCOMPARE(login.cboUser->count(), 2);
        QCOMPARE(login.cboUser->itemText(1), QString("CAT"));
        QCOMPARE(login.cboUser->ListIndex(), -1);
        QCOMPARE(settings->raw("Database1/Users/User2"), QString("CAT"));
        QCOMPARE(settings->raw("Database1/Users/Password2"), QString("CAT"));
        QCOMPARE(settings->raw("Database1/Users/User3"), QString(""));
        QCOMPARE(settings->raw("Database1/Users/Password3"), QString(""));
    }

    void deletingWithNothingChosenAsksForAChoice() {
        storeDatabases({"SAMINC"});
        test::AnswerMessageBoxes answers(vbYes);
        test::LoginWindow login;
        login.form->mnuDeleteDB_Click();
        login.form->mnuDeleteUser_Click();
        QCOMPARE(answers.asked.size(), 2);
        QCOMPARE(answers.asked[0].title, QString("Input Required"));
        QCOMPARE(DatabaseIDs[0], QString("SAMINC"));
    }

    void namesStartWithALetterAndHoldOnlyCapitalsAndDigits_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        for (const char* field : {"txtNewDB", "txtNewUser"}) {
            QTest::addRow("%s 1ABC", field) << field << "1ABC"
                                            << "The first character cannot be a number.";
            QTest::addRow("%s ABC-1", field) << field << "ABC-1"
                                             << "All characters must be capital letters or numbers.";
            QTest::addRow("%s A1B2", field) << field << "A1B2"
                                            << "";
        }
    }
    void namesStartWithALetterAndHoldOnlyCapitalsAndDigits() {
        QFETCH(QString, field);
        QFETCH(QString, name);
        QFETCH(QString, message);
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        auto* edit = dialog.form->findChild<QLineEdit*>(field);
        dialog.type(edit, name.toLower());
        QCOMPARE(edit->text(), name); // typed letters are capitals
        dialog.txtNewPWD->setFocus(Qt::TabFocusReason);
        QTest::qWait(20);
        if (message.isEmpty()) {
            QVERIFY(answers.asked.isEmpty());
            QCOMPARE(QApplication::focusWidget(), dialog.txtNewPWD);
            return;
        }
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt, message);
        QCOMPARE(answers.asked[0].title, QString("Invalid Input"));
        QCOMPARE(answers.asked[0].icon, vbExclamation);
        QCOMPARE(QApplication::focusWidget(), edit);
        QCOMPARE(edit->selectedText(), name);
    }

    void onlyAKeyInTheVerifyFieldEnablesOK() {
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("SAMINC", "ADMIN", "ADMIN", "");
        QVERIFY(!dialog.cmdOK->isEnabled());
        dialog.txtVerPWD->setFocus(Qt::TabFocusReason);
        QTest::keyClick(dialog.txtVerPWD, Qt::Key_Backspace); // any key, even one that types nothing
        QVERIFY(dialog.cmdOK->isEnabled());
    }

    void addingADatabaseStoresItWithItsOneUser() {
        storeDatabases({"OTHER"});
        storeUsers(1, {"ANN", "BOB"});
        rememberDatabase(1);
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        QCOMPARE(login.cboUser->count(), 2);
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        // The verify field only enables OK: a different password there is no obstacle.
        dialog.fill("saminc", "admin", "admin", "nothing");
        QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
        QVERIFY(answers.asked.isEmpty());
        QTRY_VERIFY(dialog.form.isNull() || !dialog.form->isVisible());

        QCOMPARE(DatabaseIDs[1], QString("SAMINC"));
        QCOMPARE(CurrentUser, 1);
        QCOMPARE(Users[0].UserName, QString("ADMIN"));
        QCOMPARE(Users[0].Password, QString("ADMIN"));
        QVERIFY(Users[1].UserName.isEmpty());
        QVERIFY(DatabasesChanged);
        QCOMPARE(settings->raw("Database2/DB2"), QString("SAMINC"));
        QCOMPARE(settings->raw("Database2/Users/User1"), QString("ADMIN"));
        QCOMPARE(settings->raw("Database2/Users/Password1"), QString("ADMIN"));
        QCOMPARE(settings->raw("Database2/Users/User10"), QString(""));

        // Back on the sign-in window the lists are rebuilt: the new database chosen, its user listed.
        login.form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(login.form));
        QTRY_COMPARE(login.cboDatabase->count(), 2);
        QVERIFY(login.form->Initialised());
        QVERIFY(!ReturnFromNew);
        QCOMPARE(login.cboDatabase->currentText(), QString("SAMINC"));
        QCOMPARE(CurrentDatabase, 2);
        QCOMPARE(login.cboUser->count(), 1);
        QCOMPARE(login.cboUser->itemText(0), QString("ADMIN"));
    }

    void addingAUserProvesItOnTheCompany() {
        storeDatabases({"SAMINC"});
        storeUsers(1, {"ADMIN"});
        rememberDatabase(1);
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        login.cboDatabase->setListIndex(0);
        login.form->mnuAddNewUser_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("", "clerk", "pw2", "x");
        dialog.form->cmdOK_Click();
        QVERIFY(answers.asked.isEmpty());
        QCOMPARE(CurrentUser, 2);
        QVERIFY(UsersChanged);
        QVERIFY(ReturnFromNew);
        QCOMPARE(settings->raw("Database1/Users/User2"), QString("CLERK"));
        QCOMPARE(settings->raw("Database1/Users/Password2"), QString("PW2"));
    }

    void aFailedSignOnEmptiesTheFieldsAndKeepsTheDialogOpen_data() {
        QTest::addColumn<bool>("database");
        QTest::newRow("new database") << true;
        QTest::newRow("new user") << false;
    }
    void aFailedSignOnEmptiesTheFieldsAndKeepsTheDialogOpen() {
        QFETCH(bool, database);
        storeDatabases({"SAMINC"});
        storeUsers(1, {"ADMIN"});
        rememberDatabase(1);
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        if (database)
            login.form->mnuAddNewDB_Click();
        else
            login.form->mnuAddNewUser_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("SAMINC", "ADMIN", "WRONG", "WRONG");
        dialog.form->cmdOK_Click();
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked[0].prompt,
                 QString("The information you entered cannot create a valid "
                         "connection.\nPlease check your values carefully and try again."));
        QCOMPARE(answers.asked[0].title, QString("Invalid Connection"));
        QCOMPARE(answers.asked[0].icon, 0);
        QVERIFY(dialog.form->isVisible());
        QVERIFY(!ReturnFromNew);
        QVERIFY(dialog.txtNewUser->text().isEmpty());
        QVERIFY(dialog.txtNewPWD->text().isEmpty());
        QVERIFY(dialog.txtVerPWD->text().isEmpty());
        QCOMPARE(dialog.txtNewDB->text(), database ? QString() : QString("SAMINC"));
        QCOMPARE(QApplication::focusWidget(), database ? dialog.txtNewDB : dialog.txtNewUser);
        QCOMPARE(settings->raw("Database1/Users/User2"), QString());
        QCOMPARE(settings->raw("Database2/DB2"), QString());
    }

    void theSignOnTestNeedsAnExistingCompanyAndLeavesNoneBehind() {
        test::AnswerMessageBoxes answers;
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("NOSUCHCO", "ADMIN", "ADMIN", "A");
        QVERIFY(!dialog.form->Test_Connection());
        QVERIFY(QDir(company->dataFolder()).entryList({"NOSUCHCO*"}).isEmpty());
        dialog.txtNewDB->setText("SAMINC");
        QVERIFY(dialog.form->Test_Connection());
        dialog.txtNewPWD->setText("admin"); // passwords are case-sensitive
        QVERIFY(!dialog.form->Test_Connection());
    }

    void cancelStoresNothing() {
        test::LoginWindow login;
        login.form->mnuAddNewDB_Click();
        NewDialog dialog;
        QVERIFY(dialog.shown());
        dialog.fill("SAMINC", "ADMIN", "ADMIN", "ADMIN");
        QTest::keyClick(dialog.form, Qt::Key_Escape);
        QTRY_VERIFY(dialog.form.isNull());
        QVERIFY(ReturnFromNew);
        QCOMPARE(DatabaseIDs[0], QString());
        QVERIFY(!settings->contains("Database1/DB1"));
    }
};

QTEST_MAIN(AdministrationTest)
#include "AdministrationTest.moc"
