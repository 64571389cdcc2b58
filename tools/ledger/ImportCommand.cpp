// import and export: a company's master data in and out as CSV files, one a view.

#include "CommandLine.h"
#include "Commands.h"
#include "CompanyImport.h"
#include "SignIn.h"
#include "ViewCsv.h"

#include <QDir>
#include <QSaveFile>
#include <QTextStream>

namespace tillbook::tool {

const char* const ImportHelp =
    "Usage: tillbook-ledger import ID FOLDER [--dry-run] [--user NAME] [--password PW] [--date yyyy-mm-dd]\n"
    "\n"
    "Loads company ID's master data from the CSV files in FOLDER, one a view, named after it:\n"
    "  CS0001.csv company profile     CS0002.csv fiscal years      GL0001.csv accounts\n"
    "  BK0001.csv banks               AR0015.csv distribution codes\n"
    "  AR0024.csv customers           AR0036.csv documents (invoices, debit and credit notes, interest)\n"
    "A file may be missing; the others load. The first line names the fields as browse writes them, in\n"
    "any order; the key fields must be among them. RFC 4180 CSV in UTF-8 (a byte-order mark allowed).\n"
    "\n"
    "Every value is checked as a clerk's would be (type, length, lists, codes that must exist). A line\n"
    "whose key exists changes that record in the fields the file names; a new key adds a record. The\n"
    "customers' balances and document counts follow from the documents; a file that states them\n"
    "differently is refused. A document may not be brought below what receipts not yet posted apply to\n"
    "it. All files load in one transaction: with any problem nothing is written, and every problem is\n"
    "listed with its file, line and field (up to 20 a file).\n"
    "\n"
    "  --dry-run   check everything, write nothing\n"
    "\n"
    "Exit status 0 done, 1 refused by the ledger's rules, 2 bad input.\n";

const char* const ExportHelp =
    "Usage: tillbook-ledger export ID FOLDER [--user NAME] [--password PW]\n"
    "\n"
    "Writes company ID's master data into FOLDER (made when missing) as the seven CSV files that import\n"
    "reads: CS0001.csv, CS0002.csv, GL0001.csv, BK0001.csv, AR0015.csv, AR0024.csv and AR0036.csv, every\n"
    "field of every record in key order, as browse writes them. Existing files of those names are "
    "replaced.\n";

int importCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {"dry-run"});
    if (args.positional.size() != 2)
        throw UsageError(QStringLiteral("import needs a company ID and a folder."));
    const QString folder = args.positional[1];
    if (!QDir(folder).exists())
        throw UsageError(QStringLiteral("There is no folder \"%1\".").arg(folder));
    Session session; // signed in as the user, working as the company's owner: clerks only read master data
    signIn(session, args.positional[0], args, Session::OpenAsOwner);
    QTextStream out(stdout);
    QTextStream err(stderr);
    const bool dryRun = args.flag(QStringLiteral("dry-run"));
    const ImportResult result = importCompany(session, folder, dryRun, err);
    if (result.files.empty() && result.problems.empty())
        throw UsageError(QStringLiteral("Folder \"%1\" holds none of the files import reads (%2.csv).")
                             .arg(folder, importViews().join(QStringLiteral(".csv, "))));
    bool badInput = false;
    for (const ImportProblem& problem : result.problems) {
        err << problem.text() << '\n';
        badInput = badInput || !problem.byLedger;
    }
    if (result.problemsLeftOut > 0)
        err << QStringLiteral("... and %1 more problems.\n").arg(result.problemsLeftOut);
    for (const ImportedFile& file : result.files)
        out << QStringLiteral("%1: %2 added, %3 changed, %4 unchanged\n")
                   .arg(file.file)
                   .arg(file.inserted)
                   .arg(file.updated)
                   .arg(file.unchanged);
    if (!result.problems.empty()) {
        const qint64 count = qint64(result.problems.size()) + result.problemsLeftOut;
        err << QStringLiteral("Nothing was imported: %1 %2.\n")
                   .arg(count)
                   .arg(count == 1 ? QStringLiteral("problem") : QStringLiteral("problems"));
        return badInput ? 2 : 1;
    }
    out << (result.written ? QStringLiteral("Imported into company %1.\n").arg(args.positional[0].toUpper())
                           : QStringLiteral("Dry run: everything checked, nothing written.\n"));
    return 0;
}

int exportCommand(const QStringList& words) {
    const Arguments args = parseArguments(words, SignInOptions, {});
    if (args.positional.size() != 2)
        throw UsageError(QStringLiteral("export needs a company ID and a folder."));
    const QString folder = args.positional[1];
    if (!QDir().mkpath(folder))
        throw UsageError(QStringLiteral("Cannot make folder \"%1\".").arg(folder));
    Session session;
    signIn(session, args.positional[0], args);
    QTextStream out(stdout);
    for (const QString& viewId : importViews()) {
        QSaveFile file(QDir(folder).filePath(viewId + QStringLiteral(".csv")));
        if (!file.open(QIODevice::WriteOnly))
            throw UsageError(
                QStringLiteral("Cannot write \"%1\": %2").arg(file.fileName(), file.errorString()));
        auto view = session.openView(viewId);
        view->browse(QString(), true);
        QTextStream csv(&file);
        const qint64 written = writeRecords(*view, allFields(*view), csv);
        csv.flush();
        if (!file.commit())
            throw UsageError(
                QStringLiteral("Cannot write \"%1\": %2").arg(file.fileName(), file.errorString()));
        out << QStringLiteral("%1.csv: %2 records\n").arg(viewId).arg(written);
    }
    return 0;
}

} // namespace tillbook::tool
