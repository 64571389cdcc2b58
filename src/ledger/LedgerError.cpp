#include "ledger/LedgerError.h"

namespace tillbook {

QString priorityName(ErrorPriority priority) {
    switch (priority) {
    case ErrorPriority::Error:
        return QStringLiteral("Error");
    case ErrorPriority::Warning:
        return QStringLiteral("Warning");
    case ErrorPriority::Message:
        return QStringLiteral("Message");
    case ErrorPriority::Security:
        return QStringLiteral("Security");
    case ErrorPriority::Severe:
        return QStringLiteral("Severe");
    }
    return QStringLiteral("Error");
}

LedgerError::LedgerError(QString description, ErrorPriority priority)
    : m_description(std::move(description)), m_priority(priority), m_what(m_description.toStdString()) {}

} // namespace tillbook
