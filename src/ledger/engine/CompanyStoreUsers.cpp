#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/PasswordHash.h"
#include "ledger/engine/PostgresRoles.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/Transaction.h"

#include <QSqlRecord>
#include <future>

namespace tillbook::engine {

void CompanyStore::setUser(const QString& name, const QString& password, std::optional<bool> administrator) {
    if (!m_location.postgres) {
        setUserHash(name, PasswordHash::make(password), administrator);
        return;
    }
    setCompanyLogin(*this, name, password, administrator);
}

// A new hash keeps the user's standing; `administrator` changes it, and a new user is a clerk unless
// told otherwise.
void CompanyStore::setUserHash(const QString& name, const PasswordHash& hash,
                               std::optional<bool> administrator) {
    addAdministratorColumn();
    const QString key = name.trimmed().toUpper();
    Transaction transaction(*this);
    {
        QSqlQuery& update = statement(QStringLiteral(
            "UPDATE \"TB_USERS\" SET \"SALT\" = ?, \"ROUNDS\" = ?, \"HASH\" = ? WHERE \"NAME\" = ?"));
        run(update, {hash.storedSalt(), hash.rounds, hash.storedHash(), key});
        const bool existed = update.numRowsAffected() > 0;
        update.finish();
        if (!existed)
            execute(QStringLiteral("INSERT INTO \"TB_USERS\" (\"NAME\", \"SALT\", \"ROUNDS\", \"HASH\", "
                                   "\"ADMIN\") VALUES (?, ?, ?, ?, ?)"),
                    {key, hash.storedSalt(), hash.rounds, hash.storedHash(),
                     administrator.value_or(false) ? 1 : 0});
        else if (administrator)
            execute(QStringLiteral("UPDATE \"TB_USERS\" SET \"ADMIN\" = ? WHERE \"NAME\" = ?"),
                    {*administrator ? 1 : 0, key});
    }
    transaction.commit();
}

bool CompanyStore::hasAdministratorColumn() {
    QSqlQuery query = prepare(QStringLiteral("SELECT * FROM \"TB_USERS\" WHERE 1 = 0"));
    run(query);
    return query.record().indexOf(QStringLiteral("ADMIN")) >= 0;
}

// Companies made before users had a standing get it on their first change of a user: ADMIN, the user
// every company is made with, administers.
void CompanyStore::addAdministratorColumn() {
    if (hasAdministratorColumn())
        return;
    Transaction transaction(*this);
    execute(QStringLiteral("ALTER TABLE \"TB_USERS\" ADD COLUMN \"ADMIN\" INTEGER NOT NULL DEFAULT 0"));
    execute(QStringLiteral("UPDATE \"TB_USERS\" SET \"ADMIN\" = 1 WHERE \"NAME\" = 'ADMIN'"));
    transaction.commit();
}

bool CompanyStore::isAdministrator(const QString& name) {
    if (!hasAdministratorColumn())
        return name.trimmed().compare(QLatin1String("ADMIN"), Qt::CaseInsensitive) == 0;
    QSqlQuery query = prepare(QStringLiteral("SELECT \"ADMIN\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    return query.next() && query.value(0).toInt() == 1;
}

bool CompanyStore::hasUser(const QString& name) {
    QSqlQuery query = prepare(QStringLiteral("SELECT 1 FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    return query.next();
}

std::optional<PasswordHash> CompanyStore::userHash(const QString& name) {
    QSqlQuery query =
        prepare(QStringLiteral("SELECT \"SALT\", \"ROUNDS\", \"HASH\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    run(query, {name.trimmed().toUpper()});
    if (!query.next())
        return std::nullopt;
    return PasswordHash::fromStored(query.value(0).toString(), query.value(1).toInt(),
                                    query.value(2).toString());
}

bool CompanyStore::checkPassword(const QString& name, const QString& password) {
    if (m_location.postgres) // the server's to say: can the user's login sign in with it
        return signIn(m_location.companyId, name, password) != nullptr;
    PasswordCheck check = startPasswordCheck(name, password);
    return passwordChecked(check, name, password);
}

PasswordCheck CompanyStore::startPasswordCheck(const QString& name, const QString& password) {
    std::optional<PasswordHash> stored = userHash(name);
    PasswordCheck check;
    check.outdated = stored && stored->isOutdated();
    check.matches = std::async(std::launch::async, [stored = std::move(stored), password] {
        // The same work as for a user, so the time taken does not tell that there is none.
        if (!stored) {
            (void)PasswordHash::standIn().matches(password);
            return false;
        }
        return stored->matches(password);
    });
    return check;
}

bool CompanyStore::passwordChecked(PasswordCheck& check, const QString& name, const QString& password) {
    if (!check.matches.get())
        return false;
    if (check.outdated && !m_readOnly && !inTransaction()) {
        try {
            setUser(name, password);
        } catch (const LedgerError&) {
            // Kept as it is (the company may be busy); the next good sign-in tries again.
        }
    }
    return true;
}

} // namespace tillbook::engine
