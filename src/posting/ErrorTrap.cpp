#include "posting/ErrorTrap.h"

#include <QList>

namespace tillbook {

namespace {

bool stopsPosting(ErrorPriority priority) {
    return priority == ErrorPriority::Error || int(priority) > int(ErrorPriority::Message);
}

} // namespace

bool Trap_PostingError(ErrorList& errors, const LedgerError& raised, PostingOutcome& outcome) {
    QList<ErrorEntry> shown;
    for (int i = 0; i < errors.count(); ++i)
        shown.append(errors.at(i));
    // A failure that is not on the list (no ledger operation raised it) is shown all the same.
    if (shown.isEmpty())
        shown.append({raised.description(), raised.priority()});
    for (const ErrorEntry& error : shown) {
        outcome.problems.push_back({error, false});
        if (stopsPosting(error.priority))
            outcome.PostOK = false;
    }
    errors.clear();
    return outcome.PostOK;
}

} // namespace tillbook
