// Fiscal periods of a receipt date and the conversions of typed codes.
#include "entry/GridColumnSets.h"
#include "fetching/CodeChecks.h"
#include "fetching/FiscalPeriods.h"
#include "support/Company.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace tillbook;

TEST(FiscalPeriods, TwelvePeriodsFollowTheMonth) {
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 3, 15), 12), 2);
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 1, 1), 12), 0);
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 12, 31), 12), 11);
    EXPECT_EQ(PeriodEntries(12).first(), "01");
    EXPECT_EQ(PeriodEntries(13).last(), "13");
    EXPECT_EQ(PeriodEntries(13).size(), 13);
}

TEST(FiscalPeriods, WeeksStartOnSundayAndWeekOneHoldsTheFirstOfJanuary) {
    // 1 January 2026 is a Thursday: Sunday 4 January opens week 2.
    EXPECT_EQ(WeekOfYear(QDate(2026, 1, 1)), 1);
    EXPECT_EQ(WeekOfYear(QDate(2026, 1, 3)), 1);
    EXPECT_EQ(WeekOfYear(QDate(2026, 1, 4)), 2);
    EXPECT_EQ(WeekOfYear(QDate(2026, 1, 24)), 4);
    EXPECT_EQ(WeekOfYear(QDate(2026, 12, 20)), 52);
    // 1 January 2023 is a Sunday.
    EXPECT_EQ(WeekOfYear(QDate(2023, 1, 1)), 1);
    EXPECT_EQ(WeekOfYear(QDate(2023, 1, 8)), 2);
}

TEST(FiscalPeriods, ThirteenPeriodsCountFourWeeksFromTheFirstWeek) {
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 1, 5), 13), 0);    // week 2
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 1, 20), 13), 1);   // week 4 already in the second period
    EXPECT_EQ(PeriodIndexOf(QDate(2026, 12, 22), 13), 13); // week 52: past the last period
}

TEST(CodeConversions, HyphensBlanksAndReceiptTypes) {
    EXPECT_EQ(Strip_Hyphens(" 4000-100-20 "), "400010020");
    EXPECT_EQ(Strip_Hyphens("--"), "");
    EXPECT_EQ(Strip_Hyphens("  "), "");
    EXPECT_EQ(Strip_Hyphens("4 0"), "4 0");
    EXPECT_EQ(Get_ReceiptTypeIndex(1), 0);
    EXPECT_EQ(Get_ReceiptTypeIndex(2), 1);
    EXPECT_EQ(Get_ReceiptTypeIndex(5), 2);
    EXPECT_EQ(Get_ReceiptTypeIndex(3), 0);
    EXPECT_EQ(Get_ReceiptTypeIndex(0), 0);
}

// The marks of the application grid: a pending application shows as such.
TEST(CodeConversions, MarksOfTheGrid) {
    EXPECT_EQ(ApplyMarkText("X") + ApplyMarkText("Y") + ApplyMarkText("N") + ApplyMarkText("?"),
              "PendYesNo?");
    EXPECT_EQ(FullyPaidText("1") + FullyPaidText("0") + FullyPaidText("7"), "YesNo7");
}

TEST(CodeChecks, AgainstTheSampleCompany) {
    const test::Company company{test::CompanyBuilder().sample(5, 20)};
    const auto signedIn = company.signIn(QDate(2026, 3, 15));
    Session& session = *signedIn;
    EXPECT_TRUE(Check_DistCode(session, "RETAIL"));
    EXPECT_FALSE(Check_DistCode(session, "retail"));  // case counts
    EXPECT_FALSE(Check_DistCode(session, " RETAIL")); // the code is taken as given
    EXPECT_TRUE(Check_GLAccount(session, "410010"));
    EXPECT_TRUE(Check_GLAccount(session, "4100-10"));   // hyphens between segments
    EXPECT_TRUE(Check_GLAccount(session, "  410010 ")); // surrounding blanks
    EXPECT_TRUE(Check_GLAccount(session, "4100-100"));
    EXPECT_FALSE(Check_GLAccount(session, "9999"));
    EXPECT_EQ(Get_PeriodCount(session), 12);
}
