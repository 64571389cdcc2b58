// The order of the customer list.
#include "fetching/CustomerList.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace tillbook;

namespace {

std::vector<CustomerRecord> named(const QStringList& names) {
    std::vector<CustomerRecord> customers;
    int n = 0;
    for (const QString& name : names)
        customers.push_back({name, QString::number(++n), {}, {}, {}});
    return customers;
}

QStringList namesOf(const std::vector<CustomerRecord>& customers) {
    QStringList names;
    for (const CustomerRecord& c : customers)
        names << c.Name;
    return names;
}

} // namespace

TEST(SortCustomers, EmptyAndSingleListsStandStill) {
    std::vector<CustomerRecord> none;
    Sort_Customers(none);
    EXPECT_TRUE(none.empty());
    auto one = named({"Only"});
    Sort_Customers(one);
    EXPECT_EQ(namesOf(one), QStringList{"Only"});
    EXPECT_EQ(one[0].Id, "1");
}

TEST(SortCustomers, IgnoresCaseAndMovesWholeRecords) {
    auto customers = named({"b", "C", "a"});
    customers[1].Phone = "5551234";
    Sort_Customers(customers);
    EXPECT_EQ(namesOf(customers), (QStringList{"a", "b", "C"}));
    EXPECT_EQ(customers[2].Id, "2");
    EXPECT_EQ(customers[2].Phone, "5551234");
}

TEST(SortCustomers, NamesEqualButForCaseStayTogether) {
    auto customers = named({"smith hardware", "Adams", "SMITH HARDWARE", "Zeta", "Smith Hardware", "baker"});
    Sort_Customers(customers);
    const QStringList names = namesOf(customers);
    EXPECT_EQ(names[0], "Adams");
    EXPECT_EQ(names[1], "baker");
    for (int i = 2; i <= 4; ++i)
        EXPECT_EQ(names[i].toLower(), "smith hardware");
    EXPECT_EQ(names[5], "Zeta");
}

TEST(SortCustomers, UsesTheProgramsLocaleNotTheMachines) {
    auto customers = named({"Zebra Traders", "Äpfel GmbH", "apple farm", "Öl & Co", "Orchard"});
    Sort_Customers(customers);
    EXPECT_EQ(namesOf(customers),
              (QStringList{"Äpfel GmbH", "apple farm", "Öl & Co", "Orchard", "Zebra Traders"}));
}

TEST(SortCustomers, LargeListsComeOutAscending) {
    std::vector<CustomerRecord> customers;
    for (int i = 0; i < 2000; ++i)
        customers.push_back(
            {QStringLiteral("Name %1").arg((i * 7919) % 2000, 4, 10, QChar(u'0')), {}, {}, {}, {}});
    Sort_Customers(customers);
    for (size_t i = 1; i < customers.size(); ++i)
        ASSERT_LE(customers[i - 1].Name, customers[i].Name);
}

TEST(FindCustomer, ExactNumberOrNothing) {
    auto customers = named({"a", "b"});
    customers[1].Id = "ACME01";
    EXPECT_EQ(Find_Customer(customers, "ACME01"), 1);
    EXPECT_EQ(Find_Customer(customers, "acme01"), -1);
    EXPECT_EQ(Find_Customer(customers, "ZZZ"), -1);
}
