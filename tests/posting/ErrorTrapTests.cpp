// The error trap and the distribution array, without a ledger.

#include "ledger/Session.h"
#include "posting/ErrorTrap.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

#include <gtest/gtest.h>

namespace tillbook::test {

TEST(ErrorTrap, OnlyWarningsAndMessagesLetThePostingGoOn) {
    Session closed;
    for (const auto& [priority, goesOn] : {std::pair{ErrorPriority::Error, false},
                                           {ErrorPriority::Warning, true},
                                           {ErrorPriority::Message, true},
                                           {ErrorPriority::Security, false},
                                           {ErrorPriority::Severe, false}}) {
        PostingOutcome outcome;
        closed.errors().append(QStringLiteral("About the entry."), priority);
        EXPECT_EQ(
            Trap_PostingError(closed.errors(), LedgerError(QStringLiteral("raised"), priority), outcome),
            goesOn);
        EXPECT_EQ(outcome.PostOK, goesOn);
        ASSERT_EQ(outcome.problems.size(), 1u);
        EXPECT_EQ(outcome.problems[0].error.description, "About the entry.");
        EXPECT_EQ(outcome.problems[0].error.priority, priority);
        EXPECT_FALSE(outcome.problems[0].critical);
        EXPECT_EQ(closed.errors().count(), 0);
    }
}

TEST(ErrorTrap, ShowsEveryErrorInOrderAndOnceStoppedStaysStopped) {
    Session closed;
    ErrorList& errors = closed.errors();
    PostingOutcome outcome;
    errors.append(QStringLiteral("a warning"), ErrorPriority::Warning);
    errors.append(QStringLiteral("the error"), ErrorPriority::Error);
    EXPECT_FALSE(Trap_PostingError(errors, LedgerError(QStringLiteral("the error")), outcome));
    errors.append(QStringLiteral("later warning"), ErrorPriority::Warning);
    EXPECT_FALSE(
        Trap_PostingError(errors, LedgerError(QStringLiteral("later"), ErrorPriority::Warning), outcome));
    // A failure that never reached the list is shown all the same.
    outcome.PostOK = true;
    EXPECT_FALSE(
        Trap_PostingError(errors, LedgerError(QStringLiteral("disk full"), ErrorPriority::Severe), outcome));
    QStringList shown;
    for (const PostingProblem& problem : outcome.problems)
        shown << problem.error.description;
    EXPECT_EQ(shown, (QStringList{"a warning", "the error", "later warning", "disk full"}));
}

TEST(ErrorTrap, AStatementDoneWithWarningsHandsThemOnAndThePostingGoesOn) {
    Session closed;
    PostingSequence steps(closed);
    bool nextRan = false;
    steps.then([&] {
        closed.errors().warn(QStringLiteral("outside its period"));
        closed.errors().note(QStringLiteral("a note"));
        return closed.errors().warningsSince(0);
    });
    steps.then([&] {
        nextRan = true;
        return Warnings();
    });
    const PostingOutcome outcome = steps.run();
    EXPECT_TRUE(nextRan);
    EXPECT_TRUE(outcome.PostOK);
    ASSERT_EQ(outcome.problems.size(), 2u);
    EXPECT_EQ(outcome.problems[0].error.description, "outside its period");
    EXPECT_EQ(outcome.problems[1].error.priority, ErrorPriority::Message);
    EXPECT_EQ(closed.errors().count(), 0);
}

TEST(PostingArrays, DistributionAmountsLoseTheirCommasAndTrailingZeros) {
    PostingInput input;
    input.distributions = {{"RETAIL", "", "1,234.50", "ref", "desc"},
                           {"", "4100-100", "1,2,3", "", ""},
                           {"", "", "12abc", "", ""},
                           {"", "", "", "", ""},
                           {"", "", "0.10", "", ""}};
    const std::vector<std::array<QString, 5>> lines = Load_DistributionArray(input);
    ASSERT_EQ(lines.size(), 6u); // row 0 is never filled
    EXPECT_EQ(lines[1], (std::array<QString, 5>{"RETAIL", "", "1234.5", "ref", "desc"}));
    QStringList amounts;
    for (size_t r = 2; r < lines.size(); ++r)
        amounts << lines[r][2];
    EXPECT_EQ(amounts, (QStringList{"123", "12", "0", "0.1"}));
}

} // namespace tillbook::test
