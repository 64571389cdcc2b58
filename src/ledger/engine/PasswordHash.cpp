#include "ledger/engine/PasswordHash.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace tillbook::engine {

namespace {

constexpr int DefaultRounds = 20000;

QByteArray derive(const QByteArray& salt, const QString& password, int rounds) {
    QByteArray digest = QCryptographicHash::hash(salt + password.toUtf8(), QCryptographicHash::Sha256);
    for (int i = 1; i < rounds; ++i)
        digest = QCryptographicHash::hash(digest + salt, QCryptographicHash::Sha256);
    return digest;
}

} // namespace

PasswordHash PasswordHash::make(const QString& password) {
    QByteArray salt(16, '\0');
    for (char& c : salt)
        c = char(QRandomGenerator::system()->bounded(256));
    return {QString::fromLatin1(salt.toHex()), DefaultRounds,
            QString::fromLatin1(derive(salt, password, DefaultRounds).toHex())};
}

bool PasswordHash::matches(const QString& password) const {
    const QByteArray expected = QByteArray::fromHex(hash.toLatin1());
    const QByteArray actual = derive(QByteArray::fromHex(salt.toLatin1()), password, rounds);
    // Compare every byte, so the time taken says nothing about where they differ.
    unsigned char difference = expected.size() == actual.size() ? 0 : 1;
    for (int i = 0; i < std::min(expected.size(), actual.size()); ++i)
        difference |= static_cast<unsigned char>(expected[i] ^ actual[i]);
    return difference == 0;
}

} // namespace tillbook::engine
