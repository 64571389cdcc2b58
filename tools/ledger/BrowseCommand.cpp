// browse: a view's records as CSV.

#include "CommandLine.h"
#include "Commands.h"
#include "SignIn.h"
#include "ViewCsv.h"

#include <QTextStream>

namespace tillbook::tool {

const char* const BrowseHelp =
    "Usage: tillbook-ledger browse ID VIEW [FILTER] [--fields A,B,...] [--descending] [--order K]\n"
    "                              [--user NAME] [--password PW] [--date yyyy-mm-dd]\n"
    "\n"
    "Writes the records of VIEW (e.g. AR0024) that match FILTER (e.g. \"CNTOPENINV>0\") as CSV on\n"
    "standard output, in the order of key K (default 0, the primary key): a line of field names, then a\n"
    "line per record. Without --fields every field is written. Amounts have all their decimals, dates\n"
    "are yyyy-mm-dd (empty when there is none). Signs in as ADMIN / ADMIN unless told otherwise.\n";

int browseCommand(const QStringList& words) {
    QStringList valueOptions = SignInOptions;
    valueOptions << QStringLiteral("fields") << QStringLiteral("order");
    const Arguments args = parseArguments(words, valueOptions, {"descending"});
    if (args.positional.size() < 2 || args.positional.size() > 3)
        throw UsageError(QStringLiteral("browse needs a company ID, a view and at most one filter."));
    Session session;
    signIn(session, args.positional[0], args);
    auto view = session.openView(args.positional[1]);
    std::vector<Field*> fields;
    if (args.options.contains(QStringLiteral("fields"))) {
        for (const QString& name : args.option(QStringLiteral("fields")).split(u',', Qt::SkipEmptyParts))
            fields.push_back(&view->fields().item(name));
    } else {
        fields = allFields(*view);
    }
    view->order(args.intOption(QStringLiteral("order"), 0));
    view->browse(args.positional.value(2), !args.flag(QStringLiteral("descending")));

    QTextStream out(stdout);
    writeRecords(*view, fields, out);
    return 0;
}

} // namespace tillbook::tool
