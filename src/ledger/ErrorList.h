#pragma once

// The session's list of errors, warnings and messages, in the order they arose. Callers read it after
// an operation and clear it; the engine only appends.

#include "ledger/LedgerError.h"

#include <QList>
#include <QString>

namespace tillbook {

struct ErrorEntry {
    QString description;
    ErrorPriority priority = ErrorPriority::Error;
};

class ErrorList {
public:
    int count() const { return int(m_entries.size()); }
    const ErrorEntry& at(int i) const { return m_entries.at(i); }
    void clear() { m_entries.clear(); }

    void append(const QString& description, ErrorPriority priority) {
        m_entries.append({description, priority});
    }
    // Appends an error and throws it: the one way the engine fails an operation.
    [[noreturn]] void fail(const QString& description, ErrorPriority priority = ErrorPriority::Error);
    // Appends a warning or a message without failing.
    void warn(const QString& description) { append(description, ErrorPriority::Warning); }
    void note(const QString& description) { append(description, ErrorPriority::Message); }

private:
    QList<ErrorEntry> m_entries;
};

} // namespace tillbook
