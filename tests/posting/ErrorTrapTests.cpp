// The error trap, without a ledger.

#include "ledger/Session.h"
#include "posting/ErrorTrap.h"
#include "posting/Posting.h"

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

} // namespace tillbook::test
