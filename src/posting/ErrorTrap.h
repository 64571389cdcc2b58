#pragma once

// The one error trap of the posting procedures. A ledger operation that fails or warns leaves its errors on
// the session's list; the trap shows each of them to the clerk and decides whether the posting goes on.

#include "ledger/ErrorList.h"

namespace tillbook {

// Shows every error of `errors` in a message box (or `raised` alone when the list is empty), clears PostOK
// for an error of priority 0 or above 2, and empties the list. Returns whether the posting goes on with
// its next statement: only while PostOK is still true.
bool Trap_PostingError(ErrorList& errors, const LedgerError& raised);

} // namespace tillbook
