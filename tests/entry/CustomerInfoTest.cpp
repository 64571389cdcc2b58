// What the receipt window shows of a customer.
#include "entry/CustomerInfo.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace tillbook;

TEST(FormatPhone, ByLength) {
    EXPECT_EQ(FormatPhone("123"), "(123)");
    EXPECT_EQ(FormatPhone("5551234"), "555-1234");
    EXPECT_EQ(FormatPhone("15551234"), "1555-1234");
    EXPECT_EQ(FormatPhone("915551234"), "91555-1234");
    EXPECT_EQ(FormatPhone("4165551234"), "(416) 555-1234");
    EXPECT_EQ(FormatPhone("14165551234"), "(1416) 555-1234");
    EXPECT_EQ(FormatPhone("  5551234 "), "555-1234");
}

TEST(FormatPhone, ShortEmptyAndNonDigitNumbers) {
    EXPECT_EQ(FormatPhone("12"), "-12");
    EXPECT_EQ(FormatPhone(""), "");
    EXPECT_EQ(FormatPhone("0551234"), "055-1234"); // a leading zero is kept
    EXPECT_EQ(FormatPhone("555-1234"), "555-1234");
    EXPECT_EQ(FormatPhone("ext. 12"), "ext. 12");
}

TEST(CustomerInfo, FourLinesEachEndedByCarriageReturnAndLineFeed) {
    const CustomerRecord customer{"Acme Books", "1200", "12 King St.", "Suite 4", "4165551234"};
    EXPECT_EQ(CustomerInfoText(customer), "Customer ID: 1200\r\n"
                                          "Address: 12 King St.\r\n"
                                          "               Suite 4\r\n"
                                          "Phone: (416) 555-1234\r\n");
}
