#pragma once

// The session's list of errors, warnings and messages, in the order they arose. Callers read it after
// an operation and clear it; the engine only appends. An operation that warns still does its work, and
// returns its warnings with its result; they stay on the list as well.

#include "ledger/LedgerError.h"

#include <QList>
#include <QString>

namespace tillbook {

struct ErrorEntry {
    QString description;
    ErrorPriority priority = ErrorPriority::Error;
};

// The warnings and messages (priorities 1 and 2) of an operation that was done, in the order they arose.
struct Warnings {
    QList<ErrorEntry> entries;

    bool empty() const { return entries.isEmpty(); }
    const ErrorEntry& first() const { return entries.front(); }
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
    // The warnings and messages appended from entry `since` on: what an operation that has done its work
    // hands its caller.
    Warnings warningsSince(int since) const;

private:
    QList<ErrorEntry> m_entries;
};

} // namespace tillbook
