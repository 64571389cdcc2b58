#pragma once

// Builds the InputError messages, which all name the filter, say what is wrong and where.

#include "ledger/filter/Token.h"

#include <QString>

namespace tillbook::filter {

class Diagnostics {
public:
    explicit Diagnostics(const QString& filter);

    // Throws InputError: `Filter "<filter>": <what> at position <position>[, found <token>]`, a long
    // filter shown as `"<its start>..." (<length> characters)`.
    [[noreturn]] void fail(const QString& what, int position) const;
    [[noreturn]] void fail(const QString& what, const Token& found) const;

    // How a message shows a token: "AND", "abc" as typed with its quotes, or "the end of the filter".
    static QString describe(const Token& token);

private:
    QString m_quoted; // the filter as a message shows it
};

} // namespace tillbook::filter
