#include "ledger/filter/Filter.h"

#include "ledger/filter/Compiler.h"
#include "ledger/filter/Diagnostics.h"
#include "ledger/filter/Lexer.h"
#include "ledger/filter/Parser.h"

namespace tillbook::filter {

SqlFilter compileFilter(const QString& filter, const FieldResolver& resolve) {
    const Diagnostics diagnostics(filter);
    const QList<Token> tokens = tokenize(filter, diagnostics);
    if (tokens.size() == 1) // only the End token: every record
        return {};
    return compile(parse(tokens, diagnostics), resolve, diagnostics);
}

} // namespace tillbook::filter
