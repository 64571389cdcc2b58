#pragma once

// The generated sample company made by the company builder (support/Company.h), under the name the older
// tests know it by. Its users are ADMIN (password ADMIN) and any others a test adds.

#include "support/Company.h"

namespace tillbook::test {

class SampleCompany {
public:
    // On PostgreSQL the company outlives the test: give it an ID of TestStore::uniqueId.
    explicit SampleCompany(const QString& id = QStringLiteral("SAMINC"), int customers = 30,
                           int documents = 200, StoreKind kind = StoreKind::Sqlite)
        : m_company(CompanyBuilder(kind).id(id).sample(customers, documents)) {}

    QString id() const { return m_company.id(); }
    QString dataFolder() const { return m_company.dataFolder(); }
    QString unavailableReason() const { return m_company.unavailableReason(); }
    void addUser(const QString& name, const QString& password) { m_company.addUser(name, password); }

private:
    Company m_company;
};

} // namespace tillbook::test
