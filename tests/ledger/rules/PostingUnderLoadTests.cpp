// Posting while other tills work: two postings paying one document at once, a posting stopped half-way
// and resumed, a till's receipt between the steps of a long posting, and a till that waits too long.

#include "Till.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/LedgerCheck.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace tillbook::test {
namespace {

using PostingUnderLoadTest = KnownCompanyTest;
TILLBOOK_EACH_STORE(PostingUnderLoadTest);

const QDate PostingDate(2025, 3, 15);

Money cents(qint64 c) {
    return Money::fromCents(c);
}

std::vector<Payment> payingEach(const QString& customer, int from, int count, Money each) {
    std::vector<Payment> payments;
    for (int n = from; n < from + count; ++n)
        payments.push_back({customer, documentOf(customer, n), each});
    return payments;
}

void expectLedgerHolds(const Company& company) {
    const auto result = engine::checkLedger(*company.store());
    EXPECT_TRUE(result.violations.isEmpty()) << result.violations.join('\n').toStdString();
}

// Batch 1 pays 10.00 on IN1 first and then 400 other documents; batch 2 pays 20.00 on IN1 and starts
// while batch 1 is still at work. Both payments must reach the document.
TEST_P(PostingUnderLoadTest, TwoPostingsPayingOneDocumentAtOnceLoseNoPayment) {
    std::vector<Payment> first{{"C1", "IN1", cents(1000)}};
    for (const Payment& p : payingEach("Z", 1, 400, cents(100)))
        first.push_back(p);
    start(CompanyBuilder(GetParam())
              .known()
              .documents("Z", 400, cents(5000))
              .batch(1, first)
              .batch(2, {{"C1", "IN1", cents(2000)}}));

    QString failures[2];
    const auto post = [&](qint64 batch, int startAfterMs) {
        return std::thread([this, batch, startAfterMs, &failures] {
            std::this_thread::sleep_for(std::chrono::milliseconds(startAfterMs));
            try {
                auto own = engine::CompanyStore::open(m_id); // a till of its own: its own connection
                ErrorList errors;
                engine::postBatch(*own, errors, batch, PostingDate);
            } catch (const LedgerError& e) {
                failures[batch - 1] = e.description();
            }
        });
    };
    std::thread one = post(1, 0);
    std::thread two = post(2, 20);
    one.join();
    two.join();
    EXPECT_EQ(failures[0], "");
    EXPECT_EQ(failures[1], "");

    EXPECT_EQ(m_company->records("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, {"AMTDUETC", "CNTTOTPAYM"}),
              QStringList("70.000 2"));
    EXPECT_EQ(m_company->value("AR0024", {{"IDCUST", "C1"}}, "AMTBALDUET"), "90.000");
    expectLedgerHolds(*m_company);
}

TEST_P(PostingUnderLoadTest, StoppedPostingResumesWhereItStoppedAndPostsNoEntryTwice) {
    start(CompanyBuilder(GetParam())
              .known()
              .documents("Z", 5, cents(5000))
              .batch(1, payingEach("Z", 1, 5, cents(1500))));
    const auto store = m_company->store();
    Session* session = m_session.get();
    engine::PostingOptions options;
    options.entriesPerStep = 2;
    options.afterStep = [](const engine::PostingSummary&) { throw std::runtime_error("killed"); };
    EXPECT_THROW(engine::postBatch(*store, session->errors(), 1, PostingDate, options), LedgerError);

    // Half-way: "Post In Progress", two entries posted, and the ledger whole.
    EXPECT_EQ(m_company->value("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", 1}}, "BATCHSTAT"), "5");
    EXPECT_EQ(m_company->value("AR0036", {{"IDCUST", "Z"}, {"IDINVC", "Z-2"}}, "AMTDUETC"), "35.000");
    EXPECT_EQ(m_company->value("AR0036", {{"IDCUST", "Z"}, {"IDINVC", "Z-3"}}, "AMTDUETC"), "50.000");
    expectLedgerHolds(*m_company);
    // Only the documents not yet paid count what the unposted entries apply to them.
    Till till(*m_company);
    ASSERT_TRUE(till.openDocument("Z", 2));
    EXPECT_EQ(till.text("AR0061", "PNDPAYTOT"), "0.000");
    ASSERT_TRUE(till.openDocument("Z", 3));
    EXPECT_EQ(till.text("AR0061", "PNDPAYTOT"), "15.000");
    // No entry joins a batch being posted.
    EXPECT_FALSE(till.post(receipt(1, 6, "C2", "5")).PostOK);

    options.afterStep = nullptr;
    const auto summary = engine::postBatch(*store, session->errors(), 1, PostingDate, options);
    EXPECT_EQ(summary.entries, 3);
    EXPECT_GT(summary.postingSequence, 0);
    EXPECT_EQ(m_company->value("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", 1}}, "BATCHSTAT"), "3");
    for (int n = 1; n <= 5; ++n) {
        EXPECT_EQ(m_company->records("AR0036", {{"IDCUST", "Z"}, {"IDINVC", documentOf("Z", n)}},
                                     {"AMTDUETC", "CNTTOTPAYM"}),
                  QStringList("35.000 1"))
            << n;
    }
    expectLedgerHolds(*m_company);
    EXPECT_THROW(engine::postBatch(*store, session->errors(), 1, PostingDate), LedgerError);
}

// Between two steps nothing is locked: a till's receipt for the very customer being paid goes through
// even when tills wait only a moment. A till that waits too long for a lock is told the company is busy.
TEST_P(PostingUnderLoadTest,
       TillsReceiptBetweenStepsGoesThroughAndOneThatWaitsTooLongIsToldTheCompanyIsBusy) {
    start(CompanyBuilder(GetParam())
              .known()
              .batch(1, {{"C1", "IN1", cents(100)}, {"C1", "IN2", cents(100)}, {"C1", "IN1", cents(100)}}));
    ScopedEnv shortWait("TILLBOOK_LOCK_WAIT_MS", "300"); // for the stores and sessions opened meanwhile
    auto poster = engine::CompanyStore::open(m_id);
    Till till(*m_company);
    const qint64 other = till.newBatch();
    engine::PostingOptions options;
    options.entriesPerStep = 1;
    int receipts = 0;
    options.afterStep = [&](const engine::PostingSummary&) {
        ++receipts;
        EXPECT_TRUE(till.post(receipt(other, receipts, "C1", "1", {2})).PostOK); // IN1
    };
    ErrorList errors;
    EXPECT_NO_THROW(engine::postBatch(*poster, errors, 1, PostingDate, options));
    EXPECT_EQ(receipts, 3);
    EXPECT_EQ(m_company->count("AR0042", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", other}}), 3);
    expectLedgerHolds(*m_company);
    {
        engine::Transaction holding(*poster);
        engine::addToRecord(*poster, "AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", other}}, {{"CNTENTER", 0}});
        const PostingOutcome waited = till.post(receipt(other, 4, "C2", "5"));
        EXPECT_FALSE(waited.PostOK) << "the receipt did not wait for the lock";
        ASSERT_FALSE(waited.problems.empty());
        EXPECT_EQ(waited.problems.back().error.description, "The company is busy. Try again in a moment.");
    }
    EXPECT_TRUE(till.post(receipt(other, 4, "C2", "5")).PostOK);
}

} // namespace
} // namespace tillbook::test
