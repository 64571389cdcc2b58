// create and user: making companies and their users.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/SampleCompany.h"

#include <QElapsedTimer>
#include <QTextStream>

namespace tillbook::tool {

const char* const CreateHelp =
    "Usage: tillbook-ledger create ID [--sample] [--customers N] [--documents M] [--seed S] [--force]\n"
    "\n"
    "Creates company ID: an SQLite file ID.sqlite in TILLBOOK_DATA (or the program's data folder), or\n"
    "the PostgreSQL database TILLBOOK_LEDGER_URL names for it. An existing company is left alone unless\n"
    "--force is given (on PostgreSQL, as the owner: the role of TILLBOOK_LEDGER_URL). Every new company\n"
    "has the user ADMIN with the password ADMIN, its first administrator: change that password at\n"
    "once (tillbook-ledger user ID ADMIN NEWPASSWORD).\n"
    "\n"
    "  --sample        fill it with a sample company: profile, fiscal calendars, accounts, distribution\n"
    "                  codes, banks, customers and their documents\n"
    "  --customers N   sample customers (default 200)\n"
    "  --documents M   sample documents, spread over the customers (default 1500)\n"
    "  --seed S        the same seed gives the same company (default 1); dates count from\n"
    "                  TILLBOOK_TODAY (yyyy-mm-dd) when it is set\n"
    "  --force         replace an existing company of that ID\n";

const char* const UserHelp =
    "Usage: tillbook-ledger user ID NAME PASSWORD [--admin] [--user NAME] [--password PW]\n"
    "\n"
    "Adds user NAME to company ID, or gives an existing user a new password. User names are not\n"
    "case-sensitive; passwords are.\n"
    "\n"
    "Signs in first (--user and --password, else TILLBOOK_USER and TILLBOOK_PASSWORD, else ADMIN):\n"
    "an administrator may add users and change anyone's password; any user may change their own\n"
    "password, signing in with the old one. A company's first administrator is ADMIN, made with it.\n"
    "On PostgreSQL the user is the server's login ID.NAME, which the server checks; it is made or changed\n"
    "through the owner's connection (the role of TILLBOOK_LEDGER_URL), which only the password's SCRAM\n"
    "verifier reaches.\n"
    "\n"
    "  --admin   makes NAME an administrator too (an administrator's sign-in only); a new user is a\n"
    "            clerk otherwise, and an existing one keeps their standing\n";

int createCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, {"customers", "documents", "seed"}, {"sample", "force"});
    if (args.positional.size() != 1)
        throw UsageError(QStringLiteral("create needs exactly one company ID."));
    const QString id = args.positional.front();
    const bool sample = args.flag(QStringLiteral("sample"));
    if (!sample && (args.options.contains(QStringLiteral("customers")) ||
                    args.options.contains(QStringLiteral("documents"))))
        throw UsageError(QStringLiteral("--customers and --documents go with --sample."));
    QTextStream out(stdout);
    QElapsedTimer timer;
    timer.start();
    if (sample) {
        engine::SampleOptions options;
        options.customers = args.intOption(QStringLiteral("customers"), options.customers);
        options.documents = args.intOption(QStringLiteral("documents"), options.documents);
        options.seed = quint64(args.intOption(QStringLiteral("seed"), 1));
        const auto summary = engine::createSampleCompany(id, options, args.flag(QStringLiteral("force")));
        out << QStringLiteral("Created sample company %1: %2 customers, %3 documents (%4 open) in %5 s.\n")
                   .arg(id.toUpper())
                   .arg(summary.customers)
                   .arg(summary.documents)
                   .arg(summary.openDocuments)
                   .arg(double(timer.elapsed()) / 1000.0, 0, 'f', 1);
    } else {
        auto store =
            engine::CompanyStore::create(id, args.flag(QStringLiteral("force")), [](engine::CompanyStore& s) {
                s.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), true);
            });
        out << QStringLiteral("Created empty company %1 (%2).\n")
                   .arg(id.toUpper(), store->location().describe());
    }
    return 0;
}

int userCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {"admin"});
    if (args.positional.size() != 3)
        throw UsageError(QStringLiteral("user needs a company ID, a user name and a password."));
    const QString name = args.positional[1].trimmed();
    if (name.isEmpty() || args.positional[2].isEmpty())
        throw UsageError(QStringLiteral("The user name and the password may not be empty."));
    auto store = engine::CompanyStore::open(args.positional[0]);
    const QString signedIn = signInToAdminister(args.positional[0], args, *store);
    const bool administrator = store->isAdministrator(signedIn);
    const bool own = name.compare(signedIn, Qt::CaseInsensitive) == 0;
    const bool makeAdministrator = args.flag(QStringLiteral("admin"));
    if (!administrator && (!own || makeAdministrator)) {
        QTextStream(stderr) << QStringLiteral("User %1 may not %2: sign in as an administrator (--user and "
                                              "--password).\n")
                                   .arg(signedIn, makeAdministrator ? QStringLiteral("make administrators")
                                                  : store->hasUser(name)
                                                      ? QStringLiteral("change another user's password")
                                                      : QStringLiteral("add users"));
        return 1;
    }
    const bool existed = store->hasUser(name);
    store->setUser(name, args.positional[2], makeAdministrator ? std::optional<bool>(true) : std::nullopt);
    QTextStream(stdout) << (existed ? QStringLiteral("Changed the password of user %1.\n")
                                    : QStringLiteral("Added user %1.\n"))
                               .arg(name.toUpper());
    return 0;
}

} // namespace tillbook::tool
