#pragma once

// The company's fiscal calendar as the receipt window offers it: the active fiscal years and the periods of a
// year, and which of them a receipt date falls in.

#include "ledger/Session.h"

#include <QDate>
#include <QStringList>

namespace tillbook {

struct FiscalYearList {
    QStringList years; // "FSCYEAR" of each active year, in the calendar's order
    int selected = 0;  // the year of the date, or 0 when none matches
};

// The active fiscal years, and the position of the date's calendar year among them. Throws LedgerError; what
// was read before a failure is lost with it, so callers fill their list only from a complete answer.
FiscalYearList Read_FiscalYears(Session& session, const QDate& date);

// The number of fiscal periods of the company. Throws LedgerError.
int Get_PeriodCount(Session& session);

// The period entries "01", "02", ... for a calendar of `periodCount` periods.
QStringList PeriodEntries(int periodCount);

// The list position of the date's period: with 12 periods the month; otherwise four-week periods counted
// from the week of the year (weeks starting on Sunday, week 1 holding 1 January): week w gives w \ 4.
int PeriodIndexOf(const QDate& date, int periodCount);

// The week of the year of a date, weeks starting on Sunday and week 1 holding 1 January.
int WeekOfYear(const QDate& date);

} // namespace tillbook
