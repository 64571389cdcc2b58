#pragma once

// The PostgreSQL server's databases as a whole: whether one exists, making, dropping and renaming them.
// Each runs on a short-lived connection to the server's maintenance database.

#include "ledger/engine/CompanyLocation.h"

#include <QSqlDatabase>
#include <QString>

namespace tillbook::engine {

// A Qt SQL connection name no other connection of this process has.
QString uniqueConnectionName();

// A connection (not yet open) to `database` on the server of `location`.
QSqlDatabase postgresConnection(const QString& name, const CompanyLocation& location,
                                const QString& database);

bool postgresDatabaseExists(const CompanyLocation& location, const QString& database);
void createPostgresDatabase(const CompanyLocation& location, const QString& database);
// Ends the connections of others to it first; nothing happens when there is no such database.
void dropPostgresDatabase(const CompanyLocation& location, const QString& database);
void renamePostgresDatabase(const CompanyLocation& location, const QString& from, const QString& to);

} // namespace tillbook::engine
