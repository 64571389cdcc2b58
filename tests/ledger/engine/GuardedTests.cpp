// How an operation's failures and warnings reach its caller, without a store.

#include "ledger/Money.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/StoreFailure.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace tillbook::test {
namespace {

TEST(Guarded, EveryFailureIsOneLedgerErrorOnTheListWithItsPriority) {
    const struct {
        std::function<void()> operation;
        ErrorPriority priority;
        QString listed;
    } cases[] = {
        {[] { throw engine::storeFailure(QStringLiteral("disk full")); }, ErrorPriority::Severe, "disk full"},
        {[] { throw InputError(QStringLiteral("Filter \"X\": no field X")); }, ErrorPriority::Error,
         "Filter \"X\": no field X"},
        {[] {
             (void)(Money::fromThousandths(std::numeric_limits<std::int64_t>::max()) + Money::fromWhole(1));
         },
         ErrorPriority::Error, "An amount is too large for the ledger to work with; nothing was written."},
    };
    for (const auto& c : cases) {
        ErrorList errors;
        try { // an operation inside another: the failure is listed once
            engine::guarded(errors, [&] { engine::guarded(errors, c.operation); });
            ADD_FAILURE() << "did not fail: " << c.listed.toStdString();
        } catch (const LedgerError& e) {
            EXPECT_TRUE(e.listed());
            EXPECT_EQ(e.priority(), c.priority);
        }
        ASSERT_EQ(errors.count(), 1) << c.listed.toStdString();
        EXPECT_EQ(errors.at(0).description, c.listed);
        EXPECT_EQ(errors.at(0).priority, c.priority);
    }
}

TEST(Guarded, AnOperationDoneReturnsItsOwnWarningsAndMessages) {
    ErrorList errors;
    errors.warn(QStringLiteral("an earlier one"));
    const Warnings warnings = engine::guarded(errors, [&] {
        errors.warn(QStringLiteral("outside its period"));
        errors.append(QStringLiteral("not a warning"), ErrorPriority::Security);
        errors.note(QStringLiteral("noted"));
    });
    ASSERT_EQ(warnings.entries.size(), 2);
    EXPECT_EQ(warnings.first().description, "outside its period");
    EXPECT_EQ(warnings.entries[1].priority, ErrorPriority::Message);
    EXPECT_EQ(errors.count(), 4); // and they stay on the list
    // A programming error is no ledger error: it passes through, unlisted.
    EXPECT_THROW(engine::guarded(errors, [] { throw ProgrammingError(QStringLiteral("a bug")); }),
                 ProgrammingError);
    EXPECT_EQ(errors.count(), 4);
}

} // namespace
} // namespace tillbook::test
