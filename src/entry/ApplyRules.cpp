#include "entry/ApplyRules.h"

#include "ledger/Formats.h"

#include <algorithm>

namespace tillbook {

Application ApplyToDocument(Money unapplied, Money net) {
    if (net < unapplied)
        return {unapplied - net, net, Money()};
    return {Money(), unapplied, net - unapplied};
}

Application UnapplyFromDocument(Money unapplied, Money applied, Money net) {
    return {unapplied + applied, Money(), net + applied};
}

void AppliedRows::add(int count, int row, const QString& mark) {
    const auto size = static_cast<size_t>(std::max(count, 0)) + 1;
    keys.resize(size);
    marks.resize(size);
    keys[size - 1] = row;
    marks[size - 1] = mark;
}

QString AppliedRows::remove(int count, int row) {
    const auto at = std::find(keys.begin(), keys.end(), row);
    const QString mark = at == keys.end() ? QString() : marks[static_cast<size_t>(at - keys.begin())];
    if (count < 2) {
        reset();
    } else if (at != keys.end()) {
        marks.erase(marks.begin() + (at - keys.begin()));
        keys.erase(at);
    }
    return mark;
}

void AppliedRows::reset() {
    keys.assign(1, 0);
    marks.assign(1, QString());
}

QString ReceiptNumberText(int batch, int entry, const QDate& date) {
    return FormatDigits(batch, 4) + u'-' + FormatDigits(entry, 3) + u'-' + FormatDateCompact(date);
}

} // namespace tillbook
