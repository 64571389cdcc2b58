#pragma once

// What the unposted receipt entries of a company already apply to a customer's documents, per
// document number: their payments, discounts and adjustments, not yet taken off the amounts due.

#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"

#include <QHash>
#include <vector>

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

// One unposted entry's application to a document: its batch, entry number and what it takes off.
struct PendingLine {
    qint64 batch = 0;
    qint64 entry = 0;
    Money taken;
};

// The unposted entries that apply to document `document` of `customer`, in batch and entry order.
std::vector<PendingLine> pendingLinesOf(CompanyStore& store, const QString& customer,
                                        const QString& document);

} // namespace tillbook::engine
