#pragma once

// The three kinds of exception of the program. A ledger operation that fails throws LedgerError, with the
// same description and priority on the session's error list, where the program reads them as a clerk would
// see them. Input the ledger or a report cannot take throws InputError; the ledger's operations turn it into
// a LedgerError of priority Error. A fault of the program itself throws ProgrammingError, which nothing
// catches on purpose.

#include <QString>
#include <exception>
#include <stdexcept>
#include <string>

namespace tillbook {

enum class ErrorPriority { Error = 0, Warning = 1, Message = 2, Security = 3, Severe = 4 };

// The word a clerk reads for a priority: "Error", "Warning", ...
QString priorityName(ErrorPriority priority);

// A failing ledger operation, or a failure of the store under it (priority Severe).
class LedgerError : public std::exception {
public:
    explicit LedgerError(QString description, ErrorPriority priority = ErrorPriority::Error);

    const char* what() const noexcept override { return m_what.c_str(); }
    QString description() const { return m_description; }
    ErrorPriority priority() const { return m_priority; }
    // Whether the session's error list holds it already; a failure of the store is put there by the
    // operation it ends.
    bool listed() const { return m_listed; }
    void markListed() { m_listed = true; }

private:
    QString m_description;
    ErrorPriority m_priority;
    std::string m_what;
    bool m_listed = false;
};

// Input that cannot be taken: a filter that cannot be read, a value beyond its field, an amount beyond the
// ledger's arithmetic, a report template that cannot be used. The message is the clerk's; position() is the
// 1-based character of the text where the fault lies, 0 when it is no place in a text.
class InputError : public std::runtime_error {
public:
    explicit InputError(const QString& message, int position = 0)
        : std::runtime_error(message.toStdString()), m_message(message), m_position(position) {}
    QString message() const { return m_message; }
    int position() const { return m_position; }

private:
    QString m_message;
    int m_position;
};

// A fault of the program: a call the ledger's rules forbid whatever the input (a double put into an
// amount), a name of a view or field the schema does not have.
class ProgrammingError : public std::logic_error {
public:
    explicit ProgrammingError(const QString& message) : std::logic_error(message.toStdString()) {}
};

} // namespace tillbook
