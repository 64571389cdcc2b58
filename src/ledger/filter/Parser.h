#pragma once

#include "ledger/filter/Ast.h"
#include "ledger/filter/Diagnostics.h"
#include "ledger/filter/Token.h"

#include <QList>

namespace tillbook::filter {

// Parses the tokens of a non-empty filter (more than the End token). AND and OR have no precedence
// over each other: each joins everything to its left with the next clause or bracket. Throws
// InputError for a missing field, operator or value, an unbalanced bracket, trailing tokens, or
// more clauses or deeper brackets than Limits.h allows.
Run parse(const QList<Token>& tokens, const Diagnostics& diagnostics);

} // namespace tillbook::filter
