#pragma once

// The three kinds of receipt entry, by the position of the transaction-type list: an ordinary receipt
// (RMITTYPE 1), a prepayment (2) and a miscellaneous receipt (5).

namespace tillbook {

enum class ReceiptKind { Receipt = 0, Prepayment = 1, Misc = 2 };

} // namespace tillbook
