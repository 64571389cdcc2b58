#pragma once

// The store's own check of its storage, beneath the ledger's rules: SQLite's integrity check of pages
// and indexes, or PostgreSQL's amcheck over the company's B-tree indexes where that extension is there.

#include <QString>
#include <QStringList>

namespace tillbook::engine {

class CompanyStore;
struct CompanyLocation;

struct StoreIntegrity {
    bool checked = false; // false when the store offers no check here (see `note`)
    QString note;         // what was checked, or why nothing was
    QStringList damage;   // the store's own reports, one a line; empty when whole
};

// Runs the store's check; for a SQLite company it also leaves (or takes away) the mark that knownDamage
// reads.
StoreIntegrity checkStoreIntegrity(CompanyStore& store);

// The first damage that the last check of this company found and that is not repaired; empty when none is
// known.
QString knownDamage(const CompanyLocation& location);

// What a till is told when it would write into a damaged company.
QString damagedCompanyMessage(const QString& companyId, const QString& firstReport);

} // namespace tillbook::engine
