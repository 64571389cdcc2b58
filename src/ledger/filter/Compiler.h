#pragma once

#include "ledger/filter/Ast.h"
#include "ledger/filter/Diagnostics.h"
#include "ledger/filter/Filter.h"

namespace tillbook::filter {

// Turns a parsed filter into SQL over the view's columns: resolves field names, decides what each
// bare word means, checks types and converts constants to the stored form. Throws InputError.
SqlFilter compile(const Run& filter, const FieldResolver& resolve, const Diagnostics& diagnostics);

} // namespace tillbook::filter
