// Post_Receipt against the sample company: the entry and its applications as the ledger keeps them, and the
// error trap meeting the ledger's real errors and warnings.

#include "PostingTestSupport.h"
#include "fetching/ReceiptRecall.h"
#include "fetching/ReceiptViews.h"
#include "ledger/engine/BatchPosting.h"
#include "settings/Globals.h"

namespace tillbook::test {

namespace {

QString ledger(Money m) {
    return m.toLedgerString();
}

} // namespace

using ReceiptPostingTest = PostingTest;

TEST_P(ReceiptPostingTest, WithoutApplicationsTheWholeAmountStaysUnapplied) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(1, invoices);
    input.receiptAmount = Money::fromCents(15000);
    LedgerSession->errors().append(QStringLiteral("left over from before"), ErrorPriority::Error);

    Post_Receipt(input);

    EXPECT_TRUE(PostOK);
    EXPECT_TRUE(prompts().isEmpty()); // the old error was cleared, not shown
    const auto header = records(QStringLiteral("AR0042"), EntryFilter(m_batch, "1"),
                                {"RMITTYPE", "IDCUST", "AMTRMIT", "REMUNAPLTC", "TEXTRMIT", "IDRMIT",
                                 "TEXTPAYOR", "FISCYR", "FISCPER", "DATERMIT"});
    ASSERT_EQ(header.size(), 1u);
    EXPECT_EQ(header[0], (QStringList{"1", input.customer, "150.000", "150.000", "Counter receipt",
                                      "CHQ-1001", "Ann Payer", "2026", "03", "2026-03-14"}));
    EXPECT_EQ(lines("AR0044"), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"1", "150.000"}));
}

TEST_P(ReceiptPostingTest, TwoApplicationsTakeTheAmountInTheOrderApplied) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(2, invoices);
    const Money part = Money::fromCents(1000);
    ASSERT_GT(invoices[0].due, part);
    // The second document first: it is paid in full, the first gets what is left.
    input.receiptAmount = invoices[1].due + part;
    input.applyKeys = {invoices[1].key, invoices[0].key};

    Post_Receipt(input);

    EXPECT_TRUE(PostOK);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join("\n").toStdString();
    const auto applied = records(QStringLiteral("AR0044"), EntryFilter(m_batch, "1"), {"IDINVC", "AMTPAYM"});
    ASSERT_EQ(applied.size(), 2u);
    QStringList documents;
    for (const QStringList& line : applied)
        documents << line.join('=');
    documents.sort();
    QStringList expected{invoices[0].number + '=' + ledger(part),
                         invoices[1].number + '=' + ledger(invoices[1].due)};
    expected.sort();
    EXPECT_EQ(documents, expected);
    EXPECT_EQ(records(QStringLiteral("AR0042"), EntryFilter(m_batch, "1"), {"REMUNAPLTC"})[0][0], "0.000");
    EXPECT_EQ(batchFigures(), (QStringList{"1", ledger(input.receiptAmount)}));
}

TEST_P(ReceiptPostingTest, AWarningIsShownAndThePostingGoesOn) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(3, invoices);
    input.receiptAmount = invoices[0].due + invoices[1].due;
    input.applyKeys = {invoices[0].key, invoices[1].key, invoices[2].key}; // nothing is left for the third

    Post_Receipt(input);

    EXPECT_TRUE(PostOK);
    EXPECT_EQ(prompts(), QStringList{"Nothing is left of the receipt amount to apply to document " +
                                     invoices[2].number + "."});
    EXPECT_EQ(records(QStringLiteral("AR0044"), EntryFilter(m_batch, "1"), {"IDINVC"}).size(), 2u);
    EXPECT_EQ(batchFigures(), (QStringList{"1", ledger(input.receiptAmount)}));
    EXPECT_EQ(LedgerSession->errors().count(), 0);
}

TEST_P(ReceiptPostingTest, AnErrorIsShownAndStopsThePostingAtOnce) {
    PostingInput input = keyed();
    input.customer = QStringLiteral("NOSUCH");
    input.receiptAmount = Money::fromWhole(10);
    input.applyKeys = {1};

    Post_Receipt(input);

    EXPECT_FALSE(PostOK);
    // Only the first failure: the statements after it never ran.
    EXPECT_EQ(prompts(), QStringList{"Customer Number \"NOSUCH\" does not exist."});
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(batchFigures(), (QStringList{"0", "0.000"}));
}

TEST_P(ReceiptPostingTest, AnImpossibleDateIsRefusedByTheLedgerWithTheTypedText) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(1, invoices);
    input.receiptAmount = Money::fromWhole(10);
    input.txtDate = QStringLiteral("02/31/2026");

    Post_Receipt(input);

    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].contains("\"02/31/2026\" is not a valid date")) << prompts()[0].toStdString();
    EXPECT_EQ(entries(), 0);
}

TEST_P(ReceiptPostingTest, AFailedInsertLeavesNothingOfTheEntryInTheLedger) {
    std::vector<OpenInvoice> invoices;
    PostingInput input = keyed();
    input.customer = customerWithInvoices(2, invoices);
    input.receiptAmount = invoices[0].due + invoices[1].due;
    input.applyKeys = {invoices[0].key, invoices[1].key};
    {
        // Another till posts the batch meanwhile: the entry's insert is refused at the very end.
        ErrorList errors;
        engine::postBatch(*engine::CompanyStore::open(m_company->id()), errors, m_batch.toLongLong(),
                          QDate(2026, 3, 14));
    }

    Post_Receipt(input);

    EXPECT_FALSE(PostOK);
    ASSERT_EQ(prompts().size(), 1);
    EXPECT_TRUE(prompts()[0].contains("is not open")) << prompts()[0].toStdString();
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(lines("AR0044"), 0);
    EXPECT_EQ(batchFigures()[0], "0");
}

TILLBOOK_ON_EACH_STORE(ReceiptPostingTest);

} // namespace tillbook::test
