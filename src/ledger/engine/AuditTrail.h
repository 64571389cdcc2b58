#pragma once

// The ledger's audit trail: one row for every batch made, entry saved and batch posted (who, when, what,
// which batch and entry, the amount), written in the same transaction as what it records. Rows are only ever
// added; tillbook-ledger check holds each audited batch's count and total against them.

#include "ledger/Money.h"

#include <QHash>
#include <QString>

namespace tillbook::engine {

class CompanyStore;

// Made with every company; one made before the trail gets it on its first audited write.
void createAuditTable(CompanyStore& store);

void auditBatchCreated(CompanyStore& store, const QString& who, const QString& code, qint64 batch);
void auditEntrySaved(CompanyStore& store, const QString& who, const QString& code, qint64 batch, qint64 entry,
                     Money amount);

void auditBatchPosted(CompanyStore& store, const QString& who, const QString& code, qint64 batch);

struct AuditedBatch {
    qint64 entries = 0;
    Money total;
};

// The batches made since the company kept a trail, by "code/batch", with their saved entries.
QHash<QString, AuditedBatch> auditedBatches(CompanyStore& store);

} // namespace tillbook::engine
