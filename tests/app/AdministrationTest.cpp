// The sign-in window's Add and Delete commands and the new database/user dialog: the limits, the questions,
// what is kept in memory and what is stored, the name rules and the test sign-on against a real company.
#include "LoginWindow.h"
#include "app/frmNew.h"
#include "entry/ReceiptDesk.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/TempSettings.h"

#include <QDir>
#include <QTest>

using namespace tillbook;

namespace {

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

class AdministrationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<test::TempSettings> settings;
    std::unique_ptr<test::Company> company;

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
    QString stored(const QString& key) const { return settings->raw(key); }

private slots:
    void initTestCase() { company = std::make_unique<test::Company>(test::CompanyBuilder().sample(5, 20)); }
    void cleanupTestCase() { company.reset(); }
    void init() {
        settings = std::make_unique<test::TempSettings>();
        ResetDesk();
    }
    void cleanup() { settings.reset(); }

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
            QCOMPARE(stored("Database2/DB2"), QString("BRAVO")); // not stored before Exit
        }
        test::LoginWindow again; // left without Exit: the ID is back
        QCOMPARE(again.cboDatabase->count(), 3);
        again.form->mnuDeleteDB_Click();
        again.form->cmdExit_Click();
        QCOMPARE(stored("Database2/DB2") + stored("Database3/DB3"), QString("CHARLIE"));
        QCOMPARE(stored("Database2/Users/User1"), QString("U1")); // users stay under their slot
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
        QCOMPARE(stored("Database1/Users/User2"), QString("BOB"));
        answers.answerWith(vbYes);
        login.cboUser->setListIndex(1);
        login.form->mnuDeleteUser_Click();
        QCOMPARE(QPoint(login.cboUser->count(), login.cboUser->ListIndex()), QPoint(2, -1));
        QCOMPARE(stored("Database1/Users/User2") + stored("Database1/Users/Password2"), QString("CATCAT"));
        QCOMPARE(stored("Database1/Users/User3") + stored("Database1/Users/Password3"), QString(""));
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
        company->addUser("CLERK", "PW2");
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
        QCOMPARE(stored(slot.arg("DB", database ? "2" : "1")), QString("SAMINC"));
        QCOMPARE(stored(slot.arg("Users/User", row)) + stored(slot.arg("Users/Password", row)),
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
        QVERIFY(Desk().ReturnFromNew);
        QVERIFY(!settings->contains("Database1/DB1"));
    }
};

QTEST_MAIN(AdministrationTest)
#include "AdministrationTest.moc"
