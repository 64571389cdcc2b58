#pragma once

// Lets GoogleTest print Qt texts readably in failure messages.

#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}
