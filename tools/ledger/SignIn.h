#pragma once

// Opens a session for a command: --user / --password (or TILLBOOK_USER / TILLBOOK_PASSWORD, else
// ADMIN / ADMIN) and --date yyyy-mm-dd (else today).

#include "CommandLine.h"
#include "ledger/Session.h"

#include <memory>

namespace tillbook::engine {
class CompanyStore;
}

namespace tillbook::tool {

inline const QStringList SignInOptions{QStringLiteral("user"), QStringLiteral("password"),
                                       QStringLiteral("date")};

void signIn(Session& session, const QString& databaseId, const Arguments& arguments, int flags = 0);

// Signs in the user who administers through the owner's connection `owner`, and returns their name (upper
// case). A company made on PostgreSQL before its users had logins checks the password against its table.
QString signInToAdminister(const QString& databaseId, const Arguments& arguments,
                           engine::CompanyStore& owner);

// A connection of the command's own to the company as the signed-in user works in it (on PostgreSQL their
// login), for a command that has signed in and works on the store itself.
std::unique_ptr<engine::CompanyStore> signedInStore(const QString& databaseId, const Arguments& arguments);

} // namespace tillbook::tool
