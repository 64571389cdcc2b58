// post-batch: posts an open receipt batch.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/CompanyStore.h"

#include <QTextStream>

namespace tillbook::tool {

const char* const PostBatchHelp =
    "Usage: tillbook-ledger post-batch ID BATCH [--user NAME] [--password PW] [--date yyyy-mm-dd]\n"
    "\n"
    "Posts open receipt batch BATCH of company ID: applies every entry to the documents it pays,\n"
    "turns unapplied amounts and prepayments into documents of their own and marks the batch Posted,\n"
    "all in one transaction. A batch that is not open is refused. --date is the posting date.\n";

int postBatchCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {});
    if (args.positional.size() != 2)
        throw UsageError(QStringLiteral("post-batch needs a company ID and a batch number."));
    bool number = false;
    const qint64 batch = args.positional[1].toLongLong(&number);
    if (!number || batch <= 0)
        throw UsageError(QStringLiteral("\"%1\" is not a batch number.").arg(args.positional[1]));
    Session session; // signing in checks the user and password
    signIn(session, args.positional[0], args);
    auto store = engine::CompanyStore::open(args.positional[0]);
    const engine::PostingSummary summary =
        engine::postBatch(*store, session.errors(), batch, session.sessionDate());
    QTextStream(stdout) << QStringLiteral("batch %1 posted (sequence %2): %3 entries, %4 documents paid, %5 "
                                          "documents created\n")
                               .arg(batch)
                               .arg(summary.postingSequence)
                               .arg(summary.entries)
                               .arg(summary.documentsPaid)
                               .arg(summary.documentsCreated);
    return 0;
}

} // namespace tillbook::tool
