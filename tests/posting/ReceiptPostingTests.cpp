// Post_Receipt against the sample company: the entry and its applications as the ledger keeps them, and the
// error trap meeting the ledger's real errors and warnings.

#include "PostingTestSupport.h"
#include "entry/ReceiptDesk.h"
#include "ledger/engine/BatchPosting.h"

namespace tillbook::test {

using ReceiptPostingTest = PostingTest;

TEST_P(ReceiptPostingTest, WithoutApplicationsTheWholeAmountStaysUnapplied) {
    PostingInput input = keyed(1);
    input.receiptAmount = Money::fromWhole(150);
    Desk().LedgerSession->errors().append(QStringLiteral("left over from before"), ErrorPriority::Error);

    m_outcome = Post_Receipt(Desk(), input);

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().isEmpty()); // the old error was cleared, not shown
    EXPECT_EQ(entry("AR0042", {"RMITTYPE", "IDCUST", "AMTRMIT", "REMUNAPLTC", "TEXTRMIT", "IDRMIT",
                               "TEXTPAYOR", "FISCYR", "FISCPER", "DATERMIT"}),
              (std::vector<QStringList>{{"1", input.customer, "150.000", "150.000", "Counter receipt",
                                         "CHQ-1001", "Ann Payer", "2026", "03", "2026-03-14"}}));
    EXPECT_EQ(inBatch("AR0044"), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"1", "150.000"}));
}

TEST_P(ReceiptPostingTest, TwoApplicationsTakeTheAmountInTheOrderApplied) {
    PostingInput input = keyed(2);
    const Money part = Money::fromCents(1000);
    ASSERT_GT(m_invoices[0].due, part);
    // The second document first: it is paid in full, the first gets what is left.
    input.receiptAmount = m_invoices[1].due + part;
    input.applyKeys = {m_invoices[1].key, m_invoices[0].key};

    m_outcome = Post_Receipt(Desk(), input);

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    auto applied = entry("AR0044", {"IDINVC", "AMTPAYM"});
    std::sort(applied.begin(), applied.end());
    EXPECT_EQ(applied,
              (std::vector<QStringList>{{m_invoices[0].number, part.toLedgerString()},
                                        {m_invoices[1].number, m_invoices[1].due.toLedgerString()}}));
    EXPECT_EQ(entry("AR0042", {"REMUNAPLTC"}).at(0), QStringList{"0.000"});
    EXPECT_EQ(batchFigures(), (QStringList{"1", input.receiptAmount.toLedgerString()}));
}

TEST_P(ReceiptPostingTest, AWarningIsShownAndThePostingGoesOn) {
    PostingInput input = keyed(3);
    input.receiptAmount = m_invoices[0].due + m_invoices[1].due;
    input.applyKeys = {m_invoices[0].key, m_invoices[1].key, m_invoices[2].key}; // nothing left for the third

    m_outcome = Post_Receipt(Desk(), input);

    EXPECT_TRUE(m_outcome.PostOK);
    EXPECT_EQ(prompts(), QStringList{"Nothing is left of the receipt amount to apply to document " +
                                     m_invoices[2].number + "."});
    EXPECT_EQ(entry("AR0044", {"IDINVC"}).size(), 2u);
    EXPECT_EQ(batchFigures(), (QStringList{"1", input.receiptAmount.toLedgerString()}));
}

TEST_P(ReceiptPostingTest, AnErrorIsShownAndStopsThePostingAtOnce) {
    PostingInput input = keyed();
    input.customer = QStringLiteral("NOSUCH");
    input.applyKeys = {1};
    m_outcome = Post_Receipt(Desk(), input);
    EXPECT_FALSE(m_outcome.PostOK);
    EXPECT_EQ(prompts(), QStringList{"Customer Number \"NOSUCH\" does not exist."}); // nothing after it ran
    EXPECT_EQ(inBatch("AR0042"), 0);

    // An impossible date goes to the ledger as typed, and the ledger refuses it.
    input = keyed(1);
    input.txtDate = QStringLiteral("02/31/2026");
    m_outcome = Post_Receipt(Desk(), input);
    EXPECT_FALSE(m_outcome.PostOK);
    EXPECT_TRUE(prompts().last().contains("\"02/31/2026\" is not a valid date"))
        << prompts().last().toStdString();
    EXPECT_EQ(inBatch("AR0042"), 0);
}

TEST_P(ReceiptPostingTest, AFailedInsertLeavesNothingOfTheEntryInTheLedger) {
    PostingInput input = keyed(2);
    input.receiptAmount = m_invoices[0].due + m_invoices[1].due;
    input.applyKeys = {m_invoices[0].key, m_invoices[1].key};
    ErrorList elsewhere; // another till posts the batch meanwhile: the entry's insert is refused at the end
    engine::postBatch(*engine::CompanyStore::open(m_company->id()), elsewhere, m_batch.toLongLong(),
                      QDate(2026, 3, 14));

    m_outcome = Post_Receipt(Desk(), input);

    EXPECT_FALSE(m_outcome.PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].contains("is not open")) << prompts()[0].toStdString();
    EXPECT_EQ(inBatch("AR0042"), 0);
    EXPECT_EQ(inBatch("AR0044"), 0);
    EXPECT_EQ(batchFigures()[0], "0");
}

TILLBOOK_ON_EACH_STORE(ReceiptPostingTest);

} // namespace tillbook::test
