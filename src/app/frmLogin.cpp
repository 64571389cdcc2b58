#include "app/frmLogin.h"

#include "app/frmNew.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "settings/Registry.h"
#include "ui/Events.h"
#include "ui/Forms.h"
#include "ui/Help.h"
#include "ui/Platform.h"
#include "ui/frmAbout.h"
#include "ui_frmLogin.h"

#include <QCoreApplication>

namespace tillbook {

frmLogin::frmLogin(QWidget* parent) : QMainWindow(parent), ui(std::make_unique<Ui::frmLogin>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmLogin"));

    connect(ui->cboDatabase, &ComboBox::Click, this, &frmLogin::cboDatabase_Click);
    connect(ui->cboUser, &ComboBox::Click, this, &frmLogin::cboUser_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmLogin::cmdOK_Click);
    connect(ui->cmdExit, &QPushButton::clicked, this, &frmLogin::cmdExit_Click);
    connect(ui->mnuFileOK, &QAction::triggered, this, &frmLogin::mnuFileOK_Click);
    connect(ui->mnuFileExit, &QAction::triggered, this, &frmLogin::mnuFileExit_Click);
    connect(ui->mnuHelpLogin, &QAction::triggered, this, &frmLogin::mnuHelpLogin_Click);
    connect(ui->mnuHelpAbout, &QAction::triggered, this, &frmLogin::mnuHelpAbout_Click);
    connect(ui->mnuAddNewDB, &QAction::triggered, this, &frmLogin::mnuAddNewDB_Click);
    connect(ui->mnuAddNewUser, &QAction::triggered, this, &frmLogin::mnuAddNewUser_Click);
    connect(ui->mnuDeleteDB, &QAction::triggered, this, &frmLogin::mnuDeleteDB_Click);
    connect(ui->mnuDeleteUser, &QAction::triggered, this, &frmLogin::mnuDeleteUser_Click);
    // "Save Password" ticks and unticks itself when chosen; nothing is written until sign-in or exit.

    onActivate(this, [this] { Form_Activate(); });
    onGotFocus(ui->txtPassword, [this] { txtPassword_GotFocus(); });
    onKeyPress(ui->txtPassword, [this](int& keyAscii) { txtPassword_KeyPress(keyAscii); });
    onKeyUp(ui->txtPassword, [this](int keyCode, int shift) { txtPassword_KeyUp(keyCode, shift); });
    onLostFocus(ui->txtPassword, [this] { txtPassword_LostFocus(); });
    // Enter in the password field signs in as a click on OK does, the field being left first.
    connect(ui->txtPassword, &QLineEdit::returnPressed, this, [this] {
        if (!ui->cmdOK->isEnabled())
            return;
        ui->cmdOK->setFocus(Qt::OtherFocusReason);
        txtPassword_LostFocus();
        ui->cmdOK->click();
    });

    Form_Load();
}

frmLogin::~frmLogin() {
    // A dialog still open goes with the sign-in window.
    delete m_new;
}

void frmLogin::Form_Load() {
    FixFormSize(this, 7920, 3330);
    CentreForm(this);
    ui->lblVersion->setText(QStringLiteral("Version  %1.%2.%3")
                                .arg(TILLBOOK_VERSION_MAJOR)
                                .arg(TILLBOOK_VERSION_MINOR)
                                .arg(TILLBOOK_VERSION_PATCH));
    ui->cmdOK->setEnabled(false);
    Desk().DatabaseIDs.fill(QString());
    Desk().Users.fill(UserRecord());
}

void frmLogin::Form_Activate() {
    if (Desk().ReturnFromNew) {
        m_initialised = true;
        Desk().ReturnFromNew = false;
    }
    if (!m_initialised) {
        const ConnectInfo info = Load_ConnectInfo(Desk());
        ui->mnuFilePassword->setChecked(info.savePassword);
        ui->txtPassword->setText(info.savedPassword);
        Load_DatabasesAndUsers();
        m_listsRead = true;
        ui->txtPassword->setFocus(Qt::OtherFocusReason);
    } else {
        // The lists are always rebuilt from memory; selecting the database again also resets the user.
        Load_DatabaseCombo();
        Load_UserCombo();
    }
}

void frmLogin::fillDatabaseList() {
    ui->cboDatabase->clear();
    for (const QString& id : Desk().DatabaseIDs) {
        if (!id.isEmpty())
            ui->cboDatabase->addItem(id);
    }
}

void frmLogin::fillUserList() {
    ui->cboUser->clear();
    for (const UserRecord& user : Desk().Users) {
        if (!user.UserName.isEmpty())
            ui->cboUser->addItem(user.UserName);
    }
}

void frmLogin::Load_DatabaseCombo() {
    fillDatabaseList();
    ui->cboDatabase->setListIndex(Desk().CurrentDatabase - 1);
}

void frmLogin::Load_UserCombo() {
    fillUserList();
    ui->cboUser->setListIndex(Desk().CurrentUser - 1);
}

void frmLogin::Load_DatabasesAndUsers() {
    Load_DatabaseIDs(Desk());
    Load_DatabaseCombo();
    if (Desk().CurrentDatabase != 0)
        Reload_Users();
}

void frmLogin::Reload_Users() {
    Load_Users(Desk());
    Load_UserCombo();
    m_initialised = true;
}

void frmLogin::Enable_cmdOK() {
    ui->cmdOK->setEnabled(ui->cboDatabase->ListIndex() > -1 && ui->cboUser->ListIndex() > -1 &&
                          !ui->txtPassword->text().isEmpty());
}

bool frmLogin::Check_Password() const {
    if (Desk().CurrentUser < 1 || Desk().CurrentUser > UserSlots)
        return false;
    return Desk().Users[Desk().CurrentUser - 1].Password == m_typedPassword;
}

void frmLogin::cboDatabase_Click() {
    if (m_initialised) {
        Desk().CurrentDatabase = static_cast<std::int16_t>(ui->cboDatabase->ListIndex() + 1);
        Desk().CurrentUser = 0;
        Reload_Users();
        ui->cboUser->setListIndex(-1);
    }
    Enable_cmdOK();
}

void frmLogin::cboUser_Click() {
    if (m_initialised)
        Desk().CurrentUser = static_cast<std::int16_t>(ui->cboUser->ListIndex() + 1);
    Enable_cmdOK();
}

void frmLogin::txtPassword_GotFocus() {
    ui->txtPassword->setSelection(0, static_cast<int>(ui->txtPassword->text().size()));
}

void frmLogin::txtPassword_KeyPress(int& keyAscii) {
    UpperCaseKey(keyAscii);
}

void frmLogin::txtPassword_KeyUp(int /*keyCode*/, int /*shift*/) {
    Enable_cmdOK();
}

void frmLogin::txtPassword_LostFocus() {
    m_typedPassword = ui->txtPassword->text();
}

void frmLogin::cmdOK_Click() {
    if (Check_Password()) {
        setCursor(Qt::WaitCursor);
        Desk().SignInDatabaseID = ui->cboDatabase->currentText();
        Desk().SignInUser = ui->cboUser->currentText();
        Save_ConnectInfo(ui->cboDatabase->ListIndex(), ui->cboUser->ListIndex(),
                         ui->mnuFilePassword->isChecked(), ui->txtPassword->text());
        auto* receipts = new frmCR();
        receipts->setAttribute(Qt::WA_DeleteOnClose);
        if (!receipts->Form_Load(ui->txtPassword->text())) {
            // The company could not be opened (the clerk has been told why): stay here to choose again.
            delete receipts;
            unsetCursor();
            return;
        }
        receipts->show();
        setAttribute(Qt::WA_DeleteOnClose);
        close();
        return;
    }
    MsgBox(QStringLiteral("Enter your password again."), vbOKOnly + vbExclamation,
           QStringLiteral("Invalid Password"));
    ui->txtPassword->setFocus(Qt::OtherFocusReason);
    ui->txtPassword->selectAll();
    ui->cmdOK->setEnabled(false);
}

void frmLogin::mnuFileOK_Click() {
    cmdOK_Click();
}

void frmLogin::mnuFilePassword_Click() {
    ui->mnuFilePassword->toggle();
}

void frmLogin::cmdExit_Click() {
    // A window closed before it was ever active has read nothing: saving its empty lists would erase the
    // clerk's databases and users.
    if (m_listsRead) {
        Save_ConnectInfo(ui->cboDatabase->ListIndex(), ui->cboUser->ListIndex(),
                         ui->mnuFilePassword->isChecked(), ui->txtPassword->text());
        Save_DatabaseIDs(Desk());
        Save_Users(Desk());
    }
    close();
    QCoreApplication::quit();
}

void frmLogin::mnuFileExit_Click() {
    cmdExit_Click();
}

void frmLogin::mnuHelpLogin_Click() {
    ShowHelp();
}

void frmLogin::mnuHelpAbout_Click() {
    ShowAbout(this);
}

} // namespace tillbook
