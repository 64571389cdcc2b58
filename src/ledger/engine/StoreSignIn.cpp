// Signing in to a company: on PostgreSQL as the user's own login, which the server checks.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/PostgresRoles.h"
#include "ledger/engine/StoreFailure.h"

namespace tillbook::engine {

namespace {

QString unknownCompany(const CompanyLocation& location) {
    return QStringLiteral("Company \"%1\" does not exist (%2).").arg(location.companyId, location.describe());
}

// A refused login is a wrong user or password, unless there is no such company: that is asked as the URL's
// role, where the URL names one that may ask. A till whose URL names none hears only that the sign-in failed.
std::unique_ptr<CompanyStore> refused(const QString& databaseId, const CompanyLocation& location) {
    bool missing = false;
    try {
        missing = !CompanyStore::exists(databaseId);
    } catch (const LedgerError&) {
    }
    if (missing)
        throw storeFailure(unknownCompany(location));
    return nullptr;
}

} // namespace

std::unique_ptr<CompanyStore> CompanyStore::signIn(const QString& databaseId, const QString& user,
                                                   const QString& password) {
    CompanyLocation location = locateCompany(databaseId);
    if (!location.postgres) {
        StartedSignIn started = startSignIn(databaseId, user, password);
        return finishSignIn(started, user, password);
    }
    // No password would let libpq take one from PGPASSWORD or ~/.pgpass: no user of a company has none.
    if (password.isEmpty() || user.trimmed().isEmpty())
        return refused(databaseId, location);
    try {
        location.user = companyLogin(location.companyId, user);
    } catch (const LedgerError&) {
        return refused(databaseId, location); // a name that long has no login
    }
    location.password = password;
    std::unique_ptr<CompanyStore> store(new CompanyStore(location, makePostgresDialect()));
    try {
        store->connect(false);
    } catch (const LedgerError& e) {
        if (isRefusedLogin(e.description()))
            return refused(databaseId, location);
        if (isMissingDatabase(e.description()))
            throw storeFailure(unknownCompany(location));
        throw;
    }
    // A login the company has no user for (one it has removed) is no user of it.
    if (!store->hasUser(user))
        return nullptr;
    return store;
}

CompanyStore::StartedSignIn CompanyStore::startSignIn(const QString& databaseId, const QString& user,
                                                      const QString& password) {
    if (locateCompany(databaseId).postgres)
        return {signIn(databaseId, user, password), std::nullopt};
    StartedSignIn started{open(databaseId), std::nullopt};
    started.check = started.store->startPasswordCheck(user, password);
    return started;
}

std::unique_ptr<CompanyStore> CompanyStore::finishSignIn(StartedSignIn& started, const QString& user,
                                                         const QString& password) {
    if (started.store && started.check && !started.store->passwordChecked(*started.check, user, password))
        started.store.reset();
    started.check.reset();
    return std::move(started.store);
}

} // namespace tillbook::engine
