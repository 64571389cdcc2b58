// Filters select the same records on SQLite and on PostgreSQL, up to the largest filter accepted.
#include "EngineTestSupport.h"
#include "ledger/filter/Limits.h"

namespace tillbook::test {
namespace {

using FilterOnStores = EngineTest;

QStringList customersSelectedBy(Session& session, const QString& filter) {
    auto customers = session.openView("AR0024", "AR");
    customers->browse(filter, true);
    QStringList ids;
    while (customers->fetch())
        ids << customers->fields().item("IDCUST").value().toString();
    return ids;
}

void addNamed(Session& session, const QStringList& names) {
    auto customers = session.openView("AR0024", "AR");
    for (int i = 0; i < names.size(); ++i) {
        customers->init();
        customers->fields().item("IDCUST").setValue(customerNumber(i + 1));
        customers->fields().item("NAMECUST").setValue(names[i]);
        customers->insert();
    }
}

TEST_P(FilterOnStores, LikeHasOneMeaningWithEscapesForWildcards) {
    // C0001..C0009
    addNamed(*m_session,
             {R"(back\slash)", "backslash", "50% off", "50 off", "a_b", "axb", R"(ends\)", "x!y", R"(\%)"});
    const std::vector<std::pair<QString, QStringList>> cases{
        {R"(NAMECUST LIKE "back\slash")", {"C0001"}},
        {R"(NAMECUST LIKE "back\\slash")", {"C0001"}},
        {R"(NAMECUST LIKE "%\")", {"C0007"}},
        {R"(NAMECUST LIKE "%\\")", {"C0007"}},
        {R"(NAMECUST LIKE "50\% off")", {"C0003"}},
        {R"(NAMECUST LIKE "50% off")", {"C0003", "C0004"}},
        {R"(NAMECUST LIKE "a\_b")", {"C0005"}},
        {R"(NAMECUST LIKE "a_b")", {"C0005", "C0006"}},
        {R"(NAMECUST LIKE "%!%")", {"C0008"}},
        {R"(NAMECUST LIKE "\\\%")", {"C0009"}},
        {R"(NAMECUST LIKE "%\%%")", {"C0003", "C0009"}},
    };
    for (const auto& [filter, ids] : cases)
        EXPECT_EQ(customersSelectedBy(*m_session, filter), ids) << filter.toStdString();
}

TEST_P(FilterOnStores, FullWidthDigitsSelectAsTheirNumbers) {
    addCustomers(12); // CNTOPENINV = i % 7 + 1, or 0 for every third
    EXPECT_EQ(customersSelectedBy(*m_session, "CNTOPENINV = ５"), QStringList({"C0004", "C0011"}));
    EXPECT_EQ(customersSelectedBy(*m_session, "AMTBALDUEH = ４０.０４"), QStringList({"C0004"}));
}

// Brackets as deep as allowed, each one needed in SQL, around a run of clauses as long as allowed,
// the whole as long as allowed: selects C0002, C0004 and C0005 through the innermost run.
QString largestFilter() {
    QString inner = R"(IDCUST = "C0002" OR IDCUST = "C0004")";
    int clauses = 2 + filter::MaxNesting + 2;
    for (; clauses < filter::MaxClauses; ++clauses)
        inner += R"( OR IDCUST = "none")";
    inner += R"( OR IDCUST LIKE "C0005%PAD")"; // PAD: as many % as make the filter as long as allowed
    QString filter = inner;
    for (int level = 0; level < filter::MaxNesting; ++level)
        filter = level % 2 ? QString("IDCUST = \"none\" OR (%1)").arg(filter)
                           : QString("CNTOPENINV >= 0 AND (%1)").arg(filter);
    filter = "IDCUST <> \"none\" AND " + filter;
    const qsizetype padding = filter::MaxFilterLength - (filter.size() - 3);
    return filter.replace("PAD", QString(padding, u'%'));
}

TEST_P(FilterOnStores, TheLargestAcceptedFilterRuns) {
    addCustomers(6);
    const QString largest = largestFilter();
    ASSERT_EQ(largest.size(), filter::MaxFilterLength);
    EXPECT_EQ(customersSelectedBy(*m_session, largest), QStringList({"C0002", "C0004", "C0005"}));

    QString alternating = R"(IDCUST = "C0001")";
    for (int i = 0; i < filter::MaxNesting; ++i)
        alternating += R"( OR IDCUST = "C0003" AND CNTOPENINV >= 0)";
    EXPECT_EQ(customersSelectedBy(*m_session, alternating), QStringList({"C0001", "C0003"}));

    const QString longPattern = "NAMECUST LIKE \"" + QString(filter::MaxFilterLength - 16, u'€') + "\"";
    EXPECT_EQ(customersSelectedBy(*m_session, longPattern), QStringList());
}

TILLBOOK_ON_EACH_STORE(FilterOnStores);

} // namespace
} // namespace tillbook::test
