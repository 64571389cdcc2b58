#pragma once

// Builds the FilterError messages, which all name the filter, say what is wrong and where.

#include "ledger/filter/Token.h"

#include <QString>
#include <utility>

namespace tillbook::filter {

class Diagnostics {
public:
    explicit Diagnostics(QString filter) : m_filter(std::move(filter)) {}

    // Throws FilterError: `Filter "<filter>": <what> at position <position>[, found <token>]`.
    [[noreturn]] void fail(const QString& what, int position) const;
    [[noreturn]] void fail(const QString& what, const Token& found) const;

    // How a message shows a token: "AND", "abc" as typed with its quotes, or "the end of the filter".
    static QString describe(const Token& token);

private:
    QString m_filter;
};

} // namespace tillbook::filter
