#pragma once

#include <QCollator>

namespace tillbook {

// The order of customer names: the program's own locale, set explicitly so that the order does not depend on
// the machine's (the C locale would put "Äpfel" after "Zebra"), ignoring case.
QCollator NameCollator();

} // namespace tillbook
