#pragma once

// An exact amount of money in whole thousandths, the ledger's precision. Amounts are never held in
// floating point: typed text is parsed digit by digit and sums never drift. Arithmetic is checked: a
// result beyond the 64-bit range throws InputError instead of wrapping round to a wrong amount.

#include "ledger/LedgerError.h"

#include <QMetaType>
#include <QString>
#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>

namespace tillbook {

// An amount beyond the range of the ledger's arithmetic, told as the clerk reads it.
inline InputError amountTooLarge() {
    return InputError(
        QStringLiteral("An amount is too large for the ledger to work with; nothing was written."));
}

class Money {
public:
    static constexpr std::int64_t Scale = 1000;

    constexpr Money() = default;

    static constexpr Money fromThousandths(std::int64_t thousandths) {
        Money m;
        m.m_thousandths = thousandths;
        return m;
    }
    static constexpr Money fromCents(std::int64_t cents) { return fromThousandths(checkedTimes(cents, 10)); }
    static constexpr Money fromWhole(std::int64_t units) {
        return fromThousandths(checkedTimes(units, Scale));
    }

    // Parses "1,250.00", "-12.5", " 7 ", ".25" exactly. Commas may stand anywhere among the whole digits
    // (as a clerk types them); more than three decimals are refused rather than rounded silently.
    // Returns nothing for text that is not wholly a number.
    static std::optional<Money> parse(const QString& text);

    constexpr std::int64_t thousandths() const { return m_thousandths; }
    constexpr bool isZero() const { return m_thousandths == 0; }
    constexpr bool isNegative() const { return m_thousandths < 0; }

    // Rounds to whole cents, half to even (the rounding of amounts that are computed and kept).
    Money roundedToCentsBankers() const;
    // Rounds to whole cents, half away from zero (the rounding of a display format).
    Money roundedToCentsAwayFromZero() const;

    // Plain decimal text with exactly `decimals` places (0..3), no thousands separators: "-1250.50".
    // Rounds half away from zero when fewer than three places are asked for.
    QString toPlainString(int decimals = 2) const;
    // The ledger's own text of a value: three decimals, as stored ("1250.500").
    QString toLedgerString() const { return toPlainString(3); }

    constexpr Money operator-() const { return fromThousandths(checked(0, m_thousandths, false)); }
    constexpr Money& operator+=(Money other) {
        m_thousandths = checked(m_thousandths, other.m_thousandths, true);
        return *this;
    }
    constexpr Money& operator-=(Money other) {
        m_thousandths = checked(m_thousandths, other.m_thousandths, false);
        return *this;
    }
    friend constexpr Money operator+(Money a, Money b) { return a += b; }
    friend constexpr Money operator-(Money a, Money b) { return a -= b; }
    friend constexpr auto operator<=>(Money a, Money b) = default;
    friend constexpr bool operator==(Money a, Money b) = default;

private:
    // The range is kept symmetric (the lowest 64-bit value is left out), so that every amount can be negated.
    static constexpr std::int64_t checked(std::int64_t a, std::int64_t b, bool add) {
        std::int64_t result = 0;
        const bool overflow =
            add ? __builtin_add_overflow(a, b, &result) : __builtin_sub_overflow(a, b, &result);
        if (overflow || result == std::numeric_limits<std::int64_t>::min())
            throw amountTooLarge();
        return result;
    }
    static constexpr std::int64_t checkedTimes(std::int64_t a, std::int64_t b) {
        std::int64_t result = 0;
        if (__builtin_mul_overflow(a, b, &result) || result == std::numeric_limits<std::int64_t>::min())
            throw amountTooLarge();
        return result;
    }

    std::int64_t m_thousandths = 0;
};

constexpr Money min(Money a, Money b) {
    return a < b ? a : b;
}
constexpr Money max(Money a, Money b) {
    return a < b ? b : a;
}

} // namespace tillbook

Q_DECLARE_METATYPE(tillbook::Money)
