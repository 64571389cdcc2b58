#pragma once

// Quick set-up for posting under load: customers with many documents, and open batches whose entries
// each pay one document, written straight into the tables as the views would leave them.

#include "ledger/Money.h"
#include "ledger/engine/CompanyStore.h"

#include <QString>
#include <vector>

namespace tillbook::test {

struct Payment {
    QString customer;
    QString document;
    Money amount;
};

// Customer `customer` with documents "<customer>-1".."<customer>-<count>", each invoiced and due `each`.
void addCustomerWithDocuments(engine::CompanyStore& store, const QString& customer, int count, Money each);
// Open batch `batch` with one ordinary receipt per payment, numbered from 1 in order.
void addBatchOfPayments(engine::CompanyStore& store, qint64 batch, const std::vector<Payment>& payments);

QString documentOf(const QString& customer, int n);

} // namespace tillbook::test
