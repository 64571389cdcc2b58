#include "SignIn.h"

#include "ledger/engine/SampleCompany.h"

namespace tillbook::tool {

void signIn(Session& session, const QString& databaseId, const Arguments& arguments) {
    const QString user = arguments.option(QStringLiteral("user"),
                                          qEnvironmentVariable("TILLBOOK_USER", QStringLiteral("ADMIN")));
    const QString password = arguments.option(
        QStringLiteral("password"), qEnvironmentVariable("TILLBOOK_PASSWORD", QStringLiteral("ADMIN")));
    QDate date = engine::ledgerToday();
    if (arguments.options.contains(QStringLiteral("date"))) {
        date = QDate::fromString(arguments.option(QStringLiteral("date")), QStringLiteral("yyyy-MM-dd"));
        if (!date.isValid())
            throw UsageError(QStringLiteral("--date needs a date yyyy-mm-dd, not \"%1\".")
                                 .arg(arguments.option(QStringLiteral("date"))));
    }
    session.open(user, password, databaseId, date);
}

} // namespace tillbook::tool
