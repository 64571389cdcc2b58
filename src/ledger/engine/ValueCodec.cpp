#include "ledger/engine/ValueCodec.h"

#include "ledger/LedgerError.h"
#include "ledger/Money.h"

#include <QDate>
#include <QMetaType>
#include <limits>
#include <mutex>

namespace tillbook::engine {

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

QVariant decimalValue(const FieldDef& field, qint64 scaled) {
    if (field.scale == 0)
        return QVariant(qlonglong(scaled));
    if (field.scale <= 3)
        return QVariant::fromValue(storedMoney(field, scaled));
    return formatScaled(scaled, field.scale);
}

Money storedMoney(const FieldDef& field, qint64 scaled) {
    return Money::fromThousandths(scaled * powerOfTen(3 - field.scale));
}

QDate storedDate(qint64 ymd) {
    // The day number is worked out here rather than by QDate(y, m, d), which goes through the calendar
    // system: a list of open documents decodes three dates a row.
    const qint64 year = ymd / 10000;
    const int month = int(ymd / 100 % 100);
    const int day = int(ymd % 100);
    if (year < 1 || month < 1 || month > 12 || day < 1)
        return QDate();
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    static constexpr int MonthDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (day > MonthDays[month - 1] + (month == 2 && leap ? 1 : 0))
        return QDate();
    // The Julian day number of a Gregorian date (Fliegel and Van Flandern).
    const qint64 march = (14 - month) / 12;
    const qint64 y = year + 4800 - march;
    const qint64 m = month + 12 * march - 3;
    return QDate::fromJulianDay(day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045);
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
    case FieldKind::Date:
        return storedDate(storedInteger(stored));
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
            throw InputError(tooLargeMessage(field, formatStored(field, stored)));
        return qlonglong(stored);
    }
    case FieldKind::Date: {
        const QDate d = value.toDate();
        return qlonglong(d.isValid() ? d.year() * 10000 + d.month() * 100 + d.day() : 0);
    }
    }
    return {};
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
