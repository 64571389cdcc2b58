// The customer list kept in memory and shown in the drop-down: records by position, the number looked up
// exactly, and a list model that shows the names (with the numbers beside them) and selects nothing.
#include "fetching/CustomerList.h"

#include "entry/CustomerListModel.h"
#include "support/QtPrinters.h"

#include <QComboBox>
#include <gtest/gtest.h>

using namespace tillbook;

namespace {

CustomerList listOf(const std::vector<CustomerRecord>& records) {
    TextRows rows(CustomerList::FieldCount);
    for (const CustomerRecord& c : records)
        for (const QString& text : {c.Name, c.Id, c.Street1, c.Street2, c.Phone})
            rows.append(text.toUtf8());
    return CustomerList(std::move(rows));
}

const CustomerList Sample = listOf({{"Äpfel GmbH", "ACME01", "12 Rue Étienne", "", "4165551234"},
                                    {"apple farm", "0002", "", "Suite 4", ""},
                                    {"Apple Farm", "acme01", "", "", "555"}});

} // namespace

TEST(CustomerList, RecordsComeBackWholeByPosition) {
    EXPECT_TRUE(CustomerList().empty());
    ASSERT_EQ(Sample.size(), 3u);
    const CustomerRecord first = Sample[0];
    EXPECT_EQ(first.Name, "Äpfel GmbH");
    EXPECT_EQ(first.Id, "ACME01");
    EXPECT_EQ(first.Street1, "12 Rue Étienne");
    EXPECT_EQ(first.Street2, "");
    EXPECT_EQ(first.Phone, "4165551234");
    EXPECT_EQ(Sample[1].Street2, "Suite 4");
    EXPECT_EQ(Sample[2].Phone, "555");
}

TEST(FindCustomer, ExactNumberOrNothing) {
    EXPECT_EQ(Find_Customer(Sample, "ACME01"), 0);
    EXPECT_EQ(Find_Customer(Sample, "acme01"), 2);
    EXPECT_EQ(Find_Customer(Sample, "0002"), 1);
    EXPECT_EQ(Find_Customer(Sample, "0002 "), -1);
    EXPECT_EQ(Find_Customer(Sample, "ZZZ"), -1);
    EXPECT_EQ(Find_Customer(CustomerList(), "ACME01"), -1);
}

TEST(CustomerCombo, ShowsTheNamesWithNothingSelected) {
    QComboBox combo;
    ShowCustomers(&combo, Sample, 3);
    ASSERT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.currentIndex(), -1);
    EXPECT_EQ(combo.itemText(2), "Apple Farm"); // the item's text stays the name
    EXPECT_EQ(combo.itemData(0, CustomerListModel::NumberRole).toString(), "ACME01");
    combo.setCurrentIndex(1);
    EXPECT_EQ(combo.currentText(), "apple farm");
    ShowCustomers(&combo, Sample, 2); // shown again: only as many as asked, nothing selected
    EXPECT_EQ(combo.count(), 2);
    EXPECT_EQ(combo.currentIndex(), -1);
}
