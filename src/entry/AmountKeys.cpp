#include "entry/AmountKeys.h"

namespace tillbook {

namespace {
constexpr int KeyBack = 8;
constexpr int KeyPercent = 37;    // '%'
constexpr int KeyApostrophe = 39; // '\''
constexpr int KeyPoint = 46;      // '.'
} // namespace

int FilterAmountKey(int keyAscii, const QString& text, bool& decimalTyped) {
    // Deleting back to one character (or none) allows a decimal point again.
    if (text.size() < 2 && text != u".")
        decimalTyped = false;
    // "%" and "'" have always been taken beside the digits; the amount's reading stops at them.
    if (keyAscii == KeyBack || (keyAscii >= '0' && keyAscii <= '9') || keyAscii == KeyPercent ||
        keyAscii == KeyApostrophe)
        return keyAscii;
    if (keyAscii == KeyPoint && !decimalTyped) {
        decimalTyped = true;
        return keyAscii;
    }
    return 0;
}

Money AdjustedRemaining(Money amount, Money amountOnFocus, Money remaining) {
    return (amount - amountOnFocus) + remaining;
}

} // namespace tillbook
