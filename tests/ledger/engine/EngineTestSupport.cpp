#include "EngineTestSupport.h"

#include "ledger/Money.h"

namespace tillbook::test {

void EngineTest::start(const CompanyBuilder& builder) {
    m_session.reset();
    m_company.reset(); // first: a company points the program at its store while it lives
    m_company = std::make_unique<Company>(builder);
    TILLBOOK_SKIP_UNLESS_READY(*m_company);
    m_id = m_company->id();
    m_session = signIn();
}

QString customerNumber(int i) {
    return QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0'));
}

// The figures are data to browse and filter, written as posting keeps them: the view itself starts a new
// customer's figures at nothing.
Records customerRecords(int count) {
    Records records;
    for (int i = 1; i <= count; ++i)
        records.append({QStringLiteral("AR0024"),
                        {{"IDCUST", customerNumber(i)},
                         {"NAMECUST", QStringLiteral("Customer %1").arg(i)},
                         {"TEXTSNAM", QStringLiteral("S%1").arg(count - i, 4, 10, QLatin1Char('0'))},
                         {"CNTOPENINV", i % 3 == 0 ? 0 : i % 7 + 1},
                         {"AMTBALDUEH", QVariant::fromValue(Money::fromCents(i * 1001))}}});
    return records;
}

} // namespace tillbook::test
