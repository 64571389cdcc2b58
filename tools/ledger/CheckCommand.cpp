// check: whether a company's receipt ledger holds together.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/LedgerCheck.h"

#include <QTextStream>

namespace tillbook::tool {

const char* const CheckHelp =
    "Usage: tillbook-ledger check ID [--user NAME] [--password PW]\n"
    "\n"
    "Checks the receipt ledger of company ID and lists every violation found, one a line:\n"
    "  - each batch's entries are numbered 1..N once each; its entry count, last entry number and\n"
    "    total are those of its entries; a posted batch's entries are all posted, an open one's none\n"
    "  - every line belongs to an entry and every entry to a batch; an entry's lines (and a receipt's\n"
    "    unapplied amount) add up to its amount, and a prepayment has one line\n"
    "  - no document is due beyond what it owed or past nothing, unposted entries apply no more than\n"
    "    is due, and its amount due has fallen by at least what was posted to it, with one payment\n"
    "    counted for each posted line; paid documents, and only they, are marked paid\n"
    "  - each posted receipt's unapplied cash and each posted prepayment is one document\n"
    "  - every customer's balance and open-document count are those of its documents\n"
    "Exit status 0 when the ledger holds, 1 when something is violated.\n";

int checkCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {});
    if (args.positional.size() != 1)
        throw UsageError(QStringLiteral("check needs exactly one company ID."));
    Session session; // signing in checks the user and password
    signIn(session, args.positional[0], args);
    auto store = engine::CompanyStore::open(args.positional[0]);
    const engine::LedgerCheckResult result = engine::checkLedger(*store);
    QTextStream out(stdout);
    for (const QString& violation : result.violations)
        out << violation << '\n';
    out << QStringLiteral("%1 batches, %2 entries, %3 documents, %4 customers: %5\n")
               .arg(result.batches)
               .arg(result.entries)
               .arg(result.documents)
               .arg(result.customers)
               .arg(result.violations.isEmpty()
                        ? QStringLiteral("the ledger holds")
                        : QStringLiteral("%1 violations").arg(result.violations.size()));
    return result.violations.isEmpty() ? 0 : 1;
}

} // namespace tillbook::tool
