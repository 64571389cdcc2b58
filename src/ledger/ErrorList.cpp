#include "ledger/ErrorList.h"

namespace tillbook {

void ErrorList::fail(const QString& description, ErrorPriority priority) {
    append(description, priority);
    LedgerError error(description, priority);
    error.markListed();
    throw error;
}

Warnings ErrorList::warningsSince(int since) const {
    Warnings warnings;
    for (int i = qMax(0, since); i < count(); ++i) {
        const ErrorEntry& e = m_entries.at(i);
        if (e.priority == ErrorPriority::Warning || e.priority == ErrorPriority::Message)
            warnings.entries.append(e);
    }
    return warnings;
}

} // namespace tillbook
