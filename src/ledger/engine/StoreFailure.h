#pragma once

// A failure of the store itself (cannot open, a statement failed): a LedgerError of priority Severe, put on
// the session's list by the operation it ends.

#include "ledger/LedgerError.h"

namespace tillbook::engine {

inline LedgerError storeFailure(const QString& message) {
    return LedgerError(message, ErrorPriority::Severe);
}

} // namespace tillbook::engine
