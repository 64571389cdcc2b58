#include "EngineTestSupport.h"

#include "ledger/Money.h"

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

void EngineTest::addCustomers(int count) {
    auto customers = m_session->openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
    auto& f = customers->fields();
    for (int i = 1; i <= count; ++i) {
        customers->init();
        f.item(QStringLiteral("IDCUST")).setValue(customerNumber(i));
        f.item(QStringLiteral("NAMECUST")).setValue(QStringLiteral("Customer %1").arg(i));
        f.item(QStringLiteral("TEXTSNAM"))
            .setValue(QStringLiteral("S%1").arg(count - i, 4, 10, QLatin1Char('0')));
        f.item(QStringLiteral("CNTOPENINV")).setValue(i % 3 == 0 ? 0 : i % 7 + 1);
        f.item(QStringLiteral("AMTBALDUEH")).setValue(QVariant::fromValue(Money::fromCents(i * 1001)));
        customers->insert();
    }
}

} // namespace tillbook::test
