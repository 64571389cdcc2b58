#include "ledger/filter/Diagnostics.h"

#include "ledger/filter/Filter.h"

namespace tillbook::filter {
namespace {

// A message quotes a long filter by its start only, so that it still fits on a screen.
constexpr qsizetype QuotedLength = 80;

} // namespace

Diagnostics::Diagnostics(const QString& filter)
    : m_quoted(filter.size() <= QuotedLength
                   ? u'"' + filter + u'"'
                   : QStringLiteral("\"%1...\" (%2 characters)")
                         .arg(filter.left(QuotedLength), QString::number(filter.size()))) {}

void Diagnostics::fail(const QString& what, int position) const {
    throw InputError(
        QStringLiteral("Filter %1: %2 at position %3").arg(m_quoted, what, QString::number(position)),
        position);
}

void Diagnostics::fail(const QString& what, const Token& found) const {
    // One arg() for all, so that a %1 in the filter's own text stays as it is.
    const QString message = QStringLiteral("Filter %1: %2 at position %3, found %4")
                                .arg(m_quoted, what, QString::number(found.position), describe(found));
    throw InputError(message, found.position);
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
