#include "app/Start.h"

#include "app/frmLogin.h"
#include "fetching/ReceiptViews.h"

namespace tillbook {

void Start_Main() {
    auto* login = new frmLogin();
    login->setAttribute(Qt::WA_DeleteOnClose);
    login->show();
}

void End_Main() {
    Close_Ledger();
}

} // namespace tillbook
