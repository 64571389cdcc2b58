// The error trap, without a ledger: which priorities stop a posting, and every error shown in order.

#include "ledger/Session.h"
#include "posting/ErrorTrap.h"
#include "posting/Posting.h"
#include "posting/PostingSequence.h"

#include <gtest/gtest.h>

namespace tillbook::test {

TEST(ErrorTrap, OnlyWarningsAndMessagesLetThePostingGoOn) {
    Session closed;
    ErrorList& errors = closed.errors();
    for (const auto& [priority, goesOn] : {std::pair{ErrorPriority::Error, false},
                                           {ErrorPriority::Warning, true},
                                           {ErrorPriority::Message, true},
                                           {ErrorPriority::Security, false},
                                           {ErrorPriority::Severe, false}}) {
        PostingOutcome outcome;
        errors.append(QStringLiteral("a warning first"), ErrorPriority::Warning);
        errors.append(QStringLiteral("About the entry."), priority);
        EXPECT_EQ(Trap_PostingError(errors, LedgerError(QStringLiteral("raised"), priority), outcome),
                  goesOn);
        EXPECT_EQ(outcome.PostOK, goesOn);
        ASSERT_EQ(outcome.problems.size(), 2u);
        EXPECT_EQ(outcome.problems[1].error.description, "About the entry.");
        EXPECT_EQ(outcome.problems[1].error.priority, priority);
        EXPECT_FALSE(outcome.problems[1].critical);
        EXPECT_EQ(errors.count(), 0);
        // Once stopped, it stays stopped; a failure that never reached the list is shown all the same.
        EXPECT_EQ(Trap_PostingError(errors, LedgerError(QStringLiteral("disk full"), ErrorPriority::Warning),
                                    outcome),
                  goesOn);
        EXPECT_EQ(outcome.problems.back().error.description, "disk full");
    }
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

} // namespace tillbook::test
