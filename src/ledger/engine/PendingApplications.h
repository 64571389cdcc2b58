#pragma once

// What the unposted receipt entries of a company already apply to a customer's documents, per
// document number: their payments, discounts and adjustments, not yet taken off the amounts due.

#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"

#include <QHash>

namespace tillbook::engine {

struct PendingAmounts {
    Money payments;
    Money discounts;
    Money adjustments;
    Money total() const { return payments + discounts + adjustments; }
};

// Leaves out the lines of entry `entry` of batch `batch` (the entry being keyed).
QHash<QString, PendingAmounts> pendingApplications(CompanyStore& store, const QString& customer, qint64 batch,
                                                   qint64 entry);

} // namespace tillbook::engine
