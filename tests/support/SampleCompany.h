#pragma once

// A small sample company in a temporary data folder, for tests of the program's windows. Its users are ADMIN
// (password ADMIN) and any others a test adds.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/SampleCompany.h"
#include "support/TestCompany.h"

namespace tillbook::test {

class SampleCompany {
public:
    explicit SampleCompany(const QString& id = QStringLiteral("SAMINC"), int customers = 30,
                           int documents = 200)
        : m_id(id) {
        engine::SampleOptions options;
        options.customers = customers;
        options.documents = documents;
        options.seed = 7;
        engine::createSampleCompany(id, options, true);
    }

    QString id() const { return m_id; }
    QString dataFolder() const { return m_store.dataFolder(); }

    void addUser(const QString& name, const QString& password) {
        engine::CompanyStore::open(m_id)->setUser(name, password);
    }

private:
    TestStore m_store; // first: the company is made inside its folder
    QString m_id;
};

} // namespace tillbook::test
