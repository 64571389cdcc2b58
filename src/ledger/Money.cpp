#include "ledger/Money.h"

#include <limits>

namespace tillbook {

namespace {

constexpr std::int64_t MaxWhole = std::numeric_limits<std::int64_t>::max() / Money::Scale - 1;

std::int64_t roundToMultiple(std::int64_t value, std::int64_t unit, bool halfToEven) {
    const std::int64_t sign = value < 0 ? -1 : 1;
    const std::int64_t magnitude = value * sign;
    std::int64_t whole = magnitude / unit;
    const std::int64_t rest = magnitude % unit;
    const std::int64_t twice = rest * 2;
    if (twice > unit || (twice == unit && (!halfToEven || whole % 2 == 1)))
        ++whole;
    return sign * whole * unit;
}

} // namespace

std::optional<Money> Money::parse(const QString& text) {
    const QString t = text.trimmed();
    int i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+')) {
        negative = t[i] == u'-';
        ++i;
    }
    std::int64_t whole = 0;
    int digits = 0;
    for (; i < t.size() && (t[i].isDigit() || t[i] == u','); ++i) {
        if (t[i] == u',')
            continue;
        if (whole > MaxWhole / 10)
            return std::nullopt;
        whole = whole * 10 + t[i].digitValue();
        ++digits;
    }
    std::int64_t fraction = 0;
    int places = 0;
    if (i < t.size() && t[i] == u'.') {
        for (++i; i < t.size() && t[i].isDigit(); ++i) {
            if (++places > 3)
                return std::nullopt;
            fraction = fraction * 10 + t[i].digitValue();
            ++digits;
        }
    }
    if (i != t.size() || digits == 0)
        return std::nullopt;
    for (int p = places; p < 3; ++p)
        fraction *= 10;
    const std::int64_t value = whole * Scale + fraction;
    return fromThousandths(negative ? -value : value);
}

Money Money::roundedToCentsBankers() const { return fromThousandths(roundToMultiple(m_thousandths, 10, true)); }

Money Money::roundedToCentsAwayFromZero() const {
    return fromThousandths(roundToMultiple(m_thousandths, 10, false));
}

QString Money::toPlainString(int decimals) const {
    decimals = qBound(0, decimals, 3);
    std::int64_t unit = 1;
    for (int p = decimals; p < 3; ++p)
        unit *= 10;
    const std::int64_t rounded = roundToMultiple(m_thousandths, unit, false);
    const std::int64_t magnitude = rounded < 0 ? -rounded : rounded;
    QString result = QString::number(magnitude / Scale);
    if (decimals > 0) {
        const std::int64_t fraction = (magnitude % Scale) / unit;
        result += u'.' + QString::number(fraction).rightJustified(decimals, u'0');
    }
    return rounded < 0 ? u'-' + result : result;
}

} // namespace tillbook
