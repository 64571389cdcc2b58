// The error trap and the arrays posting fills, without a ledger.

#include "ledger/Session.h"
#include "posting/ErrorTrap.h"
#include "posting/Posting.h"
#include "settings/Globals.h"
#include "support/AnswerMessageBoxes.h"

#include <gtest/gtest.h>

namespace tillbook::test {

namespace {

struct TrapCase {
    ErrorPriority priority;
    bool goesOn;
};

class ErrorTrapPriority : public ::testing::TestWithParam<TrapCase> {};

} // namespace

TEST_P(ErrorTrapPriority, ShowsTheErrorAndGoesOnOnlyForWarningsAndMessages) {
    AnswerMessageBoxes boxes;
    Session closed;
    ErrorList& errors = closed.errors();
    PostOK = true;
    errors.append(QStringLiteral("Something about the entry."), GetParam().priority);
    const bool goesOn = Trap_PostingError(errors, LedgerError(QStringLiteral("raised"), GetParam().priority));
    EXPECT_EQ(goesOn, GetParam().goesOn);
    EXPECT_EQ(PostOK, GetParam().goesOn);
    ASSERT_EQ(boxes.asked.size(), 1);
    EXPECT_EQ(boxes.asked[0].prompt, "Something about the entry.");
    EXPECT_EQ(boxes.asked[0].buttons, vbOKOnly);
    EXPECT_EQ(boxes.asked[0].icon, 0);
    EXPECT_EQ(boxes.asked[0].title, "Tillbook"); // the default caption
    EXPECT_EQ(errors.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Priorities, ErrorTrapPriority,
                         ::testing::Values(TrapCase{ErrorPriority::Error, false},
                                           TrapCase{ErrorPriority::Warning, true},
                                           TrapCase{ErrorPriority::Message, true},
                                           TrapCase{ErrorPriority::Security, false},
                                           TrapCase{ErrorPriority::Severe, false}));

TEST(ErrorTrap, ShowsEveryErrorOfTheListInOrderAndOneErrorStopsTheRest) {
    AnswerMessageBoxes boxes;
    Session closed;
    ErrorList& errors = closed.errors();
    PostOK = true;
    errors.append(QStringLiteral("first warning"), ErrorPriority::Warning);
    errors.append(QStringLiteral("the error"), ErrorPriority::Error);
    errors.append(QStringLiteral("a message"), ErrorPriority::Message);
    EXPECT_FALSE(Trap_PostingError(errors, LedgerError(QStringLiteral("the error"))));
    ASSERT_EQ(boxes.asked.size(), 3);
    EXPECT_EQ(boxes.asked[0].prompt, "first warning");
    EXPECT_EQ(boxes.asked[1].prompt, "the error");
    EXPECT_EQ(boxes.asked[2].prompt, "a message");
    EXPECT_FALSE(PostOK);

    // Once PostOK is down, not even a warning lets the posting go on.
    errors.append(QStringLiteral("later warning"), ErrorPriority::Warning);
    EXPECT_FALSE(
        Trap_PostingError(errors, LedgerError(QStringLiteral("later warning"), ErrorPriority::Warning)));
}

TEST(ErrorTrap, AFailureNotOnTheListIsShownAllTheSame) {
    AnswerMessageBoxes boxes;
    Session closed;
    PostOK = true;
    EXPECT_FALSE(Trap_PostingError(closed.errors(),
                                   LedgerError(QStringLiteral("out of memory"), ErrorPriority::Severe)));
    ASSERT_EQ(boxes.asked.size(), 1);
    EXPECT_EQ(boxes.asked[0].prompt, "out of memory");
}

TEST(PostingArrays, DistributionAmountsLoseTheirCommasAndTrailingZeros) {
    PostingInput input;
    input.distributions = {{"RETAIL", "", "1,234.50", "ref 1", "desc 1"},
                           {"", "4100-100", "1,2,3", "", ""},
                           {"", "4000", "12abc", "", ""},
                           {"", "4000", "", "", ""},
                           {"", "4000", "0.10", "", ""}};
    Load_DistributionArray(input);
    ASSERT_EQ(Distributions.size(), 6u); // row 0 is never filled
    EXPECT_EQ(Distributions[1], (std::array<QString, 5>{"RETAIL", "", "1234.5", "ref 1", "desc 1"}));
    EXPECT_EQ(Distributions[2][1], "4100-100");
    EXPECT_EQ(Distributions[2][2], "123");
    EXPECT_EQ(Distributions[3][2], "12");
    EXPECT_EQ(Distributions[4][2], "0");
    EXPECT_EQ(Distributions[5][2], "0.1");

    input.distributions.clear(); // each call starts afresh
    Load_DistributionArray(input);
    EXPECT_EQ(Distributions.size(), 1u);
}

TEST(PostingArrays, ReceiptHeaderKeepsTheKeyedTextsAndTrimsOnlyYearAndPeriod) {
    PostingInput input;
    input.txtReceiptNum = " 77 ";
    input.txtEntDesc = " deposit ";
    input.txtAmount = "1,250.00";
    input.cboYear = " 2026 ";
    input.cboPeriod = " 03 ";
    input.txtPrePay = " IN0042 ";
    input.txtPayer = " Bob ";
    ReceiptHeader[0] = "stale";
    Save_ReceiptHeader(input);
    EXPECT_EQ(ReceiptHeader, (std::array<QString, 8>{"", " 77 ", " deposit ", "1,250.00", "2026", "03",
                                                     " IN0042 ", " Bob "}));
}

} // namespace tillbook::test
