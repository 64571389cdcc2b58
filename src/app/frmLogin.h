#pragma once

#include <QMainWindow>
#include <QPointer>
#include <memory>

namespace Ui {
class frmLogin;
}

namespace tillbook {

class frmNew;

// The sign-in window: a configured database ID, one of its users and the password, checked against the
// password stored with the user. A successful sign-in opens the receipt window.
class frmLogin : public QMainWindow {
    Q_OBJECT

public:
    explicit frmLogin(QWidget* parent = nullptr);
    ~frmLogin() override;

    bool Initialised() const { return m_initialised; }
    QString TypedPassword() const { return m_typedPassword; }

public slots:
    void Form_Activate();
    void cboDatabase_Click();
    void cboUser_Click();
    void txtPassword_GotFocus();
    void txtPassword_KeyPress(int& keyAscii);
    void txtPassword_KeyUp(int keyCode, int shift);
    void txtPassword_LostFocus();
    void cmdOK_Click();
    void mnuFileOK_Click();
    void mnuFilePassword_Click();
    void cmdExit_Click();
    void mnuFileExit_Click();
    void mnuHelpLogin_Click();
    void mnuHelpAbout_Click();
    void mnuAddNewDB_Click();
    void mnuAddNewUser_Click();
    void mnuDeleteDB_Click();
    void mnuDeleteUser_Click();

    void Load_DatabaseCombo();
    void Load_UserCombo();
    void Load_DatabasesAndUsers();
    void Reload_Users();
    void Enable_cmdOK();
    bool Check_Password() const;

private:
    void Form_Load();
    frmNew* newDialog();
    // The lists from the arrays in memory, nothing selected.
    void fillDatabaseList();
    void fillUserList();

    std::unique_ptr<Ui::frmLogin> ui;
    QPointer<frmNew> m_new; // the open new database/user dialog, one at a time
    bool m_initialised = false;
    // The saved lists have been read: until then the window holds nothing that may be saved over them.
    bool m_listsRead = false;
    QString m_typedPassword;
};

} // namespace tillbook
