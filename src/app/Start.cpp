#include "app/Start.h"

#include "app/frmLogin.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "ui/Platform.h"
#include "ui/ProgramIcon.h"

#include <QApplication>

namespace tillbook {

void Start_Main() {
    // Every window of the program carries its icon.
    QApplication::setWindowIcon(ProgramIcon());
    // Said before anyone keys a date that would be read by a form nobody chose.
    for (const QString& problem : EnvironmentProblems())
        MsgBox(problem, vbExclamation, QStringLiteral("Tillbook"));
    auto* login = new frmLogin();
    login->setAttribute(Qt::WA_DeleteOnClose);
    login->show();
}

void End_Main() {
    Close_Ledger(Desk());
}

} // namespace tillbook
