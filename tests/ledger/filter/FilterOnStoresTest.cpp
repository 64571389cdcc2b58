// Filters select the same records on SQLite and on PostgreSQL, up to the largest filter accepted.
#include "EngineTestSupport.h"
#include "ledger/filter/Limits.h"

namespace tillbook::test {
namespace {

using FilterOnStores = EngineTest;
using filter::MaxNesting;

QStringList selectedBy(Session& session, const QString& filter) {
    auto customers = session.openView("AR0024", "AR");
    customers->browse(filter, true);
    QStringList ids;
    while (customers->fetch())
        ids << customers->fields().item("IDCUST").value().toString();
    return ids;
}

TEST_P(FilterOnStores, LikeHasOneMeaningWithEscapesForWildcards) {
    auto customers = m_session->openView("AR0024", "AR");
    const QStringList names{R"(back\slash)", "backslash", "50% off",  "50 off",
                            "a_b",           "axb",       R"(ends\)", "x!y"};
    for (int i = 0; i < names.size(); ++i) { // C0001..C0008
        customers->init();
        customers->fields().item("IDCUST").setValue(customerNumber(i + 1));
        customers->fields().item("NAMECUST").setValue(names[i]);
        customers->insert();
    }
    const std::vector<std::pair<QString, QStringList>> cases{
        {R"(NAMECUST LIKE "back\slash")", {"C0001"}},
        {R"(NAMECUST LIKE "%\")", {"C0007"}},
        {R"(NAMECUST LIKE "%\\")", {"C0007"}},
        {R"(NAMECUST LIKE "50\% off")", {"C0003"}},
        {R"(NAMECUST LIKE "50% off")", {"C0003", "C0004"}},
        {R"(NAMECUST LIKE "a\_b")", {"C0005"}},
        {R"(NAMECUST LIKE "a_b")", {"C0005", "C0006"}},
        {R"(NAMECUST LIKE "%!%")", {"C0008"}},
    };
    for (const auto& [filter, ids] : cases)
        EXPECT_EQ(selectedBy(*m_session, filter), ids) << filter.toStdString();
}

TEST_P(FilterOnStores, TheLargestAcceptedFiltersRun) {
    addCustomers(6);
    // Brackets as deep as allowed, each needed in SQL, around as many clauses as allowed, padded with %
    // to the longest length allowed: the innermost run selects C0002 and C0005.
    QString filter = R"(IDCUST = "C0002")" +
                     QStringList(filter::MaxClauses - MaxNesting - 3, R"( OR IDCUST = "-")").join("") +
                     R"( OR IDCUST LIKE "C0005PAD")";
    for (int level = 0; level < MaxNesting; ++level)
        filter = QString(level % 2 ? R"(IDCUST = "-" OR (%1))" : "CNTOPENINV >= 0 AND (%1)").arg(filter);
    filter = "AMTBALDUEH > -1 AND " + filter;
    filter.replace("PAD", QString(filter::MaxFilterLength - filter.size() + 3, u'%'));
    ASSERT_EQ(filter.size(), filter::MaxFilterLength);
    EXPECT_EQ(selectedBy(*m_session, filter), QStringList({"C0002", "C0005"}));

    const QString longPattern = "NAMECUST LIKE \"" + QString(filter::MaxFilterLength - 16, u'€') + "\"";
    EXPECT_EQ(selectedBy(*m_session, longPattern), QStringList());
}

TILLBOOK_ON_EACH_STORE(FilterOnStores);

} // namespace
} // namespace tillbook::test
