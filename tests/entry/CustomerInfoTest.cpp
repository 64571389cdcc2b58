// What the receipt window shows of a customer.
#include "entry/CustomerInfo.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace tillbook;

// By length, blanks around trimmed, a leading zero kept, other text left as it is.
TEST(FormatPhone, ByLength) {
    const std::vector<std::pair<QString, QString>> phones = {{"123", "(123)"},
                                                             {"5551234", "555-1234"},
                                                             {"15551234", "1555-1234"},
                                                             {"915551234", "91555-1234"},
                                                             {"4165551234", "(416) 555-1234"},
                                                             {"14165551234", "(1416) 555-1234"},
                                                             {"  5551234 ", "555-1234"},
                                                             {"12", "-12"},
                                                             {"", ""},
                                                             {"0551234", "055-1234"},
                                                             {"555-1234", "555-1234"},
                                                             {"ext. 12", "ext. 12"}};
    for (const auto& [digits, shown] : phones)
        EXPECT_EQ(FormatPhone(digits), shown) << digits.toStdString();
}

TEST(CustomerInfo, FourLinesEachEndedByCarriageReturnAndLineFeed) {
    const CustomerRecord customer{"Acme Books", "1200", "12 King St.", "Suite 4", "4165551234"};
    EXPECT_EQ(CustomerInfoText(customer), "Customer ID: 1200\r\n"
                                          "Address: 12 King St.\r\n"
                                          "               Suite 4\r\n"
                                          "Phone: (416) 555-1234\r\n");
}
