#pragma once

// Loads a company's master data from a folder of CSV files, one a view (CS0001.csv ... AR0036.csv), in
// one transaction: every value through the view's verified put, a record whose key exists updated in the
// fields the file names, a new key inserted. The customers' figures are the ledger's (they follow the
// documents loaded); a file that states one differently is refused. Problems are collected, file by
// file, with their line and field; with any of them, or on a dry run, nothing is written.

#include "ledger/Session.h"

#include <QString>
#include <QTextStream>
#include <vector>

namespace tillbook::tool {

struct ImportProblem {
    QString file;
    int line = 0;  // 0: the file as a whole
    QString field; // empty: the line as a whole
    QString message;
    bool byLedger = false; // refused by the ledger's rules rather than bad input

    QString text() const;
};

struct ImportedFile {
    QString file;
    qint64 inserted = 0;
    qint64 updated = 0;
    qint64 unchanged = 0;
};

struct ImportResult {
    std::vector<ImportedFile> files;
    std::vector<ImportProblem> problems;
    qint64 problemsLeftOut = 0; // beyond the limit of each file
    bool written = false;
};

// The views an import reads, in the order they load: banks and accounts before the codes that name them,
// customers before their documents.
const QStringList& importViews();

// Progress lines go to `progress` every few seconds while a large file loads.
ImportResult importCompany(Session& session, const QString& folder, bool dryRun, QTextStream& progress);

} // namespace tillbook::tool
