// tillbook-ledger: makes companies and users, and reads and writes a company's views from the command
// line or a script, through the same ledger engine as the program.

#include "CommandLine.h"
#include "Commands.h"
#include "ledger/LedgerError.h"

#include <QCoreApplication>
#include <QTextStream>
#include <array>

using namespace tillbook::tool;

namespace {

const std::array<Command, 9> Commands = {{
    {"create", "create a company, empty or a sample one", CreateHelp, createCommand},
    {"user", "add a user or change a password", UserHelp, userCommand},
    {"browse", "write a view's records as CSV", BrowseHelp, browseCommand},
    {"run", "run a script of view operations", RunHelp, runCommand},
    {"post-batch", "post an open receipt batch", PostBatchHelp, postBatchCommand},
    {"check", "check that a company's receipt ledger holds together", CheckHelp, checkCommand},
    {"import", "load a company's master data from CSV files", ImportHelp, importCommand},
    {"export", "write a company's master data as the CSV files import reads", ExportHelp, exportCommand},
    {"receipts", "write the receipts the tills took as CSV", ReceiptsHelp, receiptsCommand},
}};

void printUsage(QTextStream& out) {
    out << "Usage: tillbook-ledger COMMAND [ARGUMENTS]   (tillbook-ledger COMMAND --help for more)\n\n";
    for (const Command& command : Commands)
        out << QStringLiteral("  %1  %2\n")
                   .arg(QLatin1String(command.name), -10)
                   .arg(QLatin1String(command.summary));
    out << "\nCompanies are SQLite files ID.sqlite in TILLBOOK_DATA (or the program's data folder); when\n"
           "TILLBOOK_LEDGER_URL is set (postgresql://user:pw@host:port/tillbook_{id}) they are PostgreSQL\n"
           "databases instead.\n";
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    // The program's own names: without TILLBOOK_DATA both find companies in the same data folder.
    QCoreApplication::setOrganizationName(QStringLiteral("ORVA"));
    QCoreApplication::setApplicationName(QStringLiteral("ORVA Tillbook"));
    QStringList words = app.arguments().mid(1);
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (words.isEmpty() || words.front() == QLatin1String("--help") ||
        words.front() == QLatin1String("help")) {
        printUsage(words.isEmpty() ? err : out);
        return words.isEmpty() ? 2 : 0;
    }
    const QString name = words.takeFirst();
    const auto command = std::find_if(Commands.begin(), Commands.end(),
                                      [&](const Command& c) { return name == QLatin1String(c.name); });
    if (command == Commands.end()) {
        err << QStringLiteral("tillbook-ledger: unknown command \"%1\".\n\n").arg(name);
        printUsage(err);
        return 2;
    }
    if (words.contains(QStringLiteral("--help"))) {
        out << command->help;
        return 0;
    }
    try {
        return command->run(words);
    } catch (const UsageError& e) {
        err << QStringLiteral("tillbook-ledger %1: %2\n").arg(name, e.message());
        return 2;
    } catch (const tillbook::LedgerError& e) {
        err << QStringLiteral("tillbook-ledger %1: %2\n").arg(name, e.description());
        return 1;
    } catch (const std::exception& e) {
        err << QStringLiteral("tillbook-ledger %1: %2\n").arg(name, QString::fromStdString(e.what()));
        return 1;
    }
}
