#include "ledger/filter/Diagnostics.h"

#include "ledger/filter/Filter.h"

namespace tillbook::filter {

void Diagnostics::fail(const QString& what, int position) const {
    throw FilterError(QStringLiteral("Filter \"%1\": %2 at position %3").arg(m_filter, what).arg(position),
                      position);
}

void Diagnostics::fail(const QString& what, const Token& found) const {
    const QString message = QStringLiteral("Filter \"%1\": %2 at position %3, found %4")
                                .arg(m_filter, what)
                                .arg(found.position)
                                .arg(describe(found));
    throw FilterError(message, found.position);
}

QString Diagnostics::describe(const Token& token) {
    switch (token.kind) {
    case TokenKind::End:
        return QStringLiteral("the end of the filter");
    case TokenKind::Quoted:
        return token.spelling; // already between quotes
    default:
        return QLatin1Char('"') + token.spelling + QLatin1Char('"');
    }
}

} // namespace tillbook::filter
