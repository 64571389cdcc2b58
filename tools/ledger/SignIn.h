#pragma once

// Opens a session for a command: --user / --password (or TILLBOOK_USER / TILLBOOK_PASSWORD, else
// ADMIN / ADMIN) and --date yyyy-mm-dd (else today).

#include "CommandLine.h"
#include "ledger/Session.h"

namespace tillbook::tool {

inline const QStringList SignInOptions{QStringLiteral("user"), QStringLiteral("password"),
                                       QStringLiteral("date")};

void signIn(Session& session, const QString& databaseId, const Arguments& arguments);

} // namespace tillbook::tool
