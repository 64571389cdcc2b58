#include "ledger/filter/Parser.h"

#include "ledger/filter/Limits.h"

#include <optional>

namespace tillbook::filter {
namespace {

std::optional<Operator> operatorOf(const Token& token) {
    if (isKeyword(token, QLatin1StringView("LIKE")))
        return Operator::Like;
    if (token.kind != TokenKind::Operator)
        return std::nullopt;
    if (token.text == u"=")
        return Operator::Equal;
    if (token.text == u"!=" || token.text == u"<>")
        return Operator::NotEqual;
    if (token.text == u"<")
        return Operator::Less;
    if (token.text == u">")
        return Operator::Greater;
    if (token.text == u"<=")
        return Operator::LessOrEqual;
    return Operator::GreaterOrEqual;
}

std::optional<Joiner> joinerOf(const Token& token) {
    if (isKeyword(token, QLatin1StringView("AND")))
        return Joiner::And;
    if (isKeyword(token, QLatin1StringView("OR")))
        return Joiner::Or;
    return std::nullopt;
}

class Parser {
public:
    Parser(const QList<Token>& tokens, const Diagnostics& diagnostics)
        : m_tokens(tokens), m_diagnostics(diagnostics) {}

    Run parseFilter() {
        Run run = parseRun(0);
        const Token& next = peek();
        if (next.kind == TokenKind::CloseBracket)
            m_diagnostics.fail(QStringLiteral("this \")\" closes a bracket that was never opened"),
                               next.position);
        if (next.kind != TokenKind::End)
            m_diagnostics.fail(QStringLiteral("expected AND, OR or the end of the filter"), next);
        return run;
    }

private:
    const Token& peek() const { return m_tokens[m_next]; }
    const Token& take() { return m_tokens[m_next++]; }

    // "after "X"" naming the token just read, so that a message says where the gap is.
    QString afterPrevious() const {
        if (m_next == 0)
            return QStringLiteral(" at the start");
        return QStringLiteral(" after ") + Diagnostics::describe(m_tokens[m_next - 1]);
    }

    // `depth` is the number of brackets open around the run; it bounds the recursion.
    Run parseRun(int depth) {
        Run run;
        run.terms.push_back(parseTerm(depth));
        while (const auto joiner = joinerOf(peek())) {
            run.joins.push_back({*joiner, take().position});
            run.terms.push_back(parseTerm(depth));
        }
        return run;
    }

    Expression parseTerm(int depth) {
        if (peek().kind != TokenKind::OpenBracket)
            return parseComparison();
        const Token& open = take();
        if (depth >= MaxNesting)
            m_diagnostics.fail(QStringLiteral("brackets may nest at most %1 deep").arg(MaxNesting),
                               open.position);
        Run inner = parseRun(depth + 1);
        const Token& next = peek();
        if (next.kind == TokenKind::End)
            m_diagnostics.fail(QStringLiteral("the bracket opened here is never closed"), open.position);
        if (next.kind != TokenKind::CloseBracket)
            m_diagnostics.fail(QStringLiteral("expected AND, OR or \")\""), next);
        take();
        return Expression{std::move(inner)};
    }

    Expression parseComparison() {
        Comparison comparison;
        if (++m_clauses > MaxClauses)
            m_diagnostics.fail(QStringLiteral("a filter may have at most %1 clauses, and this is clause %2")
                                   .arg(MaxClauses)
                                   .arg(m_clauses),
                               peek().position);
        if (peek().kind == TokenKind::Quoted)
            m_diagnostics.fail(
                QStringLiteral("expected a field name (written without quotes)") + afterPrevious(), peek());
        if (peek().kind != TokenKind::Word || joinerOf(peek()))
            m_diagnostics.fail(QStringLiteral("expected a field name") + afterPrevious(), peek());
        comparison.field = take();

        const auto op = operatorOf(peek());
        if (!op)
            m_diagnostics.fail(
                QStringLiteral("expected an operator (= != <> < > <= >= LIKE)") + afterPrevious(), peek());
        comparison.op = *op;
        comparison.opToken = take();

        const Token& operand = peek();
        const bool isValue =
            operand.kind == TokenKind::Quoted || (operand.kind == TokenKind::Word && !joinerOf(operand));
        if (!isValue)
            m_diagnostics.fail(QStringLiteral("expected a value") + afterPrevious(), operand);
        comparison.operand = take();
        return Expression{std::move(comparison)};
    }

    const QList<Token>& m_tokens;
    const Diagnostics& m_diagnostics;
    qsizetype m_next = 0;
    int m_clauses = 0;
};

} // namespace

Run parse(const QList<Token>& tokens, const Diagnostics& diagnostics) {
    return Parser(tokens, diagnostics).parseFilter();
}

} // namespace tillbook::filter
