#pragma once

// What a failing ledger operation throws. The same description and priority are also appended to the
// session's error list, where the program reads them as a clerk would see them.

#include <QString>
#include <exception>
#include <string>

namespace tillbook {

enum class ErrorPriority { Error = 0, Warning = 1, Message = 2, Security = 3, Severe = 4 };

// The word a clerk reads for a priority: "Error", "Warning", ...
QString priorityName(ErrorPriority priority);

class LedgerError : public std::exception {
public:
    explicit LedgerError(QString description, ErrorPriority priority = ErrorPriority::Error);

    const char* what() const noexcept override { return m_what.c_str(); }
    QString description() const { return m_description; }
    ErrorPriority priority() const { return m_priority; }

private:
    QString m_description;
    ErrorPriority m_priority;
    std::string m_what;
};

} // namespace tillbook
