#include "entry/ReceiptDesk.h"

namespace tillbook {

ReceiptDesk& Desk() {
    static ReceiptDesk desk;
    return desk;
}

void ResetDesk() {
    // The views go before the session they were opened from.
    Close_Ledger(Desk());
    Desk() = ReceiptDesk();
}

} // namespace tillbook
