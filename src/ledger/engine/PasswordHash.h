#pragma once

// A user's password as the company keeps it: PBKDF2-HMAC-SHA256 over a random salt. The password itself
// is never stored. The stored text names its algorithm and cost ("pbkdf2-sha256$ROUNDS$SALT$HASH", hex),
// so that a hash made at an older cost, or by the iterated SHA-256 of earlier versions (a bare hex hash
// with salt and rounds in their own columns), is recognised and replaced at the next good sign-in.

#include <QByteArray>
#include <QString>

namespace tillbook::engine {

struct PasswordHash {
    enum class Algorithm { IteratedSha256, Pbkdf2Sha256 };

    Algorithm algorithm = Algorithm::Pbkdf2Sha256;
    QByteArray salt;
    int rounds = 0;
    QByteArray hash;

    // A new hash at today's cost.
    static PasswordHash make(const QString& password);
    // From the user table's SALT, ROUNDS and HASH columns; an unreadable HASH gives a hash nothing
    // matches.
    static PasswordHash fromStored(const QString& salt, int rounds, const QString& hash);
    // A hash of no one's password at today's cost: checking against it takes as long as checking a
    // user's, so a sign-in does not tell by its time whether the user exists.
    static const PasswordHash& standIn();

    QString storedSalt() const;
    QString storedHash() const;

    bool matches(const QString& password) const;
    // Made by an older algorithm or at a lower cost than today's.
    bool isOutdated() const;

    // Today's cost: 600,000 rounds (OWASP's figure for PBKDF2-HMAC-SHA256). Tests lower it with
    // TILLBOOK_TEST_PASSWORD_ROUNDS so that the suite stays fast; a till never sets it.
    static int currentRounds();
};

} // namespace tillbook::engine
