#pragma once

// Quick set-up for posting under load, as records for the company builder: customers with many documents,
// and open batches whose entries each pay one document, as the views would leave them.

#include "ledger/Money.h"
#include "ledger/engine/EngineTestSupport.h"

#include <vector>

namespace tillbook::test {

struct Payment {
    QString customer;
    QString document;
    Money amount;
};

// Customer `customer` with documents "<customer>-1".."<customer>-<count>", each invoiced and due `each`.
Records customerWithDocuments(const QString& customer, int count, Money each);
// Open batch `batch` with one ordinary receipt per payment, numbered from 1 in order.
Records batchOfPayments(qint64 batch, const std::vector<Payment>& payments);

QString documentOf(const QString& customer, int n);

} // namespace tillbook::test
