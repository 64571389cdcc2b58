// Posting while other tills work: two postings paying one document at once, a posting stopped half-way
// and resumed, a till's receipt between the steps of a long posting, and a till that waits too long.

#include "PaymentBatches.h"
#include "RulesTestSupport.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/LedgerCheck.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/Transaction.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace tillbook::test {
namespace {

using PostingUnderLoadTest = RulesTest;
TILLBOOK_EACH_STORE(PostingUnderLoadTest);

const QDate PostingDate(2025, 3, 15);

// Sets how long a statement waits for another's lock, for the sessions and stores opened meanwhile.
class LockWait {
public:
    explicit LockWait(const char* milliseconds) { qputenv("TILLBOOK_LOCK_WAIT_MS", milliseconds); }
    ~LockWait() { qunsetenv("TILLBOOK_LOCK_WAIT_MS"); }
};

Money cents(qint64 c) {
    return Money::fromCents(c);
}

std::vector<Payment> payingEach(const QString& customer, int from, int count, Money each) {
    std::vector<Payment> payments;
    for (int n = from; n < from + count; ++n)
        payments.push_back({customer, documentOf(customer, n), each});
    return payments;
}

int batchStatus(engine::CompanyStore& store, qint64 batch) {
    return engine::readRecord(store, "AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {"BATCHSTAT"})
        ->value("BATCHSTAT")
        .toInt();
}

void expectLedgerHolds(engine::CompanyStore& store) {
    const auto result = engine::checkLedger(store);
    EXPECT_TRUE(result.violations.isEmpty()) << result.violations.join('\n').toStdString();
}

// Batch 1 pays 10.00 on IN1 first and then 400 other documents; batch 2 pays 20.00 on IN1 and starts
// while batch 1 is still at work. Both payments must reach the document.
TEST_P(PostingUnderLoadTest, TwoPostingsPayingOneDocumentAtOnceLoseNoPayment) {
    m_company->addRecords(customerWithDocuments("Z", 400, cents(5000)));
    std::vector<Payment> first{{"C1", "IN1", cents(1000)}};
    for (const Payment& p : payingEach("Z", 1, 400, cents(100)))
        first.push_back(p);
    m_company->addRecords(batchOfPayments(1, first));
    m_company->addRecords(batchOfPayments(2, {{"C1", "IN1", cents(2000)}}));

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

    const auto in1 = record("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, {"AMTDUETC", "CNTTOTPAYM"});
    EXPECT_EQ(money(in1->value("AMTDUETC")), Money::fromWhole(70));
    EXPECT_EQ(in1->value("CNTTOTPAYM").toInt(), 2);
    EXPECT_EQ(money(record("AR0024", {{"IDCUST", "C1"}}, {"AMTBALDUET"})->value("AMTBALDUET")),
              Money::fromWhole(90));
    expectLedgerHolds(store());
}

TEST_P(PostingUnderLoadTest, StoppedPostingResumesWhereItStoppedAndPostsNoEntryTwice) {
    m_company->addRecords(customerWithDocuments("Z", 5, cents(5000)));
    m_company->addRecords(batchOfPayments(1, payingEach("Z", 1, 5, cents(1500))));
    auto session = signIn();
    engine::PostingOptions options;
    options.entriesPerStep = 2;
    options.afterStep = [](const engine::PostingSummary&) { throw std::runtime_error("killed"); };
    EXPECT_THROW(engine::postBatch(store(), session->errors(), 1, PostingDate, options), LedgerError);

    // Half-way: "Post In Progress", two entries posted, and the ledger whole.
    EXPECT_EQ(batchStatus(store(), 1), 5);
    EXPECT_EQ(money(record("AR0036", {{"IDCUST", "Z"}, {"IDINVC", "Z-2"}}, {"AMTDUETC"})->value("AMTDUETC")),
              cents(3500));
    EXPECT_EQ(money(record("AR0036", {{"IDCUST", "Z"}, {"IDINVC", "Z-3"}}, {"AMTDUETC"})->value("AMTDUETC")),
              cents(5000));
    expectLedgerHolds(store());
    // Only the documents not yet paid count what the unposted entries apply to them.
    Till till(signIn());
    ASSERT_TRUE(till.openDocument("Z", 2));
    EXPECT_EQ(till.text("AR0061", "PNDPAYTOT"), "0.000");
    ASSERT_TRUE(till.openDocument("Z", 3));
    EXPECT_EQ(till.text("AR0061", "PNDPAYTOT"), "15.000");
    // No entry joins a batch being posted.
    EXPECT_FALSE(till.post(receiptDraft(1, 6, "C2", "5")).PostOK);

    options.afterStep = nullptr;
    const auto summary = engine::postBatch(store(), session->errors(), 1, PostingDate, options);
    EXPECT_EQ(summary.entries, 3);
    EXPECT_GT(summary.postingSequence, 0);
    EXPECT_EQ(batchStatus(store(), 1), 3);
    for (int n = 1; n <= 5; ++n) {
        const auto d =
            record("AR0036", {{"IDCUST", "Z"}, {"IDINVC", documentOf("Z", n)}}, {"AMTDUETC", "CNTTOTPAYM"});
        EXPECT_EQ(money(d->value("AMTDUETC")), cents(3500)) << n;
        EXPECT_EQ(d->value("CNTTOTPAYM").toInt(), 1) << n;
    }
    expectLedgerHolds(store());
    EXPECT_THROW(engine::postBatch(store(), session->errors(), 1, PostingDate), LedgerError);
}

// Between two steps nothing is locked: a till's receipt for the very customer being paid goes through
// even when tills wait only a moment.
TEST_P(PostingUnderLoadTest, TillsReceiptBetweenStepsOfALongPostingGoesThrough) {
    m_company->addRecords(batchOfPayments(
        1, {{"C1", "IN1", cents(100)}, {"C1", "IN2", cents(100)}, {"C1", "IN1", cents(100)}}));
    LockWait shortWait("300");
    auto poster = engine::CompanyStore::open(m_id);
    Till till(signIn());
    const qint64 other = till.newBatch();
    engine::PostingOptions options;
    options.entriesPerStep = 1;
    int receipts = 0;
    options.afterStep = [&](const engine::PostingSummary&) {
        ++receipts;
        EXPECT_TRUE(till.post(receiptDraft(other, receipts, "C1", "1", {2})).PostOK); // IN1
    };
    ErrorList errors;
    EXPECT_NO_THROW(engine::postBatch(*poster, errors, 1, PostingDate, options));
    EXPECT_EQ(receipts, 3);
    EXPECT_EQ(count("AR0042", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", other}}), 3);
    expectLedgerHolds(store());
}

TEST_P(PostingUnderLoadTest, TillThatWaitsTooLongIsToldTheCompanyIsBusy) {
    LockWait shortWait("200");
    Till till(signIn());
    const qint64 batch = till.newBatch();
    auto other = engine::CompanyStore::open(m_id);
    {
        engine::Transaction holding(*other);
        engine::addToRecord(*other, "AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {{"CNTENTER", 0}});
        const PostingOutcome waited = till.post(receiptDraft(batch, 1, "C2", "5"));
        EXPECT_FALSE(waited.PostOK) << "the receipt did not wait for the lock";
        EXPECT_EQ(messages(waited).value(messages(waited).size() - 1),
                  "The company is busy. Try again in a moment.");
    }
    EXPECT_TRUE(till.post(receiptDraft(batch, 1, "C2", "5")).PostOK);
}

} // namespace
} // namespace tillbook::test
