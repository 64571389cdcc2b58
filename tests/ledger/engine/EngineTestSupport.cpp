#include "EngineTestSupport.h"

#include "ledger/Money.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

namespace tillbook::test {

QString customerNumber(int i) {
    return QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0'));
}

std::string storeParamName(const ::testing::TestParamInfo<StoreKind>& info) {
    return storeName(info.param).toStdString();
}

void EngineTest::SetUp() {
    m_store = std::make_unique<TestStore>(GetParam());
    if (!m_store->unavailableReason().isEmpty())
        GTEST_SKIP() << "PostgreSQL is not available: " << m_store->unavailableReason().toStdString();
    m_id = TestStore::uniqueId(QStringLiteral("T"));
    m_store->createEmptyCompany(m_id);
    m_session = signIn();
}

void EngineTest::TearDown() {
    m_session.reset();
    m_store.reset();
}

std::unique_ptr<Session> EngineTest::signIn() {
    auto session = std::make_unique<Session>();
    session->open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), m_id, QDate(2025, 3, 14));
    return session;
}

// The customers' figures here are data to browse and filter, written as posting keeps them: the view itself
// starts a new customer's figures at nothing.
void EngineTest::addCustomers(int count) {
    auto store = engine::CompanyStore::open(m_id);
    engine::Transaction transaction(*store);
    for (int i = 1; i <= count; ++i)
        engine::insertRecord(
            *store, QStringLiteral("AR0024"),
            {{QStringLiteral("IDCUST"), customerNumber(i)},
             {QStringLiteral("NAMECUST"), QStringLiteral("Customer %1").arg(i)},
             {QStringLiteral("TEXTSNAM"), QStringLiteral("S%1").arg(count - i, 4, 10, QLatin1Char('0'))},
             {QStringLiteral("CNTOPENINV"), i % 3 == 0 ? 0 : i % 7 + 1},
             {QStringLiteral("AMTBALDUEH"), QVariant::fromValue(Money::fromCents(i * 1001))}});
    transaction.commit();
}

} // namespace tillbook::test
