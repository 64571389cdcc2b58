#include "fetching/FiscalPeriods.h"

#include "ledger/Formats.h"
#include "ledger/View.h"

namespace tillbook {

FiscalYearList Read_FiscalYears(Session& session, const QDate& date) {
    const QString yearText = QString::number(date.year());
    const std::unique_ptr<View> view = session.openView(names::FiscalCalendar);
    view->browse(QStringLiteral("(Active=1)"), true);
    Field& year = view->fields().item(names::FiscalYear);
    FiscalYearList list;
    while (view->fetch()) {
        list.years << year.value().toString();
        if (list.years.last().compare(yearText, Qt::CaseInsensitive) == 0)
            list.selected = static_cast<int>(list.years.size()) - 1;
    }
    return list;
}

int Get_PeriodCount(Session& session) {
    const std::unique_ptr<View> view = session.openView(names::CompanyProfile);
    return Int16Of(view->fields().item(names::ProfilePeriods).value().toString());
}

QStringList PeriodEntries(int periodCount) {
    QStringList entries;
    for (int i = 1; i <= periodCount; ++i)
        entries << FormatDigits(i, 2);
    return entries;
}

int WeekOfYear(const QDate& date) {
    const QDate first(date.year(), 1, 1);
    const int firstWeekday = first.dayOfWeek() % 7; // Sunday 0 .. Saturday 6
    return (date.dayOfYear() - 1 + firstWeekday) / 7 + 1;
}

int PeriodIndexOf(const QDate& date, int periodCount) {
    if (periodCount == 12)
        return date.month() - 1;
    return WeekOfYear(date) / 4;
}

} // namespace tillbook
