#pragma once

// Date fields hold yyyymmdd as an INTEGER, 0 for no date.

#include "ledger/filter/Token.h"

#include <QtGlobal>
#include <optional>

namespace tillbook::filter {

// The yyyymmdd value of a date written as a bare number yyyymmdd (or 0 for no date) or quoted as
// "yyyymmdd" or "yyyy-mm-dd"; nothing for anything else, including dates that do not exist.
std::optional<qint64> readDate(const Token& operand);

} // namespace tillbook::filter
