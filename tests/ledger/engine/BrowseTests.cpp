#include "EngineTestSupport.h"
#include "ledger/LedgerError.h"

namespace tillbook::test {
namespace {

using BrowseTest = EngineTest;

QStringList fetchAll(View& view, const QString& field = QStringLiteral("IDCUST")) {
    QStringList values;
    while (view.fetch())
        values << view.fields().item(field).value().toString();
    return values;
}

QStringList expectedCustomers(int count, bool (*keep)(int)) {
    QStringList ids;
    for (int i = 1; i <= count; ++i)
        if (keep(i))
            ids << customerNumber(i);
    return ids;
}

// More customers than one page holds, so that pages join.
constexpr int Customers = 1100;

TEST_P(BrowseTest, FilterInKeyOrderBothWays) {
    addCustomers(Customers);
    auto customers = m_session->openView("AR0024", "AR");
    const QStringList open = expectedCustomers(Customers, [](int i) { return i % 3 != 0; });

    customers->browse("CNTOPENINV>0", true);
    EXPECT_EQ(fetchAll(*customers), open);
    EXPECT_FALSE(customers->fetch()); // stays at the end

    QStringList reversed(open.rbegin(), open.rend());
    customers->browse("CNTOPENINV>0", false);
    EXPECT_EQ(fetchAll(*customers), reversed);
}

TEST_P(BrowseTest, FetchWithoutBrowseWalksEverything) {
    addCustomers(5);
    auto customers = m_session->openView("AR0024", "AR");
    EXPECT_EQ(fetchAll(*customers), expectedCustomers(5, [](int) { return true; }));
}

TEST_P(BrowseTest, FieldsNotReadBeforeAreStillThere) {
    // After the first page the view reads only the columns used so far; others come on demand.
    addCustomers(Customers);
    auto customers = m_session->openView("AR0024", "AR");
    customers->browse("", true);
    int seen = 0;
    while (customers->fetch()) {
        ++seen;
        if (seen == 900) {
            EXPECT_EQ(customers->fields().item("NAMECUST").value().toString(), "Customer 900");
            EXPECT_EQ(customers->fields().item("AMTBALDUEH").value().toString(), "9009.000");
        }
    }
    EXPECT_EQ(seen, Customers);
    customers->browse("IDCUST >= \"C1099\"", true);
    ASSERT_TRUE(customers->fetch());
    EXPECT_EQ(customers->fields().item("NAMECUST").value().toString(), "Customer 1099");
}

TEST_P(BrowseTest, OtherKeysOrderTheirWay) {
    addCustomers(30);
    auto customers = m_session->openView("AR0024", "AR");
    customers->order(1); // short name, which runs the other way round
    customers->browse("IDCUST <= \"C0003\"", true);
    EXPECT_EQ(fetchAll(*customers), QStringList({"C0003", "C0002", "C0001"}));
    EXPECT_THROW(customers->order(99), LedgerError);
}

TEST_P(BrowseTest, ReadFindsByKey) {
    addCustomers(3);
    auto customers = m_session->openView("AR0024", "AR");
    customers->fields().item("IDCUST").setValue("C0002");
    ASSERT_TRUE(customers->read());
    EXPECT_EQ(customers->fields().item("NAMECUST").value().toString(), "Customer 2");
    customers->fields().item("IDCUST").setValue("C0009");
    EXPECT_FALSE(customers->read());
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

TEST_P(BrowseTest, BadFilterIsALedgerError) {
    auto customers = m_session->openView("AR0024", "AR");
    m_session->errors().clear();
    EXPECT_THROW(customers->browse("CNTOPENINV >", true), LedgerError);
    ASSERT_EQ(m_session->errors().count(), 1);
    EXPECT_TRUE(m_session->errors().at(0).description.contains("CNTOPENINV"));
}

TEST_P(BrowseTest, AFailedBrowseSelectsNothing) {
    addCustomers(6);
    auto customers = m_session->openView("AR0024", "AR");
    customers->browse("CNTOPENINV>0", true);
    ASSERT_TRUE(customers->fetch());
    EXPECT_THROW(customers->browse("CNTOPENINV >", true), LedgerError);
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
