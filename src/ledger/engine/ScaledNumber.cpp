#include "ledger/engine/ValueCodec.h"

#include <limits>

namespace tillbook::engine {

namespace {

constexpr qint64 Int64Max = std::numeric_limits<qint64>::max();

} // namespace

qint64 powerOfTen(int n) {
    qint64 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

std::optional<qint64> parseScaled(const QString& text, int scale, bool& extraDecimals) {
    extraDecimals = false;
    const QString t = text.trimmed();
    int i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
        negative = t[i++] == u'-';
    qint64 value = 0;
    int digits = 0;
    const qint64 guard = Int64Max / 10 - 10;
    for (; i < t.size() && (t[i].isDigit() || t[i] == u','); ++i) {
        if (t[i] == u',')
            continue;
        if (value > guard)
            return std::nullopt;
        value = value * 10 + t[i].digitValue();
        ++digits;
    }
    int places = 0;
    int firstDropped = -1; // the first digit beyond `scale`, which decides the rounding
    if (i < t.size() && t[i] == u'.') {
        for (++i; i < t.size() && t[i].isDigit(); ++i, ++digits) {
            if (places < scale) {
                if (value > guard)
                    return std::nullopt;
                value = value * 10 + t[i].digitValue();
                ++places;
                continue;
            }
            if (firstDropped < 0)
                firstDropped = t[i].digitValue();
            if (t[i] != u'0')
                extraDecimals = true;
        }
    }
    if (i != t.size() || digits == 0)
        return std::nullopt;
    for (; places < scale; ++places) {
        if (value > guard)
            return std::nullopt;
        value *= 10;
    }
    if (firstDropped >= 5)
        ++value;
    return negative ? -value : value;
}

QString formatScaled(qint64 scaled, int scale) {
    const qint64 factor = powerOfTen(scale);
    const qint64 magnitude = scaled < 0 ? -scaled : scaled;
    QString text = QString::number(magnitude / factor);
    if (scale > 0)
        text += u'.' + QString::number(magnitude % factor).rightJustified(scale, u'0');
    return scaled < 0 ? u'-' + text : text;
}

} // namespace tillbook::engine
