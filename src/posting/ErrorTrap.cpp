#include "posting/ErrorTrap.h"

#include "settings/Globals.h"
#include "ui/Platform.h"

#include <QList>

namespace tillbook {

namespace {

bool stopsPosting(ErrorPriority priority) {
    return priority == ErrorPriority::Error || int(priority) > int(ErrorPriority::Message);
}

} // namespace

bool Trap_PostingError(ErrorList& errors, const LedgerError& raised) {
    QList<ErrorEntry> shown;
    for (int i = 0; i < errors.count(); ++i)
        shown.append(errors.at(i));
    // A failure that is not on the list (no ledger operation raised it) is shown all the same.
    if (shown.isEmpty())
        shown.append({raised.description(), raised.priority()});
    for (const ErrorEntry& error : shown) {
        MsgBox(error.description);
        if (stopsPosting(error.priority))
            PostOK = false;
    }
    errors.clear();
    return PostOK;
}

} // namespace tillbook
