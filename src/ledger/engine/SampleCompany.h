#pragma once

// A sample company to try the program and to measure it: customers with their open documents,
// distribution codes, accounts, banks, the company profile and its fiscal calendars, and user ADMIN.
// The same seed always gives the same company (dates count from `today`).

#include <QDate>
#include <QString>

namespace tillbook::engine {

struct SampleOptions {
    int customers = 200;
    int documents = 1500;
    quint64 seed = 1;
    QDate today; // invalid = TILLBOOK_TODAY (yyyy-mm-dd) or the system date
};

struct SampleSummary {
    qint64 customers = 0;
    qint64 documents = 0;
    qint64 openDocuments = 0;
};

// Creates company `databaseId` (replacing an existing one only with `replace`) and fills it.
SampleSummary createSampleCompany(const QString& databaseId, const SampleOptions& options, bool replace);

// The date samples and tools count from: TILLBOOK_TODAY when set, else the system date.
QDate ledgerToday();

} // namespace tillbook::engine
