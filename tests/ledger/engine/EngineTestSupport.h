#pragma once

// What the engine and rules tests share: a company of the builder's per test, on each store, signed in as
// ADMIN on 2025-03-14, and the check of a refusal's text.

#include "ledger/LedgerError.h"
#include "support/Company.h"

#include <memory>

namespace tillbook::test {

using Records = QList<std::pair<QString, QVariantHash>>;

class EngineTest : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override { start(CompanyBuilder(GetParam())); }
    // The test's company made anew from `builder`; the test is skipped where its store cannot run.
    void start(const CompanyBuilder& builder);
    std::unique_ptr<Session> signIn() const { return m_company->signIn(QDate(2025, 3, 14)); }

    std::unique_ptr<Company> m_company;
    QString m_id;
    std::unique_ptr<Session> m_session;
};

QString customerNumber(int i);
// Customers C0001.. with names, short names in reverse order, and every third one without open documents.
Records customerRecords(int count);

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

} // namespace tillbook::test

#define TILLBOOK_ON_EACH_STORE(Suite) TILLBOOK_EACH_STORE(Suite)
