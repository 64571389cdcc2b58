#include "ledger/engine/ValueCodec.h"

#include "ledger/Money.h"
#include "ledger/engine/FieldRangeError.h"

#include <QDate>
#include <QMetaType>
#include <cmath>
#include <limits>
#include <mutex>

namespace tillbook::engine {

namespace {

constexpr qint64 Int64Max = std::numeric_limits<qint64>::max();

qint64 powerOfTen(int n) {
    qint64 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

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

QVariant decimalValue(const FieldDef& field, qint64 scaled) {
    if (field.scale == 0)
        return QVariant(qlonglong(scaled));
    if (field.scale <= 3)
        return QVariant::fromValue(Money::fromThousandths(scaled * powerOfTen(3 - field.scale)));
    return formatScaled(scaled, field.scale);
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

// A BCD*p.s column holds 2p-1 digits in all (capped by the 64-bit column); Integer and Long are 16 and
// 32 bits.
qint64 storedCapacity(const FieldDef& field) {
    switch (field.kind) {
    case FieldKind::Decimal:
        return powerOfTen(std::min(18, std::max(1, field.size * 2 - 1))) - 1;
    case FieldKind::Integer:
        return 32767;
    case FieldKind::Long:
        return std::numeric_limits<int>::max();
    case FieldKind::Boolean:
        return 1;
    default:
        return 0;
    }
}

QString formatStored(const FieldDef& field, qint64 stored) {
    return field.kind == FieldKind::Decimal ? formatScaled(stored, field.scale) : QString::number(stored);
}

bool fitsField(const FieldDef& field, qint64 stored) {
    const qint64 capacity = storedCapacity(field);
    return stored <= capacity && stored >= -capacity;
}

QString tooLargeMessage(const FieldDef& field, const QString& shown) {
    return QStringLiteral("%1 \"%2\" is too large: it holds at most %3.")
        .arg(field.label(), shown, formatStored(field, storedCapacity(field)));
}

void registerValueTypes() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Money has no converter to double: an amount never passes through a binary fraction.
        QMetaType::registerConverter<Money, QString>([](const Money& m) { return m.toLedgerString(); });
    });
}

std::optional<qint64> parseScaled(const QString& text, int scale, bool& extraDecimals) {
    extraDecimals = false;
    const QString t = text.trimmed();
    int i = 0;
    bool negative = false;
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
        negative = t[i++] == u'-';
    qint64 value = 0;
    int digits = 0;
    const qint64 guard = Int64Max / 10 - 10;
    for (; i < t.size() && (t[i].isDigit() || t[i] == u','); ++i) {
        if (t[i] == u',')
            continue;
        if (value > guard)
            return std::nullopt;
        value = value * 10 + t[i].digitValue();
        ++digits;
    }
    int places = 0;
    int firstDropped = -1; // the first digit beyond `scale`, which decides the rounding
    if (i < t.size() && t[i] == u'.') {
        for (++i; i < t.size() && t[i].isDigit(); ++i, ++digits) {
            if (places < scale) {
                if (value > guard)
                    return std::nullopt;
                value = value * 10 + t[i].digitValue();
                ++places;
                continue;
            }
            if (firstDropped < 0)
                firstDropped = t[i].digitValue();
            if (t[i] != u'0')
                extraDecimals = true;
        }
    }
    if (i != t.size() || digits == 0)
        return std::nullopt;
    for (; places < scale; ++places) {
        if (value > guard)
            return std::nullopt;
        value *= 10;
    }
    if (firstDropped >= 5)
        ++value;
    return negative ? -value : value;
}

QString formatScaled(qint64 scaled, int scale) {
    const qint64 factor = powerOfTen(scale);
    const qint64 magnitude = scaled < 0 ? -scaled : scaled;
    QString text = QString::number(magnitude / factor);
    if (scale > 0)
        text += u'.' + QString::number(magnitude % factor).rightJustified(scale, u'0');
    return scaled < 0 ? u'-' + text : text;
}

QVariant defaultValue(const FieldDef& field) {
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::Opaque:
        return QString();
    case FieldKind::Integer:
    case FieldKind::Long:
    case FieldKind::Boolean:
        return 0;
    case FieldKind::Decimal:
        return decimalValue(field, 0);
    case FieldKind::Date:
        return QDate();
    }
    return {};
}

namespace {

// A column's integer, taken straight from the variant when the driver gave one (the usual case).
qint64 storedInteger(const QVariant& stored) {
    if (stored.metaType() == QMetaType::fromType<qlonglong>())
        return *static_cast<const qlonglong*>(stored.constData());
    return stored.toLongLong();
}

} // namespace

QVariant fromStorage(const FieldDef& field, const QVariant& stored) {
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::Opaque:
        return stored.toString();
    case FieldKind::Integer:
    case FieldKind::Long:
    case FieldKind::Boolean:
        return int(storedInteger(stored));
    case FieldKind::Decimal:
        return decimalValue(field, storedInteger(stored));
    case FieldKind::Date: {
        const qlonglong ymd = storedInteger(stored);
        if (ymd <= 0)
            return QDate();
        return QDate(int(ymd / 10000), int(ymd / 100 % 100), int(ymd % 100));
    }
    }
    return {};
}

void fromStorageInPlace(const FieldDef& field, QVariant& cell) {
    const bool text = field.kind == FieldKind::Text || field.kind == FieldKind::Opaque;
    // A NULL column comes as a null variant holding a null string; that one is made afresh below.
    if (text && cell.metaType() == QMetaType::fromType<QString>() &&
        !static_cast<const QString*>(cell.constData())->isNull())
        return;
    cell = fromStorage(field, cell);
}

QVariant toStorage(const FieldDef& field, const QVariant& value) {
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::Opaque: {
        // A null QString would be bound as SQL NULL; blank text is stored as ''.
        const QString text = value.toString();
        return text.isNull() ? QString(QLatin1String("")) : text;
    }
    case FieldKind::Integer:
    case FieldKind::Long:
    case FieldKind::Boolean:
        return qlonglong(value.toInt());
    case FieldKind::Decimal: {
        qint64 stored = 0;
        if (field.scale == 0) {
            stored = value.toLongLong();
        } else if (field.scale <= 3) {
            stored = value.value<Money>().thousandths() / powerOfTen(3 - field.scale);
        } else {
            bool extra = false;
            stored = parseScaled(value.toString(), field.scale, extra).value_or(0);
        }
        if (!fitsField(field, stored))
            throw FieldRangeError(tooLargeMessage(field, formatStored(field, stored)));
        return qlonglong(stored);
    }
    case FieldKind::Date: {
        const QDate d = value.toDate();
        return qlonglong(d.isValid() ? d.year() * 10000 + d.month() * 100 + d.day() : 0);
    }
    }
    return {};
}

std::optional<QVariant> convertForPut(const FieldDef& field, const QVariant& input, bool verify,
                                      QString& problem) {
    const QString label = field.label();
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
        if (input.metaType().id() == QMetaType::Bool)
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

QString displayText(const FieldDef& field, const QVariant& value) {
    switch (field.kind) {
    case FieldKind::Decimal:
        if (field.scale >= 1 && field.scale <= 3)
            return value.value<Money>().toPlainString(field.scale);
        return value.toString();
    case FieldKind::Date: {
        const QDate d = value.toDate();
        return d.isValid() ? d.toString(QStringLiteral("yyyy-MM-dd")) : QString();
    }
    default:
        return value.toString();
    }
}

} // namespace tillbook::engine
