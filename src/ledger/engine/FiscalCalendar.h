#pragma once

// The company's fiscal calendar (CS0002) as entries need it: the period a date falls in, and whether a
// year is active.

#include "ledger/engine/CompanyStore.h"

#include <QDate>
#include <optional>

namespace tillbook::engine {

struct FiscalPeriod {
    QString year;   // "2025"
    QString period; // "03"
};

std::optional<FiscalPeriod> fiscalPeriodOf(CompanyStore& store, const QDate& date);
// Whether `date` lies in period `period` of fiscal year `year` (false when either is unknown).
bool isInFiscalPeriod(CompanyStore& store, const QDate& date, const QString& year, const QString& period);
bool isActiveFiscalYear(CompanyStore& store, const QString& year);
// Whether `date` lies in some period of an active fiscal year.
bool isInActiveFiscalYear(CompanyStore& store, const QDate& date);

} // namespace tillbook::engine
