#include "ledger/ErrorList.h"

namespace tillbook {

void ErrorList::fail(const QString& description, ErrorPriority priority) {
    append(description, priority);
    throw LedgerError(description, priority);
}

} // namespace tillbook
