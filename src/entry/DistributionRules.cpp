#include "entry/DistributionRules.h"

#include "ledger/Formats.h"
#include "ui/Events.h"

namespace tillbook {

QString InvalidDistCodeText(RefusedBy by) {
    return QStringLiteral("The Distribution Code you entered is invalid.\n"
                          "Enter the Distribution Code again, or select one using %1 finder.")
        .arg(by == RefusedBy::Keys ? QStringLiteral("thr") : QStringLiteral("the"));
}

QString InvalidAccountText(RefusedBy by) {
    return QStringLiteral("The Account number you entered is invalid.\n"
                          "Enter the Account number again, or select one using %1 finder.")
        .arg(by == RefusedBy::Keys ? QStringLiteral("thr") : QStringLiteral("the"));
}

void TabToLeft(int& keyCode) {
    if (keyCode == vbKeyTab)
        keyCode = vbKeyLeft;
}

int DistKeyTarget(int keyCode, int col) {
    if (keyCode == vbKeyLeft && col >= 1)
        return col - 1;
    if (keyCode == vbKeyRight && col <= 3)
        return col + 1;
    return -1;
}

Money DistLineAmount(const QString& typed) {
    return Strip_Commas(typed).roundedToCentsAwayFromZero();
}

Money DistRemaining(Money receipt, const std::vector<Money>& amounts, int lines, int line) {
    Money left = receipt;
    for (int n = 1; n <= lines && n < static_cast<int>(amounts.size()); ++n)
        if (n != line)
            left -= amounts[static_cast<size_t>(n)];
    return left;
}

Money Undistributed(Money receipt, const std::vector<Money>& amounts, int lines) {
    return DistRemaining(receipt, amounts, lines, 0);
}

bool CanAddDistLine(int lines, const QString& lastAmountCell) {
    return lines == 0 || Strip_Commas(lastAmountCell) > Money();
}

} // namespace tillbook
