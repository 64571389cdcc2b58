#pragma once

// The customers to whom a receipt can be applied: those with at least one open invoice, sorted by name.
// The receipt desk keeps them in `Customers`, parallel to its customer list: list position p is
// Customers[p].

#include "ledger/Session.h"

#include <QString>
#include <functional>
#include <vector>

namespace tillbook {

struct CustomerRecord {
    QString Name;
    QString Id;
    QString Street1;
    QString Street2;
    QString Phone;
};

// Told now and then how far a long task has come: `done` of `total` steps; a total of 0 means the end is not
// known yet. Called often enough to move a progress bar, seldom enough not to slow the task.
using TaskProgress = std::function<void(int done, int total)>;
constexpr size_t ProgressStep = 512; // records between two reports of a record-by-record task

// Reads the customers with an open invoice, in customer-number order. Throws LedgerError. The number of
// customers is not known before the last is read, so progress is told with a total of 0.
std::vector<CustomerRecord> Read_Customers(Session& session, const TaskProgress& progress = {});

// Sorts by name, ignoring case, with a Shell sort (gaps n/2+1, then halved): names that compare equal keep
// no guaranteed order, and an element never moves past an equal one in a single insertion step.
void Sort_Customers(std::vector<CustomerRecord>& customers, const TaskProgress& progress = {});

// The list position of the customer with this number (exact comparison), or -1 when it is not listed.
int Find_Customer(const std::vector<CustomerRecord>& customers, const QString& customerNumber);

} // namespace tillbook
