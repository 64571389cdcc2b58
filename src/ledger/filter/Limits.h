#pragma once

// How large a filter may be. Beyond these a filter is refused with a message, so that no input can
// exhaust the stack here or the SQL parser of either store. The numbers leave room below SQLite's
// defaults: a parser stack of 100 entries (each bracket level takes up to three), an expression tree
// 1,000 deep (a run of n clauses is n deep) and a LIKE pattern of 50,000 bytes (a character is at most
// three bytes of UTF-8, or two characters four).

namespace tillbook::filter {

// Characters (UTF-16 units) of filter text.
inline constexpr int MaxFilterLength = 16384;

// Comparisons in one filter.
inline constexpr int MaxClauses = 500;

// Brackets around any clause, counting those that an AND after an OR implies: A OR B AND C reads
// (A OR B) AND C.
inline constexpr int MaxNesting = 25;

} // namespace tillbook::filter
