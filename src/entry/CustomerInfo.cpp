#include "entry/CustomerInfo.h"

namespace tillbook {

namespace {

// Fills the '#' places of a pattern with the digits from the right; digits beyond the places go in front of
// the first place, places without a digit stay empty, and the pattern's other characters are always shown.
QString fillFromRight(const QString& digits, const QString& pattern) {
    QString out;
    qsizetype next = digits.size() - 1;
    const qsizetype firstPlace = pattern.indexOf(u'#');
    for (qsizetype i = pattern.size() - 1; i >= 0; --i) {
        if (pattern[i] != u'#') {
            out.prepend(pattern[i]);
            continue;
        }
        if (next >= 0)
            out.prepend(digits[next--]);
        if (i == firstPlace && next >= 0)
            out.prepend(digits.left(next + 1));
    }
    return out;
}

bool allDigits(const QString& text) {
    for (const QChar c : text) {
        if (!c.isDigit())
            return false;
    }
    return !text.isEmpty();
}

} // namespace

QString FormatPhone(const QString& phone) {
    const QString trimmed = phone.trimmed();
    if (!allDigits(trimmed))
        return trimmed;
    if (trimmed.size() < 10)
        return fillFromRight(trimmed,
                             trimmed.size() == 3 ? QStringLiteral("(###)") : QStringLiteral("###-####"));
    return fillFromRight(trimmed, QStringLiteral("(###) ###-####"));
}

QString CustomerInfoText(const CustomerRecord& customer) {
    const QString lineEnd = QStringLiteral("\r\n");
    return QStringLiteral("Customer ID: ") + customer.Id + lineEnd + QStringLiteral("Address: ") +
           customer.Street1 + lineEnd + QString(15, u' ') + customer.Street2 + lineEnd +
           QStringLiteral("Phone: ") + FormatPhone(customer.Phone) + lineEnd;
}

} // namespace tillbook
