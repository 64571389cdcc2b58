// post-batch: posts an open receipt batch, or finishes one whose posting stopped half-way.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/CompanyStore.h"

#include <QTextStream>

namespace tillbook::tool {

const char* const PostBatchHelp =
    "Usage: tillbook-ledger post-batch ID BATCH [--user NAME] [--password PW] [--date yyyy-mm-dd]\n"
    "                                  [--entries-per-step N]\n"
    "\n"
    "Posts receipt batch BATCH of company ID: applies every entry to the documents it pays, turns\n"
    "unapplied amounts and prepayments into documents of their own and marks the batch Posted.\n"
    "The entries are posted in steps of N (default 200), each step all or nothing, so that tills\n"
    "writing meanwhile wait one step at most; the batch shows Post In Progress until the last step.\n"
    "A posting that stopped half-way (killed, failed) is finished by running post-batch again: it goes\n"
    "on where it stopped and never posts an entry twice. A batch neither open nor being posted is\n"
    "refused. --date is the posting date.\n";

int postBatchCommand(const QStringList& words) {
    QStringList options = SignInOptions;
    options << QStringLiteral("entries-per-step");
    const Arguments args = parseArguments(words, options, {});
    if (args.positional.size() != 2)
        throw UsageError(QStringLiteral("post-batch needs a company ID and a batch number."));
    bool number = false;
    const qint64 batch = args.positional[1].toLongLong(&number);
    if (!number || batch <= 0)
        throw UsageError(QStringLiteral("\"%1\" is not a batch number.").arg(args.positional[1]));
    engine::PostingOptions posting;
    posting.entriesPerStep = args.intOption(QStringLiteral("entries-per-step"), posting.entriesPerStep);
    if (posting.entriesPerStep < 1)
        throw UsageError(QStringLiteral("--entries-per-step needs at least 1."));
    Session session; // signing in checks the user and password
    signIn(session, args.positional[0], args);
    posting.user = session.userId();
    auto store = signedInStore(args.positional[0], args);
    const engine::PostingSummary summary =
        engine::postBatch(*store, session.errors(), batch, session.sessionDate(), posting);
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
