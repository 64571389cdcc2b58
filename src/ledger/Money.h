#pragma once

// An exact amount of money in whole thousandths, the ledger's precision. Amounts are never held in
// floating point: typed text is parsed digit by digit and sums never drift.

#include <QMetaType>
#include <QString>

#include <compare>
#include <cstdint>
#include <optional>

namespace tillbook {

class Money {
public:
    static constexpr std::int64_t Scale = 1000;

    constexpr Money() = default;

    static constexpr Money fromThousandths(std::int64_t thousandths) {
        Money m;
        m.m_thousandths = thousandths;
        return m;
    }
    static constexpr Money fromCents(std::int64_t cents) { return fromThousandths(cents * 10); }
    static constexpr Money fromWhole(std::int64_t units) { return fromThousandths(units * Scale); }

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

    constexpr Money operator-() const { return fromThousandths(-m_thousandths); }
    constexpr Money& operator+=(Money other) {
        m_thousandths += other.m_thousandths;
        return *this;
    }
    constexpr Money& operator-=(Money other) {
        m_thousandths -= other.m_thousandths;
        return *this;
    }
    friend constexpr Money operator+(Money a, Money b) { return a += b; }
    friend constexpr Money operator-(Money a, Money b) { return a -= b; }
    friend constexpr auto operator<=>(Money a, Money b) = default;
    friend constexpr bool operator==(Money a, Money b) = default;

private:
    std::int64_t m_thousandths = 0;
};

constexpr Money min(Money a, Money b) { return a < b ? a : b; }
constexpr Money max(Money a, Money b) { return a < b ? b : a; }

} // namespace tillbook

Q_DECLARE_METATYPE(tillbook::Money)
