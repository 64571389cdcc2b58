// The rules of distribution lines that need no window, and the finder: its texts of coded values, its two
// column sets, and what it shows and hands back for a given list.
#include "entry/DistributionRules.h"

#include "entry/dialogs/FinderTexts.h"
#include "entry/dialogs/frmFinder.h"
#include "fetching/FinderRecords.h"
#include "support/ReceiptWindow.h"

#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace tillbook;

namespace {

Money cents(std::int64_t c) {
    return Money::fromCents(c);
}

} // namespace

TEST(DistributionAmounts, WhatIsLeftLeavesOutTheLineItself) {
    EXPECT_EQ(DistLineAmount("10.545"), cents(1055)); // the cell's figure: to cents, half away from zero
    EXPECT_EQ(DistLineAmount("-2.005"), cents(-201));
    const std::vector<Money> amounts = {Money(), cents(3000), cents(5050), cents(99)};
    const Money receipt = cents(10000);
    EXPECT_EQ(DistRemaining(receipt, amounts, 3, 2), cents(6901));
    EXPECT_EQ(DistRemaining(receipt, amounts, 3, 1), cents(4851));
    EXPECT_EQ(Undistributed(receipt, amounts, 3), cents(1851));
    // Lines past the count, or past the stored amounts, do not count.
    EXPECT_EQ(Undistributed(receipt, amounts, 2), cents(1950));
    EXPECT_EQ(Undistributed(receipt, amounts, 7), cents(1851));
    EXPECT_EQ(Undistributed(cents(5000), amounts, 3), cents(-3149));
}

// The window shows the other three refusals as they are keyed.
TEST(DistributionLines, AnAccountLeftByAClickIsRefusedWithTheFinderSpelledRight) {
    EXPECT_EQ(InvalidAccountText(RefusedBy::Click), "The Account number you entered is invalid.\nEnter the "
                                                    "Account number again, or select one using the finder.");
}

TEST(FinderTexts, StatusComparedWithZeroAsTextAndAccountsHyphenatedByLength) {
    for (const auto& [status, text] : std::vector<std::pair<QString, QString>>{{"1", "Active"},
                                                                               {"0", "Inactive"},
                                                                               {"", "Inactive"},
                                                                               {"-1", "Inactive"},
                                                                               {"00", "00"},
                                                                               {"2", "2"}})
        EXPECT_EQ(AccountStatusText(status), text) << status.toStdString();
    for (const auto& [account, text] :
         std::vector<std::pair<QString, QString>>{{"1000", "1000"},
                                                  {"12", "12"},
                                                  {"41001", "4100-1"},
                                                  {"4100100", "4100-100"},
                                                  {"41001001", "4100-100-1"},
                                                  {" 420010010 ", "4200-100-10"},
                                                  {"4200100100", "4200100100"},
                                                  {"420010010099", "420010010099"}})
        EXPECT_EQ(HyphenatedAccount(account), text) << account.toStdString();
}

TEST(Finder, ShowsTheListWithItsTexts) {
    frmFinder accounts(FinderAccounts,
                       {{"4100100", "Sales - East", "1", "I", "ACCT", "GL", "1", "0", "1", "EA"},
                        {"1000", "Petty Cash", "", "B", "", "", "0", "1", "0", ""},
                        {"4200100100", "Long", "7", "R", "", "", "2", "", "", ""}});
    const FlexGrid* grid = test::control<FlexGrid>(&accounts, "MSFlexFinder");
    const std::vector<QStringList> shown = {
        {"4100-100", "Sales - East", "Active", "Income", "ACCT", "GL", "Yes", "No", "Yes", "EA", ""},
        {"1000", "Petty Cash", "Inactive", "Balance Sheet", "", "", "No", "Yes", "No", "", ""},
        {"4200100100", "Long", "7", "Retained Earnings", "", "", "2", "", "", "", ""}};
    ASSERT_EQ(grid->Rows(), 4);
    for (int r = 1; r < 4; ++r)
        for (int c = 0; c < 11; ++c)
            EXPECT_EQ(grid->TextMatrix(r, c), shown[r - 1][c]) << r << "," << c;
    EXPECT_EQ(grid->Row(), 1);

    frmFinder codes(FinderDistCodes, {{"RETAIL", "Retail revenue", "1", "410010", "1200", "5000"},
                                      {"OLD", "Closed", "0", "4700", "", ""},
                                      {"ODD", "Odd status", "9", "4700", "", ""}});
    const FlexGrid* codeGrid = test::control<FlexGrid>(&codes, "MSFlexFinder");
    for (const auto& [row, status] : {std::pair{1, "Active"}, {2, "Inactive"}, {3, "9"}})
        EXPECT_EQ(codeGrid->TextMatrix(row, 2), status);
    EXPECT_EQ(codeGrid->TextMatrix(1, 3), "410010");
}

TEST(Finder, AnEmptyListShowsOnlyTheHeaderRow) {
    frmFinder finder(FinderDistCodes, {});
    const FlexGrid* grid = test::control<FlexGrid>(&finder, "MSFlexFinder");
    EXPECT_EQ(grid->Rows(), 1);
    EXPECT_FALSE(test::control<QPushButton>(&finder, "cmdSelect")->isEnabled());
    finder.cmdSelect_Click();
    EXPECT_EQ(finder.ChosenCode(), "");
}

TEST(Finder, SelectHandsBackTheCodeOfTheRowAndItsRevenueAccount) {
    frmFinder finder(FinderDistCodes, {{"RETAIL", "Retail revenue", "1", "410010", "1200", "5000"},
                                       {"WHSALE", "Wholesale revenue", "1", "410020", "1200", "5000"}});
    finder.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&finder));
    FlexGrid* grid = test::control<FlexGrid>(&finder, "MSFlexFinder");
    // A click anywhere on a row chooses the row: its code cell becomes the current one.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(1, 1)).center());
    EXPECT_EQ(grid->Row(), 2);
    EXPECT_EQ(grid->Col(), 0);
    test::control<QPushButton>(&finder, "cmdSelect")->click();
    EXPECT_EQ(finder.result(), QDialog::Accepted);
    EXPECT_EQ(finder.ChosenCode(), "WHSALE");
    EXPECT_EQ(finder.ChosenAccount(), "410020");
}

TEST(Finder, CancelHandsBackNothing) {
    frmFinder finder(FinderAccounts, {{"1000", "Petty Cash", "1", "B", "", "", "0", "0", "0", ""}});
    test::control<QPushButton>(&finder, "cmdCancel")->click();
    EXPECT_EQ(finder.result(), QDialog::Rejected);
    EXPECT_EQ(finder.ChosenCode(), "");
}
