#include "ledger/filter/DateConstant.h"

#include <QDate>
#include <QRegularExpression>

namespace tillbook::filter {

std::optional<qint64> readDate(const Token& operand) {
    if (operand.kind == TokenKind::Word && operand.text == u"0")
        return 0;
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    static const QRegularExpression dashed(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})$"));
    auto match = compact.match(operand.text);
    if (!match.hasMatch() && operand.kind == TokenKind::Quoted)
        match = dashed.match(operand.text);
    if (!match.hasMatch())
        return std::nullopt;
    const int year = match.captured(1).toInt();
    const int month = match.captured(2).toInt();
    const int day = match.captured(3).toInt();
    if (year < 1 || !QDate(year, month, day).isValid())
        return std::nullopt;
    return qint64(year) * 10000 + month * 100 + day;
}

} // namespace tillbook::filter
