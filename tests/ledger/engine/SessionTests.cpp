// Signing in, names, and how an operation's failures and warnings reach its caller.
#include "ledger/Money.h"
#include "ledger/engine/Guarded.h"
#include "ledger/engine/StoreFailure.h"
#include "support/Company.h"

#include <functional>
#include <limits>

namespace tillbook::test {
namespace {

using SessionTest = StoreTest;

TEST_P(SessionTest, SignInFailuresSayWhatIsWrong) {
    Session session;
    expectFailure([&] { session.open("ADMIN", "ADMIN", "NOSUCH", QDate(2025, 1, 1)); },
                  "\"NOSUCH\" does not exist");
    // An unknown user and a wrong password look alike, so that a sign-in does not tell who is a user.
    const LedgerError user = expectFailure([&] { session.open("CLERK", "ADMIN", m_id, QDate(2025, 1, 1)); },
                                           "user name or password is not correct");
    EXPECT_EQ(user.priority(), ErrorPriority::Security);
    // Passwords are case-sensitive; user names are not.
    const LedgerError password =
        expectFailure([&] { session.open("ADMIN", "admin", m_id, QDate(2025, 1, 1)); },
                      "user name or password is not correct");
    EXPECT_EQ(password.description(), user.description());
    EXPECT_EQ(password.priority(), user.priority());
    EXPECT_FALSE(session.isOpen());
    EXPECT_EQ(session.errors().count(), 3);
    session.open("admin", "ADMIN", m_id, QDate(2025, 1, 1));
    EXPECT_EQ(session.sessionDate(), QDate(2025, 1, 1));
}

// The ledger's names are checked at every sign-in; a constant the schema lacks is named, in its own case.
TEST(LedgerNames, AConstantTheSchemaLacksIsNamed) {
    const ViewName nowhere{"XX9999"};
    EXPECT_EQ(
        unknownLedgerNames({nowhere, names::Batches},
                           {{names::Batches, "CNTBTCH"}, {nowhere, "IDCUST"}, {names::Batches, "cntbtch"}}),
        QStringList({"view XX9999", "field XX9999.IDCUST", "field AR0041.cntbtch"}));
}

// Views and fields are found in any case. A spelling seen once is kept per view: asked again, in another
// view, or after a miss, it finds the same field. Names are remembered by the string the caller holds: that
// string changed in place, or a new one made where a freed one lay, finds its own field.
TEST_P(SessionTest, NamesInAnyCaseFindTheirOwnFieldEveryTime) {
    const LedgerError e = expectFailure([&] { m_session->openView("AR9999", "AR"); },
                                        "View \"AR9999\" does not exist in this company.");
    EXPECT_EQ(e.priority(), ErrorPriority::Error);
    auto customers = m_session->openView("ar0024", "AR");
    EXPECT_EQ(customers->id(), "AR0024");
    auto documents = m_session->openView("AR0036", "AR");
    FieldCollection& c = customers->fields();
    FieldCollection& d = documents->fields();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(&c.item("  idcust"), &c.at(0));
        EXPECT_EQ(d.item("  idcust").name(), "IDCUST"); // the same spelling, another view
        EXPECT_EQ(d.item("idinvc").name(), "IDINVC");
        EXPECT_EQ(c.find("idinvc"), nullptr); // kept by the other view only
    }
    expectFailure([&] { c.item("NOFIELD"); }, "Field \"NOFIELD\" does not exist in view AR0024");
    QString name = QStringLiteral("textstre1").toUpper(); // the caller's own text, on the heap
    EXPECT_EQ(c.item(name).name(), "TEXTSTRE1");
    name[8] = u'2'; // the same length, in the same place unless the look-up kept a share of it
    EXPECT_EQ(c.item(name).name(), "TEXTSTRE2");
    for (int round = 0; round < 3; ++round) // the allocator soon hands freed names' memory out again
        for (int i = 0; i < c.count(); ++i) {
            const QString own = c.at(i).name();
            const QString spelled = (i % 2 ? own.toLower() : QString(own).append(u' '));
            ASSERT_EQ(&c.item(spelled), &c.at(i)) << qPrintable(spelled);
        }
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

// An operation's own warnings and messages, not those listed before it nor its other problems.
TEST(Guarded, AnOperationDoneReturnsItsOwnWarningsAndMessages) {
    ErrorList errors;
    errors.warn(QStringLiteral("an earlier one"));
    const Warnings warnings = engine::guarded(errors, [&] {
        errors.warn(QStringLiteral("outside its period"));
        errors.append(QStringLiteral("not a warning"), ErrorPriority::Security);
        errors.note(QStringLiteral("noted"));
    });
    ASSERT_EQ(warnings.entries.size(), 2);
    EXPECT_EQ(warnings.entries[1].priority, ErrorPriority::Message);
}

TILLBOOK_EACH_STORE(SessionTest);

} // namespace
} // namespace tillbook::test
