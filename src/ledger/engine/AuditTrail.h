#pragma once

// The ledger's audit trail: one row for every batch made, entry saved, batch posted and master data import
// (who, when, what, which batch and entry, the amount), written in the same transaction as what it records.
// Rows are only ever added (on PostgreSQL the clerks' logins may do nothing else, and the server stamps who
// wrote a row, the login, and when); tillbook-ledger check holds each audited batch's count and total
// against them.

#include "ledger/Money.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace tillbook::engine {

class CompanyStore;

// Made with every company; one made before the trail gets it on its first audited write.
void createAuditTable(CompanyStore& store);

void auditBatchCreated(CompanyStore& store, const QString& who, const QString& code, qint64 batch);
void auditEntrySaved(CompanyStore& store, const QString& who, const QString& code, qint64 batch, qint64 entry,
                     Money amount);

void auditBatchPosted(CompanyStore& store, const QString& who, const QString& code, qint64 batch);
// An import of master data: the views it loaded (as CODE) and how many lines (as ENTRY).
void auditImported(CompanyStore& store, const QString& who, const QStringList& views, qint64 lines);

struct AuditedBatch {
    qint64 entries = 0;
    Money total;
};

// The batches made since the company kept a trail, by "code/batch", with their saved entries.
QHash<QString, AuditedBatch> auditedBatches(CompanyStore& store);

} // namespace tillbook::engine
