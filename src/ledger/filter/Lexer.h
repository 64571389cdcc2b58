#pragma once

#include "ledger/filter/Diagnostics.h"
#include "ledger/filter/Token.h"

#include <QList>

namespace tillbook::filter {

// Cuts a filter into tokens, ending with one End token. Throws InputError for a filter longer than
// Limits.h allows, a NUL character, an unterminated quote or a run of operator characters that is no
// operator ("=<", "!").
QList<Token> tokenize(const QString& filter, const Diagnostics& diagnostics);

} // namespace tillbook::filter
