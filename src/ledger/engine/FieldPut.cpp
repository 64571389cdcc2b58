#include "ledger/LedgerError.h"
#include "ledger/Money.h"
#include "ledger/engine/ValueCodec.h"

#include <QDate>
#include <QMetaType>
#include <cmath>
#include <limits>

namespace tillbook::engine {

namespace {

constexpr qint64 Int64Max = std::numeric_limits<qint64>::max();

bool isTextual(const QVariant& v) {
    const int id = v.metaType().id();
    return id == QMetaType::QString || id == QMetaType::QByteArray || id == QMetaType::QChar;
}

bool isWholeNumber(const QVariant& v) {
    switch (v.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

// Any numeric input as an integer times 10^scale.
std::optional<qint64> scaledNumber(const QVariant& input, int scale, bool& extraDecimals) {
    extraDecimals = false;
    if (input.metaType() == QMetaType::fromType<Money>()) {
        const qint64 thousandths = input.value<Money>().thousandths();
        qint64 scaled = 0;
        if (scale >= 3)
            return __builtin_mul_overflow(thousandths, powerOfTen(scale - 3), &scaled)
                       ? std::nullopt
                       : std::optional(scaled);
        return parseScaled(input.value<Money>().toLedgerString(), scale, extraDecimals);
    }
    if (isWholeNumber(input)) {
        const qint64 whole = input.toLongLong();
        const qint64 factor = powerOfTen(scale);
        if (whole > Int64Max / factor || whole < -Int64Max / factor)
            return std::nullopt;
        return whole * factor;
    }
    const int id = input.metaType().id();
    if (id == QMetaType::Double || id == QMetaType::Float) {
        const double d = input.toDouble();
        if (!std::isfinite(d))
            return std::nullopt;
        // Through its shortest decimal text, so 0.1 is one tenth and not the binary fraction near it.
        return parseScaled(QString::number(d, 'g', 15), scale, extraDecimals);
    }
    if (isTextual(input))
        return parseScaled(input.toString(), scale, extraDecimals);
    return std::nullopt;
}

std::optional<QDate> dateOf(const QVariant& input) {
    if (input.metaType().id() == QMetaType::QDate || input.metaType().id() == QMetaType::QDateTime)
        return input.toDate();
    QString text;
    if (isTextual(input))
        text = input.toString().trimmed();
    else if (isWholeNumber(input))
        text = QString::number(input.toLongLong());
    else
        return std::nullopt;
    if (text.isEmpty() || text == QLatin1String("0"))
        return QDate();
    const QDate date = QDate::fromString(text, text.contains(u'-') ? QStringLiteral("yyyy-MM-dd")
                                                                   : QStringLiteral("yyyyMMdd"));
    if (!date.isValid())
        return std::nullopt;
    return date;
}

QString quoted(const QVariant& input) {
    if (input.metaType() == QMetaType::fromType<Money>())
        return u'"' + input.value<Money>().toLedgerString() + u'"';
    return u'"' + input.toString() + u'"';
}

// Whether the input is written as a number, however many digits it has: a finite double, or text of
// digits with an optional sign, commas and one decimal point.
bool isNumber(const QVariant& input) {
    const int id = input.metaType().id();
    if (id == QMetaType::Double || id == QMetaType::Float)
        return std::isfinite(input.toDouble());
    if (isWholeNumber(input))
        return true;
    if (!isTextual(input))
        return false;
    const QString t = input.toString().trimmed();
    int i = t.startsWith(u'-') || t.startsWith(u'+') ? 1 : 0;
    bool digits = false;
    bool point = false;
    for (; i < t.size(); ++i) {
        if (t[i].isDigit())
            digits = true;
        else if (t[i] == u'.' && !point)
            point = true;
        else if (t[i] != u',' || point)
            return false;
    }
    return digits;
}

QString numberText(const QVariant& input) {
    const int id = input.metaType().id();
    if (id == QMetaType::Double || id == QMetaType::Float)
        return QString::number(input.toDouble(), 'f', 0);
    return input.toString().trimmed();
}

} // namespace

std::optional<QVariant> convertForPut(const FieldDef& field, const QVariant& input, bool verify,
                                      QString& problem) {
    const QString& label = field.label();
    std::optional<QVariant> result;
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::Opaque: {
        QString text = input.metaType() == QMetaType::fromType<Money>()
                           ? input.value<Money>().toLedgerString()
                           : input.toString();
        while (text.endsWith(u' '))
            text.chop(1);
        if (field.kind == FieldKind::Text && field.size > 0 && text.size() > field.size) {
            if (verify) {
                problem = QStringLiteral("%1 \"%2\" is longer than %3 characters.")
                              .arg(label, text)
                              .arg(field.size);
                return std::nullopt;
            }
            text.truncate(field.size);
        }
        result = text;
        break;
    }
    case FieldKind::Integer:
    case FieldKind::Long:
    case FieldKind::Boolean: {
        bool extra = false;
        std::optional<qint64> value;
        // The type read inline from the variant: a whole number is put once for every row of a list read.
        const int id = input.data_ptr().typeId();
        if (id == QMetaType::Int)
            value = *static_cast<const int*>(input.constData());
        else if (id == QMetaType::Bool)
            value = input.toBool() ? 1 : 0;
        else
            value = scaledNumber(input, 0, extra);
        const qint64 limit = field.kind == FieldKind::Integer ? 32767 : std::numeric_limits<int>::max();
        if (!value || extra || *value > limit || *value < -limit - 1) {
            if (verify) {
                problem = QStringLiteral("%1 %2 is not a valid whole number.").arg(label, quoted(input));
                return std::nullopt;
            }
            value = value && *value <= limit && *value >= -limit - 1 ? *value : 0;
        }
        result = int(*value);
        break;
    }
    case FieldKind::Decimal: {
        // An amount reaches the ledger exact, as Money or as text: a binary fraction is already a rounding.
        const int id = input.metaType().id();
        if (id == QMetaType::Double || id == QMetaType::Float)
            throw ProgrammingError(
                QStringLiteral("%1 (%2) was given a binary fraction; a decimal field takes "
                               "Money, a whole number or exact text.")
                    .arg(label, field.name));
        bool extra = false;
        std::optional<qint64> value = scaledNumber(input, field.scale, extra);
        if (value && !fitsField(field, *value)) {
            problem = tooLargeMessage(field, formatStored(field, *value));
            return std::nullopt;
        }
        if (!value && isNumber(input)) {
            // A number too long even for the 64-bit arithmetic is as much too large as one just beyond.
            problem = tooLargeMessage(field, numberText(input));
            return std::nullopt;
        }
        if (!value || (verify && extra)) {
            if (verify) {
                problem = !value ? QStringLiteral("%1 %2 is not a valid number.").arg(label, quoted(input))
                                 : QStringLiteral("%1 %2 has more than %3 decimal places.")
                                       .arg(label, quoted(input))
                                       .arg(field.scale);
                return std::nullopt;
            }
            value = value.value_or(0);
        }
        result = decimalValue(field, *value);
        break;
    }
    case FieldKind::Date: {
        std::optional<QDate> date = dateOf(input);
        if (!date) {
            if (verify) {
                problem = QStringLiteral("%1 %2 is not a valid date.").arg(label, quoted(input));
                return std::nullopt;
            }
            date = QDate();
        }
        result = *date;
        break;
    }
    }
    if (verify && !field.allowed.isEmpty()) {
        const QString text = displayText(field, *result);
        if (!field.allowed.contains(text)) {
            problem = QStringLiteral("%1 \"%2\" is not one of the allowed values (%3).")
                          .arg(label, text, field.allowed.join(QStringLiteral(", ")));
            return std::nullopt;
        }
    }
    return result;
}

} // namespace tillbook::engine
