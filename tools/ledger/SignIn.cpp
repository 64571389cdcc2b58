#include "SignIn.h"

#include "ledger/LedgerError.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/PostgresRoles.h"
#include "ledger/engine/SampleCompany.h"
#include "ledger/engine/StoreFailure.h"

namespace tillbook::tool {

namespace {

QString userOf(const Arguments& arguments) {
    return arguments.option(QStringLiteral("user"),
                            qEnvironmentVariable("TILLBOOK_USER", QStringLiteral("ADMIN")));
}

QString passwordOf(const Arguments& arguments) {
    return arguments.option(QStringLiteral("password"),
                            qEnvironmentVariable("TILLBOOK_PASSWORD", QStringLiteral("ADMIN")));
}

} // namespace

void signIn(Session& session, const QString& databaseId, const Arguments& arguments, int flags) {
    QDate date = engine::ledgerToday();
    if (arguments.options.contains(QStringLiteral("date"))) {
        date = QDate::fromString(arguments.option(QStringLiteral("date")), QStringLiteral("yyyy-MM-dd"));
        if (!date.isValid())
            throw UsageError(QStringLiteral("--date needs a date yyyy-mm-dd, not \"%1\".")
                                 .arg(arguments.option(QStringLiteral("date"))));
    }
    session.open(userOf(arguments), passwordOf(arguments), databaseId, date, flags);
}

QString signInToAdminister(const QString& databaseId, const Arguments& arguments,
                           engine::CompanyStore& owner) {
    if (owner.location().postgres && !engine::hasCompanyLogins(owner)) {
        const auto stored = owner.userHash(userOf(arguments));
        if (!stored.value_or(engine::PasswordHash::standIn()).matches(passwordOf(arguments)) || !stored)
            throw LedgerError(QStringLiteral("The user name or password is not correct for company \"%1\".")
                                  .arg(owner.location().companyId),
                              ErrorPriority::Security);
        return userOf(arguments).trimmed().toUpper();
    }
    Session session; // signing in checks the user and password
    signIn(session, databaseId, arguments);
    return session.userId().trimmed().toUpper();
}

std::unique_ptr<engine::CompanyStore> signedInStore(const QString& databaseId, const Arguments& arguments) {
    if (!engine::locateCompany(databaseId).postgres)
        return engine::CompanyStore::open(databaseId);
    auto store = engine::CompanyStore::signIn(databaseId, userOf(arguments), passwordOf(arguments));
    if (!store)
        throw engine::storeFailure(
            QStringLiteral("The user name or password is not correct for company \"%1\".")
                .arg(engine::locateCompany(databaseId).companyId));
    return store;
}

} // namespace tillbook::tool
