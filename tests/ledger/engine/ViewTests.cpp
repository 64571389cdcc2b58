// Reading and writing records through a view: pages, keys, filters, and writes from two tills.
#include "ledger/Money.h"
#include "support/Company.h"

namespace tillbook::test {
namespace {

using ViewTest = StoreTest;

QStringList fetchAll(View& view) {
    QStringList values;
    while (view.fetch())
        values << view.fields().item("IDCUST").value().toString();
    return values;
}

// More customers than one page holds, so that pages join.
TEST_P(ViewTest, PagesJoinInKeyOrderBothWaysAndFieldsNotReadBeforeAreStillThere) {
    constexpr int Customers = 1100;
    start(CompanyBuilder(GetParam()).customers(Customers));
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

// Without a browse a fetch walks every record; text compares case-sensitively, in byte order on both stores;
// a failed browse is listed and selects nothing, neither the rest of the earlier selection nor every record.
TEST_P(ViewTest, FetchReadOrderAndAFailedBrowse) {
    start(CompanyBuilder(GetParam())
              .customers(3)
              .record("AR0024", {{"IDCUST", "abc"}})
              .record("AR0024", {{"IDCUST", "Abd"}}));
    auto customers = m_session->openView("AR0024", "AR");
    EXPECT_EQ(fetchAll(*customers), QStringList({"Abd", "C0001", "C0002", "C0003", "abc"}));
    customers->fields().item("IDCUST").setValue("C0002");
    ASSERT_TRUE(customers->read());
    EXPECT_EQ(customers->fields().item("NAMECUST").value().toString(), "Customer 2");
    customers->fields().item("IDCUST").setValue("C0009");
    EXPECT_FALSE(customers->read());
    customers->order(1); // short name, which runs the other way round
    customers->browse("IDCUST LIKE \"C%\" AND IDCUST <= \"C0002\"", true);
    EXPECT_EQ(fetchAll(*customers), QStringList({"C0002", "C0001"}));
    EXPECT_THROW(customers->order(99), LedgerError);
    customers->order(0);
    customers->browse("IDCUST LIKE \"A%\"", true);
    EXPECT_EQ(fetchAll(*customers), QStringList({"Abd"}));

    customers->browse("CNTOPENINV>0", true);
    ASSERT_TRUE(customers->fetch());
    m_session->errors().clear();
    expectFailure([&] { customers->browse("CNTOPENINV >", true); }, "CNTOPENINV");
    EXPECT_EQ(m_session->errors().count(), 1);
    EXPECT_FALSE(customers->fetch());
    customers->browse("", true); // a good browse afterwards selects again
    EXPECT_EQ(fetchAll(*customers).size(), 5);
}

// Two tills change different fields of one customer; neither undoes the other.
TEST_P(ViewTest, UpdateWritesOnlyWhatChangedAndDuplicateOrMissingRecordsAreRefused) {
    start(CompanyBuilder(GetParam()).customers(1));
    auto till1 = m_session->openView("AR0024", "AR");
    auto till2 = signIn()->openView("AR0024", "AR");
    for (View* view : {till1.get(), till2.get()}) {
        view->fields().item("IDCUST").setValue(customerNumber(1));
        ASSERT_TRUE(view->read());
    }
    till1->fields().item("NAMECUST").setValue("Renamed");
    till1->update();
    till2->fields().item("TEXTPHON1").setValue("5551234");
    till2->update();
    ASSERT_TRUE(till1->read());
    EXPECT_EQ(till1->fields().item("NAMECUST").value().toString(), "Renamed");
    EXPECT_EQ(till1->fields().item("TEXTPHON1").value().toString(), "5551234");

    till1->init();
    till1->fields().item("IDCUST").setValue(customerNumber(1));
    m_session->errors().clear();
    expectFailure([&] { till1->insert(); }, "Customers record \"C0001\" already exists.");
    EXPECT_EQ(m_session->errors().count(), 1);
    till1->init();
    EXPECT_THROW(till1->update(), LedgerError); // nothing read
}

TILLBOOK_EACH_STORE(ViewTest);

} // namespace
} // namespace tillbook::test
