#pragma once

// The finder's captions, column sets and the display texts of its coded values.

#include <QString>
#include <QStringList>

namespace tillbook {

QString FinderCaption(int finderKind);
// The grid's format string; the G/L one ends with a separator, which gives the grid a last, empty column.
QString FinderFormat(int finderKind);

// "1" Active, "0" Inactive; a distribution code's other values are shown as read.
QString DistCodeStatusText(const QString& status);
// "1" Active; any value that sorts at or before "0" as text (an empty one included) Inactive; others as
// read.
QString AccountStatusText(const QString& status);
// "I" Income, "B" Balance Sheet, "R" Retained Earnings; others as read.
QString AccountTypeText(const QString& type);
// "1" Yes, "0" No; others as read.
QString SwitchText(const QString& value);
// The account number trimmed, with hyphens by its length: up to 4 characters as it is, 5 to 7 as
// "1234-567", 8 or 9 as "1234-567-89", 10 or more as it is.
QString HyphenatedAccount(const QString& account);

// A record of the finder's fields (in their column order) as its row shows it.
QStringList FinderDisplayRow(int finderKind, QStringList record);

} // namespace tillbook
