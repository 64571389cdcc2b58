#pragma once

// The parsed form of a filter: clauses joined by AND / OR, in the order they were written. Names and
// values are kept as typed; what a bare word means is decided when the fields are known.

#include "ledger/filter/Token.h"

#include <QString>
#include <memory>
#include <variant>

namespace tillbook::filter {

enum class Operator { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual, Like };

struct Comparison {
    Token field; // a Word
    Operator op = Operator::Equal;
    Token opToken; // as typed, for messages
    Token operand; // a Word or a Quoted
};

struct Expression;

enum class Joiner { And, Or };

struct Junction {
    Joiner joiner = Joiner::And;
    std::unique_ptr<Expression> left;
    std::unique_ptr<Expression> right;
};

struct Expression {
    std::variant<Comparison, Junction> node;
};

} // namespace tillbook::filter
