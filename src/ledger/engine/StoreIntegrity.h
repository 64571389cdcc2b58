#pragma once

// The store's own check of its storage, beneath the ledger's rules: SQLite's integrity check of pages
// and indexes, or PostgreSQL's amcheck over the company's B-tree indexes where that extension is there.

#include <QString>
#include <QStringList>

namespace tillbook::engine {

class CompanyStore;

struct StoreIntegrity {
    bool checked = false; // false when the store offers no check here (see `note`)
    QString note;         // what was checked, or why nothing was
    QStringList damage;   // the store's own reports, one a line; empty when whole
};

StoreIntegrity checkStoreIntegrity(CompanyStore& store);

// What a till is told when it would write into a damaged company.
QString damagedCompanyMessage(const QString& companyId, const QString& firstReport);

} // namespace tillbook::engine
