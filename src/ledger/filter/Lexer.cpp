#include "ledger/filter/Lexer.h"

#include "ledger/filter/Limits.h"

namespace tillbook::filter {
namespace {

bool isOperatorChar(QChar c) {
    return c == u'=' || c == u'!' || c == u'<' || c == u'>';
}

bool isBracket(QChar c) {
    return c == u'(' || c == u')';
}

bool isOperator(const QString& run) {
    static const QStringList operators{"=", "!=", "<>", "<", ">", "<=", ">="};
    return operators.contains(run);
}

// Reads "..." from `start`; a doubled quote inside stands for one quote character.
Token readQuoted(const QString& filter, qsizetype start, const Diagnostics& diagnostics) {
    QString text;
    qsizetype i = start + 1;
    for (;;) {
        if (i >= filter.size())
            diagnostics.fail(QStringLiteral("the quote opened here is never closed"), int(start) + 1);
        if (filter[i] == u'"') {
            if (i + 1 < filter.size() && filter[i + 1] == u'"') {
                text += u'"';
                i += 2;
                continue;
            }
            ++i;
            break;
        }
        text += filter[i++];
    }
    return {TokenKind::Quoted, text, filter.mid(start, i - start), int(start) + 1};
}

} // namespace

QList<Token> tokenize(const QString& filter, const Diagnostics& diagnostics) {
    if (filter.size() > MaxFilterLength)
        diagnostics.fail(QStringLiteral("a filter may be at most %1 characters long, and this one goes on")
                             .arg(MaxFilterLength),
                         MaxFilterLength + 1);
    // PostgreSQL refuses a NUL inside text where SQLite takes it; refused here, both stores answer alike.
    if (const qsizetype nul = filter.indexOf(QChar(u'\0')); nul >= 0)
        diagnostics.fail(QStringLiteral("a filter cannot hold the NUL character"), int(nul) + 1);

    QList<Token> tokens;
    qsizetype i = 0;
    while (i < filter.size()) {
        const QChar c = filter[i];
        const int position = int(i) + 1;
        if (c.isSpace()) {
            ++i;
        } else if (isBracket(c)) {
            const auto kind = c == u'(' ? TokenKind::OpenBracket : TokenKind::CloseBracket;
            tokens.append({kind, QString(c), QString(c), position});
            ++i;
        } else if (c == u'"') {
            tokens.append(readQuoted(filter, i, diagnostics));
            i += tokens.last().spelling.size();
        } else {
            qsizetype end = i;
            if (isOperatorChar(c)) {
                while (end < filter.size() && isOperatorChar(filter[end]))
                    ++end;
            } else {
                while (end < filter.size() && !filter[end].isSpace() && !isBracket(filter[end]) &&
                       !isOperatorChar(filter[end]))
                    ++end;
            }
            const QString run = filter.mid(i, end - i);
            if (isOperatorChar(c) && !isOperator(run))
                diagnostics.fail(
                    QStringLiteral("\"%1\" is not an operator (use = != <> < > <= >= or LIKE)").arg(run),
                    position);
            tokens.append({isOperatorChar(c) ? TokenKind::Operator : TokenKind::Word, run, run, position});
            i = end;
        }
    }
    tokens.append({TokenKind::End, {}, {}, int(filter.size()) + 1});
    return tokens;
}

} // namespace tillbook::filter
