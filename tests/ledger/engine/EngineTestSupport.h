#pragma once

// A company per test, on each store: SQLite always, PostgreSQL when its server can run here.

#include "ledger/LedgerError.h"
#include "ledger/Session.h"
#include "support/TestCompany.h"

#include <gtest/gtest.h>
#include <memory>

namespace tillbook::test {

class EngineTest : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override;
    void TearDown() override;

    // Opens the test's company as ADMIN.
    std::unique_ptr<Session> signIn();
    // Customers C0001.. with names, short names in reverse order, and every third one without open documents.
    void addCustomers(int count);

    std::unique_ptr<TestStore> m_store;
    QString m_id;
    std::unique_ptr<Session> m_session;
};

QString customerNumber(int i);

// Runs `operation`, expecting a LedgerError whose text contains `fragment`; returns the error.
template <typename Op> LedgerError expectFailure(Op operation, const QString& fragment) {
    try {
        operation();
    } catch (const LedgerError& e) {
        EXPECT_TRUE(e.description().contains(fragment)) << e.description().toStdString();
        return e;
    }
    ADD_FAILURE() << "no LedgerError for " << fragment.toStdString();
    return LedgerError(QString());
}

// "SQLite" / "PostgreSQL" as the parameter's name.
std::string storeParamName(const ::testing::TestParamInfo<StoreKind>& info);

#define TILLBOOK_ON_EACH_STORE(Suite)                                                                        \
    INSTANTIATE_TEST_SUITE_P(Stores, Suite, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres),       \
                             storeParamName)

} // namespace tillbook::test
