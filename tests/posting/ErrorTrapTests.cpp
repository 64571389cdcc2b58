// The error trap and the distribution array, without a ledger.

#include "ledger/Session.h"
#include "posting/ErrorTrap.h"
#include "posting/Posting.h"
#include "settings/Globals.h"
#include "support/AnswerMessageBoxes.h"

#include <gtest/gtest.h>

namespace tillbook::test {

TEST(ErrorTrap, OnlyWarningsAndMessagesLetThePostingGoOn) {
    Session closed;
    for (const auto& [priority, goesOn] : {std::pair{ErrorPriority::Error, false},
                                           {ErrorPriority::Warning, true},
                                           {ErrorPriority::Message, true},
                                           {ErrorPriority::Security, false},
                                           {ErrorPriority::Severe, false}}) {
        AnswerMessageBoxes boxes;
        PostOK = true;
        closed.errors().append(QStringLiteral("About the entry."), priority);
        EXPECT_EQ(Trap_PostingError(closed.errors(), LedgerError(QStringLiteral("raised"), priority)),
                  goesOn);
        EXPECT_EQ(PostOK, goesOn);
        ASSERT_EQ(boxes.asked.size(), 1);
        EXPECT_EQ(boxes.asked[0].prompt, "About the entry.");
        EXPECT_EQ(boxes.asked[0].buttons + boxes.asked[0].icon, vbOKOnly);
        EXPECT_EQ(boxes.asked[0].title, "Tillbook"); // the default caption
        EXPECT_EQ(closed.errors().count(), 0);
    }
}

TEST(ErrorTrap, ShowsEveryErrorInOrderAndOnceStoppedStaysStopped) {
    AnswerMessageBoxes boxes;
    Session closed;
    ErrorList& errors = closed.errors();
    PostOK = true;
    errors.append(QStringLiteral("a warning"), ErrorPriority::Warning);
    errors.append(QStringLiteral("the error"), ErrorPriority::Error);
    EXPECT_FALSE(Trap_PostingError(errors, LedgerError(QStringLiteral("the error"))));
    errors.append(QStringLiteral("later warning"), ErrorPriority::Warning);
    EXPECT_FALSE(Trap_PostingError(errors, LedgerError(QStringLiteral("later"), ErrorPriority::Warning)));
    // A failure that never reached the list is shown all the same.
    PostOK = true;
    EXPECT_FALSE(Trap_PostingError(errors, LedgerError(QStringLiteral("disk full"), ErrorPriority::Severe)));
    QStringList shown;
    for (const MsgBoxRequest& request : boxes.asked)
        shown << request.prompt;
    EXPECT_EQ(shown, (QStringList{"a warning", "the error", "later warning", "disk full"}));
}

TEST(PostingArrays, DistributionAmountsLoseTheirCommasAndTrailingZeros) {
    PostingInput input;
    input.distributions = {{"RETAIL", "", "1,234.50", "ref", "desc"},
                           {"", "4100-100", "1,2,3", "", ""},
                           {"", "", "12abc", "", ""},
                           {"", "", "", "", ""},
                           {"", "", "0.10", "", ""}};
    Load_DistributionArray(input);
    ASSERT_EQ(Distributions.size(), 6u); // row 0 is never filled
    EXPECT_EQ(Distributions[1], (std::array<QString, 5>{"RETAIL", "", "1234.5", "ref", "desc"}));
    QStringList amounts;
    for (size_t r = 2; r < Distributions.size(); ++r)
        amounts << Distributions[r][2];
    EXPECT_EQ(amounts, (QStringList{"123", "12", "0", "0.1"}));
}

} // namespace tillbook::test
