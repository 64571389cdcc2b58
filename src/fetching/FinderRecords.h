#pragma once

// What the finder lists: every distribution code or every G/L account of the company, read in the view's
// key order.

#include "ledger/Session.h"

#include <QStringList>
#include <vector>

namespace tillbook {

// Finder kinds: distribution codes; any other kind lists G/L accounts.
constexpr int FinderDistCodes = 1;
constexpr int FinderAccounts = 2;

// The fields of the finder's columns, in order.
QStringList FinderFields(int finderKind);

// One row per record: the trimmed texts of FinderFields, coded values as stored. The view is cleared after
// the last record. Throws LedgerError.
std::vector<QStringList> Read_FinderRecords(Session& session, int finderKind);

} // namespace tillbook
