// Fiscal periods of a receipt date and the conversions of typed codes.
#include "entry/GridColumnSets.h"
#include "fetching/CodeChecks.h"
#include "fetching/FiscalPeriods.h"
#include "support/Company.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace tillbook;

TEST(FiscalPeriods, WeeksStartOnSundayAndPeriodsFollowTheMonthOrFourWeeks) {
    // 1 January 2026 is a Thursday: Sunday 4 January opens week 2. 1 January 2023 is a Sunday.
    const struct {
        QDate date;
        int week, of12, of13;
    } cases[] = {
        {{2026, 1, 1}, 1, 0, 0},      {{2026, 1, 3}, 1, 0, 0},   {{2026, 1, 4}, 2, 0, 0},
        {{2026, 1, 20}, 4, 0, 1},     {{2026, 3, 15}, 12, 2, 3}, {{2026, 12, 22}, 52, 11, 13},
        {{2026, 12, 31}, 53, 11, 13}, {{2023, 1, 1}, 1, 0, 0},   {{2023, 1, 8}, 2, 0, 0},
    };
    for (const auto& c : cases) {
        const std::string at = c.date.toString(Qt::ISODate).toStdString();
        EXPECT_EQ(WeekOfYear(c.date), c.week) << at;
        EXPECT_EQ(PeriodIndexOf(c.date, 12), c.of12) << at;
        EXPECT_EQ(PeriodIndexOf(c.date, 13), c.of13) << at;
    }
    EXPECT_EQ(PeriodEntries(13),
              QStringList({"01", "02", "03", "04", "05", "06", "07", "08", "09", "10", "11", "12", "13"}));
}

TEST(CodeConversions, HyphensReceiptTypesAndTheGridsMarks) {
    EXPECT_EQ(Strip_Hyphens(" 4000-100-20 ") + u'|' + Strip_Hyphens("--") + u'|' + Strip_Hyphens("  ") +
                  u'|' + Strip_Hyphens("4 0"),
              "400010020|||4 0");
    for (const auto& [type, index] : {std::pair{1, 0}, {2, 1}, {5, 2}, {3, 0}, {0, 0}})
        EXPECT_EQ(Get_ReceiptTypeIndex(type), index) << type;
    EXPECT_EQ(ApplyMarkText("X") + ApplyMarkText("Y") + ApplyMarkText("N") + ApplyMarkText("?"),
              "PendYesNo?");
    EXPECT_EQ(FullyPaidText("1") + FullyPaidText("0") + FullyPaidText("7"), "YesNo7");
}

TEST(CodeChecks, AgainstTheSampleCompany) {
    const test::Company company{test::CompanyBuilder().sample(5, 20)};
    const auto session = company.signIn(QDate(2026, 3, 15));
    // The code as given, case and blanks counting; an account with hyphens between segments and blanks
    // around.
    for (const auto& [code, known] : {std::pair{"RETAIL", true}, {"retail", false}, {" RETAIL", false}})
        EXPECT_EQ(Check_DistCode(*session, code), known) << code;
    for (const auto& [account, known] : {std::pair{"410010", true},
                                         {"4100-10", true},
                                         {"  410010 ", true},
                                         {"4100-100", true},
                                         {"9999", false}})
        EXPECT_EQ(Check_GLAccount(*session, account), known) << account;
    EXPECT_EQ(Get_PeriodCount(*session), 12);
}
