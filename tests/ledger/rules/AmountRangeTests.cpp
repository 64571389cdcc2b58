// A sum beyond its field that the run scripts do not reach: a posting that would take a customer's balance
// too far is refused before anything is written.

#include "RulesTestSupport.h"
#include "ledger/LedgerError.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/RecordAccess.h"

namespace tillbook::test {
namespace {

using AmountRangeTest = RulesTest;
TILLBOOK_EACH_STORE(AmountRangeTest);

const Money Largest = Money::fromThousandths(999'999'999'999'999'999); // BCD*10.3

TEST_P(AmountRangeTest, PostingThatWouldTakeABalanceBeyondItsFieldChangesNothing) {
    Till till(signIn());
    Session* session = &till.session();
    const qint64 batch = till.newBatch();
    engine::updateRecord(
        store(), "AR0024", {{"IDCUST", "C2"}},
        {{"AMTBALDUET", QVariant::fromValue(-Largest)}, {"AMTBALDUEH", QVariant::fromValue(-Largest)}});
    ASSERT_TRUE(till.post(receiptDraft(batch, 1, "C1", "100", {2})).PostOK); // pays IN1 in full
    // 0.001 unapplied: C2's balance would go beyond.
    ASSERT_TRUE(till.post(receiptDraft(batch, 2, "C2", "0.001")).PostOK);
    try {
        engine::postBatch(store(), session->errors(), batch, QDate(2025, 3, 15));
        ADD_FAILURE() << "the posting went through";
    } catch (const LedgerError& e) {
        EXPECT_EQ(e.description().toStdString(),
                  "Balance Due in Cust. Curr. \"-1000000000000000.000\" is too large: "
                  "it holds at most 999999999999999.999.");
    }
    EXPECT_EQ(record("AR0041", {{"CODEPYMTYP", "CA"}, {"CNTBTCH", batch}}, {"BATCHSTAT"})
                  ->value("BATCHSTAT")
                  .toInt(),
              1);
    EXPECT_EQ(money(record("AR0024", {{"IDCUST", "C1"}}, {"AMTBALDUET"})->value("AMTBALDUET")),
              Money::fromWhole(120));
    EXPECT_EQ(money(record("AR0036", {{"IDCUST", "C1"}, {"IDINVC", "IN1"}}, {"AMTDUETC"})->value("AMTDUETC")),
              Money::fromWhole(100));
}

} // namespace
} // namespace tillbook::test
