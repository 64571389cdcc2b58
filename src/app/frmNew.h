#pragma once

#include "ledger/Session.h"

#include <QDialog>
#include <memory>

class QLineEdit;

namespace Ui {
class frmNew;
}

namespace tillbook {

// Adds a database ID with its first user, or a further user of the selected database. The entries are
// proved by signing on to the company with them; only a successful sign-on is stored. The sign-in window
// rebuilds its lists when the clerk comes back to it (ReturnFromNew).
class frmNew : public QDialog {
    Q_OBJECT

public:
    explicit frmNew(QWidget* parent = nullptr);
    ~frmNew() override;

    // The two modes as the sign-in window sets them before showing the dialog.
    void Set_NewDatabase();
    void Set_NewUser(const QString& databaseId);

    // The name rules of a database ID and a user name: a capital letter first, then capitals and digits.
    // Tells the clerk what is wrong and returns false for a name that breaks them.
    static bool Validate_Name(const QString& name);

public slots:
    void cmdOK_Click();
    void cmdClose_Click();
    bool Test_Connection();
    void Add_Database();
    void Add_User();

    // Escape and the window's close button cancel, as the Cancel button does.
    void reject() override;

private:
    void Form_Load();
    void nameField_LostFocus(QLineEdit* field);

    std::unique_ptr<Ui::frmNew> ui;
    std::unique_ptr<Session> m_testSession; // the sign-on test's session, kept while the dialog lives
};

} // namespace tillbook
