#include "ledger/filter/ExactNumber.h"

#include <limits>

namespace tillbook::filter {
namespace {

// Reads digits (any script's decimal digits, as QChar::isDigit knows them) from `at` as ASCII; commas
// are skipped where `commas` allows them.
QString readDigits(QStringView text, qsizetype& at, bool commas) {
    QString digits;
    for (; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c.isDigit())
            digits += QChar(u'0' + c.digitValue());
        else if (!(commas && c == u','))
            break;
    }
    return digits;
}

} // namespace

// The numbers a put accepts: a sign, whole digits among which commas may stand, a point and fraction
// digits, in any script's digits (１２.５ is 12.5).
std::optional<WrittenNumber> readNumber(const QString& word) {
    const QStringView text(word);
    WrittenNumber number;
    qsizetype at = 0;
    if (text.startsWith(u'-') || text.startsWith(u'+')) {
        number.negative = text.front() == u'-';
        ++at;
    }
    number.whole = readDigits(text, at, true);
    if (at < text.size() && text[at] == u'.') {
        ++at;
        number.fraction = readDigits(text, at, false);
    }
    if (at != text.size() || (number.whole.isEmpty() && number.fraction.isEmpty()))
        return std::nullopt;
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
