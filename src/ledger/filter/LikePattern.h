#pragma once

// LIKE patterns mean the same on every store. In a filter, % stands for any run of characters and _ for
// any one character; \% \_ and \\ stand for a literal %, _ and \; any other backslash is itself. The
// SQL always names its escape character, so neither store's default (a backslash on PostgreSQL, none
// on SQLite) ever applies.

#include <QString>

namespace tillbook::filter {

// Follows `LIKE ?` in the SQL.
inline constexpr char16_t LikeEscape = u'!';
inline constexpr auto LikeEscapeClause = " ESCAPE '!'";

// The pattern as written in a filter, rewritten for `LIKE ? ESCAPE '!'`.
QString sqlLikePattern(const QString& written);

} // namespace tillbook::filter
