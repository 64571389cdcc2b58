#include "ledger/engine/PasswordHash.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QStringList>
#include <openssl/crypto.h>
#include <openssl/evp.h>

namespace tillbook::engine {

namespace {

constexpr int RecommendedRounds = 600000;
constexpr int SaltBytes = 16;
constexpr int HashBytes = 32;
const QString Pbkdf2Tag = QStringLiteral("pbkdf2-sha256");

QByteArray pbkdf2(const QByteArray& salt, const QString& password, int rounds) {
    const QByteArray secret = password.toUtf8();
    QByteArray out(HashBytes, '\0');
    if (rounds < 1 ||
        PKCS5_PBKDF2_HMAC(secret.constData(), int(secret.size()),
                          reinterpret_cast<const unsigned char*>(salt.constData()), int(salt.size()), rounds,
                          EVP_sha256(), int(out.size()), reinterpret_cast<unsigned char*>(out.data())) != 1)
        return {};
    return out;
}

// The scheme of earlier versions, kept only to check and then replace what they stored.
QByteArray iteratedSha256(const QByteArray& salt, const QString& password, int rounds) {
    QByteArray digest = QCryptographicHash::hash(salt + password.toUtf8(), QCryptographicHash::Sha256);
    for (int i = 1; i < rounds; ++i)
        digest = QCryptographicHash::hash(digest + salt, QCryptographicHash::Sha256);
    return digest;
}

} // namespace

int PasswordHash::currentRounds() {
    static const int rounds = [] {
#ifdef TILLBOOK_TEST_SEAMS
        bool ok = false;
        const int lowered = qEnvironmentVariableIntValue("TILLBOOK_TEST_PASSWORD_ROUNDS", &ok);
        return ok && lowered > 0 ? lowered : RecommendedRounds;
#else
        return RecommendedRounds;
#endif
    }();
    return rounds;
}

PasswordHash PasswordHash::make(const QString& password) {
    PasswordHash made;
    made.salt.resize(SaltBytes);
    QRandomGenerator::system()->generate(made.salt.begin(), made.salt.end());
    made.rounds = currentRounds();
    made.hash = pbkdf2(made.salt, password, made.rounds);
    return made;
}

PasswordHash PasswordHash::fromStored(const QString& salt, int rounds, const QString& hash) {
    PasswordHash stored;
    if (!hash.startsWith(Pbkdf2Tag + u'$')) {
        stored.algorithm = Algorithm::IteratedSha256;
        stored.salt = QByteArray::fromHex(salt.toLatin1());
        stored.rounds = rounds;
        stored.hash = QByteArray::fromHex(hash.toLatin1());
        return stored;
    }
    const QStringList parts = hash.split(u'$');
    bool ok = false;
    const int storedRounds = parts.value(1).toInt(&ok);
    if (parts.size() != 4 || !ok || storedRounds < 1)
        return stored; // no hash: matches nothing
    stored.rounds = storedRounds;
    stored.salt = QByteArray::fromHex(parts[2].toLatin1());
    stored.hash = QByteArray::fromHex(parts[3].toLatin1());
    return stored;
}

const PasswordHash& PasswordHash::standIn() {
    static const PasswordHash standIn = [] {
        PasswordHash h;
        h.salt = QByteArray(SaltBytes, '\x5a');
        h.rounds = currentRounds();
        h.hash = QByteArray(HashBytes, '\0');
        return h;
    }();
    return standIn;
}

QString PasswordHash::storedSalt() const {
    return QString::fromLatin1(salt.toHex());
}

QString PasswordHash::storedHash() const {
    if (algorithm == Algorithm::IteratedSha256)
        return QString::fromLatin1(hash.toHex());
    return QStringLiteral("%1$%2$%3$%4")
        .arg(Pbkdf2Tag)
        .arg(rounds)
        .arg(QString::fromLatin1(salt.toHex()), QString::fromLatin1(hash.toHex()));
}

bool PasswordHash::matches(const QString& password) const {
    if (hash.isEmpty() || rounds < 1)
        return false;
    const QByteArray actual = algorithm == Algorithm::Pbkdf2Sha256 ? pbkdf2(salt, password, rounds)
                                                                   : iteratedSha256(salt, password, rounds);
    // Constant time, so the time taken says nothing about where they differ.
    return actual.size() == hash.size() &&
           CRYPTO_memcmp(actual.constData(), hash.constData(), size_t(hash.size())) == 0;
}

bool PasswordHash::isOutdated() const {
    return algorithm != Algorithm::Pbkdf2Sha256 || rounds < currentRounds();
}

} // namespace tillbook::engine
