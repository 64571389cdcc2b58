#include "ledger/filter/Compiler.h"

#include "ledger/filter/DateConstant.h"
#include "ledger/filter/ExactNumber.h"
#include "ledger/filter/LikePattern.h"
#include "ledger/filter/Limits.h"

#include <optional>

namespace tillbook::filter {
namespace {

QString sqlOperator(Operator op) {
    switch (op) {
    case Operator::Equal:
        return QStringLiteral("=");
    case Operator::NotEqual:
        return QStringLiteral("<>");
    case Operator::Less:
        return QStringLiteral("<");
    case Operator::Greater:
        return QStringLiteral(">");
    case Operator::LessOrEqual:
        return QStringLiteral("<=");
    case Operator::GreaterOrEqual:
        return QStringLiteral(">=");
    case Operator::Like:
        return QStringLiteral("LIKE");
    }
    return {};
}

// The engine's column names are safe identifiers already; doubling quotes keeps them so regardless.
QString quotedColumn(const QString& column) {
    return QLatin1Char('"') + QString(column).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

bool isNumeric(FieldType type) {
    return type == FieldType::Integer || type == FieldType::Boolean || type == FieldType::Decimal;
}

QString kindName(FieldType type) {
    switch (type) {
    case FieldType::Text:
        return QStringLiteral("a text field");
    case FieldType::Date:
        return QStringLiteral("a date field");
    default:
        return QStringLiteral("a number field");
    }
}

// Text fields are stored without trailing blanks, so a constant compares the same way.
QString withoutTrailingBlanks(QString text) {
    qsizetype end = text.size();
    while (end > 0 && text[end - 1] == u' ')
        --end;
    text.truncate(end);
    return text;
}

qint64 powerOfTen(int exponent) {
    qint64 result = 1;
    for (int i = 0; i < exponent; ++i)
        result *= 10;
    return result;
}

struct ResolvedField {
    FieldRef ref;
    QString name; // as typed
    int scale() const { return ref.type == FieldType::Decimal ? ref.scale : 0; }
};

// SQL text and the operator that joins it at its top level, which decides where it needs brackets.
enum class Top { Clause, And, Or };

struct Sql {
    QString text;
    Top top = Top::Clause;
};

QString bracketed(const QString& text) {
    return QLatin1Char('(') + text + QLatin1Char(')');
}

// An AND that follows an OR brackets everything before it: A OR B AND C reads (A OR B) AND C.
bool impliesBracket(const Run& run, size_t join) {
    return join > 0 && run.joins[join].joiner == Joiner::And && run.joins[join - 1].joiner == Joiner::Or;
}

class Compiler {
public:
    Compiler(const FieldResolver& resolve, const Diagnostics& diagnostics)
        : m_resolve(resolve), m_diagnostics(diagnostics) {}

    SqlFilter compile(const Run& filter) {
        const Sql sql = sqlOf(filter, 0);
        return {sql.top == Top::Clause ? sql.text : bracketed(sql.text), std::move(m_parameters)};
    }

private:
    // A run is written as flat as SQL's precedence (AND before OR, both left-associative) allows while
    // keeping the strict left-to-right reading: brackets only where an AND follows an OR, and around a
    // bracketed term whose own operator differs from the one that joins it. `enclosing` counts the
    // brackets around the run, written or implied; the recursion goes only as deep as written brackets.
    Sql sqlOf(const Run& run, int enclosing) {
        int implied = 0;
        for (size_t i = 0; i < run.joins.size(); ++i) {
            if (impliesBracket(run, i) && enclosing + ++implied > MaxNesting)
                m_diagnostics.fail(
                    QStringLiteral("brackets may nest at most %1 deep, counting the one this AND "
                                   "implies after an OR (A OR B AND C reads (A OR B) AND C)")
                        .arg(MaxNesting),
                    run.joins[i].position);
        }

        Sql result = sqlOf(run.terms.front(), enclosing + implied);
        for (size_t i = 0; i < run.joins.size(); ++i) {
            const bool isAnd = run.joins[i].joiner == Joiner::And;
            const Top joined = isAnd ? Top::And : Top::Or;
            if (impliesBracket(run, i))
                --implied; // the terms to the right are outside this one
            Sql right = sqlOf(run.terms[i + 1], enclosing + implied);
            if (result.top == Top::Or && isAnd)
                result.text = bracketed(result.text);
            if (right.top != Top::Clause && right.top != joined)
                right.text = bracketed(right.text);
            result.text += (isAnd ? QStringLiteral(" AND ") : QStringLiteral(" OR ")) + right.text;
            result.top = joined;
        }
        return result;
    }

    Sql sqlOf(const Expression& term, int enclosing) {
        if (const auto* run = std::get_if<Run>(&term.node))
            return sqlOf(*run, enclosing + 1);
        return {emitComparison(std::get<Comparison>(term.node)), Top::Clause};
    }

    std::optional<ResolvedField> lookUp(const Token& name) const {
        auto ref = m_resolve(name.text);
        if (!ref)
            return std::nullopt;
        if (ref->type == FieldType::Decimal && (ref->scale < 0 || ref->scale > MaxScale))
            m_diagnostics.fail(QStringLiteral("field \"%1\" has a scale of %2, which filters cannot handle")
                                   .arg(name.text)
                                   .arg(ref->scale),
                               name.position);
        return ResolvedField{*ref, name.text};
    }

    QString bind(const QString& column, Operator op, const QVariant& value) {
        m_parameters.append(value);
        return quotedColumn(column) + QLatin1Char(' ') + sqlOperator(op) + QStringLiteral(" ?");
    }

    QString emitComparison(const Comparison& c) {
        const auto field = lookUp(c.field);
        if (!field)
            m_diagnostics.fail(QStringLiteral("unknown field \"%1\"").arg(c.field.text), c.field.position);
        if (c.op == Operator::Like && field->ref.type != FieldType::Text)
            m_diagnostics.fail(QStringLiteral("LIKE needs a text field, but \"%1\" is %2")
                                   .arg(field->name, kindName(field->ref.type)),
                               c.opToken.position);

        // A bare word is a number if it reads as one, else another field if the view has it, else text.
        const bool bare = c.operand.kind == TokenKind::Word;
        const auto number = bare ? readNumber(c.operand.text) : std::nullopt;
        if (bare && !number) {
            if (const auto other = lookUp(c.operand)) {
                // Another field's text has no escapes of its own to follow; the pattern is written.
                if (c.op == Operator::Like)
                    m_diagnostics.fail(QStringLiteral("LIKE needs a pattern, but \"%1\" is a field of the "
                                                      "view (quote it to match the text)")
                                           .arg(c.operand.text),
                                       c.operand.position);
                return emitFieldToField(*field, c.op, *other, c.operand);
            }
        }

        switch (field->ref.type) {
        case FieldType::Text:
            if (c.op == Operator::Like)
                return bind(field->ref.column, c.op, sqlLikePattern(c.operand.text)) +
                       QLatin1StringView(LikeEscapeClause);
            // A number against text is the text as typed: 001200 stays "001200".
            return bind(field->ref.column, c.op, withoutTrailingBlanks(c.operand.text));
        case FieldType::Date: {
            const auto date = readDate(c.operand);
            if (!date)
                m_diagnostics.fail(
                    QStringLiteral("field \"%1\" expects a date written yyyymmdd or \"yyyy-mm-dd\"")
                        .arg(field->name),
                    c.operand);
            return bind(field->ref.column, c.op, *date);
        }
        default:
            if (!number)
                m_diagnostics.fail(QStringLiteral("field \"%1\" expects a number").arg(field->name),
                                   c.operand);
            return emitNumber(*field, c.op, *number, c.operand);
        }
    }

    QString emitNumber(const ResolvedField& field, Operator op, const WrittenNumber& number,
                       const Token& operand) {
        const auto scaled = scaleNumber(number, field.scale());
        if (!scaled)
            m_diagnostics.fail(QStringLiteral("the number is too large for field \"%1\"").arg(field.name),
                               operand);
        if (field.ref.type == FieldType::Boolean &&
            !(scaled->exact && (scaled->floor == 0 || scaled->floor == 1)))
            m_diagnostics.fail(QStringLiteral("field \"%1\" is yes or no and expects 0 or 1").arg(field.name),
                               operand);
        if (scaled->exact)
            return bind(field.ref.column, op, scaled->floor);

        // The value lies strictly between floor and floor + 1, where no stored integer can be.
        switch (op) {
        case Operator::Equal:
            return QStringLiteral("0 = 1");
        case Operator::NotEqual:
            return quotedColumn(field.ref.column) + QStringLiteral(" IS NOT NULL");
        case Operator::Less:
        case Operator::LessOrEqual:
            return bind(field.ref.column, Operator::LessOrEqual, scaled->floor);
        default:
            return bind(field.ref.column, Operator::Greater, scaled->floor);
        }
    }

    QString emitFieldToField(const ResolvedField& left, Operator op, const ResolvedField& right,
                             const Token& operand) const {
        const FieldType a = left.ref.type;
        const FieldType b = right.ref.type;
        if (!(a == b || (isNumeric(a) && isNumeric(b))))
            m_diagnostics.fail(QStringLiteral("cannot compare field \"%1\" (%2) with field \"%3\" (%4)")
                                   .arg(left.name, kindName(a), right.name, kindName(b)),
                               operand.position);
        QString lhs = quotedColumn(left.ref.column);
        QString rhs = quotedColumn(right.ref.column);
        // Decimals of different scales meet at the finer one.
        if (left.scale() < right.scale())
            lhs += QStringLiteral(" * %1").arg(powerOfTen(right.scale() - left.scale()));
        else if (right.scale() < left.scale())
            rhs += QStringLiteral(" * %1").arg(powerOfTen(left.scale() - right.scale()));
        return lhs + QLatin1Char(' ') + sqlOperator(op) + QLatin1Char(' ') + rhs;
    }

    const FieldResolver& m_resolve;
    const Diagnostics& m_diagnostics;
    QVariantList m_parameters;
};

} // namespace

SqlFilter compile(const Run& filter, const FieldResolver& resolve, const Diagnostics& diagnostics) {
    return Compiler(resolve, diagnostics).compile(filter);
}

} // namespace tillbook::filter
