#pragma once

// A user's password as the company keeps it: a random salt and SHA-256 iterated many times over salt
// and password. The password itself is never stored.

#include <QString>

namespace tillbook::engine {

struct PasswordHash {
    QString salt; // hex
    int rounds = 0;
    QString hash; // hex

    static PasswordHash make(const QString& password);
    bool matches(const QString& password) const;
};

} // namespace tillbook::engine
