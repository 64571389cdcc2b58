#pragma once

// What the receipt window shows of the chosen customer.

#include "fetching/CustomerList.h"

namespace tillbook {

// A phone number as shown: 3 characters "(123)", 10 or more "(123) 555-1234", others "555-1234". Only digits
// are formatted; the number is filled from the right, extra digits go in front of the first group, leading
// zeros are kept, and a number with other characters is shown as stored.
QString FormatPhone(const QString& phone);

// Four lines, each ended by a carriage return and line feed: the customer's number, the two address lines
// (the second indented under the first) and the phone.
QString CustomerInfoText(const CustomerRecord& customer);

} // namespace tillbook
