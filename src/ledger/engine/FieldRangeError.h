#pragma once

// A value that does not fit its field (an amount or a total beyond the field's declared size). Thrown
// before the value reaches the store, so that the write's transaction rolls back; the session turns it
// into an ordinary error with its clerk's message.

#include <QString>
#include <stdexcept>

namespace tillbook::engine {

class FieldRangeError : public std::runtime_error {
public:
    explicit FieldRangeError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }

private:
    QString m_message;
};

} // namespace tillbook::engine
