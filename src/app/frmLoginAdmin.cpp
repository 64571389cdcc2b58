// The sign-in window's Add and Delete commands: the configured database IDs and the users of the selected
// database. Additions go through frmNew; deletions are asked for first.
#include "app/frmLogin.h"
#include "app/frmNew.h"
#include "entry/ReceiptDesk.h"
#include "settings/Registry.h"
#include "ui/Platform.h"
#include "ui_frmLogin.h"

namespace tillbook {

namespace {

// Moves the filled slots up to the front, in their order, so that no gap stays between them.
template <typename Array, typename IsEmpty> void closeGaps(Array& entries, IsEmpty isEmpty) {
    const Array before = entries;
    entries.fill(typename Array::value_type());
    size_t next = 0;
    for (const auto& entry : before) {
        if (!isEmpty(entry))
            entries[next++] = entry;
    }
}

} // namespace

frmNew* frmLogin::newDialog() {
    // One dialog at a time: choosing Add again while it is open sets up the same dialog anew.
    if (!m_new) {
        m_new = new frmNew();
        m_new->setAttribute(Qt::WA_DeleteOnClose);
    }
    return m_new;
}

void frmLogin::mnuAddNewDB_Click() {
    if (ui->cboDatabase->count() >= DatabaseSlots) {
        MsgBox(QStringLiteral("The Maximun number of databases has been reached.") + u'\n' +
                   QStringLiteral("You must first delete an existing database before you can add another."),
               vbOKOnly, QStringLiteral("Database Limit Reached"));
        return;
    }
    Desk().ReturnFromNew = false;
    Desk().DatabasesChanged = false;
    Desk().UsersChanged = false;
    frmNew* dialog = newDialog();
    dialog->Set_NewDatabase();
    dialog->show();
    Desk().AddingDatabase = true;
}

void frmLogin::mnuAddNewUser_Click() {
    if (ui->cboUser->count() >= UserSlots) {
        MsgBox(QStringLiteral("The Maximun number of users has been reached.") + u'\n' +
                   QStringLiteral("You must first delete an existing user before you can add another."),
               vbOKOnly, QStringLiteral("User Limit Reached"));
        return;
    }
    if (ui->cboDatabase->ListIndex() < 0) {
        MsgBox(QStringLiteral("Choose a database before entering a new user."), vbOKOnly,
               QStringLiteral("Input Required"));
        return;
    }
    Desk().ReturnFromNew = false;
    Desk().DatabasesChanged = false;
    Desk().UsersChanged = false;
    frmNew* dialog = newDialog();
    dialog->Set_NewUser(ui->cboDatabase->currentText());
    dialog->show();
    Desk().AddingDatabase = false;
}

void frmLogin::mnuDeleteDB_Click() {
    const int index = ui->cboDatabase->ListIndex();
    if (index < 0) {
        MsgBox(QStringLiteral("Choose the database ID to delete."), vbOKOnly,
               QStringLiteral("Input Required"));
        return;
    }
    const int answer =
        MsgBox(QStringLiteral("Delete Database ID: ") + ui->cboDatabase->currentText() + u'\n' +
                   QStringLiteral("Are you sure that you want to remove this database?"),
               vbYesNo + vbExclamation, QStringLiteral("Confirm Delete"));
    if (answer != vbYes)
        return;
    // The list positions are the slots: both are kept without gaps. Nothing is stored until Exit.
    Desk().DatabaseIDs[static_cast<size_t>(index)].clear();
    closeGaps(Desk().DatabaseIDs, [](const QString& id) { return id.isEmpty(); });
    Desk().Users.fill(UserRecord());
    fillDatabaseList();
    ui->cboDatabase->setListIndex(-1);
    ui->cboUser->clear();
    ui->cboUser->setListIndex(-1);
}

void frmLogin::mnuDeleteUser_Click() {
    const int index = ui->cboUser->ListIndex();
    if (index < 0) {
        MsgBox(QStringLiteral("Choose the user name to delete."), vbOKOnly, QStringLiteral("Input Required"));
        return;
    }
    const int answer = MsgBox(QStringLiteral("Delete User Name: ") + ui->cboUser->currentText() + u'\n' +
                                  QStringLiteral("Are you sure that you want to remove this user?"),
                              vbYesNo + vbExclamation, QStringLiteral("Confirm Delete"));
    if (answer == vbYes) {
        Desk().Users[static_cast<size_t>(index)] = UserRecord();
        closeGaps(Desk().Users, [](const UserRecord& user) { return user.UserName.isEmpty(); });
        fillUserList();
        ui->cboUser->setListIndex(-1);
    }
    // The stored users are written again whatever the answer.
    Save_Users(Desk());
}

} // namespace tillbook
