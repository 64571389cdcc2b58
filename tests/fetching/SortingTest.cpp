// The order of the customer list.
#include "fetching/CustomerList.h"
#include "fetching/NameCollation.h"
#include "support/QtPrinters.h"

#include <algorithm>
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

// The list's Shell sort written plainly, comparing the names themselves: the order that names comparing
// equal have always come out in.
std::vector<CustomerRecord> plainShellSort(std::vector<CustomerRecord> c) {
    const QCollator collator = NameCollator();
    const long n = long(c.size());
    for (long gap = n / 2 + 1; gap >= 1; gap /= 2)
        for (long i = gap; i < n; ++i) {
            CustomerRecord t = c[size_t(i)];
            long j = i - gap;
            for (; j >= 0 && collator.compare(t.Name, c[size_t(j)].Name) < 0; j -= gap)
                c[size_t(j + gap)] = c[size_t(j)];
            c[size_t(j + gap)] = t;
        }
    return c;
}

TEST(SortCustomers, EqualNamesComeOutInTheShellSortsOwnOrder) {
    const QStringList spellings{"smith hardware", "SMITH HARDWARE", "Smith Hardware",
                                "Adams",          "adams",          "Zeta"};
    for (int size : {2, 3, 7, 64, 1001}) {
        auto customers = named({});
        for (int i = 0; i < size; ++i)
            customers.push_back(
                {spellings[(i * 7 + i / 3) % spellings.size()], QString::number(i), {}, {}, {}});
        const auto expected = plainShellSort(customers);
        std::vector<int> reported;
        Sort_Customers(customers, [&](int done, int total) {
            EXPECT_EQ(total, 2 * size);
            reported.push_back(done);
        });
        ASSERT_EQ(customers.size(), expected.size());
        for (size_t i = 0; i < customers.size(); ++i)
            ASSERT_EQ(customers[i].Id, expected[i].Id) << "size " << size << ", place " << i;
        ASSERT_FALSE(reported.empty());
        EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
        EXPECT_EQ(reported.back(), 2 * size);
    }
}

TEST(FindCustomer, ExactNumberOrNothing) {
    auto customers = named({"a", "b"});
    customers[1].Id = "ACME01";
    EXPECT_EQ(Find_Customer(customers, "ACME01"), 1);
    EXPECT_EQ(Find_Customer(customers, "acme01"), -1);
    EXPECT_EQ(Find_Customer(customers, "ZZZ"), -1);
}
