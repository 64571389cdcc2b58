#include "ledger/ErrorList.h"

namespace tillbook {

void ErrorList::fail(const QString& description, ErrorPriority priority) {
    append(description, priority);
    throw LedgerError(description, priority);
}

void ErrorList::reportWarnings(int since) const {
    for (int i = qMax(0, since); i < count(); ++i) {
        const ErrorEntry& e = m_entries.at(i);
        if (e.priority == ErrorPriority::Warning || e.priority == ErrorPriority::Message)
            throw LedgerError(e.description, e.priority);
    }
}

} // namespace tillbook
