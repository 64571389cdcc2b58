#pragma once

// Checks of the codes a clerk types on a miscellaneous receipt, and the small conversions around them.

#include "ledger/Session.h"

#include <QString>
#include <optional>

namespace tillbook {

// True when a distribution code equal to `code` (exactly, case included) exists. A ledger failure answers
// false unless the code was found before it.
bool Check_DistCode(Session& session, const QString& code);

// The revenue account of the distribution code `code` (compared as Check_DistCode does); nothing when there
// is no such code.
std::optional<QString> Get_DistRevenueAccount(Session& session, const QString& code);

// True when the account, trimmed and without its segment hyphens, exists as an account number.
bool Check_GLAccount(Session& session, const QString& account);

// The text trimmed of leading and trailing blanks, with every "-" removed.
QString Strip_Hyphens(const QString& text);

// The list position of a receipt type in the transaction-type list: 1 -> 0, 2 -> 1, 5 -> 2, others -> 0.
int Get_ReceiptTypeIndex(int receiptType);

} // namespace tillbook
