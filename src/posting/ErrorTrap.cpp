#include "posting/ErrorTrap.h"

namespace tillbook {

namespace {

bool stopsPosting(ErrorPriority priority) {
    return priority == ErrorPriority::Error || int(priority) > int(ErrorPriority::Message);
}

} // namespace

bool Trap_PostingError(ErrorList& errors, const LedgerError& raised, PostingOutcome& outcome) {
    // A failure that is not on the list (no ledger operation raised it) is shown all the same.
    if (errors.count() == 0)
        errors.append(raised.description(), raised.priority());
    return Trap_PostingError(errors, outcome);
}

bool Trap_PostingError(ErrorList& errors, PostingOutcome& outcome) {
    for (int i = 0; i < errors.count(); ++i) {
        const ErrorEntry& error = errors.at(i);
        outcome.problems.push_back({error, false});
        if (stopsPosting(error.priority))
            outcome.PostOK = false;
    }
    errors.clear();
    return outcome.PostOK;
}

} // namespace tillbook
