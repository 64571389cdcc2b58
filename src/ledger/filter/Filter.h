#pragma once

// The ledger's filter language: the text that positions a view ("CNTBTCH = 12 AND CNTITEM > 0"),
// compiled into a parameterised SQL condition. No text of a filter ever reaches the SQL: constants
// become parameters and column names come only from the resolver.
//
// The language in short:
//   clause     field op operand, op one of = != <> < > <= >= LIKE (keywords in any case)
//   joining    AND / OR, strictly left to right: A AND B OR C is (A AND B) OR C; brackets group
//   operand    "quoted text" (a doubled "" inside stands for one "), a number, or a bare word;
//              a bare word naming a field of the view compares the two fields, any other is text
//   numbers    as a put reads them: 1,250.50  -.5  and digits of any script (full-width １２)
//   LIKE       % any run of characters, _ any one; \% \_ \\ a literal %, _, \; other \ are literal
//   blanks     free and optional between tokens; an empty filter selects every record
//   limits     Limits.h: length, clauses and bracket depth, beyond which a filter is refused

#include "ledger/LedgerError.h"

#include <QString>
#include <QVariantList>
#include <functional>
#include <optional>
#include <stdexcept>

namespace tillbook::filter {

enum class FieldType { Text, Integer, Boolean, Decimal, Date };

struct FieldRef {
    QString column; // the SQL column name, already a safe identifier chosen by the engine's schema
    FieldType type = FieldType::Text;
    int scale = 0; // Decimal only: the column holds the value times 10^scale as an INTEGER
};

// Looks up a field of the view by name (the resolver ignores case); nothing when the view has no such field.
using FieldResolver = std::function<std::optional<FieldRef>(const QString& name)>;

struct SqlFilter {
    // SQL boolean expression with ? placeholders; empty = every record. Joined clauses always come
    // bracketed, so the text can be ANDed with other conditions as it stands.
    QString where;
    QVariantList parameters; // one per ?, in order: QString for text, qlonglong for the rest
};

// Compiles a filter for the view whose fields `resolve` knows. Throws InputError, whose message() reads like
//   Filter "CNTBTCH= AND X": expected a value after "=" at position 10, found "AND"
// and whose position() is the 1-based character position of the offending token (length + 1 for the end).
SqlFilter compileFilter(const QString& filter, const FieldResolver& resolve);

} // namespace tillbook::filter
