#include "app/Start.h"

#include "app/frmLogin.h"
#include "entry/ReceiptDesk.h"
#include "ui/ProgramIcon.h"

#include <QApplication>

namespace tillbook {

void Start_Main() {
    // Every window of the program carries its icon.
    QApplication::setWindowIcon(ProgramIcon());
    auto* login = new frmLogin();
    login->setAttribute(Qt::WA_DeleteOnClose);
    login->show();
}

void End_Main() {
    Close_Ledger(Desk());
}

} // namespace tillbook
