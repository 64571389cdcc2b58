#include "entry/dialogs/FinderTexts.h"

#include "fetching/FinderRecords.h"

#include <initializer_list>
#include <utility>

namespace tillbook {

QString FinderCaption(int finderKind) {
    return finderKind == FinderDistCodes ? QStringLiteral("Tillbook - Distribution Codes")
                                         : QStringLiteral("Tillbook - GL Accounts");
}

QString FinderFormat(int finderKind) {
    if (finderKind == FinderDistCodes)
        return QStringLiteral(
            "^ Distribution Code |^                      Description                       "
            "|^   Status   |^            Revenue Account            |^   Inventory Account  "
            " |^Costs of Goods Sold Account");
    return QStringLiteral("^   Account Number   |^                     Description                    |^   "
                          "Status   |^             Type             |^   Structure Code   |^   Reserved   "
                          "|^   Allocations Allowed   |^   Multicurrency   |^   Quantities Allowed   |^   "
                          "Unit of Measure   |");
}

namespace {

// The text of a coded value from its table; a code not in the table is shown as read.
QString textOf(const QString& code, std::initializer_list<std::pair<const char*, const char*>> table) {
    for (const auto& [value, text] : table)
        if (code == QLatin1String(value))
            return QString::fromLatin1(text);
    return code;
}

} // namespace

QString DistCodeStatusText(const QString& status) {
    return textOf(status, {{"1", "Active"}, {"0", "Inactive"}});
}

QString AccountStatusText(const QString& status) {
    if (status != u"1" && QString::compare(status, QStringLiteral("0"), Qt::CaseSensitive) <= 0)
        return QStringLiteral("Inactive");
    return textOf(status, {{"1", "Active"}});
}

QString AccountTypeText(const QString& type) {
    return textOf(type, {{"I", "Income"}, {"B", "Balance Sheet"}, {"R", "Retained Earnings"}});
}

QString SwitchText(const QString& value) {
    return textOf(value, {{"1", "Yes"}, {"0", "No"}});
}

QString HyphenatedAccount(const QString& account) {
    const QString id = account.trimmed();
    const qsizetype length = id.size();
    if (length >= 5 && length <= 7)
        return id.left(4) + u'-' + id.mid(4);
    if (length == 8 || length == 9)
        return id.left(4) + u'-' + id.mid(4, 3) + u'-' + id.mid(7);
    return id;
}

QStringList FinderDisplayRow(int finderKind, QStringList record) {
    if (finderKind == FinderDistCodes) {
        if (record.size() > 2)
            record[2] = DistCodeStatusText(record[2]);
        return record;
    }
    if (record.size() < 10)
        return record;
    record[0] = HyphenatedAccount(record[0]);
    record[2] = AccountStatusText(record[2]);
    record[3] = AccountTypeText(record[3]);
    for (const int col : {6, 7, 8})
        record[col] = SwitchText(record[col]);
    return record;
}

} // namespace tillbook
