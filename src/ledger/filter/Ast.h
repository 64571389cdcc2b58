#pragma once

// The parsed form of a filter: runs of clauses joined by AND / OR, in the order they were written.
// Names and values are kept as typed; what a bare word means is decided when the fields are known.
//
// A run holds its terms side by side rather than as a chain of binary nodes, so the tree is only as
// deep as the filter's brackets: building, compiling and destroying it never recurse further.

#include "ledger/filter/Token.h"

#include <variant>
#include <vector>

namespace tillbook::filter {

enum class Operator { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual, Like };

struct Comparison {
    Token field; // a Word
    Operator op = Operator::Equal;
    Token opToken; // as typed, for messages
    Token operand; // a Word or a Quoted
};

enum class Joiner { And, Or };

struct Join {
    Joiner joiner = Joiner::And;
    int position = 0; // of the AND / OR, for messages
};

struct Expression;

// term[0] join[0] term[1] join[1] term[2] ... evaluated strictly left to right:
// join[i] joins everything up to term[i] with term[i + 1].
struct Run {
    std::vector<Expression> terms; // at least one
    std::vector<Join> joins;       // one fewer than terms
};

// A clause, or a bracketed run (one per pair of brackets written, however redundant).
struct Expression {
    std::variant<Comparison, Run> node;
};

} // namespace tillbook::filter
