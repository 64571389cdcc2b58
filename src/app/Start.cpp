#include "app/Start.h"

#include "app/frmLogin.h"

namespace tillbook {

void Start_Main() {
    auto* login = new frmLogin();
    login->setAttribute(Qt::WA_DeleteOnClose);
    login->show();
}

} // namespace tillbook
