#pragma once

// The pieces the lexer cuts a filter into.

#include <QString>

namespace tillbook::filter {

enum class TokenKind {
    Word,         // a field name, keyword, number or bare text: runs to a blank, bracket or operator
    Quoted,       // "text"
    Operator,     // = != <> < > <= >=
    OpenBracket,  // (
    CloseBracket, // )
    End,
};

struct Token {
    TokenKind kind = TokenKind::End;
    QString text;     // the value: a quoted token's text without its quotes, otherwise as typed
    QString spelling; // exactly as typed, for messages
    int position = 0; // 1-based character position of the token's first character
};

// Keywords are words, whatever their case; a quoted "AND" is text.
inline bool isKeyword(const Token& token, QLatin1StringView keyword) {
    return token.kind == TokenKind::Word && token.text.compare(keyword, Qt::CaseInsensitive) == 0;
}

} // namespace tillbook::filter
