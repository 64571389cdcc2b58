#pragma once

// A read of many rows of text straight through SQLite's own interface: each cell's UTF-8 copied once
// into the rows' block, with no value object made on the way.

#include "ledger/TextRows.h"

#include <QString>
#include <QVariantList>

struct sqlite3;

namespace tillbook::engine {

// Runs `sql` with `parameters` bound in order and returns its rows, `width` cells each. Throws StoreError
// with SQLite's message.
TextRows readSqliteText(sqlite3* db, const QString& sql, const QVariantList& parameters, int width);

} // namespace tillbook::engine
