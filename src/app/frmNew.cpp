#include "app/frmNew.h"

#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "settings/Registry.h"
#include "ui/Events.h"
#include "ui/Forms.h"
#include "ui/Platform.h"
#include "ui_frmNew.h"

#include <QTimer>
#include <exception>

namespace tillbook {

frmNew::frmNew(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmNew>()) {
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmNew"));

    connect(ui->cmdOK, &QPushButton::clicked, this, &frmNew::cmdOK_Click);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmNew::cmdClose_Click);

    for (QLineEdit* field : {ui->txtNewDB, ui->txtNewUser, ui->txtNewPWD})
        onKeyPress(field, [](int& keyAscii) { UpperCaseKey(keyAscii); });
    // Only a key in the verify field enables OK: the two passwords are not compared.
    onKeyPress(ui->txtVerPWD, [this](int& keyAscii) {
        UpperCaseKey(keyAscii);
        ui->cmdOK->setEnabled(true);
    });
    for (QLineEdit* field : {ui->txtNewDB, ui->txtNewUser})
        onLostFocus(field, [this, field] { nameField_LostFocus(field); });
    // Taking part in activation lets the sign-in window notice the clerk coming back from here.
    onActivate(this, [] {});

    Form_Load();
}

frmNew::~frmNew() = default;

void frmNew::Form_Load() {
    setFixedSize(size());
    CentreForm(this);
    ui->cmdOK->setEnabled(false);
}

void frmNew::Set_NewDatabase() {
    ui->fraDB->setTitle(QStringLiteral("New Database ID"));
    ui->txtNewDB->setReadOnly(false);
    ui->txtNewDB->setFocusPolicy(Qt::StrongFocus);
    ui->txtNewDB->setPalette(QPalette());
    setWindowTitle(QStringLiteral("Tillbook - New Database ID"));
}

void frmNew::Set_NewUser(const QString& databaseId) {
    ui->fraDB->setTitle(QStringLiteral("Existing Database ID"));
    ui->txtNewDB->setReadOnly(true);
    ui->txtNewDB->setFocusPolicy(Qt::NoFocus);
    QPalette buttonFace = ui->txtNewDB->palette();
    buttonFace.setColor(QPalette::Base, buttonFace.color(QPalette::Button));
    ui->txtNewDB->setPalette(buttonFace);
    ui->txtNewDB->setText(databaseId);
    setWindowTitle(QStringLiteral("Tillbook - New User Name"));
}

bool frmNew::Validate_Name(const QString& name) {
    auto isDigit = [](QChar c) { return c.unicode() >= '0' && c.unicode() <= '9'; };
    auto isCapital = [](QChar c) { return c.unicode() >= 'A' && c.unicode() <= 'Z'; };
    if (!name.isEmpty() && isDigit(name.front())) {
        MsgBox(QStringLiteral("The first character cannot be a number."), vbOKOnly + vbExclamation,
               QStringLiteral("Invalid Input"));
        return false;
    }
    for (const QChar c : name) {
        if (!isCapital(c) && !isDigit(c)) {
            MsgBox(QStringLiteral("All characters must be capital letters or numbers."),
                   vbOKOnly + vbExclamation, QStringLiteral("Invalid Input"));
            return false;
        }
    }
    return true;
}

void frmNew::nameField_LostFocus(QLineEdit* field) {
    // Checked once the focus has settled on the next control, so that taking it back is not undone by the
    // move still under way. Only a field left with text in it is checked; OK does not check again.
    QTimer::singleShot(0, field, [field] {
        if (field->text().isEmpty() || Validate_Name(field->text()))
            return;
        field->setFocus(Qt::OtherFocusReason);
        field->selectAll();
    });
}

bool frmNew::Test_Connection() {
    try {
        m_testSession = std::make_unique<Session>();
        m_testSession->open(ui->txtNewUser->text(), ui->txtNewPWD->text(), ui->txtNewDB->text(), Today(), 0);
        // The sign-on has proved the entries; the session is not needed beyond that.
        m_testSession->close();
        return true;
    } catch (const std::exception&) {
        m_testSession.reset();
        return false;
    }
}

void frmNew::cmdOK_Click() {
    setCursor(Qt::WaitCursor);
    if (Test_Connection()) {
        if (Desk().AddingDatabase)
            Add_Database();
        else
            Add_User();
        Desk().ReturnFromNew = true;
        unsetCursor();
        accept();
        return;
    }
    MsgBox(QStringLiteral("The information you entered cannot create a valid connection.") + u'\n' +
               QStringLiteral("Please check your values carefully and try again."),
           vbOKOnly, QStringLiteral("Invalid Connection"));
    ui->txtNewUser->clear();
    ui->txtNewPWD->clear();
    ui->txtVerPWD->clear();
    if (Desk().AddingDatabase) {
        ui->txtNewDB->clear();
        ui->txtNewDB->setFocus(Qt::OtherFocusReason);
    } else {
        ui->txtNewUser->setFocus(Qt::OtherFocusReason);
    }
    unsetCursor();
}

void frmNew::Add_Database() {
    int slotNumber = 0;
    for (int i = 0; i < DatabaseSlots; ++i) {
        if (Desk().DatabaseIDs[static_cast<size_t>(i)].isEmpty()) {
            Desk().DatabaseIDs[static_cast<size_t>(i)] = ui->txtNewDB->text();
            slotNumber = i + 1;
            break;
        }
    }
    // A new database starts with exactly the one user who proved it.
    Desk().Users.fill(UserRecord());
    Desk().Users[0] = {ui->txtNewUser->text(), ui->txtNewPWD->text()};
    Desk().CurrentUser = 1;
    Desk().CurrentDatabase = static_cast<std::int16_t>(slotNumber);
    Save_DatabaseIDs(Desk());
    Save_Users(Desk());
    Desk().DatabasesChanged = true;
}

void frmNew::Add_User() {
    for (int i = 0; i < UserSlots; ++i) {
        UserRecord& slot = Desk().Users[static_cast<size_t>(i)];
        if (slot.UserName.isEmpty()) {
            slot = {ui->txtNewUser->text(), ui->txtNewPWD->text()};
            Desk().CurrentUser = static_cast<std::int16_t>(i + 1);
            Save_Users(Desk());
            Desk().UsersChanged = true;
            return;
        }
    }
}

void frmNew::cmdClose_Click() {
    reject();
}

void frmNew::reject() {
    Desk().ReturnFromNew = true;
    QDialog::reject();
}

} // namespace tillbook
