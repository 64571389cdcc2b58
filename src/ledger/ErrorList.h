#pragma once

// The session's list of errors, warnings and messages, in the order they arose. Callers read it after
// an operation and clear it; the engine only appends. An operation that warns still does its work, and
// then reports the warning to its caller as a failure of that priority.

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
    // Throws the first warning or message appended from entry `since` on, if any: how an operation that
    // has done its work tells its caller that something deserves a look.
    void reportWarnings(int since) const;

private:
    QList<ErrorEntry> m_entries;
};

} // namespace tillbook
