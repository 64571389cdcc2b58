#pragma once

// The sign-in window shown and active, with its controls found by name, for the tests of tests/app.

#include "app/frmLogin.h"
#include "ui/ComboBox.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace tillbook::test {

struct LoginWindow {
    QPointer<frmLogin> form = new frmLogin();
    ComboBox* cboDatabase = form->findChild<ComboBox*>("cboDatabase");
    ComboBox* cboUser = form->findChild<ComboBox*>("cboUser");
    QLineEdit* txtPassword = form->findChild<QLineEdit*>("txtPassword");
    QPushButton* cmdOK = form->findChild<QPushButton*>("cmdOK");
    QPushButton* cmdExit = form->findChild<QPushButton*>("cmdExit");
    QAction* mnuFileOK = form->findChild<QAction*>("mnuFileOK");
    QAction* mnuFilePassword = form->findChild<QAction*>("mnuFilePassword");

    LoginWindow() {
        form->setAttribute(Qt::WA_DeleteOnClose);
        form->show();
        if (!QTest::qWaitForWindowActive(form))
            qWarning("the sign-in window did not become active");
    }
    ~LoginWindow() { delete form; }
    LoginWindow(const LoginWindow&) = delete;
    LoginWindow& operator=(const LoginWindow&) = delete;

    // The clerk moves on to another control, so the password field loses the focus.
    void leavePassword() { cmdExit->setFocus(Qt::TabFocusReason); }
};

// The visible top-level window of that name, or nullptr.
inline QWidget* shownWindow(const QString& name) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() == name && w->isVisible())
            return w;
    }
    return nullptr;
}

} // namespace tillbook::test
