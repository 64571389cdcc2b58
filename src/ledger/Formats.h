#pragma once

// Text to number and back, and dates, as the forms show and read them.

#include "ledger/Money.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <cstdint>
#include <optional>

namespace tillbook {

// The numeric prefix of a stored number (leading blanks skipped, then an optional sign, digits and one
// decimal point) as a 16-bit integer, rounded half to even; 0 when there is none or when it does not fit.
// "12abc" is 12, "2.5" is 2, "1,250" is 1 (a comma ends the number).
std::int16_t Int16Of(const QString& text);

// Removes every comma and returns the value of the numeric prefix of the rest, exactly, to the ledger's
// thousandths (further decimals round half to even): "1,2,3" is 123, "12abc" is 12, "" is 0.
Money Strip_Commas(const QString& text);

// "#,###,##0.00": thousands separators, two decimals, at least "0.00"; half away from zero.
QString FormatAmount(Money amount);
// A plain number without thousands separators or trailing zeros: "1234.5", "400", "-0.25".
QString FormatPlain(Money amount);
// A whole number with leading zeros to `width` digits: "0000", "000", "00".
QString FormatDigits(std::int64_t value, int width);

// "yyyymmdd", as inside receipt numbers.
QString FormatDateCompact(const QDate& date);
// "mmmm dd, yyyy", as on printed receipts: "March 05, 2026".
QString FormatDateLong(const QDate& date);

// The short date form: the locale's order and separator with two-digit day and month and a four-digit year,
// e.g. "MM/dd/yyyy"; TILLBOOK_SHORT_DATE overrides it. Its length is fixed, so a date mask can follow it.
QString ShortDatePattern();
QString FormatShortDate(const QDate& date);
// A date typed in the short date form; an invalid QDate when the text is no such date.
QDate ParseShortDate(const QString& text);

// A ledger value as the forms show it when no format is asked for: amounts as plain decimals without trailing
// zeros ("1234.5"), dates in the short date form (no date: ""), everything else as its text.
QString VariantText(const QVariant& value);

// What is wrong with TILLBOOK_SHORT_DATE and TILLBOOK_TODAY, one sentence each; an unusable value is
// passed over for the system's.
QStringList EnvironmentProblems();

// Today's date: the system date, or TILLBOOK_TODAY (yyyy-mm-dd) when set.
QDate Today();

} // namespace tillbook
