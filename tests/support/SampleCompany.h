#pragma once

// A small sample company in a temporary data folder (or, when asked, on the throwaway PostgreSQL server), for
// tests of the program's windows and procedures. Its users are ADMIN (password ADMIN) and any others a test
// adds.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/SampleCompany.h"
#include "support/TestCompany.h"

namespace tillbook::test {

class SampleCompany {
public:
    // On PostgreSQL the company outlives the test: give it an ID of TestStore::uniqueId.
    explicit SampleCompany(const QString& id = QStringLiteral("SAMINC"), int customers = 30,
                           int documents = 200, StoreKind kind = StoreKind::Sqlite)
        : m_store(kind), m_id(id) {
        if (!m_store.unavailableReason().isEmpty())
            return;
        engine::SampleOptions options;
        options.customers = customers;
        options.documents = documents;
        options.seed = 7;
        engine::createSampleCompany(id, options, true);
    }

    QString id() const { return m_id; }
    QString dataFolder() const { return m_store.dataFolder(); }
    // Empty when the company was made; otherwise why its store cannot be used (for GTEST_SKIP).
    QString unavailableReason() const { return m_store.unavailableReason(); }

    void addUser(const QString& name, const QString& password) {
        engine::CompanyStore::open(m_id)->setUser(name, password);
    }

private:
    TestStore m_store; // first: the company is made inside its folder
    QString m_id;
};

} // namespace tillbook::test
