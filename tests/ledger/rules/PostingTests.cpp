// Posting a batch: documents paid, customers' balances and counts, unapplied cash and prepayments as
// documents, and a batch that is not open.

#include "RulesTestSupport.h"
#include "ledger/engine/BatchPosting.h"

namespace tillbook::test {
namespace {

using PostingTest = RulesTest;
TILLBOOK_ON_EACH_STORE(PostingTest);

QVariantHash document(const char* customer, const QString& number) {
    return {{"IDCUST", customer}, {"IDINVC", number}};
}

TEST_P(PostingTest, PostingAppliesEntriesAndMakesDocumentsOfWhatIsLeft) {
    Till till(signIn());
    Session* session = &till.session();
    const qint64 batch = till.newBatch();
    for (const ReceiptDraft& draft :
         {receiptDraft(batch, 1, "C1", "130", {2, 3}), // IN1 100 in full, IN2 30 of 50: nothing unapplied
          receiptDraft(batch, 2, "C2", "100", {1}),    // IN3 80 in full, 20 unapplied
          prepaymentDraft(batch, "C2", "25", "IN3"),
          miscDraft(batch, "10", {{"RETAIL", "", amountOf("10"), "", ""}})})
        ASSERT_TRUE(messages(till.post(draft)).isEmpty());

    const engine::PostingSummary summary =
        engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15));
    EXPECT_EQ(summary.entries, 4);
    EXPECT_EQ(summary.documentsPaid, 2);
    EXPECT_EQ(summary.documentsCreated, 2);

    // What the ledger keeps afterwards, record by record.
    const auto kept = [&](const char* viewId, const QVariantHash& key, const QStringList& fields) {
        const auto r = record(viewId, key, fields);
        QStringList values;
        for (const QString& field : fields)
            values << (r ? r->value(field).toString() : QStringLiteral("none"));
        return values.join(u' ').toStdString();
    };
    EXPECT_EQ(kept("AR0036", document("C1", "IN1"), {"AMTDUETC", "SWPAID"}), "0.000 1");
    EXPECT_EQ(kept("AR0036", document("C1", "IN2"), {"AMTDUETC", "SWPAID"}), "20.000 0");
    // C1: 120 - 130; C2: 80 - 80 - 20 - 25, with the unapplied cash and the prepayment open.
    EXPECT_EQ(kept("AR0024", {{"IDCUST", "C1"}}, {"AMTBALDUET", "CNTOPENINV", "CNTINVPAID"}), "-10.000 2 1");
    EXPECT_EQ(kept("AR0024", {{"IDCUST", "C2"}}, {"AMTBALDUET", "CNTOPENINV", "CNTPPDINVC"}), "-45.000 2 1");
    EXPECT_EQ(kept("AR0036", document("C2", "UC0000001"), {"AMTDUETC"}), "-20.000");
    EXPECT_EQ(kept("AR0036", document("C2", "PP0000001"), {"AMTDUETC", "IDPREPAID"}), "-25.000 IN3");
    EXPECT_EQ(kept("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {"BATCHSTAT"}), "3");

    // Posted: no second posting, no new entries; the paid documents leave the list.
    EXPECT_THROW(engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15)), LedgerError);
    EXPECT_TRUE(till.openDocument("C1", 1));
    EXPECT_TRUE(till.openDocument("C1", 2));
    EXPECT_EQ(till.text("AR0061", "IDINVC"), "IN2");
    EXPECT_EQ(till.text("AR0061", "APPLY"), "N");
}

TEST_P(PostingTest, UnknownBatchIsRefused) {
    auto session = signIn();
    EXPECT_THROW(engine::postBatch(store(), session->errors(), 42, QDate(2025, 3, 15)), LedgerError);
    EXPECT_EQ(session->errors().at(0).description, "Batch Number \"42\" does not exist.");
}

} // namespace
} // namespace tillbook::test
