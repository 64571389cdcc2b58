#include "ledger/engine/FiscalCalendar.h"

#include "ledger/engine/RecordAccess.h"

namespace tillbook::engine {

namespace {

QStringList calendarFields() {
    QStringList fields{QStringLiteral("FSCYEAR"), QStringLiteral("PERIODS"), QStringLiteral("ACTIVE")};
    for (int p = 1; p <= 13; ++p)
        fields << QStringLiteral("BGNDATE%1").arg(p) << QStringLiteral("ENDDATE%1").arg(p);
    return fields;
}

bool periodHolds(const QVariantHash& year, int period, const QDate& date) {
    const QDate begin = year.value(QStringLiteral("BGNDATE%1").arg(period)).toDate();
    const QDate end = year.value(QStringLiteral("ENDDATE%1").arg(period)).toDate();
    return begin.isValid() && end.isValid() && begin <= date && date <= end;
}

} // namespace

std::optional<FiscalPeriod> fiscalPeriodOf(CompanyStore& store, const QDate& date) {
    const auto years =
        readRecords(store, QStringLiteral("CS0002"), {}, calendarFields(), {QStringLiteral("FSCYEAR")});
    for (const QVariantHash& year : years) {
        const int periods = year.value(QStringLiteral("PERIODS")).toInt();
        for (int p = 1; p <= periods && p <= 13; ++p)
            if (periodHolds(year, p, date))
                return FiscalPeriod{year.value(QStringLiteral("FSCYEAR")).toString().trimmed(),
                                    QStringLiteral("%1").arg(p, 2, 10, QLatin1Char('0'))};
    }
    return std::nullopt;
}

bool isInFiscalPeriod(CompanyStore& store, const QDate& date, const QString& year, const QString& period) {
    const auto record =
        readRecord(store, QStringLiteral("CS0002"), {{QStringLiteral("FSCYEAR"), year}}, calendarFields());
    const int p = period.toInt();
    return record && p >= 1 && p <= 13 && periodHolds(*record, p, date);
}

bool isActiveFiscalYear(CompanyStore& store, const QString& year) {
    const auto record = readRecord(store, QStringLiteral("CS0002"), {{QStringLiteral("FSCYEAR"), year}},
                                   {QStringLiteral("ACTIVE")});
    return record && record->value(QStringLiteral("ACTIVE")).toInt() == 1;
}

bool isInActiveFiscalYear(CompanyStore& store, const QDate& date) {
    const auto years =
        readRecords(store, QStringLiteral("CS0002"), {}, calendarFields(), {QStringLiteral("FSCYEAR")});
    for (const QVariantHash& year : years) {
        if (year.value(QStringLiteral("ACTIVE")).toInt() != 1)
            continue;
        const int periods = year.value(QStringLiteral("PERIODS")).toInt();
        for (int p = 1; p <= periods && p <= 13; ++p)
            if (periodHolds(year, p, date))
                return true;
    }
    return false;
}

} // namespace tillbook::engine
