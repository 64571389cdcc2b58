#pragma once

// The one error trap of the posting procedures. A ledger operation that fails or warns leaves its errors on
// the session's list; the trap hands each of them on in the posting's outcome and decides whether the posting
// goes on.

#include "ledger/ErrorList.h"
#include "posting/Posting.h"

namespace tillbook {

// Adds every error of `errors` to the outcome's problems (or `raised` alone when the list is empty), clears
// PostOK for an error of priority 0 or above 2, and empties the list. Returns whether the posting goes on
// with its next statement: only while PostOK is still true.
bool Trap_PostingError(ErrorList& errors, const LedgerError& raised, PostingOutcome& outcome);
// The same for a statement that was done with warnings: the list holds them.
bool Trap_PostingError(ErrorList& errors, PostingOutcome& outcome);

} // namespace tillbook
