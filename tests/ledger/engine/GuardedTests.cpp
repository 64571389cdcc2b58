// How an operation's failures and warnings reach its caller, without a store.

#include "ledger/Money.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/StoreFailure.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace tillbook::test {
namespace {

ErrorPriority priorityOfFailure(ErrorList& errors, const std::function<void()>& operation) {
    try {
        engine::guarded(errors, operation);
    } catch (const LedgerError& e) {
        EXPECT_TRUE(e.listed());
        return e.priority();
    }
    ADD_FAILURE() << "the operation did not fail";
    return ErrorPriority::Warning;
}

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
        // An operation inside another: the failure is listed once.
        EXPECT_EQ(priorityOfFailure(errors, [&] { engine::guarded(errors, c.operation); }), c.priority);
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
}

TEST(Guarded, AProgrammingErrorIsNoLedgerError) {
    ErrorList errors;
    EXPECT_THROW(engine::guarded(errors, [] { throw ProgrammingError(QStringLiteral("a bug")); }),
                 ProgrammingError);
    EXPECT_EQ(errors.count(), 0);
}

} // namespace
} // namespace tillbook::test
