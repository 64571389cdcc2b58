#include "ledger/filter/Compiler.h"

#include "ledger/filter/DateConstant.h"
#include "ledger/filter/ExactNumber.h"

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

class Compiler {
public:
    Compiler(const FieldResolver& resolve, const Diagnostics& diagnostics)
        : m_resolve(resolve), m_diagnostics(diagnostics) {}

    SqlFilter compile(const Expression& expression) {
        QString where = sqlOf(expression);
        return {std::move(where), std::move(m_parameters)};
    }

private:
    QString sqlOf(const Expression& expression) {
        if (const auto* junction = std::get_if<Junction>(&expression.node)) {
            const QString joiner =
                junction->joiner == Joiner::And ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
            const QString left = sqlOf(*junction->left);
            return QLatin1Char('(') + left + joiner + sqlOf(*junction->right) + QLatin1Char(')');
        }
        return emitComparison(std::get<Comparison>(expression.node));
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
            if (const auto other = lookUp(c.operand))
                return emitFieldToField(*field, c.op, *other, c.operand);
        }

        switch (field->ref.type) {
        case FieldType::Text: {
            // A number against text is the text as typed: 001200 stays "001200".
            const QString text =
                c.op == Operator::Like ? c.operand.text : withoutTrailingBlanks(c.operand.text);
            return bind(field->ref.column, c.op, text);
        }
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

SqlFilter compile(const Expression& expression, const FieldResolver& resolve,
                  const Diagnostics& diagnostics) {
    return Compiler(resolve, diagnostics).compile(expression);
}

} // namespace tillbook::filter
