// check: whether a company's receipt ledger holds together.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/LedgerCheck.h"
#include "ledger/engine/StoreIntegrity.h"

#include <QTextStream>

namespace tillbook::tool {

const char* const CheckHelp =
    "Usage: tillbook-ledger check ID [--user NAME] [--password PW]\n"
    "\n"
    "First has the store check its own storage (SQLite's integrity check; on PostgreSQL the amcheck\n"
    "extension's check of the company's indexes, where it is installed) and prints what it reports.\n"
    "Then checks the receipt ledger of company ID and lists every violation found, one a line:\n"
    "  - each batch's entries are numbered 1..N once each; its entry count, last entry number and\n"
    "    total are those of its entries; a posted batch's entries are all posted, an open one's none\n"
    "  - every line belongs to an entry and every entry to a batch; an entry's lines (and a receipt's\n"
    "    unapplied amount) add up to its amount, and a prepayment has one line\n"
    "  - no document is due beyond what it owed or past nothing, unposted entries apply no more than\n"
    "    is due, and its amount due has fallen by at least what was posted to it, with one payment\n"
    "    counted for each posted line; paid documents, and only they, are marked paid\n"
    "  - each posted receipt's unapplied cash and each posted prepayment is one document\n"
    "  - every customer's balance and open-document count are those of its documents\n"
    "Exit status 0 when the store is whole and the ledger holds, 1 otherwise.\n";

int checkCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {});
    if (args.positional.size() != 1)
        throw UsageError(QStringLiteral("check needs exactly one company ID."));
    Session session; // signing in checks the user and password
    signIn(session, args.positional[0], args);
    auto store = signedInStore(args.positional[0], args);
    QTextStream out(stdout);
    const engine::StoreIntegrity integrity = engine::checkStoreIntegrity(*store);
    for (const QString& report : integrity.damage)
        out << QStringLiteral("Storage damaged: %1\n").arg(report);
    out << QStringLiteral("%1: %2\n")
               .arg(integrity.note, !integrity.checked           ? QStringLiteral("not run")
                                    : integrity.damage.isEmpty() ? QStringLiteral("the store is whole")
                                                                 : QStringLiteral("the store is damaged; "
                                                                                  "restore the company from "
                                                                                  "a backup"));
    engine::LedgerCheckResult result;
    try {
        result = engine::checkLedger(*store);
    } catch (const LedgerError& e) {
        if (integrity.damage.isEmpty())
            throw;
        // A damaged file may fail to be read at all; its damage is already said.
        out << QStringLiteral("The ledger could not be read: %1\n").arg(e.description());
        return 1;
    }
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
    return result.violations.isEmpty() && integrity.damage.isEmpty() ? 0 : 1;
}

} // namespace tillbook::tool
