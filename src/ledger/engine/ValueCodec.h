#pragma once

// Field values in their three forms: what callers put (text, whole numbers, Money, dates; never a binary
// fraction into a decimal field, which is refused as a ProgrammingError), what they get
// (QString, int, qlonglong, Money, exact decimal text, QDate) and what the store holds (TEXT or an
// INTEGER: scaled decimals, yyyymmdd dates).

#include "ledger/Money.h"
#include "ledger/engine/Schema.h"

#include <QDate>
#include <QVariant>
#include <optional>

namespace tillbook::engine {

// Registers Money's conversion to text with Qt's meta-type system, once.
void registerValueTypes();

// The value of a new record's field: "", 0, Money 0, no date.
QVariant defaultValue(const FieldDef& field);

// The value callers get from a column as the store returned it.
QVariant fromStorage(const FieldDef& field, const QVariant& stored);
// The same, turning a column value the caller owns into the value callers get where it stands: text the
// store returned as a string is kept as it is, not copied.
void fromStorageInPlace(const FieldDef& field, QVariant& cell);

// The column value of a field's value (as made by fromStorage or convertForPut). Throws InputError
// for a decimal beyond the field's capacity, so that no such value is ever written.
QVariant toStorage(const FieldDef& field, const QVariant& value);

// Converts what a caller put into the field's value. With `verify`, anything that does not fit
// (wrong type, too long, too many decimals, not in the field's list) is refused with a clerk's message
// in `problem`; without it, the value is made to fit, or becomes the field's default. A number beyond the
// field's capacity is refused either way: no amount is silently replaced.
std::optional<QVariant> convertForPut(const FieldDef& field, const QVariant& input, bool verify,
                                      QString& problem);

// The largest magnitude a numeric field holds, as a column value (a decimal scaled by its decimals): what
// its declared size allows. A value beyond it is refused, whether put, computed or added up.
qint64 storedCapacity(const FieldDef& field);
bool fitsField(const FieldDef& field, qint64 stored);
// A column value as plain text: "1999999999999999.998" for a decimal of three places.
QString formatStored(const FieldDef& field, qint64 stored);
// "Batch Total "1999999999999999.998" is too large: it holds at most 999999999999999.999."
QString tooLargeMessage(const FieldDef& field, const QString& shown);

// The value as plain text: numbers without separators, decimals with all their places, dates yyyy-mm-dd.
QString displayText(const FieldDef& field, const QVariant& value);

// Exact decimal text to an integer times 10^scale; commas among the whole digits are allowed.
// The one rounding of a stored number: digits beyond `scale` are rounded half away from zero, as a format
// rounds (a put with verification refuses them instead). `extraDecimals` tells whether any was not zero.
std::optional<qint64> parseScaled(const QString& text, int scale, bool& extraDecimals);
QString formatScaled(qint64 scaled, int scale);
qint64 powerOfTen(int n);

// The value callers get of a decimal field holding `scaled` (an integer times 10^scale).
QVariant decimalValue(const FieldDef& field, qint64 scaled);
// The amount a decimal field of up to three places holds as `scaled`.
Money storedMoney(const FieldDef& field, qint64 scaled);
// The date a date column holds as yyyymmdd; no date for 0.
QDate storedDate(qint64 ymd);

} // namespace tillbook::engine
