#include "ledger/filter/ExactNumber.h"

#include <limits>

namespace tillbook::filter {
namespace {

bool allDigits(QStringView text) {
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

} // namespace

std::optional<WrittenNumber> readNumber(const QString& word) {
    QStringView rest(word);
    WrittenNumber number;
    if (rest.startsWith(u'-') || rest.startsWith(u'+')) {
        number.negative = rest.front() == u'-';
        rest = rest.mid(1);
    }
    const qsizetype point = rest.indexOf(u'.');
    const QStringView whole = point < 0 ? rest : rest.left(point);
    const QStringView fraction = point < 0 ? QStringView() : rest.mid(point + 1);
    if (whole.isEmpty() && fraction.isEmpty())
        return std::nullopt;
    if (!allDigits(whole) || !allDigits(fraction))
        return std::nullopt;
    number.whole = whole.toString();
    number.fraction = fraction.toString();
    return number;
}

std::optional<ScaledNumber> scaleNumber(const WrittenNumber& number, int scale) {
    // The digits of number * 10^scale up to the point; any non-zero digit after them makes it inexact.
    const QString digits = number.whole + number.fraction.left(scale).leftJustified(scale, u'0');
    const QStringView dropped = QStringView(number.fraction).mid(scale);
    const bool exact = dropped.count(u'0') == dropped.size();

    qint64 magnitude = 0;
    for (QChar c : digits) {
        if (__builtin_mul_overflow(magnitude, qint64(10), &magnitude) ||
            __builtin_add_overflow(magnitude, qint64(c.unicode() - u'0'), &magnitude))
            return std::nullopt;
    }
    if (!number.negative)
        return ScaledNumber{magnitude, exact};
    // -1234.5 lies between -1235 and -1234: below an inexact negative number the floor is one further down.
    return ScaledNumber{exact ? -magnitude : -magnitude - 1, exact};
}

} // namespace tillbook::filter
