// The customer list kept in memory and shown in the drop-down: records by position, the number looked up
// exactly, a list model that shows the names (with the numbers beside them) and selects nothing, and
// finding a customer by typing.
#include "fetching/CustomerList.h"

#include "entry/CustomerListModel.h"
#include "fetching/CustomerSearch.h"
#include "support/QtPrinters.h"
#include "ui/ComboBox.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTest>
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

TEST(CustomerList, RecordsByPositionAndTheNumberFoundExactly) {
    const CustomerRecord first = Sample[0];
    EXPECT_EQ(QStringList({first.Name, first.Id, first.Street1, first.Street2, first.Phone}).join('|') +
                  Sample[1].Street2 + Sample[2].Phone,
              "Äpfel GmbH|ACME01|12 Rue Étienne||4165551234Suite 4555");
    for (const auto& [number, found] : {std::pair{"ACME01", 0}, {"acme01", 2}, {"0002", 1}, {"0002 ", -1}})
        EXPECT_EQ(Find_Customer(Sample, number), found) << number;
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

TEST(CustomerSearch, FindsAnyPartOfNameOrNumberIgnoringCaseAndAccents) {
    const CustomerList list = listOf({{"Café Noir", "C-100", "", "", ""},
                                      {"Smith Hardware", "0042", "", "", ""},
                                      {"Straße & Söhne", "ACME01", "", "", ""},
                                      {"Ærø Dairy", "D7", "", "", ""},
                                      {"smith\tbakery", "S1", "", "", ""}});
    CustomerSearch search(list);
    const std::vector<std::pair<QString, std::vector<std::uint32_t>>> cases = {
        {"cafe", {0}},         {"NOIR", {0}},    {"é n", {0}},  {"smith", {1, 4}},
        {"smith ", {1, 4}},    {"smith h", {1}}, {"0042", {1}}, {"acme", {2}},
        {"strasse", {2}},      {"sohne", {2}},   {"aero", {3}}, {"r0", {}},
        {"", {0, 1, 2, 3, 4}}, {"1", {0, 2, 4}}, {"d7", {3}},   {"ir\tc", {}},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(search.find(text), expected) << text.toStdString();
    // A longer text looks among the last results; a different one searches everything again.
    EXPECT_EQ(search.find("s"), (std::vector<std::uint32_t>{1, 2, 4}));
    EXPECT_EQ(search.find("sm"), (std::vector<std::uint32_t>{1, 4}));
    EXPECT_EQ(search.find("a"), (std::vector<std::uint32_t>{0, 1, 2, 3, 4}));
}

TEST(CustomerCombo, TypingOnTheBoxFindsAndChoosesACustomer) {
    ComboBox combo;
    int clicks = 0;
    QObject::connect(&combo, &ComboBox::Click, [&] { ++clicks; });
    ShowCustomers(&combo, Sample, 3);
    combo.show();
    QTest::keyClicks(&combo, "ACME");
    auto* finder = combo.findChild<QWidget*>("CustomerFinder");
    ASSERT_NE(finder, nullptr);
    EXPECT_TRUE(finder->isVisible());
    auto* text = finder->findChild<QLineEdit*>();
    EXPECT_EQ(text->text(), "ACME");     // the first key opened it, the others went on into its line
    QTest::keyClick(text, Qt::Key_Down); // "ACME01" then "acme01": the second
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_FALSE(finder->isVisible());
    EXPECT_EQ(combo.currentIndex(), 2);
    EXPECT_EQ(clicks, 1); // as a choice from the list
}
