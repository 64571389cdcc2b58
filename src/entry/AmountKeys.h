#pragma once

// The amount field's rules that need no widget: which typed characters it takes, and how the remaining amount
// follows a changed receipt amount.

#include "ledger/Money.h"

#include <QString>

namespace tillbook {

// The amount field's key filter. `text` is the field's text before the key, `decimalTyped` the flag that a
// decimal point is already in it (reset while the text is shorter than two characters and not "."). Returns
// the key to type: the key itself, or 0 when it is dropped. Digits, Backspace, "%" and "'" pass; one "."
// passes.
int FilterAmountKey(int keyAscii, const QString& text, bool& decimalTyped);

// The remaining amount (unapplied or undistributed) after the receipt amount changed from `amountOnFocus` to
// `amount`: the change is added to what remained, whatever was applied or distributed meanwhile.
Money AdjustedRemaining(Money amount, Money amountOnFocus, Money remaining);

} // namespace tillbook
