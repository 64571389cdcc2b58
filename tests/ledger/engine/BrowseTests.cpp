#include "EngineTestSupport.h"

namespace tillbook::test {
namespace {

using BrowseTest = EngineTest;

QStringList fetchAll(View& view) {
    QStringList values;
    while (view.fetch())
        values << view.fields().item("IDCUST").value().toString();
    return values;
}

// More customers than one page holds, so that pages join.
TEST_P(BrowseTest, PagesJoinInKeyOrderBothWaysAndFieldsNotReadBeforeAreStillThere) {
    constexpr int Customers = 1100;
    addCustomers(Customers);
    auto customers = m_session->openView("AR0024", "AR");
    QStringList open;
    for (int i = 1; i <= Customers; ++i)
        if (i % 3 != 0)
            open << customerNumber(i);
    customers->browse("CNTOPENINV>0", true);
    EXPECT_EQ(fetchAll(*customers), open);
    EXPECT_FALSE(customers->fetch()); // stays at the end
    customers->browse("CNTOPENINV>0", false);
    EXPECT_EQ(fetchAll(*customers), QStringList(open.rbegin(), open.rend()));

    // After the first page the view reads only the columns used so far; others come on demand.
    auto fresh = m_session->openView("AR0024", "AR");
    fresh->browse("", true);
    for (int seen = 0; seen < 900; ++seen)
        ASSERT_TRUE(fresh->fetch());
    EXPECT_EQ(fresh->fields().item("NAMECUST").value().toString(), "Customer 900");
    EXPECT_EQ(fresh->fields().item("AMTBALDUEH").value().toString(), "9009.000");
    fresh->browse("IDCUST >= \"C1099\"", true);
    ASSERT_TRUE(fresh->fetch());
    EXPECT_EQ(fresh->fields().item("NAMECUST").value().toString(), "Customer 1099");
}

TEST_P(BrowseTest, FetchWithoutBrowseWalksEverythingReadFindsByKeyAndOtherKeysOrderTheirWay) {
    addCustomers(3);
    auto customers = m_session->openView("AR0024", "AR");
    EXPECT_EQ(fetchAll(*customers), QStringList({"C0001", "C0002", "C0003"}));
    customers->fields().item("IDCUST").setValue("C0002");
    ASSERT_TRUE(customers->read());
    EXPECT_EQ(customers->fields().item("NAMECUST").value().toString(), "Customer 2");
    customers->fields().item("IDCUST").setValue("C0009");
    EXPECT_FALSE(customers->read());
    customers->order(1); // short name, which runs the other way round
    customers->browse("IDCUST <= \"C0002\"", true);
    EXPECT_EQ(fetchAll(*customers), QStringList({"C0002", "C0001"}));
    EXPECT_THROW(customers->order(99), LedgerError);
}

TEST_P(BrowseTest, TextComparesCaseSensitively) {
    auto customers = m_session->openView("AR0024", "AR");
    for (const char* id : {"abc", "ABC", "Abd"}) {
        customers->init();
        customers->fields().item("IDCUST").setValue(id);
        customers->insert();
    }
    EXPECT_EQ(fetchAll(*customers), QStringList({"ABC", "Abd", "abc"})); // byte order on both stores
    customers->browse("IDCUST LIKE \"A%\"", true);
    EXPECT_EQ(fetchAll(*customers), QStringList({"ABC", "Abd"}));
}

TEST_P(BrowseTest, AFailedBrowseIsListedAndSelectsNothing) {
    addCustomers(6);
    auto customers = m_session->openView("AR0024", "AR");
    customers->browse("CNTOPENINV>0", true);
    ASSERT_TRUE(customers->fetch());
    m_session->errors().clear();
    expectFailure([&] { customers->browse("CNTOPENINV >", true); }, "CNTOPENINV");
    EXPECT_EQ(m_session->errors().count(), 1);
    EXPECT_FALSE(customers->fetch()); // neither the rest of the earlier selection nor every record

    auto fresh = m_session->openView("AR0024", "AR");
    EXPECT_THROW(fresh->browse("NOFIELD = 1", true), LedgerError);
    EXPECT_FALSE(fresh->fetch());
    fresh->browse("", true); // a good browse afterwards selects again
    EXPECT_EQ(fetchAll(*fresh).size(), 6);
}

TILLBOOK_ON_EACH_STORE(BrowseTest);

} // namespace
} // namespace tillbook::test
