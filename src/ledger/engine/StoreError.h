#pragma once

// A failure of the store itself (cannot open, statement failed). The session and views turn it into a
// LedgerError on the session's list.

#include <QString>
#include <stdexcept>

namespace tillbook::engine {

class StoreError : public std::runtime_error {
public:
    explicit StoreError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }

private:
    QString m_message;
};

} // namespace tillbook::engine
