#pragma once

// The commands of tillbook-ledger. Each takes the words after its name and returns the exit code;
// bad input throws UsageError.

#include <QString>
#include <QStringList>

namespace tillbook::tool {

struct Command {
    const char* name;
    const char* summary;
    const char* help; // the full text of `tillbook-ledger COMMAND --help`
    int (*run)(const QStringList& words);
};

int createCommand(const QStringList& words);
int userCommand(const QStringList& words);
int browseCommand(const QStringList& words);
int runCommand(const QStringList& words);
int postBatchCommand(const QStringList& words);
int checkCommand(const QStringList& words);
int importCommand(const QStringList& words);
int exportCommand(const QStringList& words);
int receiptsCommand(const QStringList& words);

extern const char* const CreateHelp;
extern const char* const UserHelp;
extern const char* const BrowseHelp;
extern const char* const RunHelp;
extern const char* const PostBatchHelp;
extern const char* const CheckHelp;
extern const char* const ImportHelp;
extern const char* const ExportHelp;
extern const char* const ReceiptsHelp;

} // namespace tillbook::tool
