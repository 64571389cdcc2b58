#pragma once

// Where a company's ledger lives: the SQLite file ID.sqlite in the data folder, or, when
// TILLBOOK_LEDGER_URL is set, the PostgreSQL database its template names for the ID.

#include "ledger/Session.h"

#include <QString>

namespace tillbook::engine {

struct CompanyLocation {
    QString companyId; // upper case, as the clerk knows it
    bool postgres = false;
    QString sqlitePath;
    QString host;
    int port = 5432;
    QString user;
    QString password;
    QString database;

    // For messages: the file, or host:port/database.
    QString describe() const;
};

constexpr int MaxCompanyIdLength = MaxDatabaseIdLength;

// Throws LedgerError for an ID that cannot name a company (empty, longer than 32 characters, or
// characters other than letters, digits and underscore) and for a malformed URL template.
CompanyLocation locateCompany(const QString& databaseId);

} // namespace tillbook::engine
