#pragma once

// Numbers in a filter are compared with INTEGER columns that hold a value times 10^scale. They are
// converted digit by digit, never through floating point, so 1.2345 against a scale of 3 is known
// to lie strictly between 1234 and 1235.

#include <QString>
#include <QtGlobal>
#include <optional>

namespace tillbook::filter {

// The largest scale a Decimal field may have: 10^18 still fits in 64 bits.
inline constexpr int MaxScale = 18;

struct WrittenNumber {
    bool negative = false;
    QString whole;    // ASCII digits before the point, possibly empty (".5")
    QString fraction; // ASCII digits after the point, possibly empty
};

// Reads [+-]digits[.digits] or [+-].digits, as a put reads a number (commas among the whole digits,
// digits of any script); nothing for any other word.
std::optional<WrittenNumber> readNumber(const QString& word);

// A number times 10^scale: exactly `floor` when `exact`, otherwise strictly between floor and floor + 1.
struct ScaledNumber {
    qint64 floor = 0;
    bool exact = true;
};

// Nothing when the scaled number does not fit in 64 bits. `scale` is 0..MaxScale.
std::optional<ScaledNumber> scaleNumber(const WrittenNumber& number, int scale);

} // namespace tillbook::filter
